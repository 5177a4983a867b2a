#pragma once

#include "drawing.h"
#include "history.h"

namespace monitor {

/// Draws a window of readings: percent over time, a line each for processor, memory and disk, and
/// what they were last beside their ends.
///
/// The three differ in colour, in dashes, and by their names at the ends of the lines. A line is
/// broken where a value was not to be had, and where readings are missing. Where readings share a
/// moment it shows their mean, on a band from the lowest to the highest. Values beyond 0 and 100 lie
/// on the edge.
/// Takes    offsetSeconds: the zone of the times, east of UTC, less than a day.
/// Gives    without a reading, a chart without a time axis that says so.
Drawing drawChart(History const& history, int offsetSeconds);

}  // namespace monitor
