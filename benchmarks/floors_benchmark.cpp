#include <cstdlib>
#include <cstring>
#include <ctime>
#include <numeric>
#include <unistd.h>
#include <vector>

#include "support/operation.h"
#include "support/pool.h"

// The least times: the loop itself, arithmetic, copies, allocations, system calls.
namespace {

using namespace benchmarks;

std::vector<std::size_t> indices() {
    std::vector<std::size_t> values(POOL_SIZE);
    std::iota(values.begin(), values.end(), 0);
    return values;
}

// Some twenty nanoseconds of arithmetic, without memory or system calls.
unsigned long mixed(unsigned long value) {
    for (int i = 0; i < 16; ++i)
        value = (value ^ (value >> 29)) * 0xBF58476D1CE4E5B9;
    return value;
}

struct Block {
    explicit Block(std::size_t size) : start(std::malloc(size)) {}
    ~Block() { std::free(start); }
    Block(Block const&) = delete;
    Block& operator=(Block const&) = delete;

    void* start;
};

void addCopy(std::size_t size) {
    Operation const copy("copy of memory, " + sizeName(size), indices(), AsItIs());
    copy.floor("memcpy", [from = std::vector<char>(size, 'x'),
                          to = std::vector<char>(size)](std::size_t /*index*/) mutable {
        std::memcpy(to.data(), from.data(), from.size());
        return to.data();
    });
}

void addAllocation(std::size_t size) {
    Operation const allocation("allocation of " + std::to_string(size) + " bytes", indices(),
                               AsItIs());
    allocation.floor("malloc, free", [size](std::size_t /*index*/) {
        Block const block(size);
        benchmark::DoNotOptimize(block.start);
        return 0;
    });
}

}  // namespace

void benchmarks::addRows() {
    Operation const nothing("nothing", indices(), AsItIs());
    nothing.floor("empty loop", AsItIs());
    Operation const arithmetic = Operation("arithmetic", indices(), mixed).threaded();
    arithmetic.floor("16 multiplications", mixed);

    for (std::size_t const size : SIZES)
        addCopy(size);
    for (std::size_t const size : {25UL, 80UL, 4096UL, MEBIBYTE})
        addAllocation(size);

    Operation const call("system call", indices(), AsItIs());
    call.floor("getppid", [](std::size_t /*index*/) { return getppid(); });
    Operation const clock("clock", indices(), AsItIs());
    clock.floor("clock_gettime", [](std::size_t /*index*/) {
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        return now;
    });
}
