#pragma once

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

// What a plain number says: digits * 10^exponent.
struct PlainNumber {
    unsigned long digits = 0;
    int exponent = 0;
    bool minus = false;
    bool written = false;                     // whether the exponent is a written one
    std::array<char, MOST_DIGITS + 1> bytes;  // digits and point
    std::size_t size = 0;
};

// Takes off the front of the text what stands for a sign; true for a minus.
template <typename Character>
bool takeSign(std::basic_string_view<Character>& text) noexcept {
    bool const minus = !text.empty() && text.front() == '-';
    if (minus || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
    return minus;
}

// Reads an optional sign, digits with at most one point among them, and an optional exponent of up
// to two digits, to the end of the text.
template <typename Character, typename PointIsDot>
bool readPlainNumber(std::basic_string_view<Character> text, PointIsDot pointIsDot,
                     PlainNumber& number) noexcept {
    number.minus = takeSign(text);
    std::size_t digits = 0;
    bool point = false;
    for (; !text.empty() && text.front() != 'e'; text.remove_prefix(1)) {
        Character const c = text.front();
        if (isDecimalDigit(c) && digits < MOST_DIGITS) {
            number.digits = 10 * number.digits + static_cast<unsigned long>(c - '0');
            ++digits;
            if (point) --number.exponent;
        } else if (c == '.' && !point && pointIsDot()) {
            point = true;
        } else {
            return false;
        }
        number.bytes[number.size++] = static_cast<char>(c);
    }
    if (digits == 0) return false;
    if (text.empty()) return true;

    text.remove_prefix(1);
    bool const minus = takeSign(text);
    if (text.size() > 2) return false;
    int exponent = 0;  // libc ignores an "e" without digits, which comes to the same
    for (Character const c : text) {
        if (!isDecimalDigit(c)) return false;
        exponent = 10 * exponent + static_cast<int>(c - '0');
    }
    number.exponent += minus ? -exponent : exponent;
    number.written = true;
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
    PlainNumber number;
    if (!readPlainNumber(text, pointIsDot, number)) return std::nullopt;

    int const power = number.exponent < 0 ? -number.exponent : number.exponent;
    if (number.digits <= EXACT && power <= EXACT_POWER) {
        auto const digits = static_cast<Floating>(number.digits);
        auto const scale =
            static_cast<Floating>(EXACT_POWERS_OF_TEN[static_cast<std::size_t>(power)]);
        Floating const value = number.minus ? -digits : digits;
        return number.exponent < 0 ? value / scale : value * scale;
    }
    if (number.written || !roundsToNearest()) return std::nullopt;
    Floating value = 0;
    std::from_chars(number.bytes.data(), number.bytes.data() + number.size, value);
    return number.minus ? -value : value;
}

}  // namespace com::halvorin::internal
