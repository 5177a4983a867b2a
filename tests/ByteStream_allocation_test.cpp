#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <utillibrary/datatypes/ByteStream.h>

#include "support/recorded_reports.h"

// This program defines new and delete itself, in place of the standard library's. So it counts
// blocks, and lets allocations fail.

using com::halvorin::datatypes::ByteStream;
using testing_support::takeReports;

namespace {

using Sizes = std::vector<std::size_t>;

constexpr std::size_t UNLIMITED = SIZE_MAX;

// A list that needs no allocator. It drops what does not fit, which no test expects.
class SizeList {
public:
    void add(std::size_t size) {
        if (count_ < sizes_.size()) sizes_[count_++] = size;
    }
    void clear() { count_ = 0; }
    Sizes all() const { return Sizes(sizes_.data(), sizes_.data() + count_); }

private:
    std::array<std::size_t, 1000> sizes_{};
    std::size_t count_ = 0;
};

struct Allocator {
    std::size_t largestBlock = UNLIMITED;  // more than that fails
    bool otherMemoryFails = false;
    SizeList requests;      // of blocks, including those that failed
    SizeList blocksBeside;  // how many blocks there were at each request
    std::size_t blocks = 0;
};

constinit Allocator allocator;

void* memory(std::size_t size) {
    if (void* const block = std::malloc(size == 0 ? 1 : size)) return block;
    throw std::bad_alloc();
}

}  // namespace

// Not inlined, so that the compiler sees pairs of new and delete, and no free of what new gave.
__attribute__((noinline)) void* operator new(std::size_t size) {
    if (allocator.otherMemoryFails) throw std::bad_alloc();
    return memory(size);
}
__attribute__((noinline)) void* operator new[](std::size_t size) {
    allocator.requests.add(size);
    allocator.blocksBeside.add(allocator.blocks);
    if (size > allocator.largestBlock) throw std::bad_alloc();
    void* const block = memory(size);
    ++allocator.blocks;
    return block;
}
__attribute__((noinline)) void operator delete(void* block) noexcept { std::free(block); }
__attribute__((noinline)) void operator delete[](void* block) noexcept {
    if (block != nullptr) --allocator.blocks;
    std::free(block);
}
void operator delete(void* block, std::size_t /*size*/) noexcept { operator delete(block); }
void operator delete[](void* block, std::size_t /*size*/) noexcept { operator delete[](block); }

namespace {

constexpr std::size_t LARGEST_BLOCK = 1000;  // where a test would else be given gigabytes
constexpr unsigned int MOST = 4294967295;    // 32 bits
constexpr unsigned int HALF = 2147483648;

char const BYTES[] = "0123456789ABCDEF";

std::optional<std::string> contentsOf(ByteStream const& stream) {
    if (stream.buffer() == nullptr) return std::nullopt;
    return std::string(stream.buffer(), stream.size());
}

struct AllocationTest : testing::Test {
    AllocationTest() { forget(); }
    ~AllocationTest() override { allocator.largestBlock = UNLIMITED; }

    static void forget() {
        allocator.requests.clear();
        allocator.blocksBeside.clear();
    }
};

// ---- one block for each operation

struct BlockFact {
    char const* fact;
    void (*change)(ByteStream& stream, ByteStream& source);
    Sizes requests;
};

// Operations on a stream "abcdefgh", with a source "0123".
BlockFact const BLOCK_FACTS[] = {
    {"copy of fewer bytes", [](ByteStream& s, ByteStream&) { s.copy(BYTES, 5); }, {5}},
    {"copy of more bytes", [](ByteStream& s, ByteStream&) { s.copy(BYTES, 16); }, {16}},
    {"copy of equally many bytes", [](ByteStream& s, ByteStream&) { s.copy(BYTES, 8); }, {}},
    {"copy of null and 0", [](ByteStream& s, ByteStream&) { s.copy(nullptr, 0); }, {}},
    {"copy of another stream", [](ByteStream& s, ByteStream& o) { s.copy(o); }, {4}},
    {"copy of the stream onto itself", [](ByteStream& s, ByteStream&) { s.copy(s); }, {}},
    {"assignment of another stream", [](ByteStream& s, ByteStream& o) { s = o; }, {4}},
    {"assignment of the stream to itself", [](ByteStream& s, ByteStream&) { s = *&s; }, {}},
    {"allocate of a greater length", [](ByteStream& s, ByteStream&) { s.allocate(9); }, {9}},
    {"allocate of a smaller length", [](ByteStream& s, ByteStream&) { s.allocate(7); }, {7}},
    {"allocate of an equal length", [](ByteStream& s, ByteStream&) { s.allocate(8); }, {}},
    {"allocate of length 0", [](ByteStream& s, ByteStream&) { s.allocate(0); }, {0}},
    {"resize to a greater length", [](ByteStream& s, ByteStream&) { s.resize(9); }, {9}},
    {"resize to a smaller length", [](ByteStream& s, ByteStream&) { s.resize(7); }, {7}},
    {"resize to an equal length", [](ByteStream& s, ByteStream&) { s.resize(8); }, {}},
    {"copy of a part that fits", [](ByteStream& s, ByteStream& o) { s.copy(o, 0, 4, 4); }, {}},
    {"copy of a part past the end", [](ByteStream& s, ByteStream& o) { s.copy(o, 0, 5, 4); }, {9}},
    {"copy of a part after a gap", [](ByteStream& s, ByteStream& o) { s.copy(o, 1, 10, 0); }, {13}},
    {"copy of a part of the stream itself",
     [](ByteStream& s, ByteStream&) { s.copy(s, 0, 4, 8); },
     {12}},
    {"zeroMemory asks for no memory", [](ByteStream& s, ByteStream&) { s.zeroMemory(); }, {}},
    {"clear asks for no memory", [](ByteStream& s, ByteStream&) { s.clear(); }, {}},
    {"construction from a length", [](ByteStream&, ByteStream&) { ByteStream const made(6); }, {6}},
    {"construction from length 0", [](ByteStream&, ByteStream&) { ByteStream const made(0); }, {}},
    {"construction from bytes",
     [](ByteStream&, ByteStream&) { ByteStream const made(BYTES, 3); },
     {3}},
    {"construction from another stream",
     [](ByteStream&, ByteStream& o) { ByteStream const made(o); },
     {4}},
};

TEST_F(AllocationTest, OneBlockIsMadeAtMost) {
    for (BlockFact const& row : BLOCK_FACTS) {
        SCOPED_TRACE(row.fact);
        std::size_t const before = allocator.blocks;
        {
            ByteStream stream("abcdefgh", 8);
            ByteStream source(BYTES, 4);
            forget();
            row.change(stream, source);
            Sizes const requests = allocator.requests.all();
            EXPECT_EQ(requests, row.requests);
            EXPECT_EQ(allocator.blocks - before, stream.buffer() == nullptr ? 1U : 2U);
        }
        EXPECT_EQ(allocator.blocks, before);  // each is given back
    }
}

TEST_F(AllocationTest, AllocateFreesFirstAndOthersLast) {  // KEPT(allocate-frees-first)
    std::size_t const before = allocator.blocks;
    ByteStream stream("abcdefgh", 8);
    ByteStream source(BYTES, 4);
    std::size_t const others = before + 1;

    forget();
    stream.allocate(20);
    EXPECT_EQ(allocator.blocksBeside.all(), Sizes{others});
    forget();
    stream.resize(21);
    stream.resize(19);
    stream.copy(BYTES, 8);
    stream.copy(source, 0, 8, 4);
    EXPECT_EQ(allocator.blocksBeside.all(), Sizes(4, others + 1));
}

// ---- memory that fails

struct FailureFact {
    char const* fact;
    void (*change)(ByteStream& stream, ByteStream& source);
};

FailureFact const FAILURE_FACTS[] = {
    {"copy of fewer bytes", [](ByteStream& s, ByteStream&) { s.copy(BYTES, 5); }},
    {"copy of more bytes", [](ByteStream& s, ByteStream&) { s.copy(BYTES, 16); }},
    {"copy of another stream", [](ByteStream& s, ByteStream& o) { s.copy(o); }},
    {"copy of bytes of the stream itself",
     [](ByteStream& s, ByteStream&) { s.copy(s.buffer(), 5); }},
    {"assignment of another stream", [](ByteStream& s, ByteStream& o) { s = o; }},
    {"resize to a greater length", [](ByteStream& s, ByteStream&) { s.resize(9); }},
    {"resize to a smaller length", [](ByteStream& s, ByteStream&) { s.resize(7); }},
    {"copy of a part past the end", [](ByteStream& s, ByteStream& o) { s.copy(o, 0, 5, 4); }},
    {"copy of a part after a gap", [](ByteStream& s, ByteStream& o) { s.copy(o, 0, 10, 4); }},
    {"copy of a part of the stream itself", [](ByteStream& s, ByteStream&) { s.copy(s, 0, 4, 8); }},
    {"construction from a length", [](ByteStream&, ByteStream&) { ByteStream const made(6); }},
    {"construction from bytes", [](ByteStream&, ByteStream&) { ByteStream const made(BYTES, 3); }},
    {"construction from another stream",
     [](ByteStream&, ByteStream& o) { ByteStream const made(o); }},
};

TEST_F(AllocationTest, FailureLeavesTheOldBytes) {
    for (FailureFact const& row : FAILURE_FACTS) {
        SCOPED_TRACE(row.fact);
        ByteStream stream("abcdefgh", 8);
        ByteStream source(BYTES, 4);
        char const* const block = stream.buffer();
        std::size_t const blocks = allocator.blocks;
        allocator.largestBlock = 0;
        EXPECT_THROW(row.change(stream, source), std::bad_alloc);
        allocator.largestBlock = UNLIMITED;

        EXPECT_EQ(contentsOf(stream), "abcdefgh");
        EXPECT_EQ(stream.buffer(), block);
        EXPECT_EQ(contentsOf(source), "0123");
        EXPECT_EQ(allocator.blocks, blocks);
    }
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

TEST_F(AllocationTest, FailureOfAllocateLeavesAnEmptyStream) {  // KEPT(allocate-frees-first)
    for (unsigned int const size : {7U, 9U}) {
        ByteStream stream("abcdefgh", 8);
        allocator.largestBlock = 0;
        EXPECT_THROW(stream.allocate(size), std::bad_alloc);
        allocator.largestBlock = UNLIMITED;
        EXPECT_EQ(contentsOf(stream), std::nullopt);
        EXPECT_EQ(stream.size(), 0U);
        EXPECT_EQ(stream.copy(BYTES, 3), 3U);
        EXPECT_EQ(contentsOf(stream), "012");
    }
}

TEST_F(AllocationTest, FailureOfAReportLeavesTheOldBytes) {
    ByteStream stream("abcdefgh", 8);
    allocator.otherMemoryFails = true;
    bool failed = false;
    try {
        stream.copy(nullptr, 5);
    } catch (std::bad_alloc const&) {
        failed = true;
    }
    allocator.otherMemoryFails = false;
    EXPECT_TRUE(failed);
    EXPECT_EQ(contentsOf(stream), "abcdefgh");
}

// ---- a part at every limit

enum class End { COPIED, REFUSED, MEMORY_FAILED };

std::ostream& operator<<(std::ostream& out, End end) {
    char const* const names[] = {"copied", "refused", "memory failed"};
    return out << names[static_cast<int>(end)];
}

struct Outcome {
    End end;
    Sizes requests;
    unsigned long copied;
};

// The outcome that a copy of a part must have, from sums that do not wrap.
Outcome expectedOf(unsigned long sourceSize, unsigned long size, unsigned long sourceStart,
                   unsigned long start, unsigned long count) {
    if (sourceStart + count > sourceSize) return {End::REFUSED, {}, 0};
    unsigned long const copied = count == 0 ? sourceSize - sourceStart : count;
    unsigned long const end = start + copied;
    if (end > MOST) return {End::MEMORY_FAILED, {}, 0};
    if (end <= size) return {End::COPIED, {}, copied};
    if (end > LARGEST_BLOCK) return {End::MEMORY_FAILED, {end}, 0};
    return {End::COPIED, {end}, copied};
}

Outcome outcomeOf(ByteStream& stream, ByteStream& source, unsigned int sourceStart,
                  unsigned int start, unsigned int count) {
    AllocationTest::forget();
    allocator.largestBlock = LARGEST_BLOCK;
    Outcome outcome{End::COPIED, {}, 0};
    try {
        outcome.copied = stream.copy(source, sourceStart, start, count);
    } catch (long) {
        outcome.end = End::REFUSED;
    } catch (std::bad_alloc const&) {
        outcome.end = End::MEMORY_FAILED;
    }
    allocator.largestBlock = UNLIMITED;
    outcome.requests = allocator.requests.all();
    return outcome;
}

// Takes  stream, source: streams that contain the first of the bytes above
void copyPartAndCheck(ByteStream& stream, ByteStream& source, unsigned int sourceStart,
                      unsigned int start, unsigned int count) {
    std::string bytes(stream.buffer(), stream.size());
    Outcome const expected = expectedOf(source.size(), stream.size(), sourceStart, start, count);
    Outcome const outcome = outcomeOf(stream, source, sourceStart, start, count);
    EXPECT_EQ(outcome.end, expected.end);
    EXPECT_EQ(outcome.requests, expected.requests);
    EXPECT_EQ(outcome.copied, expected.copied);
    EXPECT_EQ(takeReports().size(), expected.end == End::REFUSED ? 1U : 0U);
    if (expected.end == End::COPIED) {
        bytes.resize(std::max(bytes.size(), start + expected.copied));
        bytes.replace(start, expected.copied, &BYTES[sourceStart], expected.copied);
    }
    EXPECT_EQ(std::string(stream.buffer(), stream.size()), bytes);
}

TEST_F(AllocationTest, APartAtEveryLimitStaysWithinItsBlocks) {
    for (unsigned int const size : {0U, 1U, 4U, 10U}) {
        unsigned int const limits[] = {0, 1, 9, 10, 11, HALF, MOST};
        for (unsigned int const sourceStart : limits) {
            for (unsigned int const start : limits) {
                for (unsigned int const count : limits) {
                    SCOPED_TRACE(testing::Message()
                                 << size << ": " << sourceStart << ", " << start << ", " << count);
                    ByteStream source(BYTES, 10);
                    ByteStream stream(size == 0 ? nullptr : BYTES, size);
                    copyPartAndCheck(stream, source, sourceStart, start, count);
                    copyPartAndCheck(source, source, sourceStart, start, count);
                }
            }
        }
    }
}

}  // namespace
