#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string>
#include <string_view>

#include "utillibrary/internal/locale.h"
#include "utillibrary/internal/power_of_ten.h"
#include "utillibrary/internal/rounding.h"

// The direct road from text to floating numbers, narrow and wide.
namespace com::halvorin::internal {

template <typename Character>
constexpr bool isDecimalDigit(Character c) noexcept {
    return c >= '0' && c <= '9';
}

inline constexpr long MOST_DIGITS = 19;  // below 2^64

// A sign, digits with a point among them, "e", a sign and two digits.
inline constexpr long LONGEST_NUMBER = MOST_DIGITS + 6;

// What stands at a place of a text, and where it ends.
template <typename Character, typename Value>
struct Taken {
    Value value;
    Character const* end;
};

// What stands for a sign: true for a minus, and no step for neither.
template <typename Character>
constexpr Taken<Character, bool> takeSign(Character const* at, Character const* end) noexcept {
    if (at == end) return {false, at};
    bool const minus = *at == '-';
    bool const plus = *at == '+';
    // Without a branch, as nobody can foretell a sign.
    return {minus, at + static_cast<int>(minus | plus)};
}

// Where digits end at the latest. A view needs to be told; behind a whole text stands a zero, which
// is no digit.
template <typename Character>
constexpr Character const* endOfDigits(std::basic_string_view<Character> text) noexcept {
    return text.data() + text.size();
}

template <typename Character>
constexpr auto endOfDigits(std::basic_string<Character> const& /*text*/) noexcept {
    return std::unreachable_sentinel;
}

// Digits, put behind those of `value`; what does not fit 64 bits is lost.
template <typename Character, typename End>
constexpr Taken<Character, unsigned long> takeDigits(Character const* at, End end,
                                                     unsigned long value = 0) noexcept {
    for (; at != end && isDecimalDigit(*at); ++at)
        value = 10 * value + static_cast<unsigned long>(*at - '0');
    return {value, at};
}

// What a plain number says: digits * 10^exponent.
struct PlainNumber {
    unsigned long digits;
    int exponent;
    bool minus;
};

// Reads an optional sign, digits with at most one point among them, and an optional exponent of up
// to two digits, to the end of the text.
template <typename Text, typename PointIsDot>
bool readPlainNumber(Text const& text, PointIsDot pointIsDot, PlainNumber& number) noexcept {
    auto const* const end = text.data() + text.size();
    auto const stop = endOfDigits(text);
    if (end - text.data() > LONGEST_NUMBER) return false;
    auto const [minus, first] = takeSign(text.data(), end);
    auto [digits, at] = takeDigits(first, stop);
    long count = at - first;
    long places = 0;
    if (at != end && *at == '.' && pointIsDot()) {
        auto const fraction = takeDigits(at + 1, stop, digits);
        digits = fraction.value;
        places = fraction.end - at - 1;
        at = fraction.end;
    }
    count += places;
    if (count == 0 || count > MOST_DIGITS) return false;
    number = {digits, -static_cast<int>(places), minus};
    if (at == end) return true;

    if (*at != 'e') return false;
    auto const [down, firstOfExponent] = takeSign(at + 1, end);
    // libc ignores an "e" without digits, which comes to the same.
    auto const shift = takeDigits(firstOfExponent, stop);
    if (shift.end != end || end - firstOfExponent > 2) return false;
    number.exponent += down ? -static_cast<int>(shift.value) : static_cast<int>(shift.value);
    return true;
}

// The powers of ten that are exact: 5^10 is below 2^24, and 5^22 below 2^53.
inline constexpr auto EXACT_POWERS_OF_TEN = [] {
    std::array<double, 23> table{};
    table[0] = 1;
    for (std::size_t i = 1; i < table.size(); ++i)
        table[i] = table[i - 1] * 10;
    return table;
}();

// digits * 10^exponent to the nearest, by the leading bits of the power. Declines where these do
// not tell it from halfway, and where libc may report a number out of range: outside the normal
// numbers, and on the least of them, to which a smaller one may have been rounded.
template <typename Floating>
bool scaleToNearest(unsigned long digits, int exponent, Floating& nearest) noexcept {
    int const zeros = std::countl_zero(digits);
    Scaled const product = scaled(digits << zeros, -zeros, exponent);
    int const leadingZeros = product.bits >> 63 == 0 ? 1 : 0;
    int const places = 64 - std::numeric_limits<Floating>::digits - leadingZeros;
    if (mayBeHalfway(product.bits, places, SCALED_ERROR)) return false;
    auto const power = static_cast<std::uint64_t>(product.exponent + places + 1023) << 52;
    double const value =
        static_cast<double>(rounded(product.bits, places)) * std::bit_cast<double>(power);
    bool const inRange = value > std::numeric_limits<Floating>::min() &&
                         value <= std::numeric_limits<Floating>::max();
    if (inRange) nearest = static_cast<Floating>(value);
    return inRange;
}

/// Reads the number that the whole text is, as `strtof` and `strtod`, or `wcstod`, read it. Owns
/// plain decimals: an optional sign, up to 19 digits, a point among them where libc has it so, a
/// short exponent. Anything else: false, and the number stays as it was.
/// Takes  text: a std::string, a std::wstring, or a view; pointIsDot: answers whether libc has it
///        so, asked once, for a text with a point.
///
/// Digits and a power of ten that are both exact give a product, or a quotient, that is rounded
/// once, in the mode in force, as libc rounds. For others the leading bits are enough, but for few.
template <typename Floating, typename Text, typename PointIsDot>
bool readPlain(Text const& text, PointIsDot pointIsDot, Floating& number) noexcept {
    constexpr unsigned long EXACT = 1UL << std::numeric_limits<Floating>::digits;
    constexpr int EXACT_POWER = sizeof(Floating) == sizeof(float) ? 10 : 22;
    PlainNumber plain;
    if (!readPlainNumber(text, pointIsDot, plain)) return false;

    int const power = plain.exponent < 0 ? -plain.exponent : plain.exponent;
    if (plain.digits <= EXACT && power <= EXACT_POWER) {
        auto const digits = static_cast<Floating>(plain.digits);
        auto const scale =
            static_cast<Floating>(EXACT_POWERS_OF_TEN[static_cast<std::size_t>(power)]);
        Floating const value = plain.minus ? -digits : digits;
        number = plain.exponent < 0 ? value / scale : value * scale;
        return true;
    }
    if (plain.digits == 0 || !roundsToNearest()) return false;
    if (!scaleToNearest(plain.digits, plain.exponent, number)) return false;
    if (plain.minus) number = -number;
    return true;
}

}  // namespace com::halvorin::internal
