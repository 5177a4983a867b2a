#include <cstring>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include <gmock/gmock.h>

#include <utillibrary/datatypes/ByteStream.h>

#include "support/byte_streams.h"
#include "support/recorded_reports.h"

// Single operations. ByteStream_model_test.cpp has sequences of them, and
// ByteStream_allocation_test.cpp their blocks and failed memory. Long for its tables.

using namespace testing_support;
using namespace std::string_literals;

namespace {

constexpr unsigned int MOST = 4294967295;  // 32 bits
constexpr unsigned int HALF = 2147483648;

// ---- the class itself

template <typename Source>
concept Copyable = requires(ByteStream& stream, Source source) {
    stream.copy(static_cast<Source>(source));
};
template <typename Source>
concept RangeCopyable = requires(ByteStream& stream, Source source) {
    stream.copy(static_cast<Source>(source), 0U, 0U, 0U);
};

static_assert(sizeof(ByteStream) == 16);
static_assert(std::is_same_v<decltype(std::declval<ByteStream const&>().buffer()), char*>);
static_assert(std::is_same_v<decltype(std::declval<ByteStream const&>().data()), char*>);
static_assert(std::is_same_v<decltype(std::declval<ByteStream const&>().size()), unsigned int>);
static_assert(std::is_convertible_v<ByteStream const, char const*>);
static_assert(std::is_convertible_v<unsigned int, ByteStream>);
static_assert(Copyable<ByteStream&> && RangeCopyable<ByteStream&>);
// KEPT(source-is-a-variable)
static_assert(!Copyable<ByteStream const&> && !Copyable<ByteStream&&> && !Copyable<unsigned int>);
static_assert(!RangeCopyable<ByteStream const&> && !RangeCopyable<unsigned int>);

TEST(ByteStream, IsItsTwoFieldsInOrder) {
    ByteStream const stream = streamOf("abc");
    char* pointer = nullptr;
    unsigned int size = 0;
    auto const* const image = reinterpret_cast<char const*>(&stream);
    std::memcpy(&pointer, image, sizeof pointer);
    std::memcpy(&size, image + sizeof pointer, sizeof size);
    EXPECT_EQ(pointer, stream.buffer());
    EXPECT_EQ(size, 3U);
}

TEST(ByteStream, GivesOnePointerUnderThreeNames) {  // KEPT(three-names-for-one-pointer)
    ByteStream const stream = streamOf("abc");
    char const* const converted = stream;
    EXPECT_NE(converted, nullptr);
    EXPECT_EQ(stream.operator char const* const(), converted);
    EXPECT_EQ(stream.buffer(), converted);
    EXPECT_EQ(stream.data(), converted);

    ByteStream const empty;
    char const* const none = empty;
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(empty.buffer(), nullptr);
    EXPECT_EQ(empty.data(), nullptr);
}

TEST(ByteStream, HasABlockThatItsHostMayFill) {
    ByteStream const stream(4);
    std::memcpy(stream.buffer(), "wxyz", 4);
    stream.data()[1] = '-';
    EXPECT_EQ(contentsOf(stream), "w-yz");
}

// ---- construction and copies

TEST(ByteStream, IsMadeOfALengthOrOfBytes) {
    EXPECT_EQ(contentsOf(ByteStream()), EMPTY);
    EXPECT_EQ(contentsOf(ByteStream(0)), EMPTY);
    EXPECT_EQ(contentsOf(ByteStream(1)), "\0"s);
    EXPECT_EQ(contentsOf(ByteStream(5)), "\0\0\0\0\0"s);
    EXPECT_EQ(contentsOf(ByteStream(nullptr, 0)), EMPTY);
    EXPECT_EQ(contentsOf(ByteStream("abcdef", 1)), "a");
    EXPECT_EQ(contentsOf(ByteStream("a\0b\xFF", 4)), "a\0b\xFF"s);
    EXPECT_EQ(ByteStream().size(), 0U);
    EXPECT_EQ(ByteStream(5).size(), 5U);
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

TEST(ByteStream, CopiesAreDeep) {
    ByteStream source = streamOf("abcd");
    ByteStream constructed(source);
    ByteStream assigned = streamOf("x");
    assigned = source;
    ByteStream copied = streamOf("wxyz");
    copied.copy(source);
    ByteStream moved(std::move(source));  // no moving form: the source keeps its bytes
    ByteStream moveAssigned;
    moveAssigned = std::move(source);

    source.zeroMemory();
    for (ByteStream const* copy : {&constructed, &assigned, &copied, &moved, &moveAssigned}) {
        EXPECT_EQ(contentsOf(*copy), "abcd");
        EXPECT_NE(copy->buffer(), source.buffer());
    }
    EXPECT_EQ(contentsOf(source), "\0\0\0\0"s);
}

TEST(ByteStream, CopiesOfAnEmptyStreamAreEmpty) {
    ByteStream empty;
    EXPECT_EQ(contentsOf(ByteStream(empty)), EMPTY);
    for (Contents const& before : {EMPTY, NO_LENGTH, Contents("abc")}) {
        ByteStream stream;
        fill(stream, before);
        stream = empty;
        EXPECT_EQ(contentsOf(stream), EMPTY);
        fill(stream, before);
        EXPECT_EQ(stream.copy(empty), 0U);
        EXPECT_EQ(contentsOf(stream), EMPTY);
        fill(stream, before);
        EXPECT_EQ(stream.copy(nullptr, 0), 0U);
        EXPECT_EQ(contentsOf(stream), EMPTY);
    }
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

TEST(ByteStream, AssignmentGivesTheStream) {
    ByteStream const source = streamOf("abc");
    ByteStream stream;
    EXPECT_EQ(&(stream = source), &stream);
    EXPECT_EQ(&(stream = *&stream), &stream);
}

TEST(ByteStream, AssignmentFromItselfChangesNothing) {
    for (Contents const& contents : {EMPTY, NO_LENGTH, Contents("abc")}) {
        ByteStream stream;
        fill(stream, contents);
        char const* const block = stream.buffer();
        stream = *&stream;
        EXPECT_EQ(contentsOf(stream), contents);
        EXPECT_EQ(stream.buffer(), block);
    }
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

// ---- copy of bytes

TEST(ByteStream, CopyOntoItselfZeroes) {  // KEPT(copy-onto-itself-zeroes)
    ByteStream stream = streamOf("abcd");
    char const* const block = stream.buffer();
    EXPECT_EQ(stream.copy(stream), 4U);
    EXPECT_EQ(contentsOf(stream), "\0\0\0\0"s);

    std::memcpy(stream.buffer(), "abcd", 4);
    EXPECT_EQ(stream.copy(stream.buffer(), 4), 4U);
    EXPECT_EQ(contentsOf(stream), "\0\0\0\0"s);
    EXPECT_EQ(stream.buffer(), block);
}

TEST(ByteStream, CopyTakesPartOfItsOwnBlock) {
    struct {
        unsigned int from;
        unsigned int size;
        char const* result;
    } const facts[] = {
        {0, 1, "a"}, {0, 3, "abc"}, {1, 3, "bcd"}, {2, 1, "c"}, {3, 1, "d"},
    };
    for (auto const& row : facts) {
        SCOPED_TRACE(row.result);
        ByteStream stream = streamOf("abcd");
        EXPECT_EQ(stream.copy(stream.buffer() + row.from, row.size), row.size);
        EXPECT_EQ(contentsOf(stream), row.result);
    }
}

TEST(ByteStream, CopyOfTheSameLengthKeepsTheBlock) {
    ByteStream stream = streamOf("abcd");
    char const* const block = stream.buffer();
    EXPECT_EQ(stream.copy("wxyz", 4), 4U);
    EXPECT_EQ(stream.buffer(), block);
    EXPECT_EQ(contentsOf(stream), "wxyz");
    EXPECT_EQ(stream.copy("123", 3), 3U);
    EXPECT_EQ(contentsOf(stream), "123");
    EXPECT_EQ(stream.copy("12345", 5), 5U);
    EXPECT_EQ(contentsOf(stream), "12345");
}

// ---- lengths

struct LengthFact {
    char const* fact;
    Contents before;
    unsigned int size;
    Contents allocated;
    Contents resized;
};

LengthFact const LENGTH_FACTS[] = {
    {"length 0 leaves an empty stream empty", EMPTY, 0, EMPTY, EMPTY},
    {"an empty stream gets one zero byte", EMPTY, 1, "\0"s, "\0"s},
    {"an empty stream gets three zero bytes", EMPTY, 3, "\0\0\0"s, "\0\0\0"s},
    {"a block of length 0 gets one zero byte", NO_LENGTH, 1, "\0"s, "\0"s},
    {"a shorter length: resize keeps bytes, allocate zeroes them", "abcd", 3, "\0\0\0"s, "abc"},
    {"an equal length: resize keeps bytes, allocate zeroes them", "abcd", 4, "\0\0\0\0"s, "abcd"},
    {"one byte more is zero", "abcd", 5, "\0\0\0\0\0"s, "abcd\0"s},
    {"four bytes more are zero", "abcd", 8, "\0\0\0\0\0\0\0\0"s, "abcd\0\0\0\0"s},
    {"length 1: resize keeps the first byte", "abcd", 1, "\0"s, "a"},
    {"resize keeps zero bytes like any others", "\0a\0"s, 5, "\0\0\0\0\0"s, "\0a\0\0\0"s},
};

TEST(ByteStream, AllocateGivesZeroBytes) {
    for (LengthFact const& row : LENGTH_FACTS) {
        SCOPED_TRACE(row.fact);
        ByteStream stream;
        fill(stream, row.before);
        EXPECT_EQ(stream.allocate(row.size), row.size);
        EXPECT_EQ(contentsOf(stream), row.allocated);
        EXPECT_EQ(stream.size(), row.size);
    }
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

TEST(ByteStream, AllocateOfNothingLeavesABlockOfLength0) {  // KEPT(zero-length-is-not-empty)
    for (Contents const& before : {NO_LENGTH, Contents("a"), Contents("abcdefgh")}) {
        ByteStream stream;
        fill(stream, before);
        EXPECT_EQ(stream.allocate(0), 0U);
        EXPECT_NE(stream.buffer(), nullptr);
        EXPECT_EQ(stream.size(), 0U);
        EXPECT_EQ(contentsOf(stream), NO_LENGTH);
        stream.zeroMemory();
        EXPECT_EQ(contentsOf(stream), NO_LENGTH);
    }
}

TEST(ByteStream, ResizeKeepsWhatFits) {
    for (LengthFact const& row : LENGTH_FACTS) {
        SCOPED_TRACE(row.fact);
        ByteStream stream;
        fill(stream, row.before);
        EXPECT_EQ(stream.resize(row.size), row.size);
        EXPECT_EQ(contentsOf(stream), row.resized);
        EXPECT_EQ(stream.size(), row.size);
    }
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

TEST(ByteStream, TheSameLengthKeepsTheBlock) {
    ByteStream stream = streamOf("abcd");
    char const* const block = stream.buffer();
    stream.resize(4);
    EXPECT_EQ(stream.buffer(), block);
    stream.allocate(4);
    EXPECT_EQ(stream.buffer(), block);
    fill(stream, NO_LENGTH);
    char const* const other = stream.buffer();
    stream.allocate(0);
    EXPECT_EQ(stream.buffer(), other);
}

TEST(ByteStream, ClearFreesTheBlock) {
    for (Contents const& before : {EMPTY, NO_LENGTH, Contents("abc")}) {
        ByteStream stream;
        fill(stream, before);
        stream.clear();
        EXPECT_EQ(contentsOf(stream), EMPTY);
        EXPECT_EQ(stream.size(), 0U);
    }
}

TEST(ByteStream, ZeroMemoryKeepsTheBlock) {
    ByteStream stream = streamOf("a\xFFz");
    char const* const block = stream.buffer();
    stream.zeroMemory();
    EXPECT_EQ(contentsOf(stream), "\0\0\0"s);
    EXPECT_EQ(stream.buffer(), block);

    ByteStream empty;
    empty.zeroMemory();
    EXPECT_EQ(contentsOf(empty), EMPTY);
}

// ---- copy of a part

struct PartFact {
    char const* fact;
    Contents source;
    Contents before;
    unsigned int sourceStart;
    unsigned int start;
    unsigned int count;
    unsigned int copied;
    Contents after;
};

PartFact const PART_FACTS[] = {
    {"a part over the beginning", "abcd", "wxyz", 0, 0, 2, 2, "abyz"},
    {"a part over the middle", "abcd", "wxyz", 1, 1, 2, 2, "wbcz"},
    {"a part that ends at the end of the stream", "abcd", "wxyz", 0, 2, 2, 2, "wxab"},
    {"a part that ends one byte past the end lengthens the stream", "abcd", "wxyz", 0, 3, 2, 2,
     "wxyab"},
    {"a part after the end lengthens the stream", "abcd", "wxyz", 0, 4, 2, 2, "wxyzab"},
    {"a gap of two bytes before the part is zero", "abcd", "wxyz", 0, 6, 4, 4, "wxyz\0\0abcd"s},
    {"a gap of one byte before the part is zero", "abcd", "wxyz", 3, 5, 1, 1, "wxyz\0d"s},
    {"the bytes before the part are zero in a stream that was empty", "abcd", EMPTY, 1, 3, 2, 2,
     "\0\0\0bc"s},
    {"the bytes before the part are zero in a block that had length 0", "abcd", NO_LENGTH, 1, 2, 2,
     2, "\0\0bc"s},
    {"an empty stream receives all bytes of the source", "abcd", EMPTY, 0, 0, 4, 4, "abcd"},
    {"a longer stream keeps its length", "ab", "uvwxyz", 0, 0, 2, 2, "abwxyz"},
    {"count 0 copies the bytes from index 2 to the end", "0123456789", EMPTY, 2, 0, 0, 8,
     "23456789"},
    {"count 0 copies all bytes from index 0", "abcd", "wxyz", 0, 1, 0, 4, "wabcd"},
    {"count 0 copies the last byte from the last index", "abcd", "wxyz", 3, 0, 0, 1, "dxyz"},
    {"count 0 copies nothing from the end of the source", "abcd", "wxyz", 4, 0, 0, 0, "wxyz"},
    {"count 0 copies nothing from an empty source", EMPTY, "wxyz", 0, 2, 0, 0, "wxyz"},
    {"count 0 copies nothing from a block of length 0", NO_LENGTH, "wxyz", 0, 4, 0, 0, "wxyz"},
    {"a copy of nothing still lengthens the stream to its start", EMPTY, "wxyz", 0, 6, 0, 0,
     "wxyz\0\0"s},
    {"a copy of nothing lengthens an empty stream to its start", EMPTY, EMPTY, 0, 2, 0, 0, "\0\0"s},
    {"a copy from the source's end lengthens the stream to its start", "abcd", "wx", 4, 3, 0, 0,
     "wx\0"s},
    {"nothing copied to an empty stream leaves it empty", EMPTY, EMPTY, 0, 0, 0, 0, EMPTY},
    {"nothing copied to a block of length 0 leaves the block", EMPTY, NO_LENGTH, 0, 0, 0, 0,
     NO_LENGTH},
    {"a part that ends one byte before the source's end", "0123456789", EMPTY, 2, 0, 7, 7,
     "2345678"},
    {"a part that ends at the source's end", "0123456789", EMPTY, 2, 0, 8, 8, "23456789"},
};

TEST(ByteStream, CopyOfAPartLengthensAsNeeded) {  // KEPT(zero-counts-the-rest)
    for (PartFact const& row : PART_FACTS) {
        SCOPED_TRACE(row.fact);
        ByteStream source;
        fill(source, row.source);
        ByteStream stream;
        fill(stream, row.before);
        EXPECT_EQ(stream.copy(source, row.sourceStart, row.start, row.count), row.copied);
        EXPECT_EQ(contentsOf(stream), row.after);
        EXPECT_EQ(contentsOf(source), row.source);
    }
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

TEST(ByteStream, CopyOfAPartKeepsTheBlockWhereItFits) {
    ByteStream source = streamOf("abcd");
    ByteStream stream = streamOf("wxyz");
    char const* const block = stream.buffer();
    stream.copy(source, 0, 2, 2);
    EXPECT_EQ(stream.buffer(), block);
}

struct OwnPartFact {
    char const* fact;
    unsigned int sourceStart;
    unsigned int start;
    unsigned int count;
    unsigned int copied;
    std::string after;
};

// Of "abcdefgh".
OwnPartFact const OWN_PART_FACTS[] = {
    {"a part is copied to the right, without overlap", 0, 5, 3, 3, "abcdeabc"},
    {"a part is copied to the left, without overlap", 5, 0, 3, 3, "fghdefgh"},
    {"a part is copied to the right, over itself", 0, 2, 5, 5, "ababcdeh"},
    {"a part is copied to the left, over itself", 2, 0, 5, 5, "cdefgfgh"},
    {"a part is copied to its own place", 2, 2, 5, 5, "abcdefgh"},
    {"the whole block is copied to its own place", 0, 0, 0, 8, "abcdefgh"},
    {"the whole block is copied after its end, into a new block", 0, 8, 8, 8, "abcdefghabcdefgh"},
    {"the whole block is copied over its second half, into a new block", 0, 4, 8, 8,
     "abcdabcdefgh"},
    {"the whole block is copied one byte to the right, into a new block", 0, 1, 8, 8, "aabcdefgh"},
    {"count 0 copies as far as the old end, though the stream gets longer", 3, 10, 0, 5,
     "abcdefgh\0\0defgh"s},
    {"a copy of nothing lengthens the stream with zero bytes", 8, 10, 0, 0, "abcdefgh\0\0"s},
};

TEST(ByteStream, CopyOfItsOwnPartReadsTheBlockThatItHas) {
    for (OwnPartFact const& row : OWN_PART_FACTS) {
        SCOPED_TRACE(row.fact);
        ByteStream stream = streamOf("abcdefgh");
        EXPECT_EQ(stream.copy(stream, row.sourceStart, row.start, row.count), row.copied);
        EXPECT_EQ(contentsOf(stream), row.after);
    }
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

// ---- refusals

struct RefusalFact {
    char const* fact;
    unsigned int (*call)(ByteStream& stream, ByteStream& source);
    Contents before;
    Contents source;
    char const* message;
};

template <unsigned int Size>
unsigned int copyNull(ByteStream& stream, ByteStream& /*source*/) {
    return stream.copy(nullptr, Size);
}

template <unsigned int Size>
unsigned int resize(ByteStream& stream, ByteStream& /*source*/) {
    return stream.resize(Size);
}

unsigned int copyPointerAlone(ByteStream& stream, ByteStream& /*source*/) {
    return stream.copy("x", 0);
}

unsigned int copyOwnPointerAlone(ByteStream& stream, ByteStream& /*source*/) {
    return stream.copy(stream.buffer(), 0);
}

unsigned int copyAll(ByteStream& stream, ByteStream& source) { return stream.copy(source); }

unsigned int assign(ByteStream& stream, ByteStream& source) {
    stream = source;
    return 0;
}

unsigned int construct(ByteStream& /*stream*/, ByteStream& source) {
    return ByteStream(source).size();
}

unsigned int constructOfNull(ByteStream& /*stream*/, ByteStream& /*source*/) {
    return ByteStream(nullptr, 5).size();
}

unsigned int constructOfPointer(ByteStream& /*stream*/, ByteStream& /*source*/) {
    return ByteStream("x", 0).size();
}

RefusalFact const REFUSAL_FACTS[] = {
    {"copy of null with a size", copyNull<5>, "abcd", EMPTY, NO_POINTER},
    {"copy of null with size 1", copyNull<1>, "a", EMPTY, NO_POINTER},
    {"copy of null with the largest size", copyNull<MOST>, "abcd", EMPTY, NO_POINTER},
    {"copy of null with the size that the stream has", copyNull<4>, "abcd", EMPTY, NO_POINTER},
    {"copy of null with a size, to an empty stream", copyNull<5>, EMPTY, EMPTY, NO_POINTER},
    {"copy of a pointer with size 0", copyPointerAlone, "abcd", EMPTY, NO_BYTES},
    {"copy of a pointer with size 0, to an empty stream", copyPointerAlone, EMPTY, EMPTY, NO_BYTES},
    {"copy of a pointer with size 0, to a block of length 0", copyPointerAlone, NO_LENGTH, EMPTY,
     NO_BYTES},
    {"copy of the stream's own pointer with size 0", copyOwnPointerAlone, "abcd", EMPTY, NO_BYTES},
    {"copy of the pointer of its own block of length 0 with size 0", copyOwnPointerAlone, NO_LENGTH,
     EMPTY, NO_BYTES},
    {"copy of a stream with a block of length 0", copyAll, "abcd", NO_LENGTH, NO_BYTES},
    {"assignment of a stream with a block of length 0", assign, "abcd", NO_LENGTH, NO_BYTES},
    {"construction from a stream with a block of length 0", construct, "abcd", NO_LENGTH, NO_BYTES},
    {"construction from null with a size", constructOfNull, "abcd", EMPTY, NO_POINTER},
    {"construction from a pointer with size 0", constructOfPointer, "abcd", EMPTY, NO_BYTES},
    {"resize to 0", resize<0>, "abcd", EMPTY, NO_BYTES},
    {"resize to 0 of a block of length 0", resize<0>, NO_LENGTH, EMPTY, NO_BYTES},
};

// KEPT(throws-a-long), KEPT(zero-length-is-not-empty), KEPT(resize-to-nothing-throws),
// KEPT(reports-use-other-names)
TEST(ByteStream, RefusesAndReportsAndLeavesAllAsItWas) {
    for (RefusalFact const& row : REFUSAL_FACTS) {
        SCOPED_TRACE(row.fact);
        ByteStream stream;
        fill(stream, row.before);
        ByteStream source;
        fill(source, row.source);
        char const* const block = stream.buffer();
        takeReports();

        EXPECT_EQ(outcomeOf([&] { return row.call(stream, source); }), REFUSED);
        EXPECT_EQ(takeReports(), reportOf(row.message));
        EXPECT_EQ(contentsOf(stream), row.before);
        EXPECT_EQ(stream.buffer(), block);
        EXPECT_EQ(contentsOf(source), row.source);
    }
}

struct PartRefusalFact {
    char const* fact;
    Contents source;
    unsigned int sourceStart;
    unsigned int count;
};

PartRefusalFact const PART_REFUSAL_FACTS[] = {
    {"a start one past the source's end", "0123456789", 11, 0},
    {"a start at the source's end, and count 1", "0123456789", 10, 1},
    {"a count that is one too large, from the start", "0123456789", 0, 11},
    {"a count that is one too large, from index 2", "0123456789", 2, 9},
    {"start 1 in an empty source", EMPTY, 1, 0},
    {"count 1 from an empty source", EMPTY, 0, 1},
    {"count 1 from a block of length 0", NO_LENGTH, 0, 1},
    {"the largest start", "0123456789", MOST, 0},
    {"the largest count", "0123456789", 0, MOST},
    {"start 1 and the largest count: their sum is 0 in 32 bits", "0123456789", 1, MOST},
    {"the largest start and count 1: their sum is 0 in 32 bits", "0123456789", MOST, 1},
    {"two halves whose sum is 0 in 32 bits", "0123456789", HALF, HALF},
    {"the largest start and count 6: their sum is 5 in 32 bits", "0123456789", MOST, 6},
    {"the largest start and the largest count", "0123456789", MOST, MOST},
};

TEST(ByteStream, RefusesAPartThatPassesTheSourcesEnd) {
    for (PartRefusalFact const& row : PART_REFUSAL_FACTS) {
        SCOPED_TRACE(row.fact);
        ByteStream source;
        fill(source, row.source);
        for (unsigned int const start : {0U, 4U, 100U, MOST}) {
            ByteStream stream = streamOf("abcd");
            char const* const block = stream.buffer();
            EXPECT_EQ(
                outcomeOf([&] { return stream.copy(source, row.sourceStart, start, row.count); }),
                REFUSED);
            EXPECT_EQ(takeReports(), reportOf(PAST_THE_SOURCE));
            EXPECT_EQ(contentsOf(stream), "abcd");
            EXPECT_EQ(stream.buffer(), block);
        }
    }
}

TEST(ByteStream, ALengthOfMoreThan32BitsIsNotToBeHad) {
    struct {
        unsigned int start;
        unsigned int count;
    } const facts[] = {
        {MOST - 3, 4}, {MOST - 2, 4}, {MOST, 1}, {MOST, 4}, {MOST, 0},  // all four
    };
    for (auto const& row : facts) {
        SCOPED_TRACE(testing::Message() << row.start << ", " << row.count);
        ByteStream source = streamOf("abcd");
        for (Contents const& before : {EMPTY, NO_LENGTH, Contents("wx")}) {
            ByteStream stream;
            fill(stream, before);
            char const* const block = stream.buffer();
            EXPECT_EQ(outcomeOf([&] { return stream.copy(source, 0, row.start, row.count); }),
                      NO_MEMORY);
            EXPECT_EQ(contentsOf(stream), before);
            EXPECT_EQ(stream.buffer(), block);
        }
    }
    EXPECT_THAT(takeReports(), testing::IsEmpty());
}

}  // namespace
