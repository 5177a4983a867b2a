#include "support/guarded_memory.h"

#include <cstdint>
#include <cstdlib>
#include <new>
#include <sys/mman.h>
#include <unistd.h>

namespace testing_support {

namespace {

constexpr std::size_t REGION_SIZE = std::size_t{256} << 20;
constexpr std::size_t ALIGNMENT = 16;

// Addresses that are taken one after the other. Only pages of living allocations can be accessed.
struct Region {
    char* begin = nullptr;
    std::size_t used = 0;
    std::size_t pageSize = 0;

    bool contains(void const* memory) const noexcept {
        auto const address = reinterpret_cast<std::uintptr_t>(memory);
        auto const first = reinterpret_cast<std::uintptr_t>(begin);
        return address >= first && address < first + used;
    }

    char* pageOf(void* memory) const noexcept {
        auto const offset = static_cast<std::size_t>(static_cast<char*>(memory) - begin);
        return begin + offset / pageSize * pageSize;
    }
};

Region region;
bool guarding = false;

void* allocateGuarded(std::size_t size) {
    std::size_t const pages = (size + region.pageSize - 1) / region.pageSize * region.pageSize;
    char* const first = region.begin + region.used;
    region.used += pages + region.pageSize;  // and the page after it
    if (region.used > REGION_SIZE) throw std::bad_alloc();
    if (mprotect(first, pages, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
    return first + (pages - size) / ALIGNMENT * ALIGNMENT;
}

void forbidAccess(char* first, std::size_t size) noexcept {
    if (mmap(first, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_FIXED, -1,
             0) == MAP_FAILED) {
        std::abort();
    }
}

}  // namespace

GuardedMemory::GuardedMemory() {
    if (region.begin == nullptr) {
        region.pageSize = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        void* const memory = mmap(nullptr, REGION_SIZE, PROT_NONE,
                                  MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (memory == MAP_FAILED) throw std::bad_alloc();
        region.begin = static_cast<char*>(memory);
    }
    guarding = true;
}

GuardedMemory::~GuardedMemory() {
    guarding = false;
    if (region.used != 0) forbidAccess(region.begin, region.used);
    region.used = 0;
}

}  // namespace testing_support

void* operator new(std::size_t size) {
    using namespace testing_support;
    if (size == 0) size = 1;
    if (guarding) return allocateGuarded(size);
    void* const memory = std::malloc(size);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory, std::size_t size) noexcept {
    using namespace testing_support;
    if (!region.contains(memory)) {
        std::free(memory);
        return;
    }
    char* const first = region.pageOf(memory);
    forbidAccess(first, static_cast<std::size_t>(static_cast<char*>(memory) - first) + size);
}

// The size is not known: the page of the first byte is enough to notice an access.
void operator delete(void* memory) noexcept { operator delete(memory, 1); }
