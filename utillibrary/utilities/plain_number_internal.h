#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <limits>
#include <optional>
#include <string_view>

#include "utillibrary/utilities/locale_internal.h"

// The direct road from text to floating numbers, narrow and wide.
namespace com::halvorin::internal {

template <typename Character>
constexpr bool isDecimalDigit(Character c) noexcept {
    return c >= '0' && c <= '9';
}

inline constexpr std::size_t MOST_DIGITS = 19;  // below 2^64

// A sign, digits with a point among them, "e", a sign and two digits.
inline constexpr std::size_t LONGEST_NUMBER = MOST_DIGITS + 6;

// What a plain number says: digits * 10^exponent.
template <typename Character>
struct PlainNumber {
    std::basic_string_view<Character> written;  // digits and point, as they stand in the text
    unsigned long digits = 0;
    int exponent = 0;
    bool minus = false;
    bool hasExponent = false;  // whether one is written
};

// Takes off the front of the text what stands for a sign; true for a minus.
template <typename Character>
bool takeSign(std::basic_string_view<Character>& text) noexcept {
    if (text.empty()) return false;
    bool const minus = text.front() == '-';
    bool const plus = text.front() == '+';
    // Without a branch, as nobody can foretell a sign.
    text.remove_prefix(static_cast<std::size_t>(minus | plus));
    return minus;
}

// Takes the digits off the front, puts them behind those of `value`, and gives their number; what
// does not fit 64 bits is lost.
template <typename Character>
std::size_t takeDigits(std::basic_string_view<Character>& text, unsigned long& value) noexcept {
    std::size_t count = 0;
    for (; count < text.size() && isDecimalDigit(text[count]); ++count) {
        value = 10 * value + static_cast<unsigned long>(text[count] - '0');
    }
    text.remove_prefix(count);
    return count;
}

// Reads an optional sign, digits with at most one point among them, and an optional exponent of up
// to two digits, to the end of the text.
template <typename Character, typename PointIsDot>
bool readPlainNumber(std::basic_string_view<Character> text, PointIsDot pointIsDot,
                     PlainNumber<Character>& number) noexcept {
    if (text.size() > LONGEST_NUMBER) return false;
    number.minus = takeSign(text);
    number.written = text;
    std::size_t digits = takeDigits(text, number.digits);
    if (!text.empty() && text.front() == '.' && pointIsDot()) {
        text.remove_prefix(1);
        std::size_t const places = takeDigits(text, number.digits);
        number.exponent = -static_cast<int>(places);
        digits += places;
    }
    if (digits == 0 || digits > MOST_DIGITS) return false;
    if (text.empty()) return true;

    if (text.front() != 'e') return false;
    number.written.remove_suffix(text.size());
    number.hasExponent = true;
    text.remove_prefix(1);
    bool const minus = takeSign(text);
    unsigned long exponent = 0;  // libc ignores an "e" without digits, which comes to the same
    if (takeDigits(text, exponent) > 2 || !text.empty()) return false;
    number.exponent += minus ? -static_cast<int>(exponent) : static_cast<int>(exponent);
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

/// The number that the whole text is, as `strtof` and `strtod`, or `wcstod`, read it. Owns plain
/// decimals: an optional sign, up to 19 digits, a point among them where libc has it so, a short
/// exponent. Anything else: no answer.
/// Takes  pointIsDot: answers whether libc has it so; asked once, for a text with a point.
///
/// Digits and a power of ten that are both exact give a product, or a quotient, that is rounded
/// once, in the mode in force, as libc rounds. Longer ones are for from_chars, which equals libc
/// under round-to-nearest: without an exponent they neither overflow nor vanish.
template <typename Floating, typename Character, typename PointIsDot>
std::optional<Floating> plainNumber(std::basic_string_view<Character> text,
                                    PointIsDot pointIsDot) noexcept {
    constexpr unsigned long EXACT = 1UL << std::numeric_limits<Floating>::digits;
    constexpr int EXACT_POWER = sizeof(Floating) == sizeof(float) ? 10 : 22;
    PlainNumber<Character> number;
    if (!readPlainNumber(text, pointIsDot, number)) return std::nullopt;

    int const power = number.exponent < 0 ? -number.exponent : number.exponent;
    if (number.digits <= EXACT && power <= EXACT_POWER) {
        auto const digits = static_cast<Floating>(number.digits);
        auto const scale =
            static_cast<Floating>(EXACT_POWERS_OF_TEN[static_cast<std::size_t>(power)]);
        Floating const value = number.minus ? -digits : digits;
        return number.exponent < 0 ? value / scale : value * scale;
    }
    if (number.hasExponent || !roundsToNearest()) return std::nullopt;
    std::array<char, MOST_DIGITS + 1> bytes;
    std::transform(number.written.begin(), number.written.end(), bytes.begin(),
                   [](Character c) { return static_cast<char>(c); });
    Floating value = 0;
    std::from_chars(bytes.data(), bytes.data() + number.written.size(), value);
    return number.minus ? -value : value;
}

}  // namespace com::halvorin::internal
