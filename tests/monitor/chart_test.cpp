// A chart as areas, lines and texts: chart.cpp and chart_lines.cpp, which only chart.cpp calls.
// What the file of a chart contains is in chart.bats.
#include "chart/chart.h"

#include <chrono>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "monitor/chart_support.h"
#include "monitor/readings_support.h"
#include "support/locales.h"
#include "support/random.h"

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;
using namespace monitor;
using namespace std::chrono_literals;
using monitor_test::NOON;
using monitor_test::null;
using monitor_test::readingAt;
using monitor_test::WIDEST_CHARACTER;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// The program leaves the locale at "C". The suite also runs under others.
class DrawingOfAChart : public testing::Test {
    testing_support::ScopedLocale locale_{"C"};
};

constexpr char const* TITLE = "Processor, memory and disk in use";

Drawing chartOf(History const& history, int offsetSeconds) {
    return drawChart(history, offsetSeconds, TITLE);
}

History historyOf(std::vector<Reading> const& readings, std::chrono::seconds window = 60s) {
    History history(window);
    for (Reading const& reading : readings)
        history.add(reading);
    return history;
}

std::vector<std::string> textsOf(Drawing const& drawing, double size) {
    std::vector<std::string> texts;
    for (Drawing::Text const& text : drawing.texts) {
        if (text.size == size) texts.push_back(text.text);
    }
    return texts;
}

// The lines of a role, without dots and marks, and without the last one, which leads to the last
// value.
std::vector<Drawing::Line> pathsOf(Drawing const& drawing, MonitorChartRole role) {
    std::vector<Drawing::Line> lines;
    for (Drawing::Line const& line : drawing.lines) {
        bool const isPath = line.stroke.width != 7 && line.stroke.width != 3;
        if (line.role == role && isPath) lines.push_back(line);
    }
    if (!lines.empty()) lines.pop_back();
    return lines;
}

std::vector<Point> dotsOf(Drawing const& drawing, MonitorChartRole role) {
    std::vector<Point> dots;
    for (Drawing::Line const& line : drawing.lines) {
        if (line.role == role && line.stroke.width == 7) dots.push_back(line.points[0]);
    }
    return dots;
}

MATCHER_P2(IsAt, x, y, "") { return std::abs(arg.x - x) < 1e-6 && std::abs(arg.y - y) < 1e-6; }

TEST_F(DrawingOfAChart, SaysThatThereIsNoReading) {
    Drawing const drawing = chartOf(History(60s), 0);
    EXPECT_EQ(drawing.title, TITLE);
    EXPECT_EQ(drawing.description, "A line chart without a reading.");
    EXPECT_THAT(textsOf(drawing, 20), ElementsAre(drawing.title));
    EXPECT_THAT(textsOf(drawing, 13), ElementsAre("no readings"));
    EXPECT_THAT(textsOf(drawing, 12), ElementsAre("0 %", "25 %", "50 %", "75 %", "100 %"));
    EXPECT_THAT(drawing.areas, IsEmpty());
    EXPECT_EQ(drawing.lines.size(), 5);
}

TEST_F(DrawingOfAChart, EndsAtTheLatestReading) {
    Drawing const drawing = chartOf(
        historyOf({readingAt(NOON, 0.0F, 25.0F, 0.0F), readingAt(NOON + 30, 100.0F, 50.0F, 75.0F),
                   readingAt(NOON + 60, 50.0F, 50.0F, 100.0F)}),
        0);
    EXPECT_EQ(drawing.width, 960);
    EXPECT_EQ(drawing.height, 400);
    auto const cpu = pathsOf(drawing, MONITOR_CHART_PROCESSOR);
    ASSERT_EQ(cpu.size(), 1);
    EXPECT_THAT(cpu[0].points, ElementsAre(IsAt(64, 336), IsAt(412, 84), IsAt(760, 210)));
    EXPECT_EQ(cpu[0].stroke.gap, 0);
    auto const memory = pathsOf(drawing, MONITOR_CHART_MEMORY);
    ASSERT_EQ(memory.size(), 1);
    EXPECT_THAT(memory[0].points, ElementsAre(IsAt(64, 273), IsAt(412, 210), IsAt(760, 210)));
    EXPECT_GT(memory[0].stroke.dash, 0);
    auto const disk = pathsOf(drawing, MONITOR_CHART_DISK);
    ASSERT_EQ(disk.size(), 1);
    EXPECT_THAT(disk[0].points, ElementsAre(IsAt(64, 336), IsAt(412, 147), IsAt(760, 84)));
    EXPECT_GT(disk[0].stroke.gap, disk[0].stroke.dash);
    EXPECT_THAT(dotsOf(drawing, MONITOR_CHART_PROCESSOR), ElementsAre(IsAt(760, 210)));
    ASSERT_EQ(drawing.areas.size(), 1);
    EXPECT_EQ(drawing.areas[0].role, MONITOR_CHART_PROCESSOR);
    EXPECT_THAT(drawing.areas[0].points, ElementsAre(IsAt(64, 336), IsAt(412, 84), IsAt(760, 210),
                                                     IsAt(760, 336), IsAt(64, 336)));
}

TEST_F(DrawingOfAChart, ShowsTheLastValuesBesideTheirLines) {
    Drawing const drawing = chartOf(historyOf({readingAt(NOON, 12.34F, null(), 100.0F)}), 3600);
    EXPECT_THAT(textsOf(drawing, 14),
                ElementsAre("cpu", "12.3 %", "memory", "null", "disk", "100.0 %"));
    EXPECT_THAT(textsOf(drawing, 13), ElementsAre("1 minute to 13:00:00 UTC+01:00"));
    EXPECT_EQ(drawing.description,
              "A line chart of 1 reading, the last at 2024-03-05T13:00:00.000+0100, over 1 minute. "
              "In percent: cpu from 12.3 to 12.3, last 12.3; memory without a value; "
              "disk from 100.0 to 100.0, last 100.0.");
}

TEST_F(DrawingOfAChart, DescribesRangesAndValuesThatBecameNull) {
    Drawing const drawing =
        chartOf(historyOf({readingAt(NOON, 20.0F), readingAt(NOON + 1, 5.0F),
                           readingAt(NOON + 2, 10.0F), readingAt(NOON + 3, null(), 39.5F)}),
                0);
    EXPECT_EQ(drawing.description,
              "A line chart of 4 readings, the last at 2024-03-05T12:00:03.000Z, over 1 minute. "
              "In percent: cpu from 5.0 to 20.0, last null; memory from 39.5 to 40.0, last 39.5; "
              "disk from 70.0 to 70.0, last 70.0.");
}

struct SubtitleFact {
    long window;
    int offsetSeconds;
    char const* subtitle;
};

SubtitleFact const SUBTITLE_FACTS[] = {
    {5, 0, "5 seconds to 12:00:00 UTC"},
    {59, 3540, "59 seconds to 12:59:00 UTC+00:59"},
    {60, -3600, "1 minute to 11:00:00 UTC-01:00"},
    {61, 35999, "61 seconds to 21:59:59 UTC+09:59"},
    {90 * 60, 36000, "90 minutes to 22:00:00 UTC+10:00"},
    {3600, -19800, "1 hour to 06:30:00 UTC-05:30"},
    {86399, 0, "86399 seconds to 12:00:00 UTC"},
    {86400, 86340, "1 day to 6 Mar 2024, 11:59 UTC+23:59"},
    {90000, 0, "25 hours to 5 Mar 2024, 12:00 UTC"},
    {2592000, 0, "30 days to 5 Mar 2024, 12:00 UTC"},
};

TEST_F(DrawingOfAChart, ShowsItsWindowAndZone) {
    for (SubtitleFact const& row : SUBTITLE_FACTS) {
        Drawing const drawing = chartOf(historyOf({readingAt(xtime_t(NOON, 999'000'000), 1.0F)},
                                                  std::chrono::seconds(row.window)),
                                        row.offsetSeconds);
        EXPECT_THAT(textsOf(drawing, 13), ElementsAre(row.subtitle));
    }
}

TEST_F(DrawingOfAChart, InterruptsALineWhereThereIsNoValue) {
    Drawing const drawing = chartOf(
        historyOf({readingAt(NOON, 0.0F), readingAt(NOON + 10, 0.0F), readingAt(NOON + 20, null()),
                   readingAt(NOON + 30, 100.0F), readingAt(NOON + 40, null()),
                   readingAt(NOON + 50, 50.0F), readingAt(NOON + 60, 50.0F)}),
        0);
    auto const cpu = pathsOf(drawing, MONITOR_CHART_PROCESSOR);
    ASSERT_EQ(cpu.size(), 2);
    EXPECT_THAT(cpu[0].points, ElementsAre(IsAt(64, 336), IsAt(180, 336)));
    EXPECT_THAT(cpu[1].points, ElementsAre(IsAt(644, 210), IsAt(760, 210)));
    // A single value is a dot, and so is the last value.
    EXPECT_THAT(dotsOf(drawing, MONITOR_CHART_PROCESSOR),
                ElementsAre(IsAt(412, 84), IsAt(760, 210)));
    EXPECT_EQ(pathsOf(drawing, MONITOR_CHART_MEMORY).size(), 1);
    EXPECT_EQ(drawing.areas.size(), 2);
}

TEST_F(DrawingOfAChart, InterruptsALineWhereReadingsAreMissing) {
    struct {
        std::vector<long> seconds;
        unsigned long paths;
    } const facts[] = {
        {{0, 2, 4, 6, 8}, 1},         {{0, 2, 4, 6, 8, 13, 15}, 1},  // one is late or missing
        {{0, 2, 4, 6, 8, 14, 16}, 2}, {{0, 2, 4, 50, 52, 54}, 2},   {{0, 60}, 1},
    };
    for (auto const& [seconds, paths] : facts) {
        std::vector<Reading> readings;
        for (long const second : seconds)
            readings.push_back(readingAt(NOON + second, 1.0F));
        Drawing const drawing = chartOf(historyOf(readings), 0);
        EXPECT_EQ(pathsOf(drawing, MONITOR_CHART_PROCESSOR).size(), paths) << seconds.back();
    }
}

TEST_F(DrawingOfAChart, HasNoDotForALineThatEndsBeforeTheEdge) {
    Drawing const drawing = chartOf(historyOf({readingAt(NOON, 0.0F), readingAt(NOON + 30, 50.0F),
                                               readingAt(NOON + 60, null())}),
                                    0);
    EXPECT_THAT(dotsOf(drawing, MONITOR_CHART_PROCESSOR), IsEmpty());
    EXPECT_THAT(dotsOf(drawing, MONITOR_CHART_MEMORY), ElementsAre(IsAt(760, 235.2)));
}

TEST_F(DrawingOfAChart, ShowsTheMeanOfReadingsOfOneMomentOnABand) {
    History const history =
        historyOf({readingAt(NOON, 0.0F), readingAt(NOON + 1, 100.0F), readingAt(NOON + 2, 50.0F),
                   readingAt(NOON + 3600, 0.0F), readingAt(NOON + 3601, 75.0F)},
                  7200s);
    Drawing const drawing = chartOf(history, 0);
    auto const cpu = pathsOf(drawing, MONITOR_CHART_PROCESSOR);
    ASSERT_EQ(cpu.size(), 1);
    double const start = 760 - 3599 * 696 / 7200.0;
    // The line ends at the mean. The last reading, 75 %, is a dot.
    EXPECT_THAT(cpu[0].points, ElementsAre(IsAt(start, 210), IsAt(760, 241.5)));
    EXPECT_THAT(dotsOf(drawing, MONITOR_CHART_PROCESSOR), ElementsAre(IsAt(760, 147)));
    // There is no second shade below the line.
    ASSERT_EQ(drawing.areas.size(), 1);
    EXPECT_THAT(drawing.areas[0].points,
                ElementsAre(IsAt(start, 84), IsAt(760, 147), IsAt(760, 336), IsAt(start, 336)));
    EXPECT_THAT(textsOf(drawing, 12),
                testing::Contains("line: mean, band: lowest to highest, dot: last reading"));
    EXPECT_THAT(drawing.description, testing::StartsWith("A line chart of 5 readings, "));
    EXPECT_THAT(drawing.description, testing::HasSubstr("cpu from 0.0 to 100.0, last 75.0;"));
}

TEST_F(DrawingOfAChart, HasNoNotesWithoutABandOrAMark) {
    Drawing const drawing =
        chartOf(historyOf({readingAt(NOON, 0.0F), readingAt(NOON + 60, 100.0F)}), 0);
    for (char const* const note : {"band", "cut off"}) {
        EXPECT_THAT(textsOf(drawing, 12), testing::Each(testing::Not(testing::HasSubstr(note))));
    }
}

// Marks of values above 100 %: lines of width 3, each with an arrow.
std::vector<Drawing::Line> marksOf(Drawing const& drawing) {
    std::vector<Drawing::Line> marks;
    for (Drawing::Line const& line : drawing.lines) {
        if (line.stroke.width == 3) marks.push_back(line);
    }
    return marks;
}

TEST_F(DrawingOfAChart, MarksEachStretchOfValuesAbove100Percent) {
    std::vector<Reading> readings;
    float const disks[] = {100, 100.1F, 101, 100.5F, 100, 100, 102};
    for (long i = 0; i < 7; ++i)
        readings.push_back(readingAt(NOON + 10 * i, 1.0F, 1.0F, disks[i]));
    Drawing const drawing = chartOf(historyOf(readings), 0);
    auto const marks = marksOf(drawing);
    ASSERT_EQ(marks.size(), 2);
    EXPECT_EQ(marks[0].role, MONITOR_CHART_DISK);
    EXPECT_THAT(marks[0].points, ElementsAre(IsAt(180, 79), IsAt(412, 79)));
    EXPECT_THAT(marks[1].points, ElementsAre(IsAt(760, 79), IsAt(760, 79)));
    // The arrows are at the highest values, and one is in the note.
    std::vector<double> tips;
    for (Drawing::Area const& area : drawing.areas) {
        if (area.points.size() == 3) tips.push_back(area.points[1].x);
    }
    ASSERT_EQ(tips.size(), 3);
    EXPECT_NEAR(tips[0], 296, 1e-6);
    EXPECT_NEAR(tips[1], 760, 1e-6);
    EXPECT_THAT(textsOf(drawing, 12), testing::Contains("above 100 %, cut off"));
    EXPECT_THAT(drawing.description, testing::HasSubstr("disk from 100.0 to 102.0, last 102.0"));
}

TEST_F(DrawingOfAChart, HasNoMarkAt100Percent) {
    Drawing const drawing =
        chartOf(historyOf({readingAt(NOON, 100.0F), readingAt(NOON + 60, 100.0F)}), 0);
    EXPECT_THAT(marksOf(drawing), IsEmpty());
}

TEST_F(DrawingOfAChart, HasASmallerFontForALongTitle) {
    struct {
        std::string title;
        double size;
    } const facts[] = {
        {"a", 20},
        {std::string(67, 'a'), 20},
        {std::string(100, 'a'), 912 / 68.0},
        {"\xe2\x82\xac", 20},
    };
    for (auto const& [title, size] : facts) {
        SCOPED_TRACE(title);
        Drawing const drawing = drawChart(History(60s), 0, title);
        EXPECT_EQ(drawing.title, title);
        EXPECT_NEAR(drawing.texts[5].size, size, 1e-6);
        EXPECT_EQ(drawing.texts[5].text, title);
    }
}

TEST_F(DrawingOfAChart, KeepsValuesWithinTheChart) {
    Drawing const drawing =
        chartOf(historyOf({readingAt(NOON, -5.0F), readingAt(NOON + 60, 250.0F)}), 0);
    auto const cpu = pathsOf(drawing, MONITOR_CHART_PROCESSOR);
    ASSERT_EQ(cpu.size(), 1);
    EXPECT_THAT(cpu[0].points, ElementsAre(IsAt(64, 336), IsAt(760, 84)));
}

struct SpreadFact {
    char const* fact;
    float processor, memory, disk;
    double heights[3];  // of the three names, above the lower edge
};

// 252 units are 100 percent, and names are 24 apart.
SpreadFact const SPREAD_FACTS[] = {
    {"names that are far apart are at their values", 0, 50, 100, {0, 126, 252}},
    {"names 25.2 units apart are at their values", 0, 50, 60, {0, 126, 151.2}},
    {"equal values in the middle: later names move down", 50, 50, 50, {126, 102, 78}},
    {"equal values at the top: later names move down", 100, 100, 100, {252, 228, 204}},
    {"equal values at the bottom: earlier names move up", 0, 0, 0, {48, 24, 0}},
    {"names that move keep the order of their values", 1, 3, 2, {0, 48, 24}},
};

TEST_F(DrawingOfAChart, KeepsNamesApart) {
    for (SpreadFact const& row : SPREAD_FACTS) {
        SCOPED_TRACE(row.fact);
        Drawing const drawing =
            chartOf(historyOf({readingAt(NOON, row.processor, row.memory, row.disk)}), 0);
        std::vector<double> heights;
        for (Drawing::Text const& text : drawing.texts) {
            if (text.size == 14 && text.anchor == MONITOR_CHART_START) {
                heights.push_back(336 + 14 * 0.36 - text.place.y);
            }
        }
        ASSERT_EQ(heights.size(), 3);
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(heights[i], row.heights[i], 1e-4);
    }
}

TEST_F(DrawingOfAChart, StaysWithinThePicture) {
    std::mt19937_64 random = testing_support::randomEngine();
    auto const percent = [&] { return Variant(static_cast<float>(random() % 1101) / 10); };
    for (long window = 5; window <= 2592000; window = window * 3 / 2 + 1) {
        SCOPED_TRACE(window);
        History history{std::chrono::seconds(window)};
        for (long i = 0; i < 100; ++i) {
            xtime_t const time(NOON + i * window / 90,
                               static_cast<unsigned int>(random() % 1000) * 1'000'000);
            history.add(readingAt(time, percent(), percent(), percent()));
        }
        Drawing const drawing = chartOf(history, 19800);
        for (Drawing::Line const& line : drawing.lines) {
            for (Point const& point : line.points) {
                ASSERT_TRUE(point.x >= 64 && point.x <= 800) << point.x;
                ASSERT_TRUE(point.y >= 79 && point.y <= 344) << point.y;
            }
        }
        for (Drawing::Text const& text : drawing.texts) {
            double const width =
                static_cast<double>(text.text.size()) * text.size * WIDEST_CHARACTER;
            double const left = text.place.x - width * static_cast<unsigned int>(text.anchor) / 2;
            ASSERT_GE(left, 4) << text.text;
            ASSERT_LE(left + width, 956) << text.text;
            ASSERT_LE(text.place.y, 396) << text.text;
        }
    }
}

}  // namespace
