#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

#include "hook/open_failure_paths.h"

namespace {

void* openOrExit(char const* name) {
    void* const library = dlopen(name, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        std::exit(2);
    }
    return library;
}

}  // namespace

// For a host that knows nothing of the library when it starts: it loads the library, and then a
// plug-in that calls it.
FailurePath const* openFailurePaths() {
    openOrExit("libutillibrary.so.1");
    void* const plugin = openOrExit("libfailure_paths.so");
    auto const paths = reinterpret_cast<FailurePath const* (*)()>(dlsym(plugin, "failurePaths"));
    if (paths == nullptr) std::exit(2);
    return paths();
}
