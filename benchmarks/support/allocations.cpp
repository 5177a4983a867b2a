#include "support/allocations.h"

#include <cerrno>
#include <cstddef>

// glibc's own functions, by the names that glibc offers to replacements of `malloc`.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

thread_local unsigned long calls = 0;

void* aligned(std::size_t alignment, std::size_t size) {
    ++calls;
    return __libc_memalign(alignment, size);
}

}  // namespace

unsigned long benchmarks::allocations() noexcept { return calls; }

extern "C" {

void* malloc(std::size_t size) {
    ++calls;
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
    ++calls;
    return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) {
    ++calls;
    return __libc_realloc(block, size);
}

void* memalign(std::size_t alignment, std::size_t size) { return aligned(alignment, size); }

void* aligned_alloc(std::size_t alignment, std::size_t size) { return aligned(alignment, size); }

int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
    *block = aligned(alignment, size);
    return *block == nullptr ? ENOMEM : 0;
}

}  // extern "C"
