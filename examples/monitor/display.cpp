#include "display.h"

#include <utility>

namespace monitor {

using com::halvorin::datatypes::Variant;

Display::Display(Options const& options, std::function<bool(std::string const&)> show)
    : show_(std::move(show)),
      offsetSeconds_(options.offsetSeconds),
      averages_(options.averageNames) {
    if (options.chart.file.empty()) return;
    chart_ = std::make_unique<ChartFile>(options.chart, options.offsetSeconds);
}

bool Display::begin(Variant const& free) {
    table_.emplace(offsetSeconds_, byteUnitFor(free));
    return show_(table_->header());
}

bool Display::showRow(Reading const& reading) { return show_(table_->row(reading)); }

void Display::add(Reading const& reading, Averages::Seconds span) {
    averages_.add(reading, span);
    if (chart_) chart_->add(reading);
}

void Display::drawChart() const {
    if (chart_) chart_->draw();
}

void Display::end() {
    if (!averages_.empty()) show_(table_->averageRow(averages_.mean(), averages_.span()));
}

}  // namespace monitor
