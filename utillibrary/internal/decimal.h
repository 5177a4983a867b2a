#pragma once

#include <array>
#include <cstring>
#include <string>

// Digits, written once: whatever this library prints in decimal.
// All writers take a position in the caller's buffer and give the position after what they wrote.
namespace com::halvorin::internal {

/// "00", "01" ... "99", one after the other.
inline constexpr auto TWO_DIGITS = [] {
    std::array<char, 200> table{};
    for (std::size_t i = 0; i < 100; ++i) {
        table[2 * i] = static_cast<char>('0' + i / 10);
        table[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return table;
}();

/// Takes  value: 0..99
inline char* writeTwoDigits(char* out, unsigned value) noexcept {
    std::memcpy(out, &TWO_DIGITS[2 * static_cast<std::size_t>(value)], 2);
    return out + 2;
}

/// Takes  value: 0..9999
inline char* writeFourDigits(char* out, unsigned value) noexcept {
    return writeTwoDigits(writeTwoDigits(out, value / 100), value % 100);
}

/// A whole number as std::to_string writes it, which takes a third longer for 64 bits: it asks for
/// the number of digits first.
std::string wholeText(long value);

/// The room that `writeGeneral` needs: its longest text is "-1.23457e+308", and it stores eight
/// characters at once, at the farthest those behind "-0.000".
inline constexpr std::size_t GENERAL_SIZE = 14;

/// What `printf("%.6g")` writes in the C locale under round-to-nearest; needs GENERAL_SIZE bytes.
char* writeGeneral(char* out, double value) noexcept;

/// The same as a text, which a std::string keeps in itself: it is written in place.
inline std::string generalText(double value) {
    std::string text(GENERAL_SIZE, '\0');
    text.erase(static_cast<std::size_t>(writeGeneral(text.data(), value) - text.data()));
    return text;
}

}  // namespace com::halvorin::internal
