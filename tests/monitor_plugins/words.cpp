// A plugin that writes the texts of a scene.
#include <string>

#include "chart/chart_plugin.h"

#ifndef PLUGIN_ABI
#define PLUGIN_ABI MONITOR_CHART_ABI
#endif
#ifndef PLUGIN_FAILURE
#define PLUGIN_FAILURE nullptr
#endif

namespace {

constexpr char const* THEMES[] = {"light", "dark", "either"};

char const* write(MonitorChartScene const* scene, MonitorChartSink sink, void* context) noexcept {
    std::string words = std::string(THEMES[scene->theme]) + "\n" + scene->description + "\n";
    for (size_t i = 0; i < scene->textCount; ++i)
        words += scene->texts[i].text + std::string("\n");
    // A plugin may call the sink several times.
    if (sink(context, words.data(), 3) != 0 ||
        sink(context, words.data() + 3, words.size() - 3) != 0) {
        return "not taken";
    }
    return PLUGIN_FAILURE;
}

constexpr MonitorChartWriter WRITER = {PLUGIN_ABI, write};

}  // namespace

MonitorChartWriter const* monitorChartWriter() { return &WRITER; }
