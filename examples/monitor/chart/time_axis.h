#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace monitor {

// A major tick, and the texts below it.
struct MajorTick {
    long time = 0;        // seconds since 1970
    std::string label;    // "13:50:40", "13:50" or "21 Nov", as the distance of the ticks demands
    std::string context;  // the day or the year: at the first tick, and where it changes
};

// The ticks of a time axis.
struct TimeAxis {
    std::vector<MajorTick> majors;
    std::vector<long> minors;  // seconds since 1970
};

/// The font size of the texts below an axis.
constexpr double AXIS_FONT_SIZE = 12;

/// The least distance between two texts of a row below an axis.
constexpr double LABEL_GAP = 22;

/// An upper limit for the width of a text in the usual fonts without serifs. The font that a viewer
/// uses is not known here.
/// Takes    text: ASCII.
/// Fails    never.
double estimatedWidth(std::string_view text, double fontSize) noexcept;

/// The ticks of a time axis: those of `MovingTimeAxis`, as many as have room for their labels.
/// Takes    from, to: the ends of the axis in seconds since 1970, at least 3 seconds and at most
///          some years apart; unitsPerSecond: the scale of the picture; offsetSeconds: the zone of
///          the labels, east of UTC. Steps are counted from midnight in that zone.
/// Gives    ticks from `from` to `to`, in order. Each text is centred on its tick. Labels are at
///          least LABEL_GAP apart, and so are contexts. A context that is too close to the next one
///          is left out.
/// Fails    with std::bad_alloc only.
TimeAxis timeAxis(long from, long to, double unitsPerSecond, int offsetSeconds);

/// The time of day of a time in seconds since 1970: "13:50:40".
/// Fails    with std::bad_alloc only.
std::string timeOfDay(long time, int offsetSeconds);

/// The day of a time in seconds since 1970: "21 Nov 2026".
/// Fails    with std::bad_alloc only.
std::string dayAndYear(long time, int offsetSeconds);

}  // namespace monitor
