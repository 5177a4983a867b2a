#include <climits>
#include <span>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/utilities/MovingTimeScale.h>

#include "support/time_axes.h"

// The two helpers upon single arguments; any arguments at all are for MovingTimeScale_rule_test.cpp.

using com::halvorin::utilities::MovingTimeAxis;
using com::halvorin::utilities::MovingTimeScale;
using testing_support::Axis;
using testing_support::axisOf;
using testing_support::Scale;
using testing_support::scaleOf;

namespace {

constexpr unsigned int MOST = 4294967295;  // 32 bits
constexpr long FIRST = LONG_MIN;
constexpr long LAST = LONG_MAX;

using Times = std::vector<long>;

// ---- the scale

struct ScaleFact {
    char const* fact;
    long tMin;
    long tMax;
    unsigned int ticks;
    unsigned long minStep;
    long start;
    long end;
    unsigned long step;
    unsigned int minor;
};

void expectScales(std::span<ScaleFact const> facts) {
    for (ScaleFact const& row : facts) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(scaleOf(row.tMin, row.tMax, row.ticks, row.minStep),
                  (Scale{row.start, row.end, row.step, row.minor}));
    }
}

// Four intervals, as long as they may be; with one second more; and with the latest start that there
// is, one second before the next multiple of the step.
ScaleFact const STEP_FACTS[] = {
    {"1 s", 0, 4, 5, 0, 0, 4, 1, 0},
    {"one second more", 0, 5, 5, 0, 0, 8, 2, 1},
    {"2 s", 0, 8, 5, 0, 0, 8, 2, 1},
    {"one second more", 0, 9, 5, 0, 0, 20, 5, 4},
    {"not moved", 1, 8, 5, 0, 0, 8, 2, 1},
    {"5 s", 0, 20, 5, 0, 0, 20, 5, 4},
    {"one second more", 0, 21, 5, 0, 0, 40, 10, 4},
    {"not moved", 4, 20, 5, 0, 0, 20, 5, 4},
    {"10 s", 0, 40, 5, 0, 0, 40, 10, 4},
    {"one second more", 0, 41, 5, 0, 0, 60, 15, 2},
    {"moved", 9, 45, 5, 0, 5, 45, 10, 4},
    {"15 s", 0, 60, 5, 0, 0, 60, 15, 2},
    {"one second more", 0, 61, 5, 0, 0, 120, 30, 2},
    {"moved", 14, 70, 5, 0, 10, 70, 15, 2},
    {"30 s", 0, 120, 5, 0, 0, 120, 30, 2},
    {"one second more", 0, 121, 5, 0, 0, 240, 60, 3},
    {"moved", 29, 145, 5, 0, 25, 145, 30, 2},
    {"60 s", 0, 240, 5, 0, 0, 240, 60, 3},
    {"one second more", 0, 241, 5, 0, 0, 480, 120, 3},
    {"moved", 59, 290, 5, 0, 50, 290, 60, 3},
    {"120 s", 0, 480, 5, 0, 0, 480, 120, 3},
    {"one second more", 0, 481, 5, 0, 0, 1200, 300, 4},
    {"moved", 119, 585, 5, 0, 105, 585, 120, 3},
    {"300 s", 0, 1200, 5, 0, 0, 1200, 300, 4},
    {"one second more", 0, 1201, 5, 0, 0, 2400, 600, 4},
    {"moved", 299, 1440, 5, 0, 240, 1440, 300, 4},
    {"600 s", 0, 2400, 5, 0, 0, 2400, 600, 4},
    {"one second more", 0, 2401, 5, 0, 0, 3600, 900, 2},
    {"moved", 599, 2700, 5, 0, 300, 2700, 600, 4},
    {"900 s", 0, 3600, 5, 0, 0, 3600, 900, 2},
    {"one second more", 0, 3601, 5, 0, 0, 4800, 1200, 3},
    {"moved", 899, 4200, 5, 0, 600, 4200, 900, 2},
    {"1200 s", 0, 4800, 5, 0, 0, 4800, 1200, 3},
    {"one second more", 0, 4801, 5, 0, 0, 7200, 1800, 2},
    {"moved", 1199, 5700, 5, 0, 900, 5700, 1200, 3},
    {"1800 s", 0, 7200, 5, 0, 0, 7200, 1800, 2},
    {"one second more", 0, 7201, 5, 0, 0, 14400, 3600, 3},
    {"moved", 1799, 8700, 5, 0, 1500, 8700, 1800, 2},
    {"3600 s", 0, 14400, 5, 0, 0, 14400, 3600, 3},
    {"one second more", 0, 14401, 5, 0, 0, 28800, 7200, 3},
    {"moved", 3599, 17700, 5, 0, 3300, 17700, 3600, 3},
    {"7200 s", 0, 28800, 5, 0, 0, 28800, 7200, 3},
    {"one second more", 0, 28801, 5, 0, 0, 57600, 14400, 3},
    {"moved", 7199, 35100, 5, 0, 6300, 35100, 7200, 3},
    {"14400 s", 0, 57600, 5, 0, 0, 57600, 14400, 3},
    {"one second more", 0, 57601, 5, 0, 0, 86400, 21600, 3},
    {"moved", 14399, 70200, 5, 0, 12600, 70200, 14400, 3},
    {"21600 s", 0, 86400, 5, 0, 0, 86400, 21600, 3},
    {"one second more", 0, 86401, 5, 0, 0, 115200, 28800, 3},
    {"moved", 21599, 104400, 5, 0, 18000, 104400, 21600, 3},
    {"28800 s", 0, 115200, 5, 0, 0, 115200, 28800, 3},
    {"one second more", 0, 115201, 5, 0, 0, 172800, 43200, 3},
    {"moved", 28799, 140400, 5, 0, 25200, 140400, 28800, 3},
    {"43200 s", 0, 172800, 5, 0, 0, 172800, 43200, 3},
    {"one second more", 0, 172801, 5, 0, 0, 345600, 86400, 3},
    {"moved", 43199, 212400, 5, 0, 39600, 212400, 43200, 3},
    {"86400 s", 0, 345600, 5, 0, 0, 345600, 86400, 3},
    {"one second more", 0, 345601, 5, 0, 0, 345600, 86400, 3},
    {"moved", 86399, 428400, 5, 0, 82800, 428400, 86400, 3},
};

TEST(MovingTimeScale, HasTwentySteps) { expectScales(STEP_FACTS); }

ScaleFact const SCALE_FACTS[] = {
    {"one second is a range", 100, 101, 3, 0, 100, 102, 1, 0},
    {"it starts on a multiple", 0, 35, 5, 0, 0, 40, 10, 4},
    {"or on the finer grid", 7, 35, 5, 0, 5, 45, 10, 4},
    {"as late as it can", 9, 44, 5, 0, 5, 45, 10, 4},
    {"up to the end", 9, 45, 5, 0, 5, 45, 10, 4},
    {"one more second, one more step", 9, 46, 5, 0, 5, 65, 15, 2},
    {"the start may be tMin itself", 5, 45, 5, 0, 5, 45, 10, 4},
    {"below the finer grid's first", 4, 40, 5, 0, 0, 40, 10, 4},
    {"three ticks are enough", 3, 18, 3, 0, 0, 20, 10, 4},
    {"two intervals", 0, 20, 3, 0, 0, 20, 10, 4},
    {"and no more", 0, 21, 3, 0, 0, 30, 15, 2},
    {"many ticks make small steps", 0, 1000, 1001, 0, 0, 1000, 1, 0},
    {"one tick less", 0, 1000, 1000, 0, 0, 1998, 2, 1},
    {"the most ticks", 0, 1000, MOST, 0, 0, 4294967294, 1, 0},
    {"now", 1709618889, 1709622489, 6, 0, 1709618700, 1709623200, 900, 2},
};

TEST(MovingTimeScale, CoversTheRangeFromTheLatestStart) { expectScales(SCALE_FACTS); }

ScaleFact const MIN_STEP_FACTS[] = {
    {"a least step below one", 0, 599, 600, 0, 0, 599, 1, 0},
    {"of one second", 0, 10, 11, 1, 0, 10, 1, 0},
    {"of two", 0, 10, 11, 2, 0, 20, 2, 1},
    {"between two", 0, 10, 11, 3, 0, 50, 5, 4},
    {"one below ten minutes", 0, 10, 5, 599, 0, 2400, 600, 4},
    {"ten minutes", 0, 10, 5, 600, 0, 2400, 600, 4},
    {"one above", 0, 10, 5, 601, 0, 3600, 900, 2},
    {"a late start with it", 599, 610, 5, 600, 300, 2700, 600, 4},
    {"a day", 0, 10, 5, 86400, 0, 345600, 86400, 3},
    {"more than a day is a day", 0, 10, 5, 86401, 0, 345600, 86400, 3},
    {"much more too", 0, 10, 5, ULONG_MAX, 0, 345600, 86400, 3},
    {"then nothing is moved", 86399, 86400, 5, 86401, 0, 345600, 86400, 3},
    {"unlike with a day", 86399, 86400, 5, 86400, 82800, 428400, 86400, 3},
};

TEST(MovingTimeScale, HonoursALeastStepOfADayAtMost) {  // KEPT(days-in-32-bits)
    expectScales(MIN_STEP_FACTS);
}

ScaleFact const INSTANT_FACTS[] = {
    {"an instant has seconds", 100, 100, 5, 0, 100, 104, 1, 3},
    {"whatever the least step", 100, 100, 5, 600, 100, 104, 1, 3},
    {"three of them", 0, 0, 3, 0, 0, 2, 1, 3},
    {"before 1970", -7, -7, 4, 0, -7, -4, 1, 3},
    {"many of them", 100, 100, MOST, 0, 100, 4294967394, 1, 3},
    {"beyond 64 bits they wrap", LAST, LAST, 3, 0, LAST, FIRST + 1, 1, 3},
    {"at the other end they do not", FIRST, FIRST, 3, 0, FIRST, FIRST + 2, 1, 3},
};

TEST(MovingTimeScale, GivesAnInstantSeconds) {  // KEPT(instant-has-seconds)
    expectScales(INSTANT_FACTS);
}

ScaleFact const DAY_FACTS[] = {
    {"four days", 0, 345600, 5, 0, 0, 345600, 86400, 3},
    {"a second more is lost", 0, 345601, 5, 0, 0, 345600, 86400, 3},
    {"and another two", 0, 345603, 5, 0, 0, 345600, 86400, 3},
    {"the fourth counts", 0, 345604, 5, 0, 0, 691200, 172800, 3},
    {"twice the days", 0, 691200, 5, 0, 0, 691200, 172800, 3},
    {"from the day's beginning", 86399, 700000, 5, 0, 0, 1036800, 259200, 3},
    {"its last second", 86399, 777603, 5, 0, 0, 1036800, 259200, 3},
    {"four of them", 86400, 432004, 5, 0, 86400, 777600, 172800, 3},
    {"32 bits of the distance", 0, 4294967295, 3, 0, 0, 4295116800, 2147558400, 3},
    {"one more is none", 0, 4294967296, 3, 0, 0, 0, 0, 3},
    {"and a step of 0", 0, 4294967297, 3, 0, 0, 0, 0, 3},
    {"a day again", 0, 4294967298, 3, 0, 0, 172800, 86400, 3},
    {"bits above them are not seen", 0, 21475182084, 5, 0, 0, 691200, 172800, 3},
    {"as a number without a sign", 0, 3000000000, 4, 0, 0, 3000240000, 1000080000, 3},
    {"most ticks, most time", 0, LAST, MOST, 0, 0, 371085174201600, 86400, 3},
    {"beyond all days", 0, LAST, 3, 0, 0, 4295116800, 2147558400, 3},
};

TEST(MovingTimeScale, CountsDaysIn32Bits) {  // KEPT(days-in-32-bits)
    expectScales(DAY_FACTS);
}

ScaleFact const EARLY_FACTS[] = {
    {"one second before", -1, 3, 5, 0, -1, 3, 1, 0},
    {"multiples of the bits", -7, 30, 5, 0, -11, 49, 15, 2},
    {"not of the time", -16, 24, 5, 0, -16, 24, 10, 4},
    {"nor here", -10, 30, 5, 0, -11, 49, 15, 2},
    {"but for powers of two", -16, 0, 3, 0, -16, 4, 10, 4},
    {"days too", -1, 1000000, 5, 0, -25216, 1011584, 259200, 3},
    {"and all before 1970", -1000000, -999000, 5, 0, -1000036, -998836, 300, 4},
};

TEST(MovingTimeScale, ReadsTimesBefore1970AsUnsigned) {  // KEPT(scale-is-unsigned)
    expectScales(EARLY_FACTS);
}

ScaleFact const WRAPPING_FACTS[] = {
    {"the last seconds", LAST - 4, LAST, 5, 0, LAST - 4, LAST, 1, 0},
    {"a step that would wrap", LAST - 5, LAST, 5, 0, LAST - 55807, FIRST + 289792, 86400, 3},
    {"or its start", FIRST, FIRST + 20, 5, 0, LAST - 55807, FIRST + 289792, 86400, 3},
    {"at the first second", FIRST, FIRST + 4, 5, 0, FIRST, FIRST + 4, 1, 0},
    {"from end to end", FIRST, LAST, 3, 0, LAST - 55807, FIRST + 116992, 86400, 3},
    {"with the most ticks", FIRST, LAST, MOST, 0, LAST - 55807, LAST - 55807, 0, 3},
    {"from the first second", FIRST, 0, 3, 0, LAST - 55807, FIRST + 116992, 86400, 3},
    {"an earlier start for one", LAST - 23, LAST - 22, 3, 15, LAST - 32, LAST - 2, 15, 2},
};

TEST(MovingTimeScale, WrapsAt64Bits) { expectScales(WRAPPING_FACTS); }

struct InvalidFact {
    char const* fact;
    long tMin;
    long tMax;
    unsigned int ticks;
};

InvalidFact const INVALID_FACTS[] = {
    {"two ticks", 0, 10, 2},
    {"one", 0, 10, 1},
    {"none", 0, 10, 0},
    {"two for an instant", 5, 5, 2},
    {"a range that is reversed", 10, 9, 5},
    {"before 1970 too", -9, -10, 5},
    {"from end to end", LAST, FIRST, 5},
    {"both", 10, 9, 2},
};

TEST(MovingTimeScale, RefusesWhatIsNoRangeAndWritesNothing) {
    for (InvalidFact const& row : INVALID_FACTS) {
        SCOPED_TRACE(row.fact);
        Scale scale{-1, -2, 3, 4};
        try {
            MovingTimeScale(row.tMin, row.tMax, row.ticks, 0, scale.start, scale.end, scale.step,
                            scale.minor);
            ADD_FAILURE() << "nothing was thrown";
        } catch (std::invalid_argument const& error) {
            EXPECT_STREQ(error.what(), "MovingTimeScale - invalid arguments");
        }
        EXPECT_EQ(scale, (Scale{-1, -2, 3, 4}));
    }
}

// ---- the axis

struct AxisFact {
    char const* fact;
    long tMin;
    long tMax;
    unsigned int ticks;
    unsigned long step;
    unsigned int minor;
    Times majors;
    Times minors;
};

void expectAxes(std::span<AxisFact const> facts) {
    for (AxisFact const& row : facts) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(axisOf(row.tMin, row.tMax, row.ticks),
                  (Axis{row.step, row.minor, row.majors, row.minors}));
    }
}

// From 0 to tMax, with three ticks.
struct AxisStepFact {
    long tMax;
    unsigned long step;
    unsigned int minor;
    Times majors;
    Times minors;
};

void expectSteps(std::span<AxisStepFact const> facts) {
    for (AxisStepFact const& row : facts) {
        SCOPED_TRACE(row.tMax);
        EXPECT_EQ(axisOf(0, row.tMax, 3), (Axis{row.step, row.minor, row.majors, row.minors}));
    }
}

// Two intervals, as long as they may be for a step; and with one second more.
AxisStepFact const AXIS_STEP_FACTS[] = {
    {4, 2, 1, {0, 2, 4}, {1, 3}},
    {5, 5, 4, {0, 5}, {1, 2, 3, 4}},
    {10, 5, 4, {0, 5, 10}, {1, 2, 3, 4, 6, 7, 8, 9}},
    {11, 10, 4, {0, 10}, {2, 4, 6, 8}},
    {20, 10, 4, {0, 10, 20}, {2, 4, 6, 8, 12, 14, 16, 18}},
    {21, 15, 2, {0, 15}, {5, 10, 20}},
    {30, 15, 2, {0, 15, 30}, {5, 10, 20, 25}},
    {31, 30, 2, {0, 30}, {10, 20}},
    {60, 30, 2, {0, 30, 60}, {10, 20, 40, 50}},
    {61, 60, 3, {0, 60}, {15, 30, 45}},
    {120, 60, 3, {0, 60, 120}, {15, 30, 45, 75, 90, 105}},
    {121, 120, 3, {0, 120}, {30, 60, 90}},
    {240, 120, 3, {0, 120, 240}, {30, 60, 90, 150, 180, 210}},
    {241, 300, 4, {0}, {60, 120, 180, 240}},
    {600, 300, 4, {0, 300, 600}, {60, 120, 180, 240, 360, 420, 480, 540}},
    {601, 600, 4, {0, 600}, {120, 240, 360, 480}},
    {1200, 600, 4, {0, 600, 1200}, {120, 240, 360, 480, 720, 840, 960, 1080}},
    {1201, 900, 2, {0, 900}, {300, 600, 1200}},
    {1800, 900, 2, {0, 900, 1800}, {300, 600, 1200, 1500}},
    {1801, 1200, 3, {0, 1200}, {300, 600, 900, 1500, 1800}},
    {2400, 1200, 3, {0, 1200, 2400}, {300, 600, 900, 1500, 1800, 2100}},
    {2401, 1800, 2, {0, 1800}, {600, 1200, 2400}},
    {3600, 1800, 2, {0, 1800, 3600}, {600, 1200, 2400, 3000}},
    {3601, 3600, 3, {0, 3600}, {900, 1800, 2700}},
    {7200, 3600, 3, {0, 3600, 7200}, {900, 1800, 2700, 4500, 5400, 6300}},
    {7201, 7200, 3, {0, 7200}, {1800, 3600, 5400}},
    {14400, 7200, 3, {0, 7200, 14400}, {1800, 3600, 5400, 9000, 10800, 12600}},
    {14401, 14400, 3, {0, 14400}, {3600, 7200, 10800}},
    {28800, 14400, 3, {0, 14400, 28800}, {3600, 7200, 10800, 18000, 21600, 25200}},
    {28801, 21600, 3, {0, 21600}, {5400, 10800, 16200, 27000}},
    {43200, 21600, 3, {0, 21600, 43200}, {5400, 10800, 16200, 27000, 32400, 37800}},
    {43201, 28800, 3, {0, 28800}, {7200, 14400, 21600, 36000, 43200}},
    {57600, 28800, 3, {0, 28800, 57600}, {7200, 14400, 21600, 36000, 43200, 50400}},
    {57601, 43200, 3, {0, 43200}, {10800, 21600, 32400, 54000}},
    {86400, 43200, 3, {0, 43200, 86400}, {10800, 21600, 32400, 54000, 64800, 75600}},
    {86401, 86400, 3, {0, 86400}, {21600, 43200, 64800}},
    {172800, 86400, 3, {0, 86400, 172800}, {21600, 43200, 64800, 108000, 129600, 151200}},
    {172801, 172800, 3, {0, 172800}, {43200, 86400, 129600}},
};

TEST(MovingTimeAxis, HasNineteenStepsAboveOneSecond) { expectSteps(AXIS_STEP_FACTS); }

AxisFact const AXIS_FACTS[] = {
    {"majors from tMin on", 0, 100, 6, 30, 2, {0, 30, 60, 90}, {10, 20, 40, 50, 70, 80}},
    {"from the next multiple on", 1, 100, 6, 30, 2, {30, 60, 90}, {10, 20, 40, 50, 70, 80}},
    {"minor ticks before it", 5, 105, 6, 30, 2, {30, 60, 90}, {10, 20, 40, 50, 70, 80, 100}},
    {"not tMin itself", 10, 110, 6, 30, 2, {30, 60, 90}, {20, 40, 50, 70, 80, 100}},
    {"but from the second after", 9, 109, 6, 30, 2, {30, 60, 90}, {10, 20, 40, 50, 70, 80, 100}},
    {"not tMax itself", 0, 80, 5, 30, 2, {0, 30, 60}, {10, 20, 40, 50, 70}},
    {"but up to the second before", 0, 81, 5, 30, 2, {0, 30, 60}, {10, 20, 40, 50, 70, 80}},
    {"a major at tMax", 0, 120, 5, 30, 2, {0, 30, 60, 90, 120}, {10, 20, 40, 50, 70, 80, 100, 110}},
    {"between two majors", 29, 91, 3, 60, 3, {60}, {30, 45, 75, 90}},
    {"three ticks", 0, 7, 3, 5, 4, {0, 5}, {1, 2, 3, 4, 6}},
};

TEST(MovingTimeAxis, ListsWhatLiesInTheRange) { expectAxes(AXIS_FACTS); }

AxisFact const SECOND_FACTS[] = {
    {"an instant", 10, 10, 3, 0, MOST, {10, 10}, {}},
    {"of no time", 0, 0, 100, 0, MOST, {0, 0}, {}},
    {"two neighbours", 10, 11, 5, 0, 0, {10, 11}, {}},
    {"every second between", 0, 4, 6, 0, 3, {0, 4}, {1, 2, 3}},
    {"wherever that is", -2, 3, 7, 0, 4, {-2, 3}, {-1, 0, 1, 2}},
    {"one second below a second a tick", 0, 5, 7, 0, 4, {0, 5}, {1, 2, 3, 4}},
    {"exactly one", 0, 5, 6, 1, 0, {0, 1, 2, 3, 4, 5}, {}},
    {"has no minor ticks", 10, 12, 3, 1, 0, {10, 11, 12}, {}},
    {"before 1970 too", -3, -1, 3, 1, 0, {-3, -2, -1}, {}},
    {"one second above it", 0, 6, 6, 2, 1, {0, 2, 4, 6}, {1, 3, 5}},
    {"more ticks than seconds", 0, 3, MOST, 0, 2, {0, 3}, {1, 2}},
};

TEST(MovingTimeAxis, FillsEverySecond) {  // KEPT(step-0-fills-every-second)
    expectAxes(SECOND_FACTS);
}

AxisFact const EARLY_AXIS_FACTS[] = {
    {"multiples", -100, 0, 6, 30, 2, {-90, -60, -30, 0}, {-80, -70, -50, -40, -20, -10}},
    {"rounded up", -95, 5, 6, 30, 2, {-90, -60, -30, 0}, {-80, -70, -50, -40, -20, -10}},
    {"across it", -31, 69, 6, 30, 2, {-30, 0, 30, 60}, {-20, -10, 10, 20, 40, 50}},
    {"a second before", -1, 99, 6, 30, 2, {0, 30, 60, 90}, {10, 20, 40, 50, 70, 80}},
    {"a second after", 1, 101, 6, 30, 2, {30, 60, 90}, {10, 20, 40, 50, 70, 80, 100}},
    {"from one on", -90, 10, 6, 30, 2, {-90, -60, -30, 0}, {-80, -70, -50, -40, -20, -10}},
};

TEST(MovingTimeAxis, RoundsUpBefore1970) {  // KEPT(axis-is-signed)
    expectAxes(EARLY_AXIS_FACTS);
}

AxisFact const LONELY_FACTS[] = {
    {"no multiple in the range", 1, 242, 3, 300, 4, {}, {}},
    {"one at its end", 59, 300, 3, 300, 4, {300}, {60, 120, 180, 240}},
    {"one at its beginning", 300, 541, 3, 300, 4, {300}, {360, 420, 480, 540}},
    {"none before 1970", -242, -1, 3, 300, 4, {}, {}},
};

TEST(MovingTimeAxis, HasNoMinorTicksWithoutAMajor) {  // KEPT(no-major-no-minor)
    expectAxes(LONELY_FACTS);
}

AxisStepFact const LONG_STEP_FACTS[] = {
    {172799, 86400, 3, {0, 86400}, {21600, 43200, 64800, 108000, 129600, 151200}},
    {172800, 86400, 3, {0, 86400, 172800}, {21600, 43200, 64800, 108000, 129600, 151200}},
    {172801, 172800, 3, {0, 172800}, {43200, 86400, 129600}},
    {345600, 172800, 3, {0, 172800, 345600}, {43200, 86400, 129600, 216000, 259200, 302400}},
    {345601, 259200, 3, {0, 259200}, {64800, 129600, 194400, 324000}},
    {345602, 259200, 3, {0, 259200}, {64800, 129600, 194400, 324000}},
    {345603, 259200, 3, {0, 259200}, {64800, 129600, 194400, 324000}},
};

TEST(MovingTimeAxis, CountsLongStepsInDays) { expectSteps(LONG_STEP_FACTS); }

// From 0 to tMax, with three ticks; and the first three minor ones.
struct FloatFact {
    char const* fact;
    long tMax;
    unsigned long step;
    Times minors;
};

FloatFact const FLOAT_FACTS[] = {
    {"195 days", 33696000, 16848000, {4212000, 8424000, 12636000}},
    {"a float has no more", 33696001, 16848000, {4212000, 8424000, 12636000}},
    {"of that neither", 33696002, 16848000, {4212000, 8424000, 12636000}},
    {"but not this", 33696003, 16934400, {4233600, 8467200, 12700800}},
    {"and no less", 33695999, 16848000, {4212000, 8424000, 12636000}},
    {"it rounds a spacing", 172800172800, 86400172800, {21600043008, 43200086016, 64800129024}},
    {"and multiples", 17280001209600, 8640000432000, {2160000106496, 4320000212992, 6480000450560}},
};

TEST(MovingTimeAxis, CountsInFloats) {  // KEPT(axis-counts-in-floats)
    for (FloatFact const& row : FLOAT_FACTS) {
        SCOPED_TRACE(row.fact);
        Axis const axis = axisOf(0, row.tMax, 3);
        EXPECT_EQ(axis.step, row.step);
        EXPECT_EQ(Times(axis.minors.begin(), axis.minors.begin() + 3), row.minors);
    }
}

// Times are counted from an end of the 64 bits; three ticks.
struct EdgeFact {
    char const* fact;
    long edge;
    long tMin;
    long tMax;
    unsigned long step;
    unsigned int minor;
    Times majors;
    Times minors;
};

EdgeFact const LAST_TIMES_FACTS[] = {
    {"the last seconds", LAST, -4, 0, 2, 1, {-3, -1}, {-2}},
    {"and before them", LAST, -7, -1, 5, 4, {-7, -2}, {-6, -5, -4, -3}},
    {"a minute is cut", LAST, -100, 0, 60, 3, {-67, -7}, {-97, -82, -52, -37, -22}},
    {"no multiple is left", LAST, -249, -8, 300, 4, {}, {}},
    {"the first seconds", FIRST, 0, 4, 2, 1, {0, 2, 4}, {1, 3}},
    {"a multiple later", FIRST, 0, 7, 5, 4, {3}, {1, 2, 4, 5, 6}},
    {"a minute later", FIRST, 0, 61, 60, 3, {8}, {23, 38, 53}},
};

Times countedFrom(long edge, Times times) {
    for (long& time : times) {
        time -= edge;
    }
    return times;
}

TEST(MovingTimeAxis, NeverStepsPastItsEnd) {
    for (EdgeFact const& row : LAST_TIMES_FACTS) {
        SCOPED_TRACE(row.fact);
        Axis const axis = axisOf(row.edge + row.tMin, row.edge + row.tMax, 3);
        EXPECT_EQ(axis.step, row.step);
        EXPECT_EQ(axis.minor, row.minor);
        EXPECT_EQ(countedFrom(row.edge, axis.majors), row.majors);
        EXPECT_EQ(countedFrom(row.edge, axis.minors), row.minors);
    }
}

TEST(MovingTimeAxis, ReachesFromEndToEnd) {
    Axis const all = axisOf(FIRST, LAST, 3);
    EXPECT_EQ(all.step, 9223372036854806400UL);
    EXPECT_EQ(all.minor, 3U);
    EXPECT_EQ(all.majors, Times{0});
    EXPECT_EQ(all.minors, (Times{-6917529027641112448, -4611686018427418496, -2305843009213724544,
                                 2305843009213693952, 4611686018427387904, 6917529027641081856}));

    Axis const before1970 = axisOf(FIRST, 0, 3);
    EXPECT_EQ(before1970.step, 4611686018427446400UL);
    EXPECT_EQ(before1970.majors, (Times{-4611686018427446400, 0}));
    EXPECT_EQ(before1970.minors,
              (Times{-8070450532248045824, -6917529027641198848, -5764607523034351872,
                     -3458764513820599424, -2305843009213752448, -1152921504606905472}));

    Axis const since1970 = axisOf(0, LAST, 3);
    EXPECT_EQ(since1970.step, 4611686018427446400UL);
    EXPECT_EQ(since1970.majors, (Times{0, 4611686018427446400}));
    EXPECT_EQ(since1970.minors,
              (Times{1152921504606846976, 2305843009213693952, 3458764513820540928,
                     5764607523034293376, 6917529027641140352, 8070450532247987328}));
}

// KEPT(axis-empties-before-it-checks)
TEST(MovingTimeAxis, RefusesWhatIsNoRangeAndEmptiesTheLists) {
    for (InvalidFact const& row : INVALID_FACTS) {
        SCOPED_TRACE(row.fact);
        Axis axis = axisOf(0, 100, 6);
        try {
            MovingTimeAxis(row.tMin, row.tMax, row.ticks, axis.step, axis.minor, axis.majors,
                           axis.minors);
            ADD_FAILURE() << "nothing was thrown";
        } catch (std::invalid_argument const& error) {
            EXPECT_STREQ(error.what(), "MovingTimeAxis - invalid arguments");
        }
        EXPECT_EQ(axis, (Axis{0, 0, Times(), Times()}));
    }
}

TEST(MovingTimeAxis, TakesOneListForBoth) {
    Times list = {1, 2, 3};
    unsigned long step = 0;
    unsigned int minor = 0;
    MovingTimeAxis(0, 100, 6, step, minor, list, list);
    EXPECT_EQ(list, (Times{0, 30, 60, 90, 10, 20, 40, 50, 70, 80}));
    MovingTimeAxis(0, 4, 6, step, minor, list, list);
    EXPECT_EQ(list, (Times{0, 4, 1, 2, 3}));
}

}  // namespace
