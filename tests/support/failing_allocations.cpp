#include "support/failing_allocations.h"

#include <cstdlib>
#include <cstring>
#include <malloc.h>

namespace testing_support {

namespace {

bool watching = false;
long count = 0;
std::size_t bytes = 0;
long failing = NO_ALLOCATION;

void countOrFail(std::size_t size) {
    if (!watching) return;
    if (count++ == failing) throw std::bad_alloc();
    bytes += size;
}

// Whoever reads the memory later finds other bytes. The barrier keeps the compiler from leaving
// out a write to memory that is freed next.
void overwrite(void* memory, std::size_t size) noexcept {
    std::memset(memory, 0xDD, size);
    __asm__ volatile("" : : "r"(memory) : "memory");
}

}  // namespace

AllocationWatch::AllocationWatch(long failingAllocation) noexcept {
    count = 0;
    bytes = 0;
    failing = failingAllocation;
    watching = true;
}

AllocationWatch::~AllocationWatch() { watching = false; }

long watchedAllocations() noexcept { return count; }

std::size_t watchedBytes() noexcept { return bytes; }

}  // namespace testing_support

void* operator new(std::size_t size) {
    testing_support::countOrFail(size);
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

// std::pmr::new_delete_resource asks for all its memory so.
void* operator new(std::size_t size, std::align_val_t alignment) {
    testing_support::countOrFail(size);
    auto const step = static_cast<std::size_t>(alignment);
    void* const memory = std::aligned_alloc(step, (size + step) / step * step);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept {
    if (memory != nullptr) testing_support::overwrite(memory, malloc_usable_size(memory));
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }

void operator delete(void* memory, std::align_val_t) noexcept { operator delete(memory); }

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    operator delete(memory);
}
