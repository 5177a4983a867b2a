#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "chart/drawing.h"
#include "chart/history.h"

// The part of a chart between its axes.
namespace monitor {

// The edges of that part.
constexpr double LEFT = 64;
constexpr double RIGHT = 760;
constexpr double TOP = 84;
constexpr double BOTTOM = 336;

constexpr Drawing::Stroke DOT = {7, 0, 0};

// How the line of a value looks.
struct SeriesLook {
    char const* name;
    MonitorChartRole role;
    Drawing::Stroke stroke;
    com::halvorin::datatypes::Variant Reading::*value;
};

inline constexpr std::array<SeriesLook, SERIES_COUNT> LOOKS = {{
    {"cpu", MONITOR_CHART_PROCESSOR, {2.2, 0, 0}, &Reading::processor},
    {"memory", MONITOR_CHART_MEMORY, {2.2, 7, 5}, &Reading::memory},
    {"disk", MONITOR_CHART_DISK, {2.8, 0, 5.5}, &Reading::disk},
}};

/// The y coordinate of a value. Values below 0 or above 100 are on the edge.
/// Fails    never.
constexpr double heightOf(double percent) noexcept {
    return BOTTOM - std::clamp(percent, 0.0, 100.0) / 100 * (BOTTOM - TOP);
}

// Turns times into x coordinates. The window ends at the right edge.
class TimeScale {
public:
    /// Takes    end: seconds since 1970; window: seconds, above zero.
    /// Fails    never.
    TimeScale(double end, double window) noexcept
        : end_(end), unitsPerSecond_((RIGHT - LEFT) / window) {}

    /// The width of a second.
    /// Fails    never.
    double unitsPerSecond() const noexcept { return unitsPerSecond_; }

    /// The x coordinate of a time.
    /// Fails    never.
    double place(double time) const noexcept { return RIGHT - (end_ - time) * unitsPerSecond_; }

private:
    double end_;
    double unitsPerSecond_;
};

// What the chart must explain to its viewer.
struct Notes {
    bool hasBand = false;   // a line is the mean of several readings
    bool isCutOff = false;  // a value is above 100 %
};

/// The width of the triangle that `arrowAt` gives.
constexpr double ARROW_WIDTH = 10;

/// A small triangle that points up. Its base is at `y`.
/// Fails    with std::bad_alloc only.
std::vector<Point> arrowAt(double x, double y);

/// Draws the line of a value, with its bands, area and marks, and adds to the notes.
/// Gives    the place of the last value, or nothing if there is no value.
/// Fails    with std::bad_alloc only.
std::optional<Point> drawSeries(Drawing& drawing, History const& history, Series series,
                                TimeScale const& scale, Notes& notes);

}  // namespace monitor
