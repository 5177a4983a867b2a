#include <climits>
#include <span>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/utilities/MovingTimeScale.h>

#include "support/time_axes.h"

// The two functions with chosen arguments; MovingTimeScale_rule_test.cpp has random ones. Long for
// its tables.

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

// For each step three ranges: four intervals; a second more; and four intervals from the latest
// start, one second before the next multiple of the step.
ScaleFact const STEP_FACTS[] = {
    {"four intervals of 1 s", 0, 4, 5, 0, 0, 4, 1, 0},
    {"a second more than four intervals of 1 s", 0, 5, 5, 0, 0, 8, 2, 1},
    {"four intervals of 2 s", 0, 8, 5, 0, 0, 8, 2, 1},
    {"a second more than four intervals of 2 s", 0, 9, 5, 0, 0, 20, 5, 4},
    {"a scale of 2 s is not moved", 1, 8, 5, 0, 0, 8, 2, 1},
    {"four intervals of 5 s", 0, 20, 5, 0, 0, 20, 5, 4},
    {"a second more than four intervals of 5 s", 0, 21, 5, 0, 0, 40, 10, 4},
    {"a scale of 5 s is not moved", 4, 20, 5, 0, 0, 20, 5, 4},
    {"four intervals of 10 s", 0, 40, 5, 0, 0, 40, 10, 4},
    {"a second more than four intervals of 10 s", 0, 41, 5, 0, 0, 60, 15, 2},
    {"a scale of 10 s is moved", 9, 45, 5, 0, 5, 45, 10, 4},
    {"four intervals of 15 s", 0, 60, 5, 0, 0, 60, 15, 2},
    {"a second more than four intervals of 15 s", 0, 61, 5, 0, 0, 120, 30, 2},
    {"a scale of 15 s is moved", 14, 70, 5, 0, 10, 70, 15, 2},
    {"four intervals of 30 s", 0, 120, 5, 0, 0, 120, 30, 2},
    {"a second more than four intervals of 30 s", 0, 121, 5, 0, 0, 240, 60, 3},
    {"a scale of 30 s is moved", 29, 145, 5, 0, 25, 145, 30, 2},
    {"four intervals of 60 s", 0, 240, 5, 0, 0, 240, 60, 3},
    {"a second more than four intervals of 60 s", 0, 241, 5, 0, 0, 480, 120, 3},
    {"a scale of 60 s is moved", 59, 290, 5, 0, 50, 290, 60, 3},
    {"four intervals of 120 s", 0, 480, 5, 0, 0, 480, 120, 3},
    {"a second more than four intervals of 120 s", 0, 481, 5, 0, 0, 1200, 300, 4},
    {"a scale of 120 s is moved", 119, 585, 5, 0, 105, 585, 120, 3},
    {"four intervals of 300 s", 0, 1200, 5, 0, 0, 1200, 300, 4},
    {"a second more than four intervals of 300 s", 0, 1201, 5, 0, 0, 2400, 600, 4},
    {"a scale of 300 s is moved", 299, 1440, 5, 0, 240, 1440, 300, 4},
    {"four intervals of 600 s", 0, 2400, 5, 0, 0, 2400, 600, 4},
    {"a second more than four intervals of 600 s", 0, 2401, 5, 0, 0, 3600, 900, 2},
    {"a scale of 600 s is moved", 599, 2700, 5, 0, 300, 2700, 600, 4},
    {"four intervals of 900 s", 0, 3600, 5, 0, 0, 3600, 900, 2},
    {"a second more than four intervals of 900 s", 0, 3601, 5, 0, 0, 4800, 1200, 3},
    {"a scale of 900 s is moved", 899, 4200, 5, 0, 600, 4200, 900, 2},
    {"four intervals of 1200 s", 0, 4800, 5, 0, 0, 4800, 1200, 3},
    {"a second more than four intervals of 1200 s", 0, 4801, 5, 0, 0, 7200, 1800, 2},
    {"a scale of 1200 s is moved", 1199, 5700, 5, 0, 900, 5700, 1200, 3},
    {"four intervals of 1800 s", 0, 7200, 5, 0, 0, 7200, 1800, 2},
    {"a second more than four intervals of 1800 s", 0, 7201, 5, 0, 0, 14400, 3600, 3},
    {"a scale of 1800 s is moved", 1799, 8700, 5, 0, 1500, 8700, 1800, 2},
    {"four intervals of 3600 s", 0, 14400, 5, 0, 0, 14400, 3600, 3},
    {"a second more than four intervals of 3600 s", 0, 14401, 5, 0, 0, 28800, 7200, 3},
    {"a scale of 3600 s is moved", 3599, 17700, 5, 0, 3300, 17700, 3600, 3},
    {"four intervals of 7200 s", 0, 28800, 5, 0, 0, 28800, 7200, 3},
    {"a second more than four intervals of 7200 s", 0, 28801, 5, 0, 0, 57600, 14400, 3},
    {"a scale of 7200 s is moved", 7199, 35100, 5, 0, 6300, 35100, 7200, 3},
    {"four intervals of 14400 s", 0, 57600, 5, 0, 0, 57600, 14400, 3},
    {"a second more than four intervals of 14400 s", 0, 57601, 5, 0, 0, 86400, 21600, 3},
    {"a scale of 14400 s is moved", 14399, 70200, 5, 0, 12600, 70200, 14400, 3},
    {"four intervals of 21600 s", 0, 86400, 5, 0, 0, 86400, 21600, 3},
    {"a second more than four intervals of 21600 s", 0, 86401, 5, 0, 0, 115200, 28800, 3},
    {"a scale of 21600 s is moved", 21599, 104400, 5, 0, 18000, 104400, 21600, 3},
    {"four intervals of 28800 s", 0, 115200, 5, 0, 0, 115200, 28800, 3},
    {"a second more than four intervals of 28800 s", 0, 115201, 5, 0, 0, 172800, 43200, 3},
    {"a scale of 28800 s is moved", 28799, 140400, 5, 0, 25200, 140400, 28800, 3},
    {"four intervals of 43200 s", 0, 172800, 5, 0, 0, 172800, 43200, 3},
    {"a second more than four intervals of 43200 s", 0, 172801, 5, 0, 0, 345600, 86400, 3},
    {"a scale of 43200 s is moved", 43199, 212400, 5, 0, 39600, 212400, 43200, 3},
    {"four intervals of 86400 s", 0, 345600, 5, 0, 0, 345600, 86400, 3},
    {"a second more than four intervals of 86400 s", 0, 345601, 5, 0, 0, 345600, 86400, 3},
    {"a scale of 86400 s is moved", 86399, 428400, 5, 0, 82800, 428400, 86400, 3},
};

TEST(MovingTimeScale, HasTwentySteps) { expectScales(STEP_FACTS); }

ScaleFact const SCALE_FACTS[] = {
    {"one second is a range", 100, 101, 3, 0, 100, 102, 1, 0},
    {"a scale starts on a multiple of its step", 0, 35, 5, 0, 0, 40, 10, 4},
    {"a scale starts on the finer grid", 7, 35, 5, 0, 5, 45, 10, 4},
    {"a scale starts as late as it can: a second before its end", 9, 44, 5, 0, 5, 45, 10, 4},
    {"a scale reaches tMax exactly", 9, 45, 5, 0, 5, 45, 10, 4},
    {"a second more than the scale takes the next step", 9, 46, 5, 0, 5, 65, 15, 2},
    {"the start may be tMin itself", 5, 45, 5, 0, 5, 45, 10, 4},
    {"tMin before the finer grid's first multiple starts at the step's multiple", 4, 40, 5, 0, 0,
     40, 10, 4},
    {"three ticks are enough", 3, 18, 3, 0, 0, 20, 10, 4},
    {"two intervals of 10 s are enough for 20 s", 0, 20, 3, 0, 0, 20, 10, 4},
    {"two intervals of 10 s are too short for 21 s", 0, 21, 3, 0, 0, 30, 15, 2},
    {"many ticks make small steps", 0, 1000, 1001, 0, 0, 1000, 1, 0},
    {"a thousand ticks make steps of 2 s", 0, 1000, 1000, 0, 0, 1998, 2, 1},
    {"the most ticks", 0, 1000, MOST, 0, 0, 4294967294, 1, 0},
    {"a present-day hour", 1709618889, 1709622489, 6, 0, 1709618700, 1709623200, 900, 2},
};

TEST(MovingTimeScale, CoversTheRangeFromTheLatestStart) { expectScales(SCALE_FACTS); }

ScaleFact const MIN_STEP_FACTS[] = {
    {"a least step of 0 allows a step of 1 s", 0, 599, 600, 0, 0, 599, 1, 0},
    {"a least step of 1 s allows a step of 1 s", 0, 10, 11, 1, 0, 10, 1, 0},
    {"a least step of 2 s makes the step 2 s", 0, 10, 11, 2, 0, 20, 2, 1},
    {"a least step of 3 s makes the step 5 s", 0, 10, 11, 3, 0, 50, 5, 4},
    {"a least step of 599 s makes the step 600 s", 0, 10, 5, 599, 0, 2400, 600, 4},
    {"a least step of 600 s makes the step 600 s", 0, 10, 5, 600, 0, 2400, 600, 4},
    {"a least step of 601 s makes the step 900 s", 0, 10, 5, 601, 0, 3600, 900, 2},
    {"a least step of 600 s and a start at a multiple of 300 s", 599, 610, 5, 600, 300, 2700, 600,
     4},
    {"a least step of a day makes the step a day", 0, 10, 5, 86400, 0, 345600, 86400, 3},
    {"a least step above a day is not used", 0, 10, 5, 86401, 0, 345600, 86400, 3},
    {"the largest least step is not used", 0, 10, 5, ULONG_MAX, 0, 345600, 86400, 3},
    {"a scale of whole days is not moved", 86399, 86400, 5, 86401, 0, 345600, 86400, 3},
    {"a scale of the table's day is moved", 86399, 86400, 5, 86400, 82800, 428400, 86400, 3},
};

TEST(MovingTimeScale, HonoursALeastStepOfADayAtMost) {  // KEPT(days-in-32-bits)
    expectScales(MIN_STEP_FACTS);
}

ScaleFact const INSTANT_FACTS[] = {
    {"an instant has seconds", 100, 100, 5, 0, 100, 104, 1, 3},
    {"an instant has steps of 1 s for every least step", 100, 100, 5, 600, 100, 104, 1, 3},
    {"an instant has three seconds with 3 ticks", 0, 0, 3, 0, 0, 2, 1, 3},
    {"an instant before 1970 has seconds", -7, -7, 4, 0, -7, -4, 1, 3},
    {"an instant has as many seconds as ticks", 100, 100, MOST, 0, 100, 4294967394, 1, 3},
    {"the seconds of the last instant wrap", LAST, LAST, 3, 0, LAST, FIRST + 1, 1, 3},
    {"the seconds of the first instant do not wrap", FIRST, FIRST, 3, 0, FIRST, FIRST + 2, 1, 3},
};

TEST(MovingTimeScale, GivesAnInstantSeconds) {  // KEPT(instant-has-seconds)
    expectScales(INSTANT_FACTS);
}

ScaleFact const DAY_FACTS[] = {
    {"four days have a step of a day", 0, 345600, 5, 0, 0, 345600, 86400, 3},
    {"a second more than four days is lost", 0, 345601, 5, 0, 0, 345600, 86400, 3},
    {"three seconds more than four days are lost", 0, 345603, 5, 0, 0, 345600, 86400, 3},
    {"four seconds more than four days make the step two days", 0, 345604, 5, 0, 0, 691200, 172800,
     3},
    {"eight days have a step of two days", 0, 691200, 5, 0, 0, 691200, 172800, 3},
    {"the scale starts at the beginning of the day", 86399, 700000, 5, 0, 0, 1036800, 259200, 3},
    {"the last second of a day is in its scale", 86399, 777603, 5, 0, 0, 1036800, 259200, 3},
    {"a scale starts at the beginning of the second day", 86400, 432004, 5, 0, 86400, 777600,
     172800, 3},
    {"32 bits of the distance", 0, 4294967295, 3, 0, 0, 4295116800, 2147558400, 3},
    {"2^32 seconds have 0 in their low 32 bits", 0, 4294967296, 3, 0, 0, 0, 0, 3},
    {"2^32 + 1 seconds have a step of 0", 0, 4294967297, 3, 0, 0, 0, 0, 3},
    {"2^32 + 2 seconds have a step of a day", 0, 4294967298, 3, 0, 0, 172800, 86400, 3},
    {"bits above the low 32 do not count", 0, 21475182084, 5, 0, 0, 691200, 172800, 3},
    {"the low 32 bits have no sign", 0, 3000000000, 4, 0, 0, 3000240000, 1000080000, 3},
    {"the most ticks and the longest range have a step of a day", 0, LAST, MOST, 0, 0,
     371085174201600, 86400, 3},
    {"the longest range from 1970 has the low 32 bits of its length", 0, LAST, 3, 0, 0, 4295116800,
     2147558400, 3},
};

TEST(MovingTimeScale, CountsDaysIn32Bits) {  // KEPT(days-in-32-bits)
    expectScales(DAY_FACTS);
}

ScaleFact const EARLY_FACTS[] = {
    {"a scale of seconds starts at -1", -1, 3, 5, 0, -1, 3, 1, 0},
    {"-7 has the multiple -11 of 15", -7, 30, 5, 0, -11, 49, 15, 2},
    {"-16 has the multiple -16 of 10", -16, 24, 5, 0, -16, 24, 10, 4},
    {"-10 has the multiple -11 of 15", -10, 30, 5, 0, -11, 49, 15, 2},
    {"-16 to 0 has the multiple -16 of 10", -16, 0, 3, 0, -16, 4, 10, 4},
    {"days before 1970 are multiples of the bits", -1, 1000000, 5, 0, -25216, 1011584, 259200, 3},
    {"a range far before 1970 has multiples of the bits", -1000000, -999000, 5, 0, -1000036,
     -998836, 300, 4},
};

TEST(MovingTimeScale, ReadsTimesBefore1970AsUnsigned) {  // KEPT(scale-is-unsigned)
    expectScales(EARLY_FACTS);
}

ScaleFact const WRAPPING_FACTS[] = {
    {"a scale ends at the last second", LAST - 4, LAST, 5, 0, LAST - 4, LAST, 1, 0},
    {"a scale that would wrap at its end is not chosen", LAST - 5, LAST, 5, 0, LAST - 55807,
     FIRST + 289792, 86400, 3},
    {"a scale that would wrap at its start is not chosen", FIRST, FIRST + 20, 5, 0, LAST - 55807,
     FIRST + 289792, 86400, 3},
    {"a scale starts at the first second", FIRST, FIRST + 4, 5, 0, FIRST, FIRST + 4, 1, 0},
    {"the range from end to end has a scale that wraps", FIRST, LAST, 3, 0, LAST - 55807,
     FIRST + 116992, 86400, 3},
    {"the range from end to end has step 0 with the most ticks", FIRST, LAST, MOST, 0, LAST - 55807,
     LAST - 55807, 0, 3},
    {"the range from the first second to 1970 has a scale that wraps", FIRST, 0, 3, 0, LAST - 55807,
     FIRST + 116992, 86400, 3},
    {"an earlier start is chosen where a later one would wrap", LAST - 23, LAST - 22, 3, 15,
     LAST - 32, LAST - 2, 15, 2},
};

TEST(MovingTimeScale, WrapsAt64Bits) { expectScales(WRAPPING_FACTS); }

struct InvalidFact {
    char const* fact;
    long tMin;
    long tMax;
    unsigned int ticks;
};

InvalidFact const INVALID_FACTS[] = {
    {"two ticks are refused", 0, 10, 2},
    {"one tick is refused", 0, 10, 1},
    {"no ticks are refused", 0, 10, 0},
    {"two ticks for an instant are refused", 5, 5, 2},
    {"a reversed range is refused", 10, 9, 5},
    {"a reversed range before 1970 is refused", -9, -10, 5},
    {"a reversed range from end to end is refused", LAST, FIRST, 5},
    {"a reversed range with two ticks is refused", 10, 9, 2},
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

// An axis from 0 to tMax, with three ticks.
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

// For each step two ranges: the longest that it covers in two intervals, and one second more.
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
    {"majors start at tMin if it is a multiple",
     0,
     100,
     6,
     30,
     2,
     {0, 30, 60, 90},
     {10, 20, 40, 50, 70, 80}},
    {"majors start at the multiple after tMin",
     1,
     100,
     6,
     30,
     2,
     {30, 60, 90},
     {10, 20, 40, 50, 70, 80}},
    {"minor ticks before the first major are listed",
     5,
     105,
     6,
     30,
     2,
     {30, 60, 90},
     {10, 20, 40, 50, 70, 80, 100}},
    {"tMin itself is no minor tick", 10, 110, 6, 30, 2, {30, 60, 90}, {20, 40, 50, 70, 80, 100}},
    {"a minor tick a second after tMin is listed",
     9,
     109,
     6,
     30,
     2,
     {30, 60, 90},
     {10, 20, 40, 50, 70, 80, 100}},
    {"tMax itself is no minor tick", 0, 80, 5, 30, 2, {0, 30, 60}, {10, 20, 40, 50, 70}},
    {"a minor tick a second before tMax is listed",
     0,
     81,
     5,
     30,
     2,
     {0, 30, 60},
     {10, 20, 40, 50, 70, 80}},
    {"tMax itself may be a major",
     0,
     120,
     5,
     30,
     2,
     {0, 30, 60, 90, 120},
     {10, 20, 40, 50, 70, 80, 100, 110}},
    {"minor ticks on both sides of one major are listed", 29, 91, 3, 60, 3, {60}, {30, 45, 75, 90}},
    {"three ticks are enough", 0, 7, 3, 5, 4, {0, 5}, {1, 2, 3, 4, 6}},
};

TEST(MovingTimeAxis, ListsWhatLiesInTheRange) { expectAxes(AXIS_FACTS); }

AxisFact const SECOND_FACTS[] = {
    {"an instant is both majors", 10, 10, 3, 0, MOST, {10, 10}, {}},
    {"the epoch is both majors", 0, 0, 100, 0, MOST, {0, 0}, {}},
    {"two neighbours have no minor tick", 10, 11, 5, 0, 0, {10, 11}, {}},
    {"every second between is a minor tick", 0, 4, 6, 0, 3, {0, 4}, {1, 2, 3}},
    {"every second across 1970 is a minor tick", -2, 3, 7, 0, 4, {-2, 3}, {-1, 0, 1, 2}},
    {"5 s with 7 ticks have step 0", 0, 5, 7, 0, 4, {0, 5}, {1, 2, 3, 4}},
    {"5 s with 6 ticks have step 1", 0, 5, 6, 1, 0, {0, 1, 2, 3, 4, 5}, {}},
    {"step 1 has no minor ticks", 10, 12, 3, 1, 0, {10, 11, 12}, {}},
    {"step 1 has no minor ticks before 1970", -3, -1, 3, 1, 0, {-3, -2, -1}, {}},
    {"6 s with 6 ticks have step 2", 0, 6, 6, 2, 1, {0, 2, 4, 6}, {1, 3, 5}},
    {"the most ticks have step 0", 0, 3, MOST, 0, 2, {0, 3}, {1, 2}},
};

TEST(MovingTimeAxis, FillsEverySecond) {  // KEPT(step-0-fills-every-second)
    expectAxes(SECOND_FACTS);
}

AxisFact const EARLY_AXIS_FACTS[] = {
    {"-100 is rounded up to -90",
     -100,
     0,
     6,
     30,
     2,
     {-90, -60, -30, 0},
     {-80, -70, -50, -40, -20, -10}},
    {"-95 is rounded up to -90",
     -95,
     5,
     6,
     30,
     2,
     {-90, -60, -30, 0},
     {-80, -70, -50, -40, -20, -10}},
    {"-31 is rounded up to -30", -31, 69, 6, 30, 2, {-30, 0, 30, 60}, {-20, -10, 10, 20, 40, 50}},
    {"-1 is rounded up to 0", -1, 99, 6, 30, 2, {0, 30, 60, 90}, {10, 20, 40, 50, 70, 80}},
    {"1 is rounded up to 30", 1, 101, 6, 30, 2, {30, 60, 90}, {10, 20, 40, 50, 70, 80, 100}},
    {"-90 is a multiple and stays",
     -90,
     10,
     6,
     30,
     2,
     {-90, -60, -30, 0},
     {-80, -70, -50, -40, -20, -10}},
};

TEST(MovingTimeAxis, RoundsUpBefore1970) {  // KEPT(axis-is-signed)
    expectAxes(EARLY_AXIS_FACTS);
}

AxisFact const LONELY_FACTS[] = {
    {"a range without a multiple has no ticks", 1, 242, 3, 300, 4, {}, {}},
    {"a multiple at the end has minor ticks before it",
     59,
     300,
     3,
     300,
     4,
     {300},
     {60, 120, 180, 240}},
    {"a multiple at the start has minor ticks after it",
     300,
     541,
     3,
     300,
     4,
     {300},
     {360, 420, 480, 540}},
    {"a range before 1970 without a multiple has no ticks", -242, -1, 3, 300, 4, {}, {}},
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

// An axis from 0 to tMax, with three ticks, and its first three minor ticks.
struct FloatFact {
    char const* fact;
    long tMax;
    unsigned long step;
    Times minors;
};

FloatFact const FLOAT_FACTS[] = {
    {"195 days", 33696000, 16848000, {4212000, 8424000, 12636000}},
    {"a second more than 390 days is lost in a float",
     33696001,
     16848000,
     {4212000, 8424000, 12636000}},
    {"two seconds more than 390 days are lost in a float",
     33696002,
     16848000,
     {4212000, 8424000, 12636000}},
    {"three seconds more than 390 days make the step 196 days",
     33696003,
     16934400,
     {4233600, 8467200, 12700800}},
    {"a second less than 390 days has the same step",
     33695999,
     16848000,
     {4212000, 8424000, 12636000}},
    {"the spacing is rounded to a float",
     172800172800,
     86400172800,
     {21600043008, 43200086016, 64800129024}},
    {"the multiples of the spacing are rounded to floats",
     17280001209600,
     8640000432000,
     {2160000106496, 4320000212992, 6480000450560}},
};

TEST(MovingTimeAxis, CountsInFloats) {  // KEPT(axis-counts-in-floats)
    for (FloatFact const& row : FLOAT_FACTS) {
        SCOPED_TRACE(row.fact);
        Axis const axis = axisOf(0, row.tMax, 3);
        EXPECT_EQ(axis.step, row.step);
        EXPECT_EQ(Times(axis.minors.begin(), axis.minors.begin() + 3), row.minors);
    }
}

// An axis with three ticks. Its times are counted from LONG_MIN or LONG_MAX.
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
    {"the last seconds have a step of 2 s", LAST, -4, 0, 2, 1, {-3, -1}, {-2}},
    {"the seconds before the last have a step of 5 s",
     LAST,
     -7,
     -1,
     5,
     4,
     {-7, -2},
     {-6, -5, -4, -3}},
    {"the last minute ends at the last second",
     LAST,
     -100,
     0,
     60,
     3,
     {-67, -7},
     {-97, -82, -52, -37, -22}},
    {"the last seconds may have no multiple of 300", LAST, -249, -8, 300, 4, {}, {}},
    {"the first seconds have a step of 2 s", FIRST, 0, 4, 2, 1, {0, 2, 4}, {1, 3}},
    {"the first multiple of 5 is 3 s after the first second",
     FIRST,
     0,
     7,
     5,
     4,
     {3},
     {1, 2, 4, 5, 6}},
    {"the first multiple of 60 is 8 s after the first second",
     FIRST,
     0,
     61,
     60,
     3,
     {8},
     {23, 38, 53}},
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
