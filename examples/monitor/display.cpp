#include "display.h"

#include <string_view>
#include <unistd.h>
#include <utility>

#include "program/terminal.h"

namespace monitor {

using com::halvorin::datatypes::Variant;

namespace {

// A smaller screen has no room for a header, a row and the cursor, and something more.
constexpr unsigned int LEAST_ROWS = 4;

constexpr std::string_view PROGRAM_NAME = "monitor: ";  // before each message

}  // namespace

Display::Display(Options const& options, std::function<bool(std::string const&)> show)
    : show_(std::move(show)),
      offsetSeconds_(options.offsetSeconds),
      averages_(options.averageNames) {
    if (options.chart.file.empty()) return;
    chart_ = std::make_unique<ChartFile>(options.chart, options.offsetSeconds);
}

bool Display::begin(Variant const& free) {
    table_.emplace(offsetSeconds_, byteUnitFor(free));
    return showHeader();
}

bool Display::showHeader() {
    lines_ = 1;
    return show_(table_->header(terminalSize(STDOUT_FILENO).columns));
}

bool Display::showRow(Reading const& reading) {
    TerminalSize const size = terminalSize(STDOUT_FILENO);
    // One row of the screen is for the cursor and the progress line.
    if (size.rows >= LEAST_ROWS && lines_ + 1 >= size.rows && !showHeader()) return false;
    ++lines_;
    return show_(table_->row(reading, size.columns));
}

void Display::noteMessage(std::string const& message) noexcept {
    TerminalSize const size = terminalSize(STDERR_FILENO);
    std::size_t const shown = PROGRAM_NAME.size() + message.size();
    lines_ += size.columns == 0 ? 1 : (shown + size.columns - 1) / size.columns;
}

void Display::add(Reading const& reading, Averages::Seconds span) {
    averages_.add(reading, span);
    if (chart_) chart_->add(reading);
}

void Display::drawChart() const {
    if (chart_) chart_->draw();
}

void Display::end() {
    if (averages_.empty()) return;
    unsigned int const columns = terminalSize(STDOUT_FILENO).columns;
    show_(table_->averageRow(averages_.mean(), averages_.span(), columns));
}

}  // namespace monitor
