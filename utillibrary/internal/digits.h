#pragma once

#include <climits>
#include <iterator>
#include <string>
#include <string_view>

#include <utillibrary/export.h>

// Signs and decimal digits in narrow and wide strings: the parts that all readers of numbers share.
// A reader takes a position, and gives what it read with the position after it.
namespace com::halvorin::internal {

/// True for '0' to '9', in every locale.
template <typename Character>
constexpr bool isDecimalDigit(Character c) noexcept {
    return c >= '0' && c <= '9';
}

/// True for '+' and '-'.
template <typename Character>
constexpr bool isSign(Character c) noexcept {
    return c == '+' || c == '-';
}

/// The number of decimal digits that 64 bits always have room for: 10^19 is below 2^64.
inline constexpr long MOST_DIGITS = 19;

/// What a reader read, and the position after it.
template <typename Character, typename Value>
struct Taken {
    Value value;
    Character const* end;
};

/// Reads a sign, if there is one. Gives true for a minus.
/// Takes  at: the position of a character
template <typename Character>
constexpr Taken<Character, bool> takeSign(Character const* at) noexcept {
    bool const minus = *at == '-';
    bool const plus = *at == '+';
    // No branch: the processor cannot predict signs.
    return {minus, at + static_cast<int>(minus | plus)};
}

/// The same at a position that may be the end of the string.
template <typename Character>
constexpr Taken<Character, bool> takeSign(Character const* at, Character const* end) noexcept {
    return at == end ? Taken<Character, bool>{false, at} : takeSign(at);
}

/// Where `takeDigits` must stop. A view ends at its size.
template <typename Character>
constexpr Character const* endOfDigits(std::basic_string_view<Character> text) noexcept {
    return text.data() + text.size();
}

/// A string needs no limit: after its last character is a zero, which is not a digit.
template <typename Character>
constexpr auto endOfDigits(std::basic_string<Character> const& /*text*/) noexcept {
    return std::unreachable_sentinel;
}

/// Reads digits, as if those of `value` were before them. More than MOST_DIGITS of them, leading
/// zeros apart, wrap at 64 bits.
template <typename Character, typename End>
UTILLIBRARY_WRAPS constexpr Taken<Character, unsigned long> takeDigits(
    Character const* at, End end, unsigned long value = 0) noexcept {
    for (; at != end && isDecimalDigit(*at); ++at)
        value = 10 * value + static_cast<unsigned long>(*at - '0');
    return {value, at};
}

/// Reads a sign, if there is one, and decimal digits. Gives 0 if there are no digits, and LONG_MIN
/// or LONG_MAX if a long has no room for the number.
/// Takes  text: ends before a character that is neither a sign nor a digit, such as a zero
template <typename Character>
UTILLIBRARY_WRAPS constexpr Taken<Character, long> takeInteger(Character const* text) noexcept {
    auto const [minus, first] = takeSign(text);
    auto const [magnitude, end] = takeDigits(first, std::unreachable_sentinel);
    unsigned long const limit = static_cast<unsigned long>(LONG_MAX) + (minus ? 1 : 0);
    bool fits = magnitude <= limit;
    if (end - first > MOST_DIGITS) {
        auto const* significant = first;
        while (*significant == '0')
            ++significant;
        fits = fits && end - significant <= MOST_DIGITS;
    }
    unsigned long const value = fits ? magnitude : limit;
    return {static_cast<long>(minus ? 0 - value : value), end};
}

}  // namespace com::halvorin::internal
