#include <chrono>
#include <climits>
#include <random>
#include <string>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/xtime.h>

#include "support/random.h"
#include "support/time_printing.h"

// The two fields of a time, the order of times, and the clock.

using com::halvorin::datatypes::xtime_t;
using com::halvorin::datatypes::xtimeNow;

using TimePoint = std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds>;

namespace {

struct FieldsFact {
    char const* fact;
    xtime_t time;
    long seconds;
    unsigned int nanoseconds;
    bool set;
};

long const SECONDS = 1709618889;

FieldsFact const FIELDS_FACTS[] = {
    // KEPT(zero-is-unset)
    {"0 s and 0 ns are not set", {0, 0}, 0, 0, false},
    {"0 s and 1 ns are set", {0, 1}, 0, 1, true},
    {"1 s and 0 ns are set", {1, 0}, 1, 0, true},
    {"-1 s and 0 ns are set", {-1, 0}, -1, 0, true},
    {"2^32 s are set, though their low 32 bits are zero", {1L << 32, 0}, 4294967296, 0, true},
    {"both fields are stored", {-5, 600000000}, -5, 600000000, true},
    {"999999999 ns are stored as given", {7, 999999999}, 7, 999999999, true},
    // KEPT(constructor-stores-as-given)
    {"1000000000 ns are stored as given", {7, 1000000000}, 7, 1000000000, true},
    {"1000000001 ns are stored as given", {7, 1000000001}, 7, 1000000001, true},
    {"4294967295 ns are stored as given", {0, UINT_MAX}, 0, 4294967295, true},
    {"LONG_MIN seconds are stored", {LONG_MIN, 0}, LONG_MIN, 0, true},
    {"LONG_MAX seconds are stored", {LONG_MAX, 1}, LONG_MAX, 1, true},
};

TEST(XtimeFields, AreZeroInANewTime) {
    xtime_t const time;
    EXPECT_EQ(time.getDateTime(), 0);
    EXPECT_EQ(time.getNanoseconds(), 0U);
    EXPECT_FALSE(time.isSet());
}

TEST(XtimeFields, ComeFromANumberOfSeconds) {
    for (long const seconds : {LONG_MIN, -7L, 0L, 1L, SECONDS, LONG_MAX}) {
        xtime_t const time = seconds;
        EXPECT_EQ(time.getDateTime(), seconds);
        EXPECT_EQ(time.getNanoseconds(), 0U);
    }
}

TEST(XtimeFields, AreStoredAsGiven) {
    for (FieldsFact const& row : FIELDS_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(row.time.getDateTime(), row.seconds);
        EXPECT_EQ(row.time.getNanoseconds(), row.nanoseconds);
        EXPECT_EQ(row.time.isSet(), row.set);
    }
}

TEST(XtimeFields, AreCopied) {
    for (FieldsFact const& row : FIELDS_FACTS) {
        SCOPED_TRACE(row.fact);
        xtime_t const copy = row.time;
        EXPECT_EQ(copy.getDateTime(), row.seconds);
        EXPECT_EQ(copy.getNanoseconds(), row.nanoseconds);
        xtime_t assigned(1, 1);
        assigned = row.time;
        EXPECT_EQ(assigned.getDateTime(), row.seconds);
        EXPECT_EQ(assigned.getNanoseconds(), row.nanoseconds);
    }
}

TEST(XtimeFields, AreClearedTogether) {
    for (FieldsFact const& row : FIELDS_FACTS) {
        SCOPED_TRACE(row.fact);
        xtime_t time = row.time;
        time.clear();
        EXPECT_EQ(time.getDateTime(), 0);
        EXPECT_EQ(time.getNanoseconds(), 0U);
        EXPECT_FALSE(time.isSet());
    }
}

TEST(XtimeFields, TakeNewSecondsAlone) {
    for (FieldsFact const& row : FIELDS_FACTS) {
        SCOPED_TRACE(row.fact);
        xtime_t time(3, 4294967295);
        time.putDateTime(row.seconds);
        EXPECT_EQ(time.getDateTime(), row.seconds);
        EXPECT_EQ(time.getNanoseconds(), 4294967295);
    }
}

struct PutFact {
    char const* fact;
    xtime_t before;
    unsigned int nanoseconds;
    xtime_t after;
};

PutFact const PUT_FACTS[] = {
    {"nanoseconds are replaced", {10, 5}, 7, {10, 7}},
    {"0 nanoseconds replace them too", {10, 5}, 0, {10, 0}},
    {"999999998 ns are stored as given", {10, 5}, 999999998, {10, 999999998}},
    {"999999999 ns are stored as given", {10, 5}, 999999999, {10, 999999999}},
    {"1000000000 ns carry one second", {10, 5}, 1000000000, {11, 0}},
    {"1000000001 ns carry one second", {10, 5}, 1000000001, {11, 1}},
    {"1999999999 ns carry one second", {10, 5}, 1999999999, {11, 999999999}},
    {"2000000000 ns carry two seconds", {10, 5}, 2000000000, {12, 0}},
    {"2500000000 ns carry two seconds", {10, 0}, 2500000000, {12, 500000000}},
    {"4000000000 ns carry four seconds", {10, 5}, 4000000000, {14, 0}},
    {"4294967295 ns carry four seconds", {10, 5}, UINT_MAX, {14, 294967295}},
    {"before the epoch nanoseconds count forward", {-5, 0}, 1500000000, {-4, 500000000}},
    {"earlier nanoseconds beyond a second are gone", {10, UINT_MAX}, 1, {10, 1}},
    {"LONG_MAX seconds stay if nothing is carried",
     {LONG_MAX, 0},
     999999999,
     {LONG_MAX, 999999999}},
    {"LONG_MAX seconds wrap if one is carried", {LONG_MAX, 0}, 1000000000, {LONG_MIN, 0}},
    {"LONG_MAX seconds wrap if four are carried",
     {LONG_MAX, 0},
     UINT_MAX,
     {LONG_MIN + 3, 294967295}},
};

TEST(XtimeFields, CarryNewNanosecondsIntoTheSeconds) {
    for (PutFact const& row : PUT_FACTS) {
        SCOPED_TRACE(row.fact);
        xtime_t time = row.before;
        time.putNanoseconds(row.nanoseconds);
        EXPECT_EQ(time, row.after);
    }
}

struct RoundedFact {
    char const* fact;
    xtime_t time;
    long rounded;
};

RoundedFact const ROUNDED_FACTS[] = {
    {"whole seconds are the number itself", {5, 0}, 5},
    {"499999999 ns go down", {5, 499999999}, 5},
    // KEPT(half-a-second-up)
    {"500000000 ns go up", {5, 500000000}, 6},
    {"500000001 ns go up", {5, 500000001}, 6},
    {"999999999 ns go up", {5, 999999999}, 6},
    {"1499999999 ns add one second", {5, 1499999999}, 6},
    {"4294967295 ns add one second", {5, UINT_MAX}, 6},
    {"before the epoch 499999999 ns go down", {-5, 499999999}, -5},
    {"before the epoch 500000000 ns go up", {-5, 500000000}, -4},
    {"before the epoch 600000000 ns go up", {-5, 600000000}, -4},
    {"half a second before the epoch goes up to it", {-1, 500000000}, 0},
    {"LONG_MIN seconds stay below half a second", {LONG_MIN, 499999999}, LONG_MIN},
    {"LONG_MAX seconds stay below half a second", {LONG_MAX, 499999999}, LONG_MAX},
    {"LONG_MAX seconds and a half wrap", {LONG_MAX, 500000000}, LONG_MIN},
};

TEST(XtimeFields, RoundToANumberOfSeconds) {
    for (RoundedFact const& row : ROUNDED_FACTS) {
        SCOPED_TRACE(row.fact);
        xtime_t time = row.time;
        long const rounded = time;
        EXPECT_EQ(rounded, row.rounded);
        EXPECT_EQ(time.operator long(), row.rounded);
        EXPECT_EQ(time, row.time);
    }
}

// ---- order

// From the earliest to the latest: seconds are signed, nanoseconds are not and are not carried.
xtime_t const ORDERED[] = {
    {LONG_MIN, 0},
    {LONG_MIN, UINT_MAX},
    {LONG_MIN + 1, 0},
    {-4294967296, 0},
    {-1, 0},
    {-1, 5},
    {-1, UINT_MAX},
    {0, 0},
    {0, 1},
    {0, 999999999},
    {0, 1000000000},
    {0, 2147483647},
    {0, 2147483648},
    {0, UINT_MAX},
    {1, 0},
    {6, 999999999},
    {7, 3},
    {7, 4},
    {4294967296, 0},
    {LONG_MAX, 0},
    {LONG_MAX, UINT_MAX},
};

// All six operators, compared with the expected order of the two times.
void expectOrder(xtime_t const& left, xtime_t const& right, int order) {
    ASSERT_EQ(left == right, order == 0)
        << testing::PrintToString(left) << testing::PrintToString(right);
    ASSERT_EQ(left != right, order != 0);
    ASSERT_EQ(left < right, order < 0);
    ASSERT_EQ(left > right, order > 0);
    ASSERT_EQ(left <= right, order <= 0);
    ASSERT_EQ(left >= right, order >= 0);
}

TEST(XtimeOrder, IsBySecondsThenByNanoseconds) {
    int const count = std::size(ORDERED);
    for (int left = 0; left < count; ++left) {
        for (int right = 0; right < count; ++right) {
            SCOPED_TRACE(testing::Message() << left << ' ' << right);
            expectOrder(ORDERED[left], ORDERED[right], left - right);
        }
    }
}

TEST(XtimeOrder, AgreesInAllSixOnRandomTimes) {
    std::mt19937_64 engine = testing_support::randomEngine();
    // Few values, so that equal fields are frequent, and their extremes.
    auto const seconds = [&engine] {
        long const choices[] = {LONG_MIN, -1, 0, 1, LONG_MAX, static_cast<long>(engine())};
        return choices[engine() % std::size(choices)];
    };
    auto const nanoseconds = [&engine] {
        unsigned const choices[] = {0, 1, 2147483648, UINT_MAX, static_cast<unsigned>(engine())};
        return choices[engine() % std::size(choices)];
    };
    for (int i = 0; i < 100'000; ++i) {
        std::tuple const left(seconds(), nanoseconds());
        std::tuple const right(seconds(), nanoseconds());
        int const order = left < right ? -1 : right < left ? 1 : 0;
        expectOrder(xtime_t(std::get<0>(left), std::get<1>(left)),
                    xtime_t(std::get<0>(right), std::get<1>(right)), order);
        if (HasFatalFailure()) return;
    }
}

TEST(XtimeOrder, OfAConstantTimeAndANumberIsThatOfTheNumbersTime) {
    xtime_t const time(5, 1);
    EXPECT_TRUE(time > 5L);
    EXPECT_TRUE(5 < time);
    EXPECT_TRUE(time < 6);
    EXPECT_FALSE(time == 5);
    EXPECT_TRUE(xtime_t(5, 0) == static_cast<xtime_t const&>(xtime_t(5)));
}

// ---- the clock; xtime_clock_test.cpp tests how it fails

TEST(XtimeNow, IsBetweenTwoLooksAtTheClock) {
    auto const look = [] {
        return std::chrono::time_point_cast<std::chrono::nanoseconds>(
            std::chrono::system_clock::now());
    };
    TimePoint const before = look();
    xtime_t member(-1, 4294967295);
    member.now();
    TimePoint const between = look();
    xtime_t const free = xtimeNow();
    TimePoint const after = look();

    EXPECT_LE(before, member.toTime_point());
    EXPECT_LE(member.toTime_point(), between);
    EXPECT_LE(between, free.toTime_point());
    EXPECT_LE(free.toTime_point(), after);
    EXPECT_LE(member.getNanoseconds(), 999999999U);
    EXPECT_LE(free.getNanoseconds(), 999999999U);
}

}  // namespace
