// A shared object as it should be: a function, a value, a symbol whose value is null (the linker
// makes it), and a word to its host when it is unloaded.

extern "C" {

int pluginAnswer() { return 42; }

int pluginValue = 7;

bool* pluginUnloaded = nullptr;

}  // extern "C"

namespace {

struct Farewell {
    ~Farewell() {
        if (pluginUnloaded != nullptr) *pluginUnloaded = true;
    }
} farewell;

}  // namespace
