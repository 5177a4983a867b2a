#include "support/failing_allocations.h"

#include <cstdlib>

namespace testing_support {

namespace {

bool watching = false;
long count = 0;
std::size_t bytes = 0;
long failing = NO_ALLOCATION;

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
    using namespace testing_support;
    if (watching) {
        if (count++ == failing) throw std::bad_alloc();
        bytes += size;
    }
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept { std::free(memory); }

void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
