#include "utillibrary/internal/truncation.h"

#include <climits>
#include <limits>

#include <gtest/gtest.h>

using namespace com::halvorin::internal;

// The tables are calculated at compile time. There a cast of a value that does not fit is an
// error, although the processor would give the same result.
namespace {

constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();

template <typename Integer>
struct TruncationFact {
    char const* fact;
    Integer result;
    Integer expected;
};

template <typename Integer, std::size_t SIZE>
void expectResults(TruncationFact<Integer> const (&facts)[SIZE]) {
    for (auto const& row : facts) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(row.result, row.expected);
    }
}

constexpr TruncationFact<int> INT32_FACTS[] = {
    {"a fraction is cut", truncateToInt32(1.75), 1},
    {"a negative fraction is cut towards 0", truncateToInt32(-1.75), -1},
    {"the greatest int fits", truncateToInt32(2147483647.0), INT_MAX},
    {"a fraction above the greatest int fits", truncateToInt32(2147483647.75), INT_MAX},
    {"one more than the greatest int does not fit", truncateToInt32(2147483648.0), INT_MIN},
    {"the least int fits", truncateToInt32(-2147483648.0), INT_MIN},
    {"a fraction below the least int fits", truncateToInt32(-2147483648.75), INT_MIN},
    {"one less than the least int does not fit", truncateToInt32(-2147483649.0), INT_MIN},
    {"infinity does not fit", truncateToInt32(INFINITE), INT_MIN},
    {"negative infinity does not fit", truncateToInt32(-INFINITE), INT_MIN},
    {"NaN does not fit", truncateToInt32(NO_NUMBER), INT_MIN},
};

TEST(Truncation, Cuts32Bits) { expectResults(INT32_FACTS); }

constexpr TruncationFact<long> INT64_FACTS[] = {
    {"a fraction is cut", truncateToInt64(1.75), 1},
    {"a negative fraction is cut towards 0", truncateToInt64(-1.75), -1},
    {"the greatest double below 2^63 fits", truncateToInt64(0x1.fffffffffffffp62),
     0x7FFFFFFFFFFFFC00},
    {"2^63 does not fit", truncateToInt64(0x1p63), LONG_MIN},
    {"-2^63 fits", truncateToInt64(-0x1p63), LONG_MIN},
    {"the greatest double below -2^63 does not fit", truncateToInt64(-0x1.0000000000001p63),
     LONG_MIN},
    {"infinity does not fit", truncateToInt64(INFINITE), LONG_MIN},
    {"negative infinity does not fit", truncateToInt64(-INFINITE), LONG_MIN},
    {"NaN does not fit", truncateToInt64(NO_NUMBER), LONG_MIN},
};

TEST(Truncation, Cuts64Bits) { expectResults(INT64_FACTS); }

constexpr unsigned long TOP_BIT = 1UL << 63;

constexpr TruncationFact<unsigned long> UINT64_FACTS[] = {
    {"a fraction is cut", truncateToUint64(1.75), 1},
    {"a negative number wraps", truncateToUint64(-1.0), ULONG_MAX},
    {"-2^63 wraps", truncateToUint64(-0x1p63), TOP_BIT},
    {"the greatest double below 2^63 fits", truncateToUint64(0x1.fffffffffffffp62),
     0x7FFFFFFFFFFFFC00},
    {"2^63 fits", truncateToUint64(0x1p63), TOP_BIT},
    {"the next double above 2^63 fits", truncateToUint64(0x1.0000000000001p63), TOP_BIT + 2048},
    {"the greatest double below 2^64 fits", truncateToUint64(0x1.fffffffffffffp63),
     0xFFFFFFFFFFFFF800},
    {"2^64 does not fit", truncateToUint64(0x1p64), TOP_BIT},
    {"infinity does not fit", truncateToUint64(INFINITE), TOP_BIT},
    {"negative infinity does not fit", truncateToUint64(-INFINITE), TOP_BIT},
};

TEST(Truncation, CutsUnsigned64Bits) {
    expectResults(UINT64_FACTS);
    // Not in the table: arithmetic with NaN is no constant for clang++.
    EXPECT_EQ(truncateToUint64(NO_NUMBER), TOP_BIT);
}

constexpr TruncationFact<unsigned> UINT32_FACTS[] = {
    {"3e9 fits", truncateToUint32(3e9), 3000000000},
    {"2^32 wraps", truncateToUint32(0x1p32), 0},
    {"a negative number wraps", truncateToUint32(-1.0), UINT_MAX},
    {"NaN gives the low bits of the most negative number", truncateToUint32(NO_NUMBER), 0},
};

TEST(Truncation, TakesTheLow32Bits) { expectResults(UINT32_FACTS); }

}  // namespace
