#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace monitor {

// A major tick and the texts below it.
struct MajorTick {
    long time = 0;        // seconds since 1970
    std::string label;    // what the step tells apart: "13:50:40", "13:50" or "21 Nov"
    std::string context;  // the day, or the year, where the first tick stands and where it changes
};

struct TimeAxis {
    std::vector<MajorTick> majors;
    std::vector<long> minors;  // seconds since 1970
};

/// The font size of the texts below an axis.
constexpr double AXIS_FONT_SIZE = 12;

/// How wide a text is at most, in any usual font without serifs. It is not known which one will show
/// it.
/// Takes    text: ASCII.
double estimatedWidth(std::string_view text, double fontSize) noexcept;

/// The ticks of a time axis: those of `MovingTimeAxis`, as many as have room for their labels.
/// Takes    from, to: the axis in seconds since 1970, in order, at least 3 and not more than some
///          years apart; unitsPerSecond: of the picture; offsetSeconds: the zone of the labels, east
///          of UTC. Steps are counted from that zone's midnight.
/// Gives    ticks from `from` to `to`, in order. Neither labels nor contexts, each centred on its
///          tick, come closer to their like than LABEL_GAP. A context that has no room is left out in
///          favour of the next.
TimeAxis timeAxis(long from, long to, double unitsPerSecond, int offsetSeconds);

/// The least distance between two labels.
constexpr double LABEL_GAP = 22;

/// A time's parts as they stand in labels: "13:50:40" and "21 Nov 2026".
std::string timeOfDay(long time, int offsetSeconds);
std::string dayAndYear(long time, int offsetSeconds);

}  // namespace monitor
