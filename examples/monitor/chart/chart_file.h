#pragma once

#include <string>

#include "chart/chart_options.h"
#include "chart/chart_writer.h"
#include "chart/history.h"

namespace monitor {

// The file that contains the chart. Each drawing replaces the one before.
class ChartFile {
public:
    /// Loads the plugin for the file's format, and draws a chart without a reading, so that the
    /// user learns at once if something is wrong.
    /// Takes    options: with a file; offsetSeconds: the zone of the times, east of UTC.
    /// Fails    as `ChartWriter` and `draw` do.
    ChartFile(ChartOptions const& options, int offsetSeconds);

    /// Adds the latest reading. The next `draw` shows it.
    /// Fails    with std::bad_alloc only.
    void add(Reading const& reading) { history_.add(reading); }

    /// Replaces the file in one step. Whoever reads it sees the old picture or the new one, never a
    /// part.
    /// Fails    with std::runtime_error or std::system_error; the file is unchanged then.
    void draw() const;

private:
    ChartOptions options_;
    int offsetSeconds_;
    History history_;
    ChartWriter writer_;
};

}  // namespace monitor
