#include "chart/chart.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <optional>
#include <utility>

#include "chart/chart_lines.h"
#include "chart/time_axis.h"
#include "readings/number_text.h"

namespace monitor {

using com::halvorin::datatypes::Variant;

namespace {

// ---- places and looks

constexpr double WIDTH = 960;
constexpr double HEIGHT = 400;

constexpr double MARGIN = 24;

constexpr double TITLE_SIZE = 20;
constexpr double WIDEST_LETTER = 0.68;  // of the font's size, on average in a bold text
constexpr double SUBTITLE_SIZE = 13;
constexpr double VALUE_SIZE = 14;
constexpr double VALUE_SPACING = 24;
constexpr double HALF_A_DIGIT = 0.36;  // of the font's size

constexpr double NAME_LEFT = 804;
constexpr double VALUE_RIGHT = 940;

constexpr double SUBTITLE_Y = 58;

constexpr Drawing::Stroke THIN = {1, 0, 0};

constexpr std::chrono::hours ONE_DAY{24};

// ---- parts of the picture

std::string counted(long number, char const* unit) {
    return std::to_string(number) + " " + unit + (number == 1 ? "" : "s");
}

// A window in the largest unit that gives a whole number: "90 minutes".
std::string windowText(std::chrono::seconds window) {
    long const seconds = window.count();
    if (seconds % 86400 == 0) return counted(seconds / 86400, "day");
    if (seconds % 3600 == 0) return counted(seconds / 3600, "hour");
    if (seconds % 60 == 0) return counted(seconds / 60, "minute");
    return counted(seconds, "second");
}

std::string zoneText(int offsetSeconds) {
    if (offsetSeconds == 0) return "UTC";
    int const minutes = std::abs(offsetSeconds) / 60;
    auto const twoDigits = [](int number) {
        return std::string(number < 10 ? "0" : "") + std::to_string(number);
    };
    return std::string(offsetSeconds < 0 ? "UTC-" : "UTC+") + twoDigits(minutes / 60) + ":" +
           twoDigits(minutes % 60);
}

// The end of a window: "13:50:40 UTC". The axis shows the day, unless its ticks are days.
std::string endText(long end, std::chrono::seconds window, int offsetSeconds) {
    std::string const time = timeOfDay(end, offsetSeconds);
    std::string const zone = " " + zoneText(offsetSeconds);
    if (window < ONE_DAY) return time + zone;
    return dayAndYear(end, offsetSeconds) + ", " + time.substr(0, time.rfind(':')) + zone;
}

// The width of a title in units of its font size, at most: a character that is not ASCII may be as
// wide as the font is high.
double titleWidth(std::string const& title) noexcept {
    double width = 0;
    for (char const c : title) {
        unsigned int const byte = static_cast<unsigned char>(c);
        bool const continuesCharacter = (byte & 0xC0U) == 0x80;
        if (!continuesCharacter) width += byte < 0x80 ? WIDEST_LETTER : 1;
    }
    return width;
}

void drawHeading(Drawing& drawing, std::string const& subtitle) {
    double const size =
        std::min(TITLE_SIZE, (WIDTH - 2 * MARGIN) / std::max(1.0, titleWidth(drawing.title)));
    drawing.texts.push_back(
        {MONITOR_CHART_INK, MONITOR_CHART_START, true, size, {MARGIN, 36}, drawing.title});
    drawing.texts.push_back({MONITOR_CHART_MUTED,
                             MONITOR_CHART_START,
                             false,
                             SUBTITLE_SIZE,
                             {MARGIN, SUBTITLE_Y},
                             subtitle});
}

void drawPercentAxis(Drawing& drawing) {
    for (int const percent : {0, 25, 50, 75, 100}) {
        double const y = heightOf(percent);
        auto const role = percent == 0 ? MONITOR_CHART_AXIS : MONITOR_CHART_GRID;
        drawing.lines.push_back({role, THIN, {{LEFT, y}, {RIGHT, y}}});
        drawing.texts.push_back({MONITOR_CHART_MUTED,
                                 MONITOR_CHART_END,
                                 false,
                                 AXIS_FONT_SIZE,
                                 {LEFT - 10, y + AXIS_FONT_SIZE * HALF_A_DIGIT},
                                 std::to_string(percent) + " %"});
    }
}

void drawTimeAxis(Drawing& drawing, TimeAxis const& axis, TimeScale const& scale) {
    auto const text = [&](MonitorChartRole role, double x, double y, std::string const& label) {
        if (label.empty()) return;
        drawing.texts.push_back({role, MONITOR_CHART_MIDDLE, false, AXIS_FONT_SIZE, {x, y}, label});
    };
    for (long const time : axis.minors) {
        double const x = scale.place(static_cast<double>(time));
        drawing.lines.push_back({MONITOR_CHART_AXIS, THIN, {{x, BOTTOM}, {x, BOTTOM + 4}}});
    }
    for (MajorTick const& tick : axis.majors) {
        double const x = scale.place(static_cast<double>(tick.time));
        drawing.lines.push_back({MONITOR_CHART_GRID, THIN, {{x, TOP}, {x, BOTTOM}}});
        drawing.lines.push_back({MONITOR_CHART_AXIS, THIN, {{x, BOTTOM}, {x, BOTTOM + 8}}});
        text(MONITOR_CHART_INK, x, BOTTOM + 24, tick.label);
        text(MONITOR_CHART_MUTED, x, BOTTOM + 42, tick.context);
    }
}

// ---- the notes and the last values

// Explains marks in the row of the subtitle. The notes end at the right edge.
void drawNotes(Drawing& drawing, Notes const& notes) {
    double right = VALUE_RIGHT;
    if (notes.hasBand) {
        std::string const note = "line: mean, band: lowest to highest, dot: last reading";
        drawing.texts.push_back({MONITOR_CHART_MUTED,
                                 MONITOR_CHART_END,
                                 false,
                                 AXIS_FONT_SIZE,
                                 {right, SUBTITLE_Y},
                                 note});
        right -= estimatedWidth(note, AXIS_FONT_SIZE) + LABEL_GAP;
    }
    if (!notes.isCutOff) return;
    std::string const note = "above 100 %, cut off";
    double const left = right - estimatedWidth(note, AXIS_FONT_SIZE);
    drawing.areas.push_back({MONITOR_CHART_MUTED, 1, arrowAt(left - ARROW_WIDTH, SUBTITLE_Y - 1)});
    drawing.texts.push_back({MONITOR_CHART_MUTED,
                             MONITOR_CHART_START,
                             false,
                             AXIS_FONT_SIZE,
                             {left, SUBTITLE_Y},
                             note});
}

// Moves heights apart: they keep their order, are at least VALUE_SPACING apart, and stay in the
// chart.
std::array<double, SERIES_COUNT> spreadOut(std::array<double, SERIES_COUNT> heights) {
    std::array<std::size_t, SERIES_COUNT> order = {PROCESSOR, MEMORY, DISK};
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return heights[a] < heights[b]; });
    double least = TOP;
    for (std::size_t const series : order) {
        heights[series] = std::max(heights[series], least);
        least = heights[series] + VALUE_SPACING;
    }
    double most = BOTTOM;
    for (auto series = order.rbegin(); series != order.rend(); ++series) {
        heights[*series] = std::min(heights[*series], most);
        most = heights[*series] - VALUE_SPACING;
    }
    return heights;
}

void drawLastValues(Drawing& drawing, Reading const& latest,
                    std::array<std::optional<Point>, SERIES_COUNT> const& ends) {
    std::array<double, SERIES_COUNT> wanted{};
    for (std::size_t i = 0; i < SERIES_COUNT; ++i)
        wanted[i] = ends[i] ? ends[i]->y : BOTTOM;
    auto const heights = spreadOut(wanted);
    for (std::size_t i = 0; i < SERIES_COUNT; ++i) {
        SeriesLook const& look = LOOKS[i];
        double const y = heights[i];
        double const start = ends[i] ? ends[i]->y : y;
        drawing.lines.push_back({look.role,
                                 look.stroke,
                                 {{RIGHT + 9, start}, {RIGHT + 16, start}, {NAME_LEFT - 8, y}}});
        if (ends[i] && ends[i]->x == RIGHT) {
            drawing.lines.push_back({look.role, DOT, {*ends[i], *ends[i]}});
        }
        Variant const& value = latest.*look.value;
        std::string const text = oneDecimal(value) + (isKnown(value) ? " %" : "");
        double const foot = y + VALUE_SIZE * HALF_A_DIGIT;
        drawing.texts.push_back({MONITOR_CHART_INK,
                                 MONITOR_CHART_START,
                                 false,
                                 VALUE_SIZE,
                                 {NAME_LEFT, foot},
                                 look.name});
        drawing.texts.push_back(
            {MONITOR_CHART_INK, MONITOR_CHART_END, true, VALUE_SIZE, {VALUE_RIGHT, foot}, text});
    }
}

// ---- the description

std::string describe(History const& history, int offsetSeconds) {
    auto const& moments = history.moments();
    unsigned long readings = 0;
    for (Moment const& moment : moments)
        readings += moment.readings;
    std::string text = "A line chart of " + counted(static_cast<long>(readings), "reading") +
                       ", the last at " + history.latest().time.toString(true, offsetSeconds, "") +
                       ", over " + windowText(history.window()) + ". In percent:";
    for (std::size_t i = 0; i < SERIES_COUNT; ++i) {
        Values all;
        for (Moment const& moment : moments) {
            Values const& values = moment.values[i];
            if (values.count == 0) continue;
            all.low = all.count == 0 ? values.low : std::min(all.low, values.low);
            all.high = all.count == 0 ? values.high : std::max(all.high, values.high);
            all.count += values.count;
        }
        text += std::string(i == 0 ? " " : "; ") + LOOKS[i].name;
        if (all.count == 0) {
            text += " without a value";
            continue;
        }
        text += " from " + oneDecimal(all.low) + " to " + oneDecimal(all.high) + ", last " +
                oneDecimal(history.latest().*LOOKS[i].value);
    }
    return text + ".";
}

}  // namespace

Drawing drawChart(History const& history, int offsetSeconds, std::string const& title) {
    Drawing drawing;
    drawing.width = WIDTH;
    drawing.height = HEIGHT;
    drawing.title = title;
    drawPercentAxis(drawing);
    if (history.moments().empty()) {
        drawing.description = "A line chart without a reading.";
        drawHeading(drawing, "no readings");
        return drawing;
    }

    double const end = history.moments().back().time;
    double const window = static_cast<double>(history.window().count());
    TimeScale const scale(end, window);
    auto const last = static_cast<long>(std::floor(end));
    auto const first = static_cast<long>(std::ceil(end - window));
    drawTimeAxis(drawing, timeAxis(first, last, scale.unitsPerSecond(), offsetSeconds), scale);
    drawHeading(drawing, windowText(history.window()) + " to " +
                             endText(last, history.window(), offsetSeconds));
    Notes notes;
    std::array<std::optional<Point>, SERIES_COUNT> ends;
    for (Series const series : {DISK, MEMORY, PROCESSOR})
        ends[series] = drawSeries(drawing, history, series, scale, notes);
    drawLastValues(drawing, history.latest(), ends);
    drawNotes(drawing, notes);
    drawing.description = describe(history, offsetSeconds);
    return drawing;
}

}  // namespace monitor
