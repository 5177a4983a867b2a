#include <cfloat>
#include <climits>
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/xtime.h>

#include "support/random.h"
#include "support/rounding.h"
#include "support/time_printing.h"

// Times that are moved, and the difference of two times.

using com::halvorin::datatypes::xtime_t;

namespace {

long const SECONDS = 1709618889;  // 2024-03-05T06:08:09

// ---- moving

struct AddFact {
    char const* fact;
    xtime_t before;
    float amount;
    xtime_t after;
};

constexpr float INFINITE = std::numeric_limits<float>::infinity();
constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();

AddFact const ADD_FACTS[] = {
    {"1.5 s move a time forward, with a carry", {10, 600000000}, 1.5F, {12, 100000000}},
    {"0.25 s move a time back, with a borrow", {10, 100000000}, -0.25F, {9, 850000000}},
    {"1.5 s move a time back, without a borrow", {10, 600000000}, -1.5F, {9, 100000000}},
    {"1.75 s move a time back, with a borrow", {10, 600000000}, -1.75F, {8, 850000000}},
    {"whole seconds move a time forward", {10, 600000000}, 2.0F, {12, 600000000}},
    {"whole seconds move a time back", {10, 600000000}, -2.0F, {8, 600000000}},
    {"0 moves nothing", {10, 600000000}, 0.0F, {10, 600000000}},
    {"-0 moves nothing", {10, 600000000}, -0.0F, {10, 600000000}},
    {"a time moves forward across the epoch", {-1, 500000000}, 1.0F, {0, 500000000}},
    {"a time moves back across the epoch", {0, 250000000}, -0.5F, {-1, 750000000}},

    // the fraction is cut, and a float's own imprecision passes through
    // KEPT(add-cuts-nanoseconds)
    {"0.1F adds 100000001 ns", {0, 0}, 0.1F, {0, 100000001}},
    {"-0.1F takes 100000001 ns", {0, 0}, -0.1F, {-1, 899999999}},
    {"0.3F adds 300000011 ns", {0, 0}, 0.3F, {0, 300000011}},
    {"0.7F adds 699999988 ns", {0, 0}, 0.7F, {0, 699999988}},
    {"the largest float below 1 adds 999999940 ns", {0, 0}, 0x1.FFFFFEp-1F, {0, 999999940}},
    {"1.9 ns are cut to 1", {0, 0}, 0x1p-29F, {0, 1}},
    {"-1.9 ns are cut to -1", {0, 0}, -0x1p-29F, {-1, 999999999}},
    {"0.9 ns are cut to 0", {0, 0}, 0x1p-30F, {0, 0}},
    {"-0.9 ns are cut to 0", {0, 0}, -0x1p-30F, {0, 0}},
    {"1e-9F is below 1 ns and is cut to 0", {0, 0}, 1e-9F, {0, 0}},
    {"the smallest float adds nothing", {5, 0}, FLT_TRUE_MIN, {5, 0}},
    {"the smallest float takes nothing", {5, 0}, -FLT_TRUE_MIN, {5, 0}},
    {"8388607.5 is the largest float with a half", {0, 0}, 8388607.5F, {8388607, 500000000}},
    {"-8388607.5 takes a half too", {0, 0}, -8388607.5F, {-8388608, 500000000}},

    // the carry and the borrow
    {"999999998 ns carry nothing", {0, 499999998}, 0.5F, {0, 999999998}},
    {"999999999 ns carry nothing", {0, 499999999}, 0.5F, {0, 999999999}},
    {"1000000000 ns carry a second", {0, 500000000}, 0.5F, {1, 0}},
    {"1000000001 ns carry a second", {0, 500000001}, 0.5F, {1, 1}},
    {"1 ns more than the step borrows nothing", {0, 500000001}, -0.5F, {0, 1}},
    {"as many ns as the step borrow nothing", {0, 500000000}, -0.5F, {0, 0}},
    {"1 ns less than the step borrows a second", {0, 499999999}, -0.5F, {-1, 999999999}},
    {"2 ns less than the step borrow a second", {0, 499999998}, -0.5F, {-1, 999999998}},

    // KEPT(add-clamps)
    {"the largest float below 2^31 is not clamped", {7, 5}, 2147483520.0F, {2147483527, 5}},
    {"2^31 is clamped to 2147483647", {7, 5}, 2147483648.0F, {2147483654, 5}},
    {"the next float above 2^31 is clamped", {7, 5}, 2147483904.0F, {2147483654, 5}},
    {"3.0e10 is clamped", {0, 0}, 3.0e10F, {2147483647, 0}},
    {"the largest float is clamped", {0, 5}, FLT_MAX, {2147483647, 5}},
    {"infinity is clamped", {0, 5}, INFINITE, {2147483647, 5}},
    {"the smallest float above -2^31 is not clamped", {7, 5}, -2147483520.0F, {-2147483513, 5}},
    {"-2^31 is not clamped", {7, 5}, -2147483648.0F, {-2147483641, 5}},
    {"the next float below -2^31 is clamped", {7, 5}, -2147483904.0F, {-2147483641, 5}},
    {"the lowest float is clamped", {0, 5}, -FLT_MAX, {-2147483648, 5}},
    {"negative infinity is clamped", {0, 5}, -INFINITE, {-2147483648, 5}},
    {"NaN counts as -2147483648", {0, 5}, NOT_A_NUMBER, {-2147483648, 5}},
    {"-NaN counts as -2147483648", {0, 5}, -NOT_A_NUMBER, {-2147483648, 5}},

    // more nanoseconds than a second has
    {"0 carries one of 1.5 stored seconds of nanoseconds", {0, 1500000000}, 0.0F, {1, 500000000}},
    {"-0 carries one of 1.5 stored seconds of nanoseconds", {0, 1500000000}, -0.0F, {1, 500000000}},
    {"whole seconds carry one second of nanoseconds", {0, 1000000000}, 1.0F, {2, 0}},
    {"of 4294967295 ns one second is carried", {0, UINT_MAX}, 0.0F, {1, 3294967295}},
    {"of 4 stored seconds of nanoseconds one is carried", {0, 3500000000}, 0.5F, {1, 3000000000}},
    {"nanoseconds are summed up to 2^32 - 1", {0, 3794967295}, 0.5F, {1, 3294967295}},
    {"a sum of 2^32 ns wraps to 0", {0, 3794967296}, 0.5F, {0, 0}},
    {"a sum beyond 2^32 ns wraps", {0, UINT_MAX}, 0.5F, {0, 499999999}},
    {"a step back from 4294967295 ns borrows nothing", {0, UINT_MAX}, -0.5F, {0, 3794967295}},
    {"a step back carries nothing from 1500000000 ns", {0, 1500000000}, -1.0F, {-1, 1500000000}},
    {"NaN leaves 4294967295 ns as they are", {0, UINT_MAX}, NOT_A_NUMBER, {-2147483648, UINT_MAX}},
};

// Seconds are summed in 64 bits.
AddFact const ADD_AT_THE_ENDS_FACTS[] = {
    {"LONG_MAX seconds and 1 wrap", {LONG_MAX, 0}, 1.0F, {LONG_MIN, 0}},
    {"LONG_MAX seconds wrap by a carry", {LONG_MAX, 500000000}, 0.5F, {LONG_MIN, 0}},
    {"LONG_MAX seconds wrap by 1 and a carry", {LONG_MAX, 500000000}, 1.5F, {LONG_MIN + 1, 0}},
    {"LONG_MIN seconds minus 1 wrap", {LONG_MIN, 0}, -1.0F, {LONG_MAX, 0}},
    {"LONG_MIN seconds wrap by a borrow", {LONG_MIN, 0}, -0.5F, {LONG_MAX, 500000000}},
    {"LONG_MIN seconds wrap by -1 and a borrow", {LONG_MIN, 0}, -1.5F, {LONG_MAX - 1, 500000000}},
    {"LONG_MIN seconds wrap by a NaN", {LONG_MIN, 0}, NOT_A_NUMBER, {LONG_MAX - 2147483647, 0}},
};

void expectMoved(AddFact const& row) {
    SCOPED_TRACE(row.fact);
    for (int const rounding : testing_support::ROUNDING_MODES) {
        SCOPED_TRACE(rounding);
        xtime_t time = row.before;
        {
            testing_support::ScopedRounding const scope(rounding);
            time.add(row.amount);
        }
        EXPECT_EQ(time, row.after);
    }
}

TEST(XtimeAdd, MovesATimeBySeconds) {
    for (AddFact const& row : ADD_FACTS)
        expectMoved(row);
    for (AddFact const& row : ADD_AT_THE_ENDS_FACTS)
        expectMoved(row);
}

// A float is a whole number of 24 bits times a power of two, so that its nanoseconds can be had
// without any floating arithmetic.
TEST(XtimeAdd, MovesByExactlyTheCutNanosecondsOfTheFloat) {
    __extension__ using Wide = __int128;
    constexpr long BILLION = 1'000'000'000;
    std::mt19937_64 engine = testing_support::randomEngine();
    for (int i = 0; i < 1'000'000; ++i) {
        auto const mantissa = static_cast<int>(engine() % (1 << 24));
        int const places = static_cast<int>(engine() % 55);  // bits after the point
        bool const back = engine() % 2 == 0;
        float const amount = std::ldexp(static_cast<float>(back ? -mantissa : mantissa), -places);
        long const whole = static_cast<long>(mantissa) >> places;
        long const rest = mantissa - (whole << places);
        auto const nanoseconds = static_cast<long>(static_cast<Wide>(rest) * BILLION >> places);
        long const step = whole * BILLION + nanoseconds;

        auto const seconds = static_cast<long>(engine() % 4'000'000'000) - 2'000'000'000;
        auto const fraction = static_cast<unsigned>(engine() % 1'000'000'000);
        xtime_t time(seconds, fraction);
        time.add(amount);

        Wide const before = static_cast<Wide>(seconds) * BILLION + fraction;
        Wide const after = static_cast<Wide>(time.getDateTime()) * BILLION + time.getNanoseconds();
        ASSERT_LE(time.getNanoseconds(), 999999999U);
        ASSERT_TRUE(after - before == (back ? -step : step))
            << seconds << ' ' << fraction << ' ' << amount;
    }
}

// ---- the distance of two times

struct DifferenceFact {
    char const* fact;
    xtime_t left;
    xtime_t right;
    float seconds;
};

// KEPT(difference-is-a-float)
DifferenceFact const DIFFERENCE_FACTS[] = {
    {"a later time minus an earlier one is positive", {12, 0}, {10, 500000000}, 1.5F},
    {"an earlier time minus a later one is negative", {10, 500000000}, {12, 0}, -1.5F},
    {"a time minus itself is 0", {SECONDS, 7}, {SECONDS, 7}, 0.0F},
    {"nanoseconds alone give a fraction", {5, 250000000}, {5, 0}, 0.25F},
    {"nanoseconds alone give a negative fraction", {5, 0}, {5, 250000000}, -0.25F},
    {"one nanosecond is 1e-9", {5, 1}, {5, 0}, 1e-9F},
    {"one nanosecond back is -1e-9", {5, 0}, {5, 1}, -1e-9F},
    {"a difference across the epoch is exact", {1, 0}, {-1, 500000000}, 1.5F},

    // each field's difference is a float of its own
    {"999999999 ns become the float 1e9", {0, 999999999}, {0, 0}, 1.0F},
    {"16777217 s become the float 16777216", {16777217, 0}, {0, 0}, 16777216.0F},
    {"16777217 s and 999999999 ns are each rounded", {16777217, 999999999}, {0, 0}, 16777216.0F},
    {"300.0005 s are told apart from 300 s", {300, 500000}, {0, 0}, 300.0005F},
    {"300.00001 s are not told apart from 300 s", {300, 10000}, {0, 0}, 300.0F},
    {"1709618889 s become the float 1709618944", {SECONDS, 250000000}, {0, 0}, 1709618944.0F},
    // and the sum is rounded once: added as floats they would give ...1649
    {"the two floats are added as doubles, to 0.123801664", {1, 0}, {0, 876198343}, 0.123801664F},
    {"the two floats are added as doubles, to -0.0774944648",
     {0, 922505524},
     {1, 0},
     -0.0774944648F},
    {"the two floats are added as doubles, to 5.16401052", {6, 0}, {0, 835989216}, 5.16401052F},

    // the nanoseconds' difference is a signed number of 32 bits
    {"a difference of 2^31 - 1 ns is positive", {0, 2147483647}, {0, 0}, 2.14748365F},
    {"a difference of 2^31 ns is negative", {0, 2147483648}, {0, 0}, -2.14748365F},
    {"a difference of 2^32 - 1 ns is -1 ns", {0, UINT_MAX}, {0, 0}, -1e-9F},
    {"a difference of -(2^32 - 1) ns is 1 ns", {0, 0}, {0, UINT_MAX}, 1e-9F},

    // the seconds' is one of 64
    {"LONG_MAX seconds become 2^63", {LONG_MAX, 0}, {0, 0}, 0x1p63F},
    {"LONG_MIN seconds become -2^63", {LONG_MIN, 0}, {0, 0}, -0x1p63F},
    {"0 minus LONG_MIN seconds wraps to -2^63", {0, 0}, {LONG_MIN, 0}, -0x1p63F},
    {"LONG_MAX minus LONG_MIN seconds wraps to -1", {LONG_MAX, 0}, {LONG_MIN, 0}, -1.0F},
    {"LONG_MIN minus LONG_MAX seconds wraps to 1", {LONG_MIN, 0}, {LONG_MAX, 0}, 1.0F},
};

TEST(XtimeDifference, IsAFloatOfSeconds) {
    for (DifferenceFact const& row : DIFFERENCE_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(row.left.difference(row.right), row.seconds);
    }
}

TEST(XtimeDifference, ChangesItsSignWithTheOrderOfTheTwo) {
    std::mt19937_64 engine = testing_support::randomEngine();
    for (int i = 0; i < 100'000; ++i) {
        auto const random = [&engine] {
            long const seconds = static_cast<long>(engine()) >> (1 + engine() % 62);
            return xtime_t(seconds, static_cast<unsigned>(engine() % 1'000'000'000));
        };
        xtime_t const left = random();
        xtime_t const right = random();
        ASSERT_EQ(left.difference(right), -right.difference(left))
            << testing::PrintToString(left) << testing::PrintToString(right);
    }
}

}  // namespace
