// An entry that offers nothing.
#include "chart_plugin.h"

MonitorChartWriter const* monitorChartWriter() { return nullptr; }
