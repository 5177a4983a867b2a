#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "chart/chart_file.h"
#include "program/options.h"
#include "readings/averages.h"
#include "readings/reading.h"
#include "table.h"

namespace monitor {

// What the user sees of readings: the table, its last row of averages, and the chart. The readings
// may come from this machine or from a log.
class Display {
public:
    /// Loads and draws the chart, if there is one.
    /// Takes    show: writes a row. It returns false if the row cannot be written now, and the
    ///          program must end.
    /// Fails    as `ChartFile` does.
    Display(Options const& options, std::function<bool(std::string const&)> show);

    /// Begins the table. The unit of free space is chosen here, so that a column has one unit.
    /// Takes    free: an amount of free space, or Unknown.
    /// Gives    what `show` returns.
    /// Fails    as `show` does.
    bool begin(com::halvorin::datatypes::Variant const& free);

    /// Shows the row of a reading. `begin` comes first. On a terminal the header is shown again
    /// before it leaves the screen, and cells that have no room are left out.
    /// Gives    what `show` returns.
    /// Fails    as `show` does.
    bool showRow(Reading const& reading);

    /// Says that a message was written to standard error. It may have moved the header up.
    /// Fails    never.
    void noteMessage(std::string const& message) noexcept;

    /// Adds a reading to the averages and to the chart.
    /// Takes    span: the time that the reading covers.
    /// Fails    with std::bad_alloc only.
    void add(Reading const& reading, Averages::Seconds span);

    /// Draws the chart, if there is one.
    /// Fails    as `ChartFile::draw` does.
    void drawChart() const;

    /// Shows the row of averages, if there is one.
    /// Fails    as `show` does.
    void end();

    /// True if the table has begun.
    /// Fails    never.
    bool hasBegun() const noexcept { return table_.has_value(); }

private:
    bool showHeader();

    std::function<bool(std::string const&)> show_;
    int offsetSeconds_;
    std::optional<Table> table_;
    unsigned long lines_ = 0;  // on the terminal, from the last header on
    Averages averages_;
    std::unique_ptr<ChartFile> chart_;  // null if no chart is asked for
};

}  // namespace monitor
