#pragma once

#include <string>

#include "chart_writer.h"
#include "history.h"
#include "options.h"

namespace monitor {

// The chart on disk: what was read last, drawn over what was there.
class ChartFile {
public:
    /// Loads the plugin for the file's format, and draws a chart without a reading, so that what is
    /// wrong is known at once.
    /// Takes    options: with a file; offsetSeconds: the zone of the times.
    /// Fails    as `ChartWriter` and `draw` do.
    ChartFile(ChartOptions const& options, int offsetSeconds);

    /// Adds the latest reading; `draw` shows it.
    void add(Reading const& reading) { history_.add(reading); }

    /// Replaces the file. Whoever reads it meanwhile has the whole old picture or the whole new one.
    /// Fails    with std::runtime_error or std::system_error; the file is as it was then.
    void draw() const;

private:
    ChartOptions options_;
    int offsetSeconds_;
    History history_;
    ChartWriter writer_;
};

}  // namespace monitor
