#pragma once

#include <cstring>
#include <locale>
#include <optional>

#include "utillibrary/internal/rounding.h"

// Questions about the two locales that are in force at the same time. `setlocale` and `uselocale`
// set the C locale, which printf, strtod and isspace follow. `std::locale::global` sets the C++
// locale, which new streams follow. Either may change without the other.
namespace com::halvorin::internal {

/// The decimal point that libc writes and reads in the calling thread's C locale, if it is one
/// byte; else a zero byte.
char singleDecimalPoint() noexcept;

/// The decimal point that libc reads in wide strings in the calling thread's C locale.
wchar_t wideDecimalPoint() noexcept;

/// True if the point of `singleDecimalPoint` is ".".
inline bool decimalPointIsDot() noexcept { return singleDecimalPoint() == '.'; }

/// True if `locale` is the classic one itself. The == of std::locale also accepts an equal name,
/// and a locale keeps its name when `combine` gives it another locale's facet. A std::locale is one
/// pointer, so the pointers are compared.
inline bool isClassic(std::locale const& locale) noexcept {
    // Stored, because std::locale::classic() asks at each call whether it is initialised.
    static std::locale const& classic = std::locale::classic();
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison,cert-*): see above
    return std::memcmp(&locale, &classic, sizeof locale) == 0;
}

/// The facets that tell wide streams what separators, digits and whitespace are.
struct StandardFacets {
    std::numpunct<wchar_t> const& punctuation;
    std::ctype<wchar_t> const& characters;
};

/// The facets of `locale`, if all facets by which a wide stream reads numbers are the standard
/// library's own. The stream then follows the rules of num_get, and digits and signs are the ASCII
/// characters, because a standard ctype widens these to themselves. Declines if a host derived one
/// of the facets.
/// Cost  30 ns.
std::optional<StandardFacets> standardReadingFacets(std::locale const& locale);

/// True if wide streams with this locale write each number as in the classic locale: the facets are
/// the standard library's own, the decimal point is ".", and digits are not grouped.
bool writesPlainNumbers(std::locale const& locale);

/// True if a wide stream that is made now writes each number as in the classic locale.
/// Cost  3 ns in the classic locale. Under another locale the C++ library copies that locale under
///       a mutex, as each new stream does, and its facets are looked at: 50 ns.
inline bool wideStreamsWritePlainNumbers() {
    std::locale const global;
    return isClassic(global) || writesPlainNumbers(global);
}

/// True if libc, in the calling thread's C locale and rounding mode, prints numbers as decimal.h
/// does: the decimal point is ".", and the rounding is to the nearest.
inline bool libcPrintsPlainNumbers() noexcept {
    return decimalPointIsDot() && decimalsRoundToNearest();
}

}  // namespace com::halvorin::internal
