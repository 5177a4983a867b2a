// An exception escapes while it is loaded.

namespace {

struct Thrower {
    Thrower() { throw 1; }
} thrower;

}  // namespace
