// A plugin whose entry returns a null pointer.
#include "chart/chart_plugin.h"

MonitorChartWriter const* monitorChartWriter() { return nullptr; }
