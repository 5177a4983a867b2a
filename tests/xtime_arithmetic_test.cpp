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
    {"seconds and a fraction", {10, 600000000}, 1.5F, {12, 100000000}},
    {"a fraction back", {10, 100000000}, -0.25F, {9, 850000000}},
    {"seconds and a fraction back", {10, 600000000}, -1.5F, {9, 100000000}},
    {"with a borrow", {10, 600000000}, -1.75F, {8, 850000000}},
    {"whole seconds", {10, 600000000}, 2.0F, {12, 600000000}},
    {"whole seconds back", {10, 600000000}, -2.0F, {8, 600000000}},
    {"nothing", {10, 600000000}, 0.0F, {10, 600000000}},
    {"less than nothing", {10, 600000000}, -0.0F, {10, 600000000}},
    {"across the epoch", {-1, 500000000}, 1.0F, {0, 500000000}},
    {"back across the epoch", {0, 250000000}, -0.5F, {-1, 750000000}},

    // the fraction is cut, and a float's own imprecision passes through
    // KEPT(add-cuts-nanoseconds)
    {"a tenth is more than a tenth", {0, 0}, 0.1F, {0, 100000001}},
    {"a tenth back too", {0, 0}, -0.1F, {-1, 899999999}},
    {"0.3 is more", {0, 0}, 0.3F, {0, 300000011}},
    {"0.7 is less", {0, 0}, 0.7F, {0, 699999988}},
    {"the largest below 1", {0, 0}, 0x1.FFFFFEp-1F, {0, 999999940}},
    {"1.9 nanoseconds are 1", {0, 0}, 0x1p-29F, {0, 1}},
    {"1.9 back too", {0, 0}, -0x1p-29F, {-1, 999999999}},
    {"0.9 nanoseconds are none", {0, 0}, 0x1p-30F, {0, 0}},
    {"0.9 back are none", {0, 0}, -0x1p-30F, {0, 0}},
    {"1e-9 is less than one", {0, 0}, 1e-9F, {0, 0}},
    {"the smallest float", {5, 0}, FLT_TRUE_MIN, {5, 0}},
    {"the smallest float back", {5, 0}, -FLT_TRUE_MIN, {5, 0}},
    {"the last that has a half", {0, 0}, 8388607.5F, {8388607, 500000000}},
    {"the last that has a half, back", {0, 0}, -8388607.5F, {-8388608, 500000000}},

    // the carry and the borrow
    {"no carry", {0, 499999998}, 0.5F, {0, 999999998}},
    {"just no carry", {0, 499999999}, 0.5F, {0, 999999999}},
    {"just a carry", {0, 500000000}, 0.5F, {1, 0}},
    {"a carry", {0, 500000001}, 0.5F, {1, 1}},
    {"no borrow", {0, 500000001}, -0.5F, {0, 1}},
    {"just no borrow", {0, 500000000}, -0.5F, {0, 0}},
    {"just a borrow", {0, 499999999}, -0.5F, {-1, 999999999}},
    {"a borrow", {0, 499999998}, -0.5F, {-1, 999999998}},

    // KEPT(add-clamps)
    {"the last below the clamp", {7, 5}, 2147483520.0F, {2147483527, 5}},
    {"one above the clamp", {7, 5}, 2147483648.0F, {2147483654, 5}},
    {"two above the clamp", {7, 5}, 2147483904.0F, {2147483654, 5}},
    {"thirty thousand millions", {0, 0}, 3.0e10F, {2147483647, 0}},
    {"the largest float", {0, 5}, FLT_MAX, {2147483647, 5}},
    {"infinity", {0, 5}, INFINITE, {2147483647, 5}},
    {"the last above the lower clamp", {7, 5}, -2147483520.0F, {-2147483513, 5}},
    {"the lower clamp", {7, 5}, -2147483648.0F, {-2147483641, 5}},
    {"below the lower clamp", {7, 5}, -2147483904.0F, {-2147483641, 5}},
    {"the smallest float of all", {0, 5}, -FLT_MAX, {-2147483648, 5}},
    {"negative infinity", {0, 5}, -INFINITE, {-2147483648, 5}},
    {"not a number", {0, 5}, NOT_A_NUMBER, {-2147483648, 5}},
    {"not a number with a sign", {0, 5}, -NOT_A_NUMBER, {-2147483648, 5}},

    // more nanoseconds than a second has
    {"nothing carries one second", {0, 1500000000}, 0.0F, {1, 500000000}},
    {"less than nothing does too", {0, 1500000000}, -0.0F, {1, 500000000}},
    {"whole seconds do too", {0, 1000000000}, 1.0F, {2, 0}},
    {"one second at most", {0, UINT_MAX}, 0.0F, {1, 3294967295}},
    {"a fraction, one second", {0, 3500000000}, 0.5F, {1, 3000000000}},
    {"up to 32 bits", {0, 3794967295}, 0.5F, {1, 3294967295}},
    {"where the sum wraps", {0, 3794967296}, 0.5F, {0, 0}},
    {"beyond them", {0, UINT_MAX}, 0.5F, {0, 499999999}},
    {"back, none is borrowed", {0, UINT_MAX}, -0.5F, {0, 3794967295}},
    {"nor carried", {0, 1500000000}, -1.0F, {-1, 1500000000}},
    {"nor by a NaN", {0, UINT_MAX}, NOT_A_NUMBER, {-2147483648, UINT_MAX}},
};

// Seconds are summed in 64 bits.
AddFact const ADD_AT_THE_ENDS_FACTS[] = {
    {"the last second wraps", {LONG_MAX, 0}, 1.0F, {LONG_MIN, 0}},
    {"by its carry", {LONG_MAX, 500000000}, 0.5F, {LONG_MIN, 0}},
    {"by both", {LONG_MAX, 500000000}, 1.5F, {LONG_MIN + 1, 0}},
    {"the first second wraps", {LONG_MIN, 0}, -1.0F, {LONG_MAX, 0}},
    {"by its borrow", {LONG_MIN, 0}, -0.5F, {LONG_MAX, 500000000}},
    {"by both, back", {LONG_MIN, 0}, -1.5F, {LONG_MAX - 1, 500000000}},
    {"by a NaN", {LONG_MIN, 0}, NOT_A_NUMBER, {LONG_MAX - 2147483647, 0}},
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
        int const places = static_cast<int>(engine() % 55);  // bits behind the point
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
    {"later less earlier", {12, 0}, {10, 500000000}, 1.5F},
    {"earlier less later", {10, 500000000}, {12, 0}, -1.5F},
    {"a time less itself", {SECONDS, 7}, {SECONDS, 7}, 0.0F},
    {"nanoseconds alone", {5, 250000000}, {5, 0}, 0.25F},
    {"nanoseconds back", {5, 0}, {5, 250000000}, -0.25F},
    {"one nanosecond", {5, 1}, {5, 0}, 1e-9F},
    {"one nanosecond back", {5, 0}, {5, 1}, -1e-9F},
    {"across the epoch", {1, 0}, {-1, 500000000}, 1.5F},

    // each field's difference is a float of its own
    {"nanoseconds round to a float", {0, 999999999}, {0, 0}, 1.0F},
    {"seconds do too", {16777217, 0}, {0, 0}, 16777216.0F},
    {"both do", {16777217, 999999999}, {0, 0}, 16777216.0F},
    {"half a millisecond in 5 minutes", {300, 500000}, {0, 0}, 300.0005F},
    {"but not 10 microseconds", {300, 10000}, {0, 0}, 300.0F},
    {"today's time holds no second", {SECONDS, 250000000}, {0, 0}, 1709618944.0F},
    // and the sum is rounded once: added as floats they would give ...1649
    {"the sum is that of doubles", {1, 0}, {0, 876198343}, 0.123801664F},
    {"with the other sign", {0, 922505524}, {1, 0}, -0.0774944648F},
    {"and more seconds", {6, 0}, {0, 835989216}, 5.16401052F},

    // the nanoseconds' difference is a signed number of 32 bits
    {"the most that is positive", {0, 2147483647}, {0, 0}, 2.14748365F},
    {"one more is negative", {0, 2147483648}, {0, 0}, -2.14748365F},
    {"the most that can be stored", {0, UINT_MAX}, {0, 0}, -1e-9F},
    {"and back", {0, 0}, {0, UINT_MAX}, 1e-9F},

    // the seconds' is one of 64
    {"the last second", {LONG_MAX, 0}, {0, 0}, 0x1p63F},
    {"the first second", {LONG_MIN, 0}, {0, 0}, -0x1p63F},
    {"less the first second", {0, 0}, {LONG_MIN, 0}, -0x1p63F},
    {"the last less the first", {LONG_MAX, 0}, {LONG_MIN, 0}, -1.0F},
    {"the first less the last", {LONG_MIN, 0}, {LONG_MAX, 0}, 1.0F},
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
