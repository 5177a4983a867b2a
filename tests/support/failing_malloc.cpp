#include "support/failing_malloc.h"

#include <cerrno>
#include <cstdlib>
#include <malloc.h>
#include <unistd.h>

// glibc's own allocator also has these names.
// NOLINTBEGIN(bugprone-reserved-identifier, cert-dcl37-c, cert-dcl51-cpp)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}
// NOLINTEND(bugprone-reserved-identifier, cert-dcl37-c, cert-dcl51-cpp)

namespace testing_support {

namespace {

// The loader allocates before any constructor runs, so all of these are constants at first.
constinit bool active = false;
constinit bool allAfterFail = false;
constinit long failingNumber = 0;
constinit long requested = 0;
constinit long live = 0;
constinit long failed = 0;

// True if the allocation that is requested now fails.
bool failsNow() noexcept {
    if (!active) return false;
    long const number = requested++;
    if (number != failingNumber && !(allAfterFail && number > failingNumber)) return false;
    ++failed;
    errno = ENOMEM;
    return true;
}

void* counted(void* block) noexcept {
    if (block != nullptr) ++live;
    return block;
}

void* aligned(std::size_t alignment, std::size_t size) noexcept {
    return failsNow() ? nullptr : counted(__libc_memalign(alignment, size));
}

}  // namespace

FailingMalloc::FailingMalloc(long failing, bool andAllAfter) noexcept {
    failingNumber = failing;
    allAfterFail = andAllAfter;
    requested = 0;
    active = true;
}

FailingMalloc::~FailingMalloc() { active = false; }

long requestedAllocations() noexcept { return requested; }

long liveBlocks() noexcept { return live; }

long failedAllocations() noexcept { return failed; }

}  // namespace testing_support

// strdup, asprintf, operator new and others call these.
extern "C" {

void* malloc(std::size_t size) noexcept {
    using namespace testing_support;
    return failsNow() ? nullptr : counted(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) noexcept {
    using namespace testing_support;
    return failsNow() ? nullptr : counted(__libc_calloc(count, size));
}

void* realloc(void* block, std::size_t size) noexcept {
    using namespace testing_support;
    if (failsNow()) return nullptr;
    void* const moved = __libc_realloc(block, size);
    if (block == nullptr) return counted(moved);
    // A size of 0 frees the block.
    if (moved == nullptr && size == 0) --live;
    return moved;
}

void free(void* block) noexcept {
    if (block != nullptr) --testing_support::live;
    __libc_free(block);
}

void* memalign(std::size_t alignment, std::size_t size) noexcept {
    return testing_support::aligned(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return testing_support::aligned(alignment, size);
}

int posix_memalign(void** result, std::size_t alignment, std::size_t size) noexcept {
    if (alignment % sizeof(void*) != 0 || (alignment & (alignment - 1)) != 0) return EINVAL;
    int const before = errno;
    void* const block = testing_support::aligned(alignment, size);
    errno = before;
    if (block == nullptr) return ENOMEM;
    *result = block;
    return 0;
}

void* valloc(std::size_t size) noexcept {
    return testing_support::aligned(static_cast<std::size_t>(sysconf(_SC_PAGESIZE)), size);
}

void* pvalloc(std::size_t size) noexcept {
    auto const page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return testing_support::aligned(page, (size + page - 1) / page * page);
}

}  // extern "C"
