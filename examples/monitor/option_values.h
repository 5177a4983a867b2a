#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "chart_plugin.h"

// What the text of an option says. Each takes the whole text, and answers nothing where it is
// nonsense; no locale takes part.
namespace monitor {

/// Seconds as decimal digits, with or without a fraction: "1", "0.25".
/// Gives    whole nanoseconds, from a millisecond (times are shown to one) to a day.
std::optional<std::chrono::nanoseconds> parseInterval(std::string_view text) noexcept;

/// A number of readings in decimal digits, up to 1000000000.
std::optional<unsigned long> parseCount(std::string_view text) noexcept;

/// A zone: "Z", or "+hh:mm" and "-hh:mm" with hours to 23 and minutes to 59.
/// Gives    seconds east of UTC; the sign holds for hours and minutes.
std::optional<int> parseOffset(std::string_view text) noexcept;

/// Names of values, out of FIELDS, with commas between: each at most once, in any order.
std::optional<std::vector<std::string>> parseNames(std::string_view text);

/// A window of time in whole seconds, from 5 to 2592000, which are 30 days.
std::optional<std::chrono::seconds> parseWindow(std::string_view text) noexcept;

/// A file whose name ends in a format, as `formatOf` has it.
std::optional<std::string> parseChartFile(std::string_view text);

/// What a file's name has behind its last dot, in small letters: "svg" for "charts/Load.SVG".
/// Gives    the empty text where that is not one or more letters and digits, or where nothing stands
///          before the dot.
std::string formatOf(std::string_view file);

/// A theme: "light" or "dark".
std::optional<MonitorChartTheme> parseTheme(std::string_view text) noexcept;

}  // namespace monitor
