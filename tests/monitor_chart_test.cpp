// What examples/monitor draws, as lines and texts at places. What becomes of them in a file is in
// monitor_chart.bats.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime.h>

#include "chart.h"
#include "history.h"
#include "option_values.h"
#include "support/locales.h"
#include "support/random.h"
#include "time_axis.h"

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;
using namespace monitor;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// ---- the texts of options

struct WindowFact {
    char const* text;
    std::optional<std::chrono::seconds> window;
};

WindowFact const WINDOW_FACTS[] = {
    {"4", std::nullopt},
    {"5", 5s},
    {"6", 6s},
    {"60", 60s},
    {"2591999", 2591999s},
    {"2592000", 2592000s},
    {"2592001", std::nullopt},
    {"5.5", std::nullopt},
    {"-5", std::nullopt},
    {"", std::nullopt},
    {"1 hour", std::nullopt},
};

TEST(MonitorChart, ReadsAWindow) {
    for (WindowFact const& row : WINDOW_FACTS) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(parseWindow(row.text), row.window);
    }
}

struct FormatFact {
    char const* file;
    char const* format;
};

FormatFact const FORMAT_FACTS[] = {
    {"load.svg", "svg"},
    {"load.SVG", "svg"},
    {"a.b/load.az09AZ", "az09az"},
    {"load.tar.png", "png"},
    {"/charts/.load.svg", "svg"},
    {"load", ""},
    {"load.", ""},
    {".svg", ""},
    {"folder/.svg", ""},
    {"folder.svg/load", ""},
    {"folder.svg/", ""},
    {"load.s vg", ""},
    {"load.svg~", ""},
    {"load.@", ""},
    {"load.[", ""},
    {"load.`", ""},
    {"load.{", ""},
    {"load./", ""},
    {"load.:", ""},
    {"", ""},
};

TEST(MonitorChart, TakesTheFormatFromTheNameOfTheFile) {
    for (FormatFact const& row : FORMAT_FACTS) {
        SCOPED_TRACE(row.file);
        EXPECT_EQ(formatOf(row.file), row.format);
        std::optional<std::string> const file = parseChartFile(row.file);
        EXPECT_EQ(file.has_value(), row.format[0] != '\0');
        EXPECT_EQ(file.value_or(row.file), row.file);
    }
}

TEST(MonitorChart, ReadsATheme) {
    EXPECT_EQ(parseTheme("light"), MONITOR_CHART_LIGHT);
    EXPECT_EQ(parseTheme("dark"), MONITOR_CHART_DARK);
    for (char const* const text : {"", "Light", "either", "dark "})
        EXPECT_EQ(parseTheme(text), std::nullopt) << text;
}

// ---- readings of a window

constexpr long NOON = 1709640000;  // 2024-03-05T12:00:00Z

Variant null() {
    Variant value;
    value.makeNull();
    return value;
}

Reading readingAt(xtime_t time, Variant const& processor, Variant const& memory = 40.0F,
                  Variant const& disk = 70.0F) {
    return {time, processor, memory, disk, 1UL, 1.0F, 0};
}

std::vector<double> timesOf(History const& history) {
    std::vector<double> times;
    for (Moment const& moment : history.moments())
        times.push_back(moment.time);
    return times;
}

TEST(MonitorHistory, HasNothingAtFirst) {
    History const history(60s);
    EXPECT_EQ(history.window(), 60s);
    EXPECT_TRUE(history.moments().empty());
    EXPECT_FALSE(history.latest().time.isSet());
}

TEST(MonitorHistory, KeepsTheWindowBeforeTheLatestReading) {
    History history(60s);
    for (long const second : {0, 1, 30, 60, 61})
        history.add(readingAt(NOON + second, 1.0F));
    EXPECT_THAT(timesOf(history), ElementsAre(NOON + 1, NOON + 30, NOON + 60, NOON + 61));
    EXPECT_EQ(history.latest().time, xtime_t(NOON + 61));
}

TEST(MonitorHistory, ForgetsWhatIsLaterThanTheClock) {
    History history(60s);
    for (long const second : {0, 10, 20, 10})
        history.add(readingAt(NOON + second, 1.0F));
    EXPECT_THAT(timesOf(history), ElementsAre(NOON, NOON + 10));
    EXPECT_EQ(history.moments().back().readings, 2);
    history.add(readingAt(NOON - 1, 1.0F));
    EXPECT_THAT(timesOf(history), ElementsAre(NOON - 1));
}

TEST(MonitorHistory, GathersReadingsOfOnePartOfTheWindow) {
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

TEST(MonitorHistory, CountsNanoseconds) {
    History history(5s);
    history.add(readingAt(xtime_t(NOON, 250'000'000), 1.0F));
    EXPECT_THAT(timesOf(history), ElementsAre(NOON + 0.25));
}

TEST(MonitorHistory, HasNoMoreMomentsThanPartsAndOne) {
    History history(5s);
    for (unsigned int millisecond = 0; millisecond < 20'000; ++millisecond) {
        history.add(
            readingAt(xtime_t(NOON + millisecond / 1000, millisecond % 1000 * 1'000'000), 1.0F));
        ASSERT_LE(history.moments().size(), History::MOMENTS + 1);
    }
    EXPECT_GE(history.moments().size(), History::MOMENTS);
}

TEST(MonitorHistory, MovesImpossibleTimesToTheLimits) {
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
        EXPECT_FALSE(drawChart(history, 86340).lines.empty());
    }
}

// ---- the time axis

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
    char const* ticks;  // labels, with what stands below them
};

AxisFact const AXIS_FACTS[] = {
    // clang-format off
    {"every second", 0, 5, 0, 0,
     "12:00:00 (5 Mar 2024), 12:00:01, 12:00:02, 12:00:03, 12:00:04, "
     "12:00:05"},
    {"four whole seconds", 0, 4, 0, 0,
     "12:00:00 (5 Mar 2024), 12:00:01, 12:00:02, 12:00:03, 12:00:04"},
    {"every ten seconds", -55, 5, 0, 24,
     "11:59:10 (5 Mar 2024), 11:59:20, 11:59:30, 11:59:40, 11:59:50, "
     "12:00:00"},
    {"minutes have no seconds", -555, 45, 0, 29,
     "11:51 (5 Mar 2024), 11:52, 11:53, 11:54, 11:55, 11:56, 11:57, "
     "11:58, 11:59, 12:00"},
    {"hours", 0, 21600, 0, 18,
     "12:00 (5 Mar 2024), 13:00, 14:00, 15:00, 16:00, 17:00, 18:00"},
    {"a zone's own hours", 0, 21600, 19800, 17,
     "18:00 (5 Mar 2024), 19:00, 20:00, 21:00, 22:00, 23:00"},
    {"a new day", 39600, 45000, 0, 36,
     "23:00 (5 Mar 2024), 23:10, 23:20, 23:30, 23:40, 23:50, "
     "00:00 (6 Mar 2024), 00:10, 00:20, 00:30"},
    {"a new day needs the room", 41700, 51300, 0, 21,
     "23:45, 00:00 (6 Mar 2024), 00:15, 00:30, 00:45, 01:00, 01:15, "
     "01:30, 01:45, 02:00, 02:15"},
    {"a day, in a zone", 0, 86400, -3600, 17,
     "12:00 (5 Mar 2024), 16:00, 20:00, 00:00 (6 Mar 2024), 04:00, "
     "08:00"},
    {"thirds of days", 0, 3 * 86400, 0, 26,
     "16:00, 00:00 (6 Mar 2024), 08:00, 16:00, 00:00 (7 Mar 2024), "
     "08:00, 16:00, 00:00 (8 Mar 2024), 08:00"},
    {"days of a zone", 39600, 39600 + 10 * 86400, 3600, 30,
     "6 Mar (2024), 7 Mar, 8 Mar, 9 Mar, 10 Mar, 11 Mar, 12 Mar, "
     "13 Mar, 14 Mar, 15 Mar, 16 Mar"},
    {"a day's label may be long", 0, 11 * 86400, 0, 15,
     "6 Mar (2024), 8 Mar, 10 Mar, 12 Mar, 14 Mar, 16 Mar"},
    {"two days, and not three", 0, 16 * 86400, 0, 23,
     "6 Mar (2024), 8 Mar, 10 Mar, 12 Mar, 14 Mar, 16 Mar, 18 Mar, "
     "20 Mar"},
    {"thirty days", 0, 30 * 86400, 0, 22,
     "6 Mar (2024), 10 Mar, 14 Mar, 18 Mar, 22 Mar, 26 Mar, 30 Mar, "
     "3 Apr"},
    {"a new year", 295 * 86400, 305 * 86400, 0, 29,
     "26 Dec (2024), 27 Dec, 28 Dec, 29 Dec, 30 Dec, 31 Dec, "
     "1 Jan (2025), 2 Jan, 3 Jan, 4 Jan"},
    // clang-format on
};

TEST(MonitorTimeAxis, ShowsWhatItsStepTellsApart) {
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

TEST(MonitorTimeAxis, HasItsTicksWhereTheirLabelsSay) {
    TimeAxis const axis = axisOf(NOON, NOON + 21600, 19800);
    std::vector<long> majors;
    for (MajorTick const& tick : axis.majors)
        majors.push_back(tick.time - NOON);
    EXPECT_THAT(majors, ElementsAre(1800, 5400, 9000, 12600, 16200, 19800));
    EXPECT_EQ(axis.minors.front() - NOON, 900);
    EXPECT_EQ(axis.minors.back() - NOON, 20700);
}

// No text of a row touches the next, if a character is as wide as in no usual font.
constexpr double CHARACTER = 0.62;

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
            // A blank of the font's size remains.
            ASSERT_GE(distance, (characters * CHARACTER + 1) * AXIS_FONT_SIZE)
                << previous->*row << " and " << tick.*row;
        }
        previous = &tick;
    }
}

void expectGoodAxis(long end, long window, int offsetSeconds) {
    SCOPED_TRACE(testing::Message()
                 << "window " << window << " end " << end << " offset " << offsetSeconds);
    double const unitsPerSecond = AXIS_WIDTH / static_cast<double>(window);
    for (long const from : {end - window, end - window + 1}) {  // with and without a fraction
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

TEST(MonitorTimeAxis, HasRoomForItsLabelsFromFiveSecondsToThirtyDays) {
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

// ---- the picture

// The program leaves the locale at C; a test may run under another.
class MonitorDrawing : public testing::Test {
    testing_support::ScopedLocale locale_{"C"};
};

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

// Lines of a role that are no dots, without the last, which leads to the value beside the chart.
std::vector<Drawing::Line> pathsOf(Drawing const& drawing, MonitorChartRole role) {
    std::vector<Drawing::Line> lines;
    for (Drawing::Line const& line : drawing.lines) {
        if (line.role == role && line.stroke.width != 7) lines.push_back(line);
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

TEST_F(MonitorDrawing, SaysThatThereIsNoReading) {
    Drawing const drawing = drawChart(History(60s), 0);
    EXPECT_EQ(drawing.title, "Processor, memory and disk in use");
    EXPECT_EQ(drawing.description, "A line chart without a reading.");
    EXPECT_THAT(textsOf(drawing, 20), ElementsAre(drawing.title));
    EXPECT_THAT(textsOf(drawing, 13), ElementsAre("no readings"));
    EXPECT_THAT(textsOf(drawing, 12), ElementsAre("0 %", "25 %", "50 %", "75 %", "100 %"));
    EXPECT_THAT(drawing.areas, IsEmpty());
    EXPECT_EQ(drawing.lines.size(), 5);
}

TEST_F(MonitorDrawing, EndsAtTheLatestReading) {
    Drawing const drawing = drawChart(
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

TEST_F(MonitorDrawing, NamesTheLastValuesBesideTheirLines) {
    Drawing const drawing = drawChart(historyOf({readingAt(NOON, 12.34F, null(), 100.0F)}), 3600);
    EXPECT_THAT(textsOf(drawing, 14),
                ElementsAre("cpu", "12.3 %", "memory", "null", "disk", "100.0 %"));
    EXPECT_THAT(textsOf(drawing, 13), ElementsAre("1 minute to 13:00:00 UTC+01:00"));
    EXPECT_EQ(drawing.description,
              "A line chart of 1 reading, the last at 2024-03-05T13:00:00.000+0100, over 1 minute. "
              "In percent: cpu from 12.3 to 12.3, last 12.3; memory without a value; "
              "disk from 100.0 to 100.0, last 100.0.");
}

TEST_F(MonitorDrawing, DescribesRangesAndValuesThatCameToNull) {
    Drawing const drawing =
        drawChart(historyOf({readingAt(NOON, 20.0F), readingAt(NOON + 1, 5.0F),
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
    {86400, 86340, "1 day to 11:59:00 UTC+23:59"},
    {90000, 0, "25 hours to 12:00:00 UTC"},
    {2592000, 0, "30 days to 12:00:00 UTC"},
};

TEST_F(MonitorDrawing, TellsItsWindowAndZone) {
    for (SubtitleFact const& row : SUBTITLE_FACTS) {
        Drawing const drawing = drawChart(historyOf({readingAt(xtime_t(NOON, 999'000'000), 1.0F)},
                                                    std::chrono::seconds(row.window)),
                                          row.offsetSeconds);
        EXPECT_THAT(textsOf(drawing, 13), ElementsAre(row.subtitle));
    }
}

TEST_F(MonitorDrawing, BreaksALineWhereThereIsNoValue) {
    Drawing const drawing = drawChart(
        historyOf({readingAt(NOON, 0.0F), readingAt(NOON + 10, 0.0F), readingAt(NOON + 20, null()),
                   readingAt(NOON + 30, 100.0F), readingAt(NOON + 40, null()),
                   readingAt(NOON + 50, 50.0F), readingAt(NOON + 60, 50.0F)}),
        0);
    auto const cpu = pathsOf(drawing, MONITOR_CHART_PROCESSOR);
    ASSERT_EQ(cpu.size(), 2);
    EXPECT_THAT(cpu[0].points, ElementsAre(IsAt(64, 336), IsAt(180, 336)));
    EXPECT_THAT(cpu[1].points, ElementsAre(IsAt(644, 210), IsAt(760, 210)));
    // A value alone is a dot, and so is the end.
    EXPECT_THAT(dotsOf(drawing, MONITOR_CHART_PROCESSOR),
                ElementsAre(IsAt(412, 84), IsAt(760, 210)));
    EXPECT_EQ(pathsOf(drawing, MONITOR_CHART_MEMORY).size(), 1);
    EXPECT_EQ(drawing.areas.size(), 2);
}

TEST_F(MonitorDrawing, BreaksALineWhereReadingsAreMissing) {
    struct {
        std::vector<long> seconds;
        unsigned long paths;
    } const facts[] = {
        {{0, 2, 4, 6, 8}, 1},         {{0, 2, 4, 6, 8, 13, 15}, 1},  // one that is late, or missing
        {{0, 2, 4, 6, 8, 14, 16}, 2}, {{0, 2, 4, 50, 52, 54}, 2},   {{0, 60}, 1},
    };
    for (auto const& [seconds, paths] : facts) {
        std::vector<Reading> readings;
        for (long const second : seconds)
            readings.push_back(readingAt(NOON + second, 1.0F));
        Drawing const drawing = drawChart(historyOf(readings), 0);
        EXPECT_EQ(pathsOf(drawing, MONITOR_CHART_PROCESSOR).size(), paths) << seconds.back();
    }
}

TEST_F(MonitorDrawing, HasNoDotAtTheEdgeOfALineThatEndedBefore) {
    Drawing const drawing = drawChart(historyOf({readingAt(NOON, 0.0F), readingAt(NOON + 30, 50.0F),
                                                 readingAt(NOON + 60, null())}),
                                      0);
    EXPECT_THAT(dotsOf(drawing, MONITOR_CHART_PROCESSOR), IsEmpty());
    EXPECT_THAT(dotsOf(drawing, MONITOR_CHART_MEMORY), ElementsAre(IsAt(760, 235.2)));
}

TEST_F(MonitorDrawing, ShowsTheMeanOfReadingsOfOneMomentOnABand) {
    History const history =
        historyOf({readingAt(NOON, 0.0F), readingAt(NOON + 1, 100.0F), readingAt(NOON + 2, 50.0F),
                   readingAt(NOON + 3600, 0.0F), readingAt(NOON + 3601, 75.0F)},
                  7200s);
    Drawing const drawing = drawChart(history, 0);
    auto const cpu = pathsOf(drawing, MONITOR_CHART_PROCESSOR);
    ASSERT_EQ(cpu.size(), 1);
    // The line ends at the last value.
    double const start = 760 - 3599 * 696 / 7200.0;
    EXPECT_THAT(cpu[0].points, ElementsAre(IsAt(start, 210), IsAt(760, 147)));
    ASSERT_EQ(drawing.areas.size(), 2);
    EXPECT_THAT(drawing.areas[0].points,
                ElementsAre(IsAt(start, 84), IsAt(760, 147), IsAt(760, 336), IsAt(start, 336)));
    EXPECT_GT(drawing.areas[0].opacity, drawing.areas[1].opacity);
    EXPECT_THAT(drawing.description, testing::StartsWith("A line chart of 5 readings, "));
    EXPECT_THAT(drawing.description, testing::HasSubstr("cpu from 0.0 to 100.0, last 75.0;"));
}

TEST_F(MonitorDrawing, KeepsValuesWithinTheChart) {
    Drawing const drawing =
        drawChart(historyOf({readingAt(NOON, -5.0F), readingAt(NOON + 60, 250.0F)}), 0);
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
    {"far apart they stand at their values", 0, 50, 100, {0, 126, 252}},
    {"just far enough", 0, 50, 60, {0, 126, 151.2}},
    {"those below give way", 50, 50, 50, {126, 102, 78}},
    {"at the top", 100, 100, 100, {252, 228, 204}},
    {"at the foot they give way upwards", 0, 0, 0, {48, 24, 0}},
    {"in the order of their values", 1, 3, 2, {0, 48, 24}},
};

TEST_F(MonitorDrawing, KeepsNamesApart) {
    for (SpreadFact const& row : SPREAD_FACTS) {
        SCOPED_TRACE(row.fact);
        Drawing const drawing =
            drawChart(historyOf({readingAt(NOON, row.processor, row.memory, row.disk)}), 0);
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

TEST_F(MonitorDrawing, StaysWithinThePicture) {
    std::mt19937_64 random = testing_support::randomEngine();
    auto const percent = [&] { return Variant(static_cast<float>(random() % 1001) / 10); };
    for (long window = 5; window <= 2592000; window = window * 3 / 2 + 1) {
        SCOPED_TRACE(window);
        History history{std::chrono::seconds(window)};
        for (long i = 0; i < 100; ++i) {
            xtime_t const time(NOON + i * window / 90,
                               static_cast<unsigned int>(random() % 1000) * 1'000'000);
            history.add(readingAt(time, percent(), percent(), percent()));
        }
        Drawing const drawing = drawChart(history, 19800);
        for (Drawing::Line const& line : drawing.lines) {
            for (Point const& point : line.points) {
                ASSERT_TRUE(point.x >= 64 && point.x <= 800) << point.x;
                ASSERT_TRUE(point.y >= 84 && point.y <= 344) << point.y;
            }
        }
        for (Drawing::Text const& text : drawing.texts) {
            double const width = static_cast<double>(text.text.size()) * text.size * CHARACTER;
            double const left = text.place.x - width * static_cast<unsigned int>(text.anchor) / 2;
            ASSERT_GE(left, 4) << text.text;
            ASSERT_LE(left + width, 956) << text.text;
            ASSERT_LE(text.place.y, 396) << text.text;
        }
    }
}

// ---- scenes as SVG

int append(void* text, char const* bytes, std::size_t count) {
    static_cast<std::string*>(text)->append(bytes, count);
    return 0;
}

int refuse(void* /*context*/, char const* /*bytes*/, std::size_t /*count*/) { return 1; }

// What an SVG of one line and one text has between its background and its end.
std::string svgOf(MonitorChartLine const& line, MonitorChartText const& text) {
    MonitorChartScene scene{};
    scene.title = scene.description = "";
    scene.lineCount = scene.textCount = 1;
    scene.lines = &line;
    scene.texts = &text;
    std::string svg;
    EXPECT_EQ(monitorChartWriter()->write(&scene, append, &svg), nullptr);
    std::size_t const start = svg.find('\n', svg.find("<rect")) + 1;
    return svg.substr(start, svg.rfind("</svg>") - start);
}

constexpr MonitorChartPoint POINTS[] = {
    {0, 1.5},
    {-0.001, 2.25},
    {100, -3.126},
    {1e300, 12345.678},
};

TEST(MonitorSvg, HasLinesAsPaths) {
    MonitorChartLine const dashed = {MONITOR_CHART_DISK, 2.8, 0, 5.5, 4, POINTS};
    MonitorChartLine const whole = {MONITOR_CHART_GRID, 1, 3, 0, 2, POINTS};
    MonitorChartText const text = {MONITOR_CHART_INK, MONITOR_CHART_START, 0, 12, {1, 2}, ""};
    std::string const ink = "<text class=\"ink\" x=\"1\" y=\"2\" font-size=\"12\"></text>\n";
    EXPECT_EQ(svgOf(dashed, text),
              "<path class=\"disk\" stroke-width=\"2.8\" stroke-dasharray=\"0 5.5\" "
              "d=\"M0 1.5L0 2.25L100 -3.13L0 12345.68\"/>\n" +
                  ink);
    EXPECT_EQ(svgOf(whole, text),
              "<path class=\"grid\" stroke-width=\"1\" d=\"M0 1.5L0 2.25\"/>\n" + ink);
}

TEST(MonitorSvg, HasTextsWithoutMarkupOfTheirOwn) {
    MonitorChartLine const line = {MONITOR_CHART_INK, 1, 0, 0, 1, POINTS};
    std::string const path = "<path class=\"ink\" stroke-width=\"1\" d=\"M0 1.5\"/>\n";
    EXPECT_EQ(
        svgOf(line,
              {MONITOR_CHART_MUTED, MONITOR_CHART_MIDDLE, 0, 12.5, {1, 2}, "a<b>&\"\x1F\x01 "}),
        path +
            "<text class=\"muted\" x=\"1\" y=\"2\" font-size=\"12.5\" "
            "text-anchor=\"middle\">a&lt;b&gt;&amp;&quot;   </text>\n");
    EXPECT_EQ(svgOf(line, {MONITOR_CHART_INK, MONITOR_CHART_END, 1, 9, {0, 0}, "50 \xC2\xB0~"}),
              path +
                  "<text class=\"ink\" x=\"0\" y=\"0\" font-size=\"9\" text-anchor=\"end\" "
                  "font-weight=\"600\">50 \xC2\xB0~</text>\n");
}

TEST(MonitorSvg, EscapesTitleAndDescription) {
    MonitorChartScene scene{};
    scene.title = "a & b";
    scene.description = "1 < 2";
    std::string svg;
    EXPECT_EQ(monitorChartWriter()->write(&scene, append, &svg), nullptr);
    EXPECT_THAT(svg, testing::HasSubstr("<title id=\"title\">a &amp; b</title>\n"
                                        "<desc id=\"description\">1 &lt; 2</desc>\n"));
}

TEST(MonitorSvg, TellsThatItWasNotTaken) {
    MonitorChartScene scene{};
    scene.title = scene.description = "";
    EXPECT_STREQ(monitorChartWriter()->write(&scene, refuse, nullptr), "it was not taken");
    EXPECT_EQ(monitorChartWriter()->abi, 1);
}

}  // namespace
