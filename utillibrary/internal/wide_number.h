#pragma once

#include <locale>
#include <optional>
#include <string>

// Numbers in wide strings, read under the locales that the host has set. Each number has a general
// path, which is the definition, and a fast path, which gives the same result or declines.
namespace com::halvorin::internal {

// ---- integers, under the global C++ locale

/// What formatted extraction of a `long` gives in base ten. Leading whitespace and a sign are
/// accepted, and what follows the digits is ignored.
/// Gives  0 without digits or for an empty string; LONG_MIN or LONG_MAX outside the range of
///        `long`. If a facet of the host throws or fails: the value that the facet has stored, or
///        0.
/// Fails  std::bad_alloc passes.
long wideTextToInt64(std::wstring const& text);

/// The general path: a stream. It reads any string under any locale.
long extractInt64(std::wstring const& text);

/// The fast path for the classic locale. It reads any string.
long readClassicInt64(std::wstring const& text);

/// The fast path for the other locales. It declines if a facet of `locale` is not the standard
/// library's own, if the separator of groups or the decimal point is a sign or a digit, or if a
/// separator follows the digits.
std::optional<long> readStandardInt64(std::wstring const& text, std::locale const& locale);

// ---- floating numbers, under the calling thread's C locale

/// What `wcstod` gives. Without a number: 0.0. A zero character ends the string.
double wideTextToDouble(std::wstring const& text) noexcept;

/// The general path: `wcstod` itself.
double convertDouble(std::wstring const& text) noexcept;

/// The fast path. It reads plain decimals of up to 19 digits, and declines other strings.
std::optional<double> readDouble(std::wstring const& text) noexcept;

}  // namespace com::halvorin::internal
