#pragma once

#include <charconv>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "utillibrary/internal/decimal.h"
#include "utillibrary/internal/locale.h"

// The paths of `to_string(double, format)` and of `strtodEx`.
namespace com::halvorin::internal {

// The most bytes that `to_string` writes.
inline constexpr std::size_t LONGEST_PRINTED = 31;

// The general path of `to_string`: what snprintf writes into 32 bytes. Throws std::bad_alloc if
// libc finds no memory, which it asks for when a number is very long.
std::string printWithLibc(double value, char const* format);

// Fast paths of `to_string`: each writes the same characters, and returns their number. Both
// decline if the C locale's decimal point is not "." or if libc does not round to the nearest.

inline constexpr char GENERAL_FORMAT[] = "%g";

// Answers for GENERAL_FORMAT and every value.
// Takes  out: GENERAL_SIZE bytes
inline std::optional<std::size_t> writeGeneralFormat(char* out, double value) noexcept {
    if (!libcPrintsPlainNumbers()) return std::nullopt;
    return static_cast<std::size_t>(writeGeneral(out, value) - out);
}

// Answers for the formats "%.0f" to "%.9f" if the whole result has at most LONGEST_PRINTED bytes.
// libc and std::to_chars both round the exact value, ties to even, and spell infinity and NaN
// alike.
// Takes  out: LONGEST_PRINTED bytes
inline std::optional<std::size_t> writeFixed(char* out, double value,
                                             std::string_view format) noexcept {
    bool const fixed = format.size() == 4 && format.starts_with("%.") && format[2] >= '0' &&
                       format[2] <= '9' && format[3] == 'f';
    if (!fixed || !libcPrintsPlainNumbers()) return std::nullopt;
    auto const [end, error] =
        std::to_chars(out, out + LONGEST_PRINTED, value, std::chars_format::fixed, format[2] - '0');
    if (error != std::errc()) return std::nullopt;  // too long: libc cuts it
    return static_cast<std::size_t>(end - out);
}

// The general path of `strtodEx`: what strtod reads, or nothing if it reads no character.
std::optional<double> readWithLibc(std::string const& text) noexcept;

}  // namespace com::halvorin::internal
