// The readings that a chart shows.
#include "chart/history.h"

#include <chrono>
#include <limits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "chart/chart.h"
#include "monitor/chart_support.h"
#include "monitor/readings_support.h"

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;
using namespace monitor;
using namespace std::chrono_literals;
using monitor_test::NOON;
using monitor_test::null;
using monitor_test::readingAt;
using testing::ElementsAre;

namespace {

std::vector<double> timesOf(History const& history) {
    std::vector<double> times;
    for (Moment const& moment : history.moments())
        times.push_back(moment.time);
    return times;
}

TEST(WindowOfReadings, IsEmptyAtFirst) {
    History const history(60s);
    EXPECT_EQ(history.window(), 60s);
    EXPECT_TRUE(history.moments().empty());
    EXPECT_FALSE(history.latest().time.isSet());
}

TEST(WindowOfReadings, EndsWithTheLatestReading) {
    History history(60s);
    for (long const second : {0, 1, 30, 60, 61})
        history.add(readingAt(NOON + second, 1.0F));
    EXPECT_THAT(timesOf(history), ElementsAre(NOON + 1, NOON + 30, NOON + 60, NOON + 61));
    EXPECT_EQ(history.latest().time, xtime_t(NOON + 61));
}

TEST(WindowOfReadings, LosesReadingsThatAreLaterThanTheLatest) {
    History history(60s);
    for (long const second : {0, 10, 20, 10})
        history.add(readingAt(NOON + second, 1.0F));
    EXPECT_THAT(timesOf(history), ElementsAre(NOON, NOON + 10));
    EXPECT_EQ(history.moments().back().readings, 2);
    history.add(readingAt(NOON - 1, 1.0F));
    EXPECT_THAT(timesOf(history), ElementsAre(NOON - 1));
}

TEST(WindowOfReadings, HasOneMomentForReadingsInOnePart) {
    History history(3600s);  // parts of 10 s
    struct {
        long second;
        Variant processor;
    } const readings[] = {
        {0, 30.0F}, {5, 10.0F}, {9, 20.0F}, {10, 50.0F}, {11, null()}, {20, null()},
    };
    for (auto const& [second, processor] : readings)
        history.add(readingAt(NOON + second, processor));
    ASSERT_THAT(timesOf(history), ElementsAre(NOON + 9, NOON + 11, NOON + 20));

    Moment const& several = history.moments()[0];
    EXPECT_EQ(several.readings, 3);
    EXPECT_EQ(several.values[PROCESSOR].count, 3);
    EXPECT_EQ(several.values[PROCESSOR].low, 10);
    EXPECT_EQ(several.values[PROCESSOR].high, 30);
    EXPECT_EQ(several.values[PROCESSOR].sum, 60);
    EXPECT_EQ(several.values[PROCESSOR].last, 20);
    EXPECT_EQ(several.values[MEMORY].last, 40);
    EXPECT_EQ(several.values[DISK].last, 70);

    Moment const& oneIsNull = history.moments()[1];
    EXPECT_EQ(oneIsNull.readings, 2);
    EXPECT_EQ(oneIsNull.values[PROCESSOR].count, 1);
    EXPECT_EQ(oneIsNull.values[PROCESSOR].low, 50);
    EXPECT_EQ(oneIsNull.values[PROCESSOR].last, 50);
    EXPECT_EQ(oneIsNull.values[MEMORY].count, 2);

    EXPECT_EQ(history.moments()[2].readings, 1);
    EXPECT_EQ(history.moments()[2].values[PROCESSOR].count, 0);
}

TEST(WindowOfReadings, CountsNanoseconds) {
    History history(5s);
    history.add(readingAt(xtime_t(NOON, 250'000'000), 1.0F));
    EXPECT_THAT(timesOf(history), ElementsAre(NOON + 0.25));
}

TEST(WindowOfReadings, HasAtMostOneMomentMoreThanParts) {
    History history(5s);
    for (unsigned int millisecond = 0; millisecond < 20'000; ++millisecond) {
        history.add(
            readingAt(xtime_t(NOON + millisecond / 1000, millisecond % 1000 * 1'000'000), 1.0F));
        ASSERT_LE(history.moments().size(), History::MOMENTS + 1);
    }
    EXPECT_GE(history.moments().size(), History::MOMENTS);
}

TEST(WindowOfReadings, ReplacesImpossibleTimesByTheLimits) {
    struct {
        long second;
        double time;
    } const facts[] = {
        {-1, 0},
        {0, 0},
        {1, 1},
        {253402300798, 253402300798},
        {253402300799, 253402300799},
        {253402300800, 253402300799},
        {std::numeric_limits<long>::max(), 253402300799},
        {std::numeric_limits<long>::min(), 0},
    };
    for (auto const& [second, time] : facts) {
        SCOPED_TRACE(second);
        History history(60s);
        history.add(readingAt(second, 1.0F));
        EXPECT_THAT(timesOf(history), ElementsAre(time));
        EXPECT_FALSE(drawChart(history, 86340, "title").lines.empty());
    }
}

}  // namespace
