#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "chart/chart_options.h"

// The values of options. Each function takes the whole string that the user gave, and returns
// nothing if that is no such value. No locale takes part.
namespace monitor {

/// An interval in seconds: decimal digits, with or without a fraction, as in "1" and "0.25".
/// Gives    whole nanoseconds, from a millisecond (times are shown in milliseconds) to a day.
/// Fails    never.
std::optional<std::chrono::nanoseconds> parseInterval(std::string_view text) noexcept;

/// A number of readings in decimal digits, up to 1000000000.
/// Fails    never.
std::optional<unsigned long> parseCount(std::string_view text) noexcept;

/// A zone: "Z", "+hh:mm" or "-hh:mm", with hours up to 23 and minutes up to 59.
/// Gives    seconds east of UTC. The sign applies to hours and minutes.
/// Fails    never.
std::optional<int> parseOffset(std::string_view text) noexcept;

// Names of values, or what is wrong with them.
struct Names {
    std::vector<std::string> names;
    std::string wrong;  // empty if nothing is wrong
};

/// Names of values with commas between them: of FIELDS, each at most once, in any order.
/// Gives    the names; or, if they are wrong, half a sentence that quotes the first wrong one.
/// Fails    with std::bad_alloc only.
Names parseNames(std::string_view text);

/// A window of time in whole seconds, from 5 to 2592000 (30 days).
/// Fails    never.
std::optional<std::chrono::seconds> parseWindow(std::string_view text) noexcept;

/// The name of a chart's file. It has a format, as `formatOf` says.
/// Fails    with std::bad_alloc only.
std::optional<std::string> parseChartFile(std::string_view text);

/// The title of a chart: 1 to 100 characters of UTF-8, without control characters.
/// Fails    with std::bad_alloc only.
std::optional<std::string> parseTitle(std::string_view text);

/// A theme: "light" or "dark".
/// Fails    never.
std::optional<Theme> parseTheme(std::string_view text) noexcept;

}  // namespace monitor
