#pragma once

#include <string>

#include "chart/drawing.h"
#include "chart/history.h"

namespace monitor {

/// Draws a window of readings: percent over time, with one line each for processor, memory and
/// disk, and their last values beside the ends of the lines.
///
/// The three lines differ in colour, in dashes, and by the names at their ends. A line is
/// interrupted where a value could not be read and where readings are missing. If several readings
/// share a moment, the line shows their mean, on a band from the lowest to the highest. The last
/// reading is a dot. Values below 0 or above 100 are drawn on the edge, and those above 100 have a
/// mark there. Notes in the picture explain a band and a mark.
/// Takes    offsetSeconds: the zone of the times, east of UTC, less than a day; title: UTF-8. A
///          long title has a smaller font.
/// Gives    for a history without a reading a chart that says so and has no time axis.
/// Fails    with std::bad_alloc only.
Drawing drawChart(History const& history, int offsetSeconds, std::string const& title);

}  // namespace monitor
