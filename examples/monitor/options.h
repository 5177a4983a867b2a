#pragma once

#include <chrono>
#include <string>
#include <variant>
#include <vector>

#include "chart_plugin.h"

namespace monitor {

// The chart that is asked for.
struct ChartOptions {
    std::string file;  // empty: no chart
    std::chrono::seconds window{60};
    MonitorChartTheme theme = MONITOR_CHART_EITHER;
    std::string plugins;  // the folder of the plugins; empty: that beside the program
};

// What the command line asks for.
struct Options {
    std::chrono::nanoseconds interval = std::chrono::seconds(1);
    unsigned long count = 0;  // 0: until interrupted
    std::string path = "/";
    int offsetSeconds = 0;                  // east of UTC
    std::string logPath;                    // empty: no log is kept
    std::string replayPath;                 // empty: live readings
    std::vector<std::string> averageNames;  // out of FIELDS
    ChartOptions chart;
};

// Text to show instead of readings.
struct Answer {
    std::string text;  // ends with a newline
};

// Why the command line cannot be followed: one sentence, without a newline.
struct Refusal {
    std::string reason;
};

/// Reads the command line: options to follow, help or version to show, or a refusal.
std::variant<Options, Answer, Refusal> parseCommandLine(int argc, char const* const* argv);

}  // namespace monitor
