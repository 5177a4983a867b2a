#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string>

// The digits of numbers: what this library writes in decimal or hexadecimal, it writes from here.
// Each writer takes a position in the caller's buffer and returns the position after its last
// character.
namespace com::halvorin::internal {

/// "00", "01" ... "99" in a row.
inline constexpr auto TWO_DIGITS = [] {
    std::array<char, 200> table{};
    for (std::size_t i = 0; i < 100; ++i) {
        table[2 * i] = static_cast<char>('0' + i / 10);
        table[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return table;
}();

/// The character of each hexadecimal digit, 0 to 15.
inline constexpr char HEXADECIMAL_DIGITS[] = "0123456789abcdef";

/// Takes  value: 0..99
inline char* writeTwoDigits(char* out, unsigned value) noexcept {
    std::memcpy(out, &TWO_DIGITS[2 * static_cast<std::size_t>(value)], 2);
    return out + 2;
}

/// Takes  value: 0..9999
inline char* writeFourDigits(char* out, unsigned value) noexcept {
    return writeTwoDigits(writeTwoDigits(out, value / 100), value % 100);
}

/// Writes an int in decimal, in up to 11 bytes.
char* writeWhole(char* out, int value) noexcept;

/// A whole number as std::to_string writes it. For 64 bits std::to_string takes a third longer,
/// because it counts the digits first.
std::string wholeText(long value);

/// The bytes that `writeGeneral` needs. Its longest result, "-1.23457e+308", has 13. But it stores
/// eight characters at once, and it may do so after the seven of "-12345.".
inline constexpr std::size_t GENERAL_SIZE = 15;

/// Writes what printf writes for "%g" in the "C" locale when it rounds to the nearest.
/// Takes  out: GENERAL_SIZE bytes
char* writeGeneral(char* out, double value) noexcept;

/// The general path of `writeGeneral`: every value, three times as slow.
char* writeGeneralExactly(char* out, double value) noexcept;

/// The fast path of `writeGeneral`: 0 and normal numbers, unless the digits that are cut off are
/// too close to half of the last digit that stays.
std::optional<char*> writeSixDigits(char* out, double value) noexcept;

/// The bytes that `printGeneral` needs: the decimal point of a C locale may have several bytes.
inline constexpr std::size_t PRINTED_GENERAL_SIZE = 32;

/// Writes what printf writes for "%g" now, in the C locale and the rounding mode in force.
/// Takes  out: PRINTED_GENERAL_SIZE bytes; plain: the result of libcPrintsPlainNumbers(), so that a
///        caller with many numbers asks once
char* printGeneral(char* out, double value, bool plain) noexcept;

}  // namespace com::halvorin::internal
