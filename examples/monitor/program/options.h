#pragma once

#include <chrono>
#include <string>
#include <variant>
#include <vector>

#include "chart/chart_options.h"

namespace monitor {

// What the command line asks for.
struct Options {
    std::chrono::nanoseconds interval = std::chrono::seconds(1);
    unsigned long count = 0;  // 0: until interrupted
    std::string path = "/";
    int offsetSeconds = 0;                  // east of UTC
    std::string logPath;                    // empty: no log is kept
    std::string replayPath;                 // empty: live readings
    std::vector<std::string> averageNames;  // of FIELDS
    ChartOptions chart;
};

// Text to print in place of readings.
struct Answer {
    std::string text;  // ends with a newline
};

// Why the command line is wrong: one sentence without a newline.
struct Refusal {
    std::string reason;
};

/// Reads the command line.
/// Gives    the options; or an answer to --help and --version; or a refusal.
/// Fails    with std::bad_alloc only.
std::variant<Options, Answer, Refusal> parseCommandLine(int argc, char const* const* argv);

}  // namespace monitor
