#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "utillibrary/internal/byte_block.h"
#include "utillibrary/internal/decimal.h"

// What escapeString, unescapeString and the lines of pairs share.
namespace com::halvorin::internal {

// ---- the escapes of a backslash and one letter

struct LetterEscape {
    char byte;
    char letter;
};

/// `escapeString` writes these and `unescapeString` reads them. Both take them from here.
constexpr LetterEscape LETTER_ESCAPES[] = {
    {'\\', '\\'}, {'\f', 'f'}, {'\n', 'n'}, {'\r', 'r'}, {'\t', 't'}, {'"', '"'}, {'\b', 'b'},
};

/// `unescapeString` also reads these. Nothing writes them.
constexpr LetterEscape ESCAPES_ONLY_READ[] = {
    {'\a', 'a'},
    {'\v', 'v'},
    {'\'', '\''},
    {'?', '?'},
};

// ---- strings of which every byte stays as it is

/// 0xFF for each byte that is not escaped, and 0 for the others, under a locale in which exactly
/// the bytes from '!' to '~' are graphic.
/// Takes    bytes: one byte or a block of them; none may be a backslash
template <typename Byte>
constexpr Byte staysAsUsual(Byte bytes, bool keepSpace) noexcept {
    return static_cast<Byte>(between(bytes, keepSpace ? ' ' : '!', '~') & ~equal(bytes, '"'));
}

inline bool allStay(Bytes bytes, bool keepSpace) noexcept {
    return !any(~staysAsUsual(bytes, keepSpace) | equal(bytes, '\\'));
}

/// A string of one to two words, as a block: its first word, its last word, and the first again.
template <typename Word>
Bytes endsOf(std::string_view text) noexcept {
    std::array<Word, sizeof(Bytes) / sizeof(Word)> words;
    std::memcpy(words.data(), text.data(), sizeof(Word));
    std::memcpy(words.data() + 1, text.data() + text.size() - sizeof(Word), sizeof(Word));
    std::fill(words.begin() + 2, words.end(), words[0]);
    return std::bit_cast<Bytes>(words);
}

/// True if a string is its own escaped form under every locale that has the bytes from '!' to '~'
/// graphic, for which `ByteClasses::asciiIsGraphic` is true.
inline bool isPlain(std::string_view text, bool keepSpace) noexcept {
    constexpr std::size_t BLOCK_SIZE = sizeof(Bytes);
    std::size_t const size = text.size();
    if (size >= BLOCK_SIZE) {
        for (std::size_t i = 0; i + BLOCK_SIZE < size; i += BLOCK_SIZE) {
            if (!allStay(loadBytes(&text[i]), keepSpace)) return false;
        }
        return allStay(loadBytes(&text[size - BLOCK_SIZE]), keepSpace);
    }
    if (size >= 8) return allStay(endsOf<std::uint64_t>(text), keepSpace);
    if (size >= 4) return allStay(endsOf<std::uint32_t>(text), keepSpace);
    if (size >= 2) return allStay(endsOf<std::uint16_t>(text), keepSpace);
    return size == 0 || allStay(endsOf<std::uint8_t>(text), keepSpace);
}

// ---- strings in which some bytes are escaped

/// General path: any string under any C locale.
std::string escapeByLocale(std::string_view text, bool keepSpace);

/// Fast path: any string under a locale that has exactly the bytes from '!' to '~' graphic, for
/// which `ByteClasses::graphicIsUsual` is true.
std::string escapeAsUsual(std::string_view text, bool keepSpace);

// ---- escapeString for many strings, one after the other

/// How strings are escaped while the C locale stays the same.
struct Escaping {
    bool keepSpace;
    bool usual;  // `ByteClasses::graphicIsUsual`
};

/// `escapeString(text, escaping.keepSpace)`.
std::string escaped(std::string_view text, Escaping const& escaping);

/// The number of bytes that `writeEscaped` may write for a string of `size` bytes: six characters
/// for each byte, and two more, since the last escape is stored as a word of eight bytes.
constexpr std::size_t escapedRoom(std::size_t size) noexcept { return 6 * size + 2; }
static_assert(escapedRoom(1) == sizeof(std::uint64_t));

/// Writes `escaped(text, escaping)` to `out`; returns the position after it.
char* writeEscaped(char* out, std::string_view text, Escaping const& escaping) noexcept;

/// Fast path of `writeEscaped`: answers for plain strings of one to two words under a usual locale.
/// Declines others.
template <typename Word>
std::optional<char*> copyPlain(char* out, std::string_view text, bool keepSpace) noexcept {
    if (text.size() < sizeof(Word) || text.size() > 2 * sizeof(Word)) return std::nullopt;
    if (!allStay(endsOf<Word>(text), keepSpace)) return std::nullopt;
    std::size_t const last = text.size() - sizeof(Word);
    std::memcpy(out, text.data(), sizeof(Word));
    std::memcpy(out + last, text.data() + last, sizeof(Word));
    return out + text.size();
}

// ---- unescapeString: the byte that hexadecimal digits give

/// The value of each byte as a hexadecimal digit in either case; -1 for every other byte.
constexpr auto HEXADECIMAL_VALUES = [] {
    std::array<signed char, 256> values{};
    for (signed char& value : values)
        value = -1;
    for (signed char i = 0; i < 16; ++i) {
        char const digit = HEXADECIMAL_DIGITS[i];
        values[static_cast<unsigned char>(digit)] = i;
        if (i >= 10) values[static_cast<unsigned char>(digit - 'a' + 'A')] = i;
    }
    return values;
}();

constexpr int hexadecimalValue(char digit) noexcept {
    return HEXADECIMAL_VALUES[static_cast<unsigned char>(digit)];
}

struct DigitsRead {
    char byte;
    std::size_t size;  // how many bytes of the string were digits
};

/// General path: reads up to four bytes at the front that `isxdigit` accepts under the C locale.
DigitsRead readDigits(std::string_view text) noexcept;

/// Fast path: answers for strings that begin with four of 0 to 9, a to f and A to F, which are
/// digits in every locale. Declines others.
inline std::optional<DigitsRead> readFourDigits(std::string_view text) noexcept {
    if (text.size() < 4) return std::nullopt;
    int const high = hexadecimalValue(text[0]) | hexadecimalValue(text[1]);
    int const sixteens = hexadecimalValue(text[2]);
    int const ones = hexadecimalValue(text[3]);
    if ((high | sixteens | ones) < 0) return std::nullopt;
    // KEPT(escape-is-one-byte): the first two digits are above the low eight bits.
    return DigitsRead{static_cast<char>(sixteens << 4 | ones), 4};
}

}  // namespace com::halvorin::internal
