#pragma once

#include <cstddef>

// Memory that ends where nothing may be read or written. A program that lists guarded_memory.cpp
// among its sources has replaced the allocation functions, for itself and for the library.
namespace testing_support {

/// In the scope of this object, each allocation ends at a page that cannot be accessed, apart from
/// the up to 15 bytes that its alignment takes. Memory that was freed cannot be accessed either. A
/// program that does so ends with SIGSEGV. What is allocated in the scope must be freed in it.
class GuardedMemory {
public:
    GuardedMemory();
    ~GuardedMemory();
    GuardedMemory(GuardedMemory const&) = delete;
    GuardedMemory& operator=(GuardedMemory const&) = delete;
};

}  // namespace testing_support
