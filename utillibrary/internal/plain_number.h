#pragma once

#include <bit>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cwctype>
#include <limits>
#include <optional>
#include <string_view>

#include "utillibrary/internal/digits.h"
#include "utillibrary/internal/power_of_ten.h"
#include "utillibrary/internal/rounding.h"

// The fast path from strings to floating numbers, narrow and wide. The general path is libc's
// strtof, strtod or wcstod.
//
// gcc 12 returns a std::optional through memory, which takes as long as the reading of three
// digits. So the functions that return one are inlined always.
namespace com::halvorin::internal {

/// digits * 10^exponent, negative if `minus`.
struct PlainNumber {
    unsigned long digits;
    int exponent;
    bool minus;
};

/// A sign, digits with a point among them, "e", a sign and two digits.
inline constexpr long LONGEST_NUMBER = MOST_DIGITS + 6;

/// True if the C locale says that c is whitespace, which libc skips. No locale may say so of a
/// digit, but one may say so of "-" or ".".
inline bool isSkipped(char c) noexcept { return std::isspace(static_cast<unsigned char>(c)) != 0; }
inline bool isSkipped(wchar_t c) noexcept {
    return std::iswspace(static_cast<std::wint_t>(c)) != 0;
}

/// Reads a string that is an optional sign, 1 to 19 digits with at most one point among them, and
/// an optional exponent: "e", an optional sign, and up to two digits.
/// Takes  decimalPoint: a function that gives libc's decimal point, or a zero if that is longer
///        than one character. It is called only for a string with a "." or an "e", and once.
/// Gives  false for any other string; `number` is then unchanged.
template <typename Text, typename DecimalPoint>
bool parsePlainNumber(Text const& text, DecimalPoint decimalPoint, PlainNumber& number) noexcept {
    auto const* const end = text.data() + text.size();
    auto const stop = endOfDigits(text);
    if (text.empty() || end - text.data() > LONGEST_NUMBER) return false;
    if (!isDecimalDigit(text.front()) && isSkipped(text.front())) return false;

    auto const [minus, first] = takeSign(text.data(), end);
    auto [digits, at] = takeDigits(first, stop);
    auto const wholeDigits = at - first;
    if (at == end) {
        if (wholeDigits == 0 || wholeDigits > MOST_DIGITS) return false;
        number = PlainNumber{digits, 0, minus};
        return true;
    }

    if (*at != '.' && *at != 'e') return false;
    auto const point = decimalPoint();
    long places = 0;
    if (*at == '.') {
        if (point != '.') return false;
        auto const fraction = takeDigits(at + 1, stop, digits);
        digits = fraction.value;
        places = fraction.end - at - 1;
        at = fraction.end;
    }
    long const count = wholeDigits + places;
    if (count == 0 || count > MOST_DIGITS) return false;
    int const exponent = -static_cast<int>(places);
    if (at == end) {
        number = PlainNumber{digits, exponent, minus};
        return true;
    }

    // An "e" may be the decimal point, too.
    if (*at != 'e' || point == 'e' || point == '\0') return false;
    auto const [down, firstOfExponent] = takeSign(at + 1, end);
    // libc ignores an "e" without digits. Here the exponent is then 0, which is the same.
    auto const shift = takeDigits(firstOfExponent, stop);
    if (shift.end != end || end - firstOfExponent > 2) return false;
    auto const distance = static_cast<int>(shift.value);
    number = PlainNumber{digits, exponent + (down ? -distance : distance), minus};
    return true;
}

/// digits * 10^exponent, rounded to the nearest, from the leading bits of the power.
/// Takes  digits: not 0
/// Declines if these bits do not tell on which side of a halfway point the number is. Also declines
/// if libc may report a range error: if the result is too large, or is not above the smallest
/// normal number, to which a smaller number may have been rounded. All floating operations here are
/// exact. So they raise no flag, and the rounding mode of the arithmetic does not matter.
template <typename Floating>
[[gnu::always_inline]] inline std::optional<Floating> scaledToNearest(unsigned long digits,
                                                                      int exponent) noexcept {
    int const zeros = std::countl_zero(digits);
    Scaled const product = scaled(digits << zeros, -zeros, exponent);
    int const leadingZeros = product.bits >> 63 == 0 ? 1 : 0;
    int const places = 64 - std::numeric_limits<Floating>::digits - leadingZeros;
    if (mayBeHalfway(product.bits, places, SCALED_ERROR)) return std::nullopt;
    auto const power = static_cast<std::uint64_t>(product.exponent + places + 1023) << 52;
    double const value =
        static_cast<double>(rounded(product.bits, places)) * std::bit_cast<double>(power);
    bool const inRange = value > std::numeric_limits<Floating>::min() &&
                         value <= std::numeric_limits<Floating>::max();
    if (!inRange) return std::nullopt;
    return static_cast<Floating>(value);
}

/// value * 10^power, or value / 10^-power, rounded as libc rounds it.
/// Takes  value: exact; power: of EXACT_POWERS_OF_TEN, if it is exact in Floating, or its negative
/// Declines if arithmetic may round in another direction than libc.
///
/// If libc rounds to the nearest, the reverse operation shows whether arithmetic does so too. Take
/// arithmetic that rounds down: an inexact result is too small, and the reverse operation gives
/// less than the value. Upward it gives more. So it gives the value back only if the result is
/// exact, or if arithmetic rounds to the nearest. To read the mode of the arithmetic takes longer
/// on some processors. Both operations are exact if the result is, so they raise FE_INEXACT only if
/// libc does.
template <typename Floating>
[[gnu::always_inline]] inline std::optional<Floating> scaledByArithmetic(Floating value,
                                                                         int power) noexcept {
    auto const scale = static_cast<Floating>(
        EXACT_POWERS_OF_TEN[static_cast<std::size_t>(power < 0 ? -power : power)]);
    Floating const result = power < 0 ? value / scale : value * scale;
    if (decimalsRoundToNearest()) {
        Floating const restored = power < 0 ? result * scale : result / scale;
        if (restored != value) return std::nullopt;
    } else if (!arithmeticRoundsAsDecimals()) {
        return std::nullopt;
    }
    return result;
}

/// The number as strtof, strtod or wcstod gives it, under the rounding words in force.
template <typename Floating>
[[gnu::always_inline]] inline std::optional<Floating> toFloating(
    PlainNumber const& plain) noexcept {
    constexpr unsigned long EXACT = 1UL << std::numeric_limits<Floating>::digits;
    constexpr int EXACT_POWER = sizeof(Floating) == sizeof(float) ? 10 : 22;
    if (plain.digits <= EXACT) {
        auto const digits = static_cast<Floating>(plain.digits);
        Floating const value = plain.minus ? -digits : digits;
        if (plain.exponent == 0 || plain.digits == 0) return value;
        if (plain.exponent >= -EXACT_POWER && plain.exponent <= EXACT_POWER) {
            if (auto const result = scaledByArithmetic(value, plain.exponent)) return *result;
        }
    }
    if (!decimalsRoundToNearest()) return std::nullopt;
    auto const magnitude = scaledToNearest<Floating>(plain.digits, plain.exponent);
    if (!magnitude) return std::nullopt;
    return plain.minus ? -*magnitude : *magnitude;
}

/// The number that the whole string is, as strtof, strtod or wcstod gives it. Declines a string
/// that is not a plain number, and the few numbers that only libc rounds.
/// Takes  Floating: float or double; text: a std::string, a std::wstring, or a std::string_view;
///        decimalPoint: as for `parsePlainNumber`
template <typename Floating, typename Text, typename DecimalPoint>
[[gnu::always_inline]] inline std::optional<Floating> readPlain(
    Text const& text, DecimalPoint decimalPoint) noexcept {
    PlainNumber number;
    if (!parsePlainNumber(text, decimalPoint, number)) return std::nullopt;
    return toFloating<Floating>(number);
}

}  // namespace com::halvorin::internal
