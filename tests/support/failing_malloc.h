#pragma once

#include <cstddef>

// Lets malloc and similar functions fail, and counts the blocks that are in use. A program that
// lists failing_malloc.cpp among its sources has replaced malloc for itself, for the library, for
// libc, for libstdc++ and for the loader. Only for programs of one thread, and without a sanitizer,
// which replaces malloc itself.
namespace testing_support {

/// In its scope, the allocation of this number fails, counted from 0.
class FailingMalloc {
public:
    /// Takes    failing: the number of the allocation. andAllAfter: if true, those after it also
    ///          fail.
    FailingMalloc(long failing, bool andAllAfter) noexcept;
    ~FailingMalloc();
    FailingMalloc(FailingMalloc const&) = delete;
    FailingMalloc& operator=(FailingMalloc const&) = delete;
};

/// The number of allocations in the latest scope, failed ones included.
long requestedAllocations() noexcept;

/// The number of blocks that are allocated now and not freed.
long liveBlocks() noexcept;

/// The number of allocations that failed since the program began.
long failedAllocations() noexcept;

}  // namespace testing_support
