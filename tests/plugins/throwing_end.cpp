// An exception escapes while it is unloaded.

namespace {

struct Thrower {
    ~Thrower() noexcept(false) { throw 1; }
} thrower;

}  // namespace
