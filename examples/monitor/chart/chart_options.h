#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace monitor {

// The colours of a chart.
enum class Theme {
    LIGHT,
    DARK,
    EITHER  // the viewer's choice, in a format that allows it; otherwise light
};

// The chart that the command line asks for.
struct ChartOptions {
    std::string file;  // empty: no chart
    std::chrono::seconds window{60};
    Theme theme = Theme::EITHER;
    std::string title;    // empty: says what the chart shows, and of which machine if that is known
    std::string plugins;  // the folder of the plugins; empty: the usual one
};

/// The format of a chart: the end of its file's name after the last dot, in lower case. It is "svg"
/// for "charts/Load.SVG".
/// Gives    an empty string unless that end consists of one or more ASCII letters and digits, with
///          at least one character of the name before the dot.
/// Fails    with std::bad_alloc only.
std::string formatOf(std::string_view file);

}  // namespace monitor
