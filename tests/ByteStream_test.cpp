#include <cstring>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include <gmock/gmock.h>

#include <utillibrary/datatypes/ByteStream.h>

#include "support/byte_streams.h"
#include "support/recorded_reports.h"

// Single operations. Any sequence of them is for ByteStream_model_test.cpp, their blocks and memory
// that fails for ByteStream_allocation_test.cpp.

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
    {"an empty stream stays empty at 0", EMPTY, 0, EMPTY, EMPTY},
    {"one byte is zero", EMPTY, 1, "\0"s, "\0"s},
    {"several are", EMPTY, 3, "\0\0\0"s, "\0\0\0"s},
    {"a block of length 0 has a length more", NO_LENGTH, 1, "\0"s, "\0"s},
    {"bytes are kept by resize alone", "abcd", 3, "\0\0\0"s, "abc"},
    {"at its own length too", "abcd", 4, "\0\0\0\0"s, "abcd"},
    {"new bytes are zero", "abcd", 5, "\0\0\0\0\0"s, "abcd\0"s},
    {"all of them", "abcd", 8, "\0\0\0\0\0\0\0\0"s, "abcd\0\0\0\0"s},
    {"the first byte alone", "abcd", 1, "\0"s, "a"},
    {"zero bytes are bytes", "\0a\0"s, 5, "\0\0\0\0\0"s, "\0a\0\0\0"s},
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
    {"over the beginning", "abcd", "wxyz", 0, 0, 2, 2, "abyz"},
    {"over the middle", "abcd", "wxyz", 1, 1, 2, 2, "wbcz"},
    {"up to the end", "abcd", "wxyz", 0, 2, 2, 2, "wxab"},
    {"one byte past it", "abcd", "wxyz", 0, 3, 2, 2, "wxyab"},
    {"behind it", "abcd", "wxyz", 0, 4, 2, 2, "wxyzab"},
    {"a gap is zero", "abcd", "wxyz", 0, 6, 4, 4, "wxyz\0\0abcd"s},
    {"of one byte too", "abcd", "wxyz", 3, 5, 1, 1, "wxyz\0d"s},
    {"in an empty stream as well", "abcd", EMPTY, 1, 3, 2, 2, "\0\0\0bc"s},
    {"and in a block of length 0", "abcd", NO_LENGTH, 1, 2, 2, 2, "\0\0bc"s},
    {"an empty stream may take all", "abcd", EMPTY, 0, 0, 4, 4, "abcd"},
    {"it never gets shorter", "ab", "uvwxyz", 0, 0, 2, 2, "abwxyz"},
    {"0 counts the rest", "0123456789", EMPTY, 2, 0, 0, 8, "23456789"},
    {"which may be all", "abcd", "wxyz", 0, 1, 0, 4, "wabcd"},
    {"or the last byte", "abcd", "wxyz", 3, 0, 0, 1, "dxyz"},
    {"or nothing", "abcd", "wxyz", 4, 0, 0, 0, "wxyz"},
    {"or all of nothing", EMPTY, "wxyz", 0, 2, 0, 0, "wxyz"},
    {"of a block of length 0 too", NO_LENGTH, "wxyz", 0, 4, 0, 0, "wxyz"},
    {"even so the start is reached", EMPTY, "wxyz", 0, 6, 0, 0, "wxyz\0\0"s},
    {"from an empty stream on", EMPTY, EMPTY, 0, 2, 0, 0, "\0\0"s},
    {"from the source's end on", "abcd", "wx", 4, 3, 0, 0, "wx\0"s},
    {"nothing to nothing", EMPTY, EMPTY, 0, 0, 0, 0, EMPTY},
    {"nor does a block vanish", EMPTY, NO_LENGTH, 0, 0, 0, 0, NO_LENGTH},
    {"one byte below the source's end", "0123456789", EMPTY, 2, 0, 7, 7, "2345678"},
    {"exactly up to it", "0123456789", EMPTY, 2, 0, 8, 8, "23456789"},
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
    {"apart", 0, 5, 3, 3, "abcdeabc"},
    {"apart, the other way", 5, 0, 3, 3, "fghdefgh"},
    {"overlapping, to the right", 0, 2, 5, 5, "ababcdeh"},
    {"overlapping, to the left", 2, 0, 5, 5, "cdefgfgh"},
    {"in place", 2, 2, 5, 5, "abcdefgh"},
    {"all in place", 0, 0, 0, 8, "abcdefgh"},
    {"the block moves", 0, 8, 8, 8, "abcdefghabcdefgh"},
    {"and parts overlap", 0, 4, 8, 8, "abcdabcdefgh"},
    {"by all but one byte", 0, 1, 8, 8, "aabcdefgh"},
    {"the rest, before it is longer", 3, 10, 0, 5, "abcdefgh\0\0defgh"s},
    {"nothing, and longer", 8, 10, 0, 0, "abcdefgh\0\0"s},
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
    {"null and a size", copyNull<5>, "abcd", EMPTY, NO_POINTER},
    {"of 1", copyNull<1>, "a", EMPTY, NO_POINTER},
    {"of all 32 bits", copyNull<MOST>, "abcd", EMPTY, NO_POINTER},
    {"the size that it has", copyNull<4>, "abcd", EMPTY, NO_POINTER},
    {"to an empty stream", copyNull<5>, EMPTY, EMPTY, NO_POINTER},
    {"a pointer and 0", copyPointerAlone, "abcd", EMPTY, NO_BYTES},
    {"to an empty stream", copyPointerAlone, EMPTY, EMPTY, NO_BYTES},
    {"to a block of length 0", copyPointerAlone, NO_LENGTH, EMPTY, NO_BYTES},
    {"the own pointer and 0", copyOwnPointerAlone, "abcd", EMPTY, NO_BYTES},
    {"that of a block of length 0", copyOwnPointerAlone, NO_LENGTH, EMPTY, NO_BYTES},
    {"a block of length 0, copied", copyAll, "abcd", NO_LENGTH, NO_BYTES},
    {"and assigned", assign, "abcd", NO_LENGTH, NO_BYTES},
    {"and constructed from", construct, "abcd", NO_LENGTH, NO_BYTES},
    {"construction of null and a size", constructOfNull, "abcd", EMPTY, NO_POINTER},
    {"and of a pointer and 0", constructOfPointer, "abcd", EMPTY, NO_BYTES},
    {"resize to 0", resize<0>, "abcd", EMPTY, NO_BYTES},
    {"of a block of length 0 too", resize<0>, NO_LENGTH, EMPTY, NO_BYTES},
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
    {"a start one past the end", "0123456789", 11, 0},
    {"a start at the end, and one byte", "0123456789", 10, 1},
    {"one byte too many", "0123456789", 0, 11},
    {"from further on", "0123456789", 2, 9},
    {"of nothing a start", EMPTY, 1, 0},
    {"of nothing a byte", EMPTY, 0, 1},
    {"of a block of length 0", NO_LENGTH, 0, 1},
    {"the largest start", "0123456789", MOST, 0},
    {"the largest count", "0123456789", 0, MOST},
    {"a sum that is 0 in 32 bits", "0123456789", 1, MOST},
    {"the other way round", "0123456789", MOST, 1},
    {"a sum that is 0, of halves", "0123456789", HALF, HALF},
    {"a sum within the source", "0123456789", MOST, 6},
    {"of two of the largest", "0123456789", MOST, MOST},
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
