#include "utillibrary/datatypes/Library.h"

#include <dlfcn.h>

#include "utillibrary/application/ORUsyslog.h"
#include "utillibrary/internal/result_codes.h"

namespace com::halvorin::datatypes {

namespace {

using namespace com::halvorin::internal;

constexpr unsigned int SUCCESS = 0;

// KEPT(reports-end-in-a-blank), KEPT(reports-use-other-names): hosts compare the texts.
constexpr char const* NO_NAME = "Invalid argument (NULL == Name). ";
constexpr char const* ALREADY_OPEN = "Must call Close because library is already open";
constexpr char const* LOAD_FAILED = "Error calling dlopen. ";
constexpr char const* LOAD_FAILED_BECAUSE = "Error calling dlopen. Reason: ";
constexpr char const* NOTHING_TO_ASK = "Library is not open. ";
constexpr char const* NOTHING_TO_CLOSE = "Library is not open";
constexpr char const* NO_SYMBOL_NAME = "NULL == EntryPoint. ";
constexpr char const* SYMBOL_FAILED = "Error calling dlsym. ";

unsigned int failToOpen(std::string const& reason, unsigned int code) {
    application::oru::writelog("Library::open", LEVEL_ERROR, reason, code);
    return code;
}

void* failToFind(char const* reason, unsigned int code) {
    application::oru::writelog("Library::procAddress", LEVEL_ERROR, reason, code);
    return nullptr;
}

// What stands in the way of asking the loader, or SUCCESS.
unsigned int refusal(std::string const& name, bool open) {
    if (name.empty()) return failToOpen(NO_NAME, INVALID_ARGUMENT);
    if (open) return failToOpen(ALREADY_OPEN, GENERAL_FAILURE);
    return SUCCESS;
}

// While the constructors of the shared object run, the loader holds its lock and is half done: an
// exception from there must not get past it, and ends the process. `dlopen` is declared not to
// throw, and a compiler that knows it would drop the guard; hence a pointer that hides it.
void* loaderOpen(char const* name, int mode) noexcept {
    void* (*const volatile call)(char const*, int) = dlopen;
    return call(name, mode);
}

}  // namespace

Library::Library() noexcept = default;

Library::Library(std::string const& name) {
    // KEPT(constructor-throws-a-number): hosts catch the code; there is no exception object.
    if (unsigned int const code = open(name); code != SUCCESS) throw unsigned{code};
}

Library::~Library() {
    if (isOpen()) close();
}

// KEPT(name-outlives-close): the last name that was opened, whatever is open.
std::string Library::name() const { return name_; }

void* Library::procAddress(std::string const& name) const {
    if (!isOpen()) return failToFind(NOTHING_TO_ASK, INVALID_ARGUMENT);
    if (name.empty()) return failToFind(NO_SYMBOL_NAME, INVALID_ARGUMENT);
    void* const address = dlsym(module_, name.c_str());
    // KEPT(null-symbol-is-missing): `dlerror` could tell the two apart, and is not asked.
    return address != nullptr ? address : failToFind(SYMBOL_FAILED, SYMBOL_NOT_FOUND);
}

unsigned int Library::open(std::string const& name) {
    if (unsigned int const code = refusal(name, isOpen()); code != SUCCESS) return code;
    if (load(name, RTLD_LAZY)) return SUCCESS;
    // At once, as the loader's next call changes it.
    // NOLINTNEXTLINE(concurrency-mt-unsafe): libc keeps one for each thread.
    char const* const reason = dlerror();
    return failToOpen(std::string(LOAD_FAILED_BECAUSE) + (reason != nullptr ? reason : ""),
                      LIBRARY_NOT_LOADED);
}

unsigned int Library::open(std::string const& name, unsigned int flags) {
    if (unsigned int const code = refusal(name, isOpen()); code != SUCCESS) return code;
    if (load(name, static_cast<int>(flags))) return SUCCESS;
    // KEPT(reason-without-flags-only): not asked for here, so that the host still can.
    return failToOpen(LOAD_FAILED, LIBRARY_NOT_LOADED);
}

unsigned int Library::close() {
    if (!isOpen()) {
        // KEPT(closed-twice-is-a-notice): neither a full stop, nor a code, nor an error's level.
        application::oru::writelog("Library::close", LEVEL_NOTICE, NOTHING_TO_CLOSE, NO_CODE);
        return SUCCESS;
    }
    dlclose(module_);  // KEPT(close-always-succeeds): its answer changes nothing.
    module_ = nullptr;
    return SUCCESS;
}

bool Library::load(std::string const& name, int mode) {
    // The room for the name comes first: once there is a handle nothing may throw.
    name_.reserve(name.size());
    module_ = loaderOpen(name.c_str(), mode);
    if (isOpen()) name_ = name;
    return isOpen();
}

}  // namespace com::halvorin::datatypes
