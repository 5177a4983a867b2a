#pragma once

#include "utillibrary/internal/rounding.h"

// Questions about the two locales that are in force at once. They move separately: `setlocale` and
// `uselocale` rule libc (printf, strtod, isspace), `std::locale::global` rules the streams.
namespace com::halvorin::internal {

/// The decimal point that libc writes and reads in the calling thread's C locale, where that is one
/// byte; else a zero byte.
char singleDecimalPoint() noexcept;

/// Whether it is ".".
inline bool decimalPointIsDot() noexcept { return singleDecimalPoint() == '.'; }

/// Whether the global C++ locale is the classic one, which every program begins with.
/// Cost  7 ns; under another one the C++ library copies it under a mutex, as it does for every
///       stream, since there is no other way to ask.
bool globalLocaleIsClassic() noexcept;

/// Whether a wide stream made now would write a number as its plain digits: decimal point ".", no
/// grouping, and the standard's own facets at work.
/// Cost  as above; under another locale its facets are looked at, too.
bool wideStreamsWritePlainNumbers();

/// Whether libc prints numbers, in the calling thread's C locale and rounding mode, as the digits
/// made here are: both of the above.
inline bool libcPrintsPlainNumbers() noexcept {
    return decimalPointIsDot() && decimalsRoundToNearest();
}

}  // namespace com::halvorin::internal
