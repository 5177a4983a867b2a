#pragma once

#include <string>

// Numbers out of wide text, under the locales that the host has set.
namespace com::halvorin::internal {

/// What formatted extraction of a `long` reads in base ten under the global C++ locale: leading
/// blanks and a sign are accepted, what follows the digits is ignored. No digits give 0, and a
/// number beyond 64 bits the nearest end.
long wideTextToInt64(std::wstring const& text);

/// What `wcstod` reads under the C locale; no number gives 0.0. A zero character ends the text.
double wideTextToDouble(std::wstring const& text);

}  // namespace com::halvorin::internal
