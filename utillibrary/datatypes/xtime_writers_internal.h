#pragma once

#include <optional>

#include "utillibrary/datatypes/xtime_internal.h"
#include "utillibrary/internal/calendar.h"
#include "utillibrary/internal/decimal.h"
#include "utillibrary/internal/digits.h"
#include "utillibrary/internal/locale.h"
#include "utillibrary/internal/rounding.h"
#include "utillibrary/internal/wrapping.h"

// The fast paths that write time strings. Each returns the end of what it wrote, or declines and
// has written nothing. Their general paths are declared in xtime_internal.h. All are inline, so
// that a call costs nothing.
namespace com::halvorin::datatypes {

/// Answers for the years 0 to 9999: such a year has four digits, and every other field has two.
/// Takes    out: ISO_BUFFER_SIZE bytes
inline std::optional<char*> writeDateAndTime(char* out,
                                             internal::BrokenDownTime const& t) noexcept {
    if (t.year < 0 || t.year > 9999) return std::nullopt;
    using namespace com::halvorin::internal;
    out = writeFourDigits(out, asUnsigned(t.year));
    *out++ = '-';
    out = writeTwoDigits(out, asUnsigned(t.month));
    *out++ = '-';
    out = writeTwoDigits(out, asUnsigned(t.day));
    *out++ = 'T';
    out = writeTwoDigits(out, asUnsigned(t.hour));
    *out++ = ':';
    out = writeTwoDigits(out, asUnsigned(t.minute));
    *out++ = ':';
    return writeTwoDigits(out, asUnsigned(t.second));
}

/// Answers if the decimal point is one byte and no digit, and libc rounds decimals to the nearest.
/// If a locale made by hand has a digit as its decimal point, printf rounds in another way.
/// Takes    fraction: 0 to 1
inline std::optional<char*> writeFraction(char* out, float fraction) noexcept {
    using namespace com::halvorin::internal;
    char const point = singleDecimalPoint();
    bool const isUsual = point != '\0' && !isDecimalDigit(point);
    if (!isUsual || !decimalsRoundToNearest()) return std::nullopt;
    // "%f" rounds a half to even, this rounds it up. The difference does not show: halves are odd
    // multiples of 1/128 s, that is of 7812.5 us, and none of them ends in 999.5.
    // KEPT(fraction-of-six-decimals): 1000000 shows three zeros, and nothing is carried.
    auto const microseconds = static_cast<unsigned>(FixedPoint(fraction).timesToNearest(1'000'000));
    unsigned const milliseconds = microseconds / 1000 % 1000;
    *out++ = point;
    *out++ = static_cast<char>('0' + milliseconds / 100);
    return writeTwoDigits(out, milliseconds % 100);
}

/// Answers for the years 1000 to 9999, which "%4d" does not pad.
/// Takes    out: FOURTEEN_DIGITS bytes
inline std::optional<char*> writeFourteenDigits(char* out,
                                                internal::BrokenDownTime const& t) noexcept {
    if (t.year < 1000 || t.year > 9999) return std::nullopt;
    using namespace com::halvorin::internal;
    out = writeFourDigits(out, asUnsigned(t.year));
    for (int const field : {t.month, t.day, t.hour, t.minute, t.second}) {
        out = writeTwoDigits(out, asUnsigned(field));
    }
    return out;
}

}  // namespace com::halvorin::datatypes
