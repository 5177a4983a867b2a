// The ticks of a chart's time axis, and the texts below them.
#include "chart/time_axis.h"

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "monitor/chart_support.h"
#include "support/random.h"

using namespace monitor;
using monitor_test::NOON;
using monitor_test::WIDEST_CHARACTER;
using testing::ElementsAre;

namespace {

constexpr double AXIS_WIDTH = 696;

TimeAxis axisOf(long from, long to, int offsetSeconds = 0) {
    return timeAxis(from, to, AXIS_WIDTH / static_cast<double>(to - from), offsetSeconds);
}

struct AxisFact {
    char const* fact;
    long from;  // seconds after noon of 2024-03-05, UTC
    long to;
    int offsetSeconds;
    unsigned long minors;
    char const* ticks;  // labels, with their contexts in parentheses
};

AxisFact const AXIS_FACTS[] = {
    // clang-format off
    {"five seconds have a tick each second", 0, 5, 0, 0,
     "12:00:00 (5 Mar 2024), 12:00:01, 12:00:02, 12:00:03, 12:00:04, "
     "12:00:05"},
    {"four seconds have a tick each second", 0, 4, 0, 0,
     "12:00:00 (5 Mar 2024), 12:00:01, 12:00:02, 12:00:03, 12:00:04"},
    {"a minute has a tick each ten seconds", -55, 5, 0, 24,
     "11:59:10 (5 Mar 2024), 11:59:20, 11:59:30, 11:59:40, 11:59:50, "
     "12:00:00"},
    {"labels of whole minutes have no seconds", -555, 45, 0, 29,
     "11:51 (5 Mar 2024), 11:52, 11:53, 11:54, 11:55, 11:56, 11:57, "
     "11:58, 11:59, 12:00"},
    {"six hours have a tick each hour", 0, 21600, 0, 18,
     "12:00 (5 Mar 2024), 13:00, 14:00, 15:00, 16:00, 17:00, 18:00"},
    {"hours are those of the zone", 0, 21600, 19800, 17,
     "18:00 (5 Mar 2024), 19:00, 20:00, 21:00, 22:00, 23:00"},
    {"a new day has its date", 39600, 45000, 0, 36,
     "23:00 (5 Mar 2024), 23:10, 23:20, 23:30, 23:40, 23:50, "
     "00:00 (6 Mar 2024), 00:10, 00:20, 00:30"},
    {"the first date is left out if it touches the next one", 41700, 51300, 0, 21,
     "23:45, 00:00 (6 Mar 2024), 00:15, 00:30, 00:45, 01:00, 01:15, "
     "01:30, 01:45, 02:00, 02:15"},
    {"a day has ticks at multiples of four hours in the zone", 0, 86400, -3600, 17,
     "12:00 (5 Mar 2024), 16:00, 20:00, 00:00 (6 Mar 2024), 04:00, "
     "08:00"},
    {"three days have three ticks a day", 0, 3 * 86400, 0, 26,
     "16:00, 00:00 (6 Mar 2024), 08:00, 16:00, 00:00 (7 Mar 2024), "
     "08:00, 16:00, 00:00 (8 Mar 2024), 08:00"},
    {"days begin at midnight in the zone", 39600, 39600 + 10 * 86400, 3600, 30,
     "6 Mar (2024), 7 Mar, 8 Mar, 9 Mar, 10 Mar, 11 Mar, 12 Mar, "
     "13 Mar, 14 Mar, 15 Mar, 16 Mar"},
    {"11 days have a tick each two days, for labels such as 16 Mar", 0, 11 * 86400, 0, 15,
     "6 Mar (2024), 8 Mar, 10 Mar, 12 Mar, 14 Mar, 16 Mar"},
    {"16 days have a tick each two days, not three", 0, 16 * 86400, 0, 23,
     "6 Mar (2024), 8 Mar, 10 Mar, 12 Mar, 14 Mar, 16 Mar, 18 Mar, "
     "20 Mar"},
    {"30 days have a tick each four days", 0, 30 * 86400, 0, 22,
     "6 Mar (2024), 10 Mar, 14 Mar, 18 Mar, 22 Mar, 26 Mar, 30 Mar, "
     "3 Apr"},
    {"a new year has its number", 295 * 86400, 305 * 86400, 0, 29,
     "26 Dec (2024), 27 Dec, 28 Dec, 29 Dec, 30 Dec, 31 Dec, "
     "1 Jan (2025), 2 Jan, 3 Jan, 4 Jan"},
    // clang-format on
};

TEST(TimeAxisOfAChart, HasLabelsThatSuitItsStep) {
    for (AxisFact const& row : AXIS_FACTS) {
        SCOPED_TRACE(row.fact);
        TimeAxis const axis = axisOf(NOON + row.from, NOON + row.to, row.offsetSeconds);
        std::string ticks;
        for (MajorTick const& tick : axis.majors) {
            ticks += (ticks.empty() ? "" : ", ") + tick.label;
            if (!tick.context.empty()) ticks += " (" + tick.context + ")";
        }
        EXPECT_EQ(ticks, row.ticks);
        EXPECT_EQ(axis.minors.size(), row.minors);
    }
}

TEST(TimeAxisOfAChart, HasItsTicksAtTheTimesOfTheirLabels) {
    TimeAxis const axis = axisOf(NOON, NOON + 21600, 19800);
    std::vector<long> majors;
    for (MajorTick const& tick : axis.majors)
        majors.push_back(tick.time - NOON);
    EXPECT_THAT(majors, ElementsAre(1800, 5400, 9000, 12600, 16200, 19800));
    EXPECT_EQ(axis.minors.front() - NOON, 900);
    EXPECT_EQ(axis.minors.back() - NOON, 20700);
}

// No text of a row touches the next one, even in a very wide font.
void expectRoom(std::vector<MajorTick> const& ticks, std::string MajorTick::*row,
                double unitsPerSecond) {
    MajorTick const* previous = nullptr;
    for (MajorTick const& tick : ticks) {
        if ((tick.*row).empty()) continue;
        if (previous != nullptr) {
            double const distance =
                static_cast<double>(tick.time - previous->time) * unitsPerSecond;
            double const characters =
                static_cast<double>((tick.*row).size() + (previous->*row).size()) / 2;
            // A gap of the font's size remains.
            ASSERT_GE(distance, (characters * WIDEST_CHARACTER + 1) * AXIS_FONT_SIZE)
                << previous->*row << " and " << tick.*row;
        }
        previous = &tick;
    }
}

void expectGoodAxis(long end, long window, int offsetSeconds) {
    SCOPED_TRACE(testing::Message()
                 << "window " << window << " end " << end << " offset " << offsetSeconds);
    double const unitsPerSecond = AXIS_WIDTH / static_cast<double>(window);
    for (long const from :
         {end - window,
          end - window + 1}) {  // as for a time without and with a fraction of a second
        TimeAxis const axis = timeAxis(from, end, unitsPerSecond, offsetSeconds);
        ASSERT_GE(axis.majors.size(), 2);
        ASSERT_LE(axis.majors.size(), 13);
        ASSERT_FALSE(axis.majors.back().label.empty());
        auto const isEarlier = [](MajorTick const& a, MajorTick const& b) {
            return a.time < b.time;
        };
        ASSERT_TRUE(std::is_sorted(axis.majors.begin(), axis.majors.end(), isEarlier));
        ASSERT_GE(axis.majors.front().time, from);
        ASSERT_LE(axis.majors.back().time, end);
        ASSERT_TRUE(std::is_sorted(axis.minors.begin(), axis.minors.end()));
        if (!axis.minors.empty()) {
            ASSERT_GT(axis.minors.front(), from);
            ASSERT_LT(axis.minors.back(), end);
        }
        ASSERT_NO_FATAL_FAILURE(expectRoom(axis.majors, &MajorTick::label, unitsPerSecond));
        ASSERT_NO_FATAL_FAILURE(expectRoom(axis.majors, &MajorTick::context, unitsPerSecond));
        ASSERT_EQ(std::count_if(axis.majors.begin(), axis.majors.end(),
                                [](MajorTick const& tick) { return !tick.context.empty(); }) > 0,
                  true);
    }
}

TEST(TimeAxisOfAChart, HasRoomForItsLabelsFromFiveSecondsToThirtyDays) {
    std::mt19937_64 random = testing_support::randomEngine();
    for (long window = 5; window <= 2592000; window += 1 + window / 200) {
        long const end = NOON + static_cast<long>(random() % (4UL * 366 * 86400));
        int const offset = (static_cast<int>(random() % 113) - 56) * 900;
        ASSERT_NO_FATAL_FAILURE(expectGoodAxis(end, window, offset));
    }
    for (long const window : {60, 600, 3600, 21600, 86400, 604800, 2592000}) {
        for (long end = NOON; end < NOON + 2 * window; end += 1 + window / 37)
            ASSERT_NO_FATAL_FAILURE(expectGoodAxis(end, window, 0));
    }
}

}  // namespace
