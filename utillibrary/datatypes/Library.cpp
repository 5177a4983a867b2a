#include "utillibrary/datatypes/Library.h"

#include <dlfcn.h>

#include "utillibrary/application/ORUsyslog.h"
#include "utillibrary/internal/result_codes.h"

namespace com::halvorin::datatypes {

namespace {

using namespace com::halvorin::internal;

unsigned int failToOpen(std::string const& message, unsigned int code) {
    application::oru::writelog(LIBRARY_OPEN, LEVEL_ERROR, message, code);
    return code;
}

void* failToFind(char const* message, unsigned int code) {
    application::oru::writelog(LIBRARY_PROC_ADDRESS, LEVEL_ERROR, message, code);
    return nullptr;
}

// Reports an empty name or a library that is open, and returns the code; otherwise SUCCESS.
unsigned int refusal(std::string const& name, bool open) {
    if (name.empty()) return failToOpen(EMPTY_LIBRARY_NAME, INVALID_ARGUMENT);
    if (open) return failToOpen(ALREADY_OPEN, GENERAL_FAILURE);
    return SUCCESS;
}

// Opens a library. If a static constructor of the file throws, this ends the process: the exception
// must not pass through the loader, which has locked itself and is not in a consistent state. The
// call goes through a volatile pointer, because `dlopen` is declared not to throw: for a direct
// call the compiler would leave out the code that noexcept adds.
void* loaderOpen(char const* name, int mode) noexcept {
    void* (*const volatile call)(char const*, int) = dlopen;
    return call(name, mode);
}

}  // namespace

Library::Library() noexcept = default;

Library::Library(std::string const& name) {
    // KEPT(constructor-throws-a-number): the code itself, and not a std::exception.
    if (unsigned int const code = open(name); code != SUCCESS) throw unsigned{code};
}

Library::~Library() {
    if (isOpen()) close();
}

// KEPT(name-outlives-close): the last name that was opened, also after close.
std::string Library::name() const { return name_; }

void* Library::procAddress(std::string const& name) const {
    if (!isOpen()) return failToFind(NOT_OPEN_FOR_SYMBOL, INVALID_ARGUMENT);
    if (name.empty()) return failToFind(EMPTY_SYMBOL_NAME, INVALID_ARGUMENT);
    void* const address = dlsym(module_, name.c_str());
    // KEPT(null-symbol-is-missing): `dlerror` could tell a symbol of value null from a missing one,
    // but it is not called.
    return address != nullptr ? address : failToFind(SYMBOL_LOOKUP_FAILED, SYMBOL_NOT_FOUND);
}

unsigned int Library::open(std::string const& name) {
    if (unsigned int const code = refusal(name, isOpen()); code != SUCCESS) return code;
    if (load(name, RTLD_LAZY)) return SUCCESS;
    // Ask at once, because the next call of the loader changes the reason.
    // NOLINTNEXTLINE(concurrency-mt-unsafe): libc keeps one reason for each thread.
    char const* const reason = dlerror();
    return failToOpen(std::string(LOAD_FAILED_REASON) + (reason != nullptr ? reason : ""),
                      LIBRARY_NOT_LOADED);
}

unsigned int Library::open(std::string const& name, unsigned int flags) {
    if (unsigned int const code = refusal(name, isOpen()); code != SUCCESS) return code;
    if (load(name, static_cast<int>(flags))) return SUCCESS;
    // KEPT(reason-without-flags-only): `dlerror` answers once, and here it is left to the host.
    return failToOpen(LOAD_FAILED, LIBRARY_NOT_LOADED);
}

unsigned int Library::close() {
    if (!isOpen()) {
        // KEPT(closed-twice-is-a-notice): no full stop, no code, and not the level of an error.
        application::oru::writelog(LIBRARY_CLOSE, LEVEL_NOTICE, NOT_OPEN_FOR_CLOSE, NO_CODE);
        return SUCCESS;
    }
    dlclose(module_);  // KEPT(close-always-succeeds): its result is ignored.
    module_ = nullptr;
    return SUCCESS;
}

bool Library::load(std::string const& name, int mode) {
    // Reserve memory for the name first: once the loader has given a handle, nothing may throw.
    name_.reserve(name.size());
    module_ = loaderOpen(name.c_str(), mode);
    if (isOpen()) name_ = name;
    return isOpen();
}

}  // namespace com::halvorin::datatypes
