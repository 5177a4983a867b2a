#include <cfloat>
#include <chrono>
#include <climits>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/xtime.h>

#include "support/random.h"
#include "support/time_printing.h"

// Times as counts: of nanoseconds in a time_point, and of OpenVMS ticks and seconds.

using com::halvorin::datatypes::xtime_t;

using TimePoint = std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds>;

namespace {

long const SECONDS = 1709618889;  // 2024-03-05T06:08:09

// ---- time points

TimePoint pointAt(long nanoseconds) { return TimePoint(std::chrono::nanoseconds(nanoseconds)); }

struct FromPointFact {
    char const* fact;
    long nanoseconds;
    xtime_t time;
};

FromPointFact const FROM_POINT_FACTS[] = {
    {"0 ns are the epoch", 0, {0, 0}},
    {"1 ns", 1, {0, 1}},
    {"999999999 ns are no second", 999999999, {0, 999999999}},
    {"1000000000 ns are a second", 1000000000, {1, 0}},
    {"1000000001 ns are a second and 1 ns", 1000000001, {1, 1}},
    {"a present-day time", 1709618889250000000, {1709618889, 250000000}},
    {"the largest count", LONG_MAX, {9223372036, 854775807}},
    // KEPT(time-point-before-1970)
    {"a nanosecond before the epoch", -1, {0, 4294967295}},
    {"-999999999 ns are 0 s and the pattern of the remainder", -999999999, {0, 3294967297}},
    {"-1000000000 ns are -1 s", -1000000000, {-1, 0}},
    {"-1000000001 ns are -1 s and the pattern of -1", -1000000001, {-1, 4294967295}},
    {"-1999999999 ns are -1 s and the pattern of the remainder", -1999999999, {-1, 3294967297}},
    {"the smallest count", LONG_MIN, {-9223372036, 3440191488}},
};

TEST(XtimeTimePoint, IsCutTowardTheEpoch) {
    for (FromPointFact const& row : FROM_POINT_FACTS) {
        SCOPED_TRACE(row.fact);
        xtime_t time(77, 77);
        time.fromTime_point(pointAt(row.nanoseconds));
        EXPECT_EQ(time, row.time);
    }
}

struct ToPointFact {
    char const* fact;
    xtime_t time;
    long nanoseconds;
};

ToPointFact const TO_POINT_FACTS[] = {
    {"the epoch is 0 ns", {0, 0}, 0},
    {"seconds and nanoseconds are summed", {1709618889, 250000000}, 1709618889250000000},
    {"before the epoch nanoseconds count forward", {-1, 999999999}, -1},
    {"a second before the epoch", {-1, 0}, -1000000000},
    {"more nanoseconds than a second are summed", {1, UINT_MAX}, 5294967295},
    {"what fromTime_point makes of -1 ns does not come back", {0, 4294967295}, 4294967295},
    {"the count LONG_MAX - 1", {9223372036, 854775806}, LONG_MAX - 1},
    {"the count LONG_MAX", {9223372036, 854775807}, LONG_MAX},
    {"1 ns after LONG_MAX the count wraps", {9223372036, 854775808}, LONG_MIN},
    {"the count LONG_MIN + 1", {-9223372037, 145224193}, LONG_MIN + 1},
    {"the count LONG_MIN", {-9223372037, 145224192}, LONG_MIN},
    {"1 ns before LONG_MIN the count wraps", {-9223372037, 145224191}, LONG_MAX},
    {"LONG_MAX seconds wrap to -1 s", {LONG_MAX, 0}, -1000000000},
    {"LONG_MIN seconds wrap to 0 s", {LONG_MIN, 0}, 0},
};

TEST(XtimeTimePoint, IsTheCountOfNanoseconds) {
    for (ToPointFact const& row : TO_POINT_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(row.time.toTime_point().time_since_epoch().count(), row.nanoseconds);
    }
}

TEST(XtimeTimePoint, ComesBackFrom1970On) {
    std::mt19937_64 engine = testing_support::randomEngine();
    for (int i = 0; i < 100'000; ++i) {
        long const count = static_cast<long>(engine() >> 1);
        xtime_t time;
        time.fromTime_point(pointAt(count));
        ASSERT_LE(time.getNanoseconds(), 999999999U);
        ASSERT_EQ(time.toTime_point().time_since_epoch().count(), count);
    }
}

// ---- OpenVMS time

struct ToTicksFact {
    char const* fact;
    xtime_t time;
    unsigned long ticks;
};

ToTicksFact const TO_TICKS_FACTS[] = {
    {"the epoch", {0, 0}, 35067168000000000},
    {"a second is 10000000 ticks", {1, 0}, 35067168010000000},
    {"a second before the epoch", {-1, 0}, 35067167990000000},
    {"a present-day time", {SECONDS, 250000000}, 52163356892500000},
    {"49 ns go down to no tick", {0, 49}, 35067168000000000},
    {"50 ns go up to a tick", {0, 50}, 35067168000000001},
    {"51 ns go up to a tick", {0, 51}, 35067168000000001},
    {"149 ns go down to a tick", {0, 149}, 35067168000000001},
    {"150 ns go up to two ticks", {0, 150}, 35067168000000002},
    {"the last tick of a second", {0, 999999949}, 35067168009999999},
    {"999999950 ns go up into the next second", {0, 999999950}, 35067168010000000},
    {"1500000000 ns are counted whole", {0, 1500000000}, 35067168015000000},
    {"4294967249 ns go down", {0, 4294967249}, 35067168042949672},
    {"4294967250 ns go up", {0, 4294967250}, 35067168042949673},
    {"4294967295 ns go up", {0, UINT_MAX}, 35067168042949673},

    {"the first second of OpenVMS", {-3506716800, 0}, 0},
    {"a tick after the first second of OpenVMS", {-3506716800, 100}, 1},
    {"a second before the first of OpenVMS wraps", {-3506716801, 0}, 18446744073699551616U},
    {"the last tick of 64 bits", {1841167690570, 955161549}, ULONG_MAX},
    {"the tick after the last wraps to 0", {1841167690570, 955161550}, 0},
    {"the top bit is no sign", {918830486885, 477580800}, 1UL << 63},
    {"LONG_MAX seconds wrap", {LONG_MAX, 0}, 35067167990000000},
    {"LONG_MIN seconds wrap", {LONG_MIN, 0}, 35067168000000000},
};

TEST(XtimeVms, CountsTicks) {
    for (ToTicksFact const& row : TO_TICKS_FACTS) {
        SCOPED_TRACE(row.fact);
        unsigned long ticks = 77;
        EXPECT_EQ(row.time.toVMSTime(ticks), row.ticks);
        EXPECT_EQ(ticks, row.ticks);
    }
}

struct ToSecondsFact {
    char const* fact;
    xtime_t time;
    double seconds;
};

ToSecondsFact const TO_SECONDS_FACTS[] = {
    {"the epoch", {0, 0}, 3506716800.0},
    {"a second before the epoch", {-1, 0}, 3506716799.0},
    {"a present-day time", {SECONDS, 250000000}, 5216335689.25},
    {"four ticks are what a double tells apart", {0, 400}, 0x1.a208810000001p+31},
    {"two ticks round to even", {0, 200}, 3506716800.0},
    {"49 ns go down to no tick", {-3506716800, 49}, 0.0},
    {"50 ns go up to a tick", {-3506716800, 50}, 1e-7},
    {"the first second of OpenVMS", {-3506716800, 0}, 0.0},
    {"a tick after the first second of OpenVMS", {-3506716800, 100}, 1e-7},
    {"a second before the first of OpenVMS is a huge count", {-3506716801, 0}, 1844674407369.9551},
    {"the top bit is no sign", {918830486885, 477580800}, 922337203685.47754},
    {"the last tick of 64 bits", {1841167690570, 955161549}, 1844674407370.9551},
    {"the tick after the last wraps to 0", {1841167690570, 955161550}, 0.0},
    {"4294967295 ns are counted whole", {0, UINT_MAX}, 3506716804.2949673},
    {"LONG_MAX seconds wrap", {LONG_MAX, 0}, 3506716799.0},
};

TEST(XtimeVms, CountsSeconds) {
    for (ToSecondsFact const& row : TO_SECONDS_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(row.time.toVMSTime(), row.seconds);
    }
}

struct FromTicksFact {
    char const* fact;
    unsigned long ticks;
    xtime_t time;
};

FromTicksFact const FROM_TICKS_FACTS[] = {
    // KEPT(vms-before-1970-clears)
    {"no ticks clear the time", 0, {0, 0}},
    {"one tick clears the time", 1, {0, 0}},
    {"the last tick before 1970 clears the time", 35067167999999999, {0, 0}},
    {"the first tick of 1970 is the epoch", 35067168000000000, {0, 0}},
    {"a tick after the epoch is 100 ns", 35067168000000001, {0, 100}},
    {"the last tick of a second", 35067168009999999, {0, 999999900}},
    {"a second", 35067168010000000, {1, 0}},
    {"a present-day time", 52163356892500000, {1709618889, 250000000}},
    {"the last that is positive when signed", LONG_MAX, {918830486885, 477580700}},
    {"the top bit is no sign", 1UL << 63, {918830486885, 477580800}},
    {"2^63 + 1 ticks have no sign", (1UL << 63) + 1, {918830486885, 477580900}},
    {"the last tick of 64 bits", ULONG_MAX, {1841167690570, 955161500}},
};

TEST(XtimeVms, IsReadFromTicks) {
    for (FromTicksFact const& row : FROM_TICKS_FACTS) {
        SCOPED_TRACE(row.fact);
        xtime_t time(77, 77);
        time.fromVMSTime(row.ticks);
        EXPECT_EQ(time, row.time);
    }
}

struct FromSecondsFact {
    char const* fact;
    double seconds;
    xtime_t time;
};

constexpr double INFINITELY = std::numeric_limits<double>::infinity();
constexpr double NOT_SECONDS = std::numeric_limits<double>::quiet_NaN();

// 2^63 ticks, which is what every count that does not fit gives.
xtime_t const INDEFINITE(918830486885, 477580800);

FromSecondsFact const FROM_SECONDS_FACTS[] = {
    {"the first second of 1970 is the epoch", 3506716800.0, {0, 0}},
    {"the last double before the epoch clears the time", 0x1.a20880fffffffp+31, {0, 0}},
    {"the first double after the epoch is four ticks", 0x1.a208810000001p+31, {0, 400}},
    {"half a second", 3506716800.5, {0, 500000000}},
    {"a second", 3506716801.0, {1, 0}},
    {"a present-day time", 5216335689.25, {1709618889, 250000000}},
    {"0 s clear the time", 0.0, {0, 0}},
    {"1e-7 s clear the time", 1e-7, {0, 0}},
    {"-0 s clear the time", -0.0, {0, 0}},
    {"-1e-8 s are cut to no tick, which clears the time", -1e-8, {0, 0}},

    // KEPT(uint64-from-floating)
    {"a tick back is a huge count", -1e-7, {1841167690570, 955161500}},
    {"a second back is a huge count", -1.0, {1841167690569, 955161600}},
    {"below -2^63 ticks", -922337203685.47778, INDEFINITE},
    {"-2^63 ticks", -922337203685.47754, INDEFINITE},
    {"above -2^63 ticks", -922337203685.47742, {918830486885, 477785600}},
    {"below 2^63 ticks", 922337203685.47742, {918830486885, 477376000}},
    {"2^63 ticks", 922337203685.47754, INDEFINITE},
    {"the next double above 2^63 ticks", 922337203685.47778, {918830486885, 477785600}},
    {"far above 2^63 ticks", 1.8e12, {1796493283200, 0}},
    {"below 2^64 ticks", 1844674407370.9548, {1841167690570, 954752000}},
    {"2^64 ticks", 1844674407370.9551, INDEFINITE},
    {"above 2^64 ticks", 1844674407370.9556, INDEFINITE},
    {"1e300 s do not fit", 1e300, INDEFINITE},
    {"-1e300 s do not fit", -1e300, INDEFINITE},
    {"more ticks than a double can count", DBL_MAX, INDEFINITE},
    {"infinity does not fit", INFINITELY, INDEFINITE},
    {"negative infinity does not fit", -INFINITELY, INDEFINITE},
    {"NaN does not fit", NOT_SECONDS, INDEFINITE},
    {"-NaN does not fit", -NOT_SECONDS, INDEFINITE},
};

TEST(XtimeVms, IsReadFromSeconds) {
    for (FromSecondsFact const& row : FROM_SECONDS_FACTS) {
        SCOPED_TRACE(row.fact);
        xtime_t time(77, 77);
        time.fromVMSTime(row.seconds);
        EXPECT_EQ(time, row.time);
    }
}

TEST(XtimeVms, ComesBackInWholeTicks) {
    std::mt19937_64 engine = testing_support::randomEngine();
    for (int i = 0; i < 100'000; ++i) {
        auto const seconds = static_cast<long>(engine() % 1'841'167'690'570);
        xtime_t const time(seconds, static_cast<unsigned>(engine() % 10'000'000) * 100);
        unsigned long ticks = 0;
        time.toVMSTime(ticks);
        xtime_t back;
        back.fromVMSTime(ticks);
        ASSERT_EQ(back, time);
    }
}

}  // namespace
