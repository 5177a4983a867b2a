// A plugin whose writer has a null pointer in place of its function.
#include "chart/chart_plugin.h"

namespace {

constexpr MonitorChartWriter WRITER = {MONITOR_CHART_ABI, nullptr};

}  // namespace

MonitorChartWriter const* monitorChartWriter() { return &WRITER; }
