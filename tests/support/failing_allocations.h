#pragma once

#include <cstddef>
#include <new>

// Counts allocations, and lets one of them fail. A program that lists failing_allocations.cpp among
// its sources has replaced the allocation functions, for itself and for the library. Memory is
// overwritten before it is freed.
namespace testing_support {

constexpr long NO_ALLOCATION = -1;

/// Counts the allocations of a scope from 0, and lets the one with a given number fail.
class AllocationWatch {
public:
    explicit AllocationWatch(long failing = NO_ALLOCATION) noexcept;
    ~AllocationWatch();
    AllocationWatch(AllocationWatch const&) = delete;
    AllocationWatch& operator=(AllocationWatch const&) = delete;
};

/// The number of allocations in the last scope, including one that failed.
long watchedAllocations() noexcept;

/// The number of bytes that they asked for, without one that failed.
std::size_t watchedBytes() noexcept;

template <typename Work>
long allocationsOf(Work const& work) {
    {
        AllocationWatch const watch;
        work();
    }
    return watchedAllocations();
}

/// True if the work ended with std::bad_alloc when an allocation failed.
template <typename Work>
bool failsWithout(long allocation, Work const& work) {
    try {
        AllocationWatch const watch(allocation);
        work();
    } catch (std::bad_alloc const&) {
        return true;
    }
    return false;
}

}  // namespace testing_support
