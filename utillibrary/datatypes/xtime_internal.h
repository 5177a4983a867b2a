#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "utillibrary/internal/calendar.h"

// The general paths of the time strings, and what all their sources share. A general path is the
// definition, and takes everything. Each has a fast path in xtime_writers_internal.h or
// xtime_readers_internal.h, which takes common input and declines the rest by std::nullopt.
namespace com::halvorin::datatypes {

// A float as a number of 24 bits divided by a power of two. Its parts come from shifts: floating
// arithmetic would round by the SSE rounding word where libc rounds by the x87 word, and would
// raise FE_INEXACT where libc raises nothing.
class FixedPoint {
public:
    /// Takes    value: from 0 to below 2^24
    explicit constexpr FixedPoint(float value) noexcept {
        auto const bits = std::bit_cast<std::uint32_t>(value);
        // Zero and subnormal numbers have no leading bit, but get one here. They become 2^-40,
        // which is too small to change a result.
        mantissa_ = (bits & 0x7F'FFFF) | 0x80'0000;
        places_ = std::min(150 - (bits >> 23), 63U);
    }

    /// The whole part.
    constexpr unsigned long whole() const noexcept { return mantissa_ >> places_; }

    /// The part after the point, times a factor, cut to a whole number.
    /// Takes    factor: below 2^39
    constexpr unsigned long fractionTimes(unsigned long factor) const noexcept {
        return (mantissa_ - (whole() << places_)) * factor >> places_;
    }

    /// The number times a factor, rounded to the nearest whole number; a half goes up.
    /// Takes    factor: below 2^38, for a number below 1 or the number 1 itself
    constexpr unsigned long timesToNearest(unsigned long factor) const noexcept {
        return (mantissa_ * factor + (1UL << places_ >> 1)) >> places_;
    }

private:
    unsigned long mantissa_;  // below 2^24
    unsigned places_;         // the power of two that divides it: 0 to 63
};

// ---- strings, written (xtime_text.cpp; fourteen digits in xtime_conversions.cpp)

// The longest ISO string has 35 bytes: 11 of year, 15 of date and time, 4 of fraction, 5 of zone.
inline constexpr std::size_t ISO_BUFFER_SIZE = 64;

/// "%04d-%02d-%02dT%02d:%02d:%02d", as printf writes it.
/// Takes    out: ISO_BUFFER_SIZE bytes
char* printDateAndTime(char* out, internal::BrokenDownTime const& t) noexcept;

/// Bytes 1 to 4 of what printf("%f1.3") writes: the decimal point and the digits after it. A
/// decimal point of two bytes leaves two digits. KEPT(fraction-of-six-decimals)
/// Takes    fraction: 0 to 1
char* printFraction(char* out, float fraction) noexcept;

inline constexpr std::size_t FOURTEEN_DIGITS = 14;

/// "%4d%02d%02d%02d%02d%02d", as printf writes it.
std::string printFourteenDigits(internal::BrokenDownTime const& t);

// ---- ISO strings, read (xtime_parse.cpp)

// The numbers in an ISO string, before their ranges are checked.
struct IsoNumbers {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    float second = 0;
    int zoneHours = 0;  // with their sign
    int zoneMinutes = 0;

    bool operator==(IsoNumbers const&) const = default;
};

/// What sscanf reads; std::nullopt if a number is missing that must be there.
std::optional<IsoNumbers> scanIsoNumbers(std::string const& text) noexcept;

// ---- fourteen digits, read (xtime_conversions.cpp)

/// What std::stoi reads in each field. Throws what std::stoi throws.
/// Takes    text: FOURTEEN_DIGITS bytes
long convertFourteenDigits(std::string const& text);

}  // namespace com::halvorin::datatypes
