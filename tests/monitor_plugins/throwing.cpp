// A plugin that throws a number: from its entry, or from its function.
#include "chart/chart_plugin.h"

#ifndef ENTRY_THROWS
#define ENTRY_THROWS false
#endif

namespace {

char const* write(MonitorChartScene const* /*scene*/, MonitorChartSink /*sink*/,
                  void* /*context*/) {
    throw 42;
}

constexpr MonitorChartWriter WRITER = {MONITOR_CHART_ABI, write};

}  // namespace

MonitorChartWriter const* monitorChartWriter() {
    if (ENTRY_THROWS) throw 43;
    return &WRITER;
}
