#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "utillibrary/internal/attributes.h"
#include "utillibrary/internal/byte_block.h"
#include "utillibrary/internal/byte_class.h"
#include "utillibrary/utilities/StringEscape_internal.h"
#include "utillibrary/utilities/StringUtilities.h"

// unescapeString. StringEscape.cpp has the other direction.
namespace com::halvorin::internal {

namespace {

// The byte that a backslash and each letter give, or 0.
constexpr auto BYTES_OF_LETTERS = [] {
    std::array<char, 256> table{};
    for (auto const& [byte, letter] : LETTER_ESCAPES)
        table[static_cast<unsigned char>(letter)] = byte;
    for (auto const& [byte, letter] : ESCAPES_ONLY_READ)
        table[static_cast<unsigned char>(letter)] = byte;
    return table;
}();
// No letter is listed twice, none gives the byte 0, and 'u' and 'x' begin escapes with digits.
static_assert(256 - std::count(BYTES_OF_LETTERS.begin(), BYTES_OF_LETTERS.end(), 0) ==
              std::size(LETTER_ESCAPES) + std::size(ESCAPES_ONLY_READ));
static_assert(BYTES_OF_LETTERS['u'] == 0 && BYTES_OF_LETTERS['x'] == 0);

// How many bytes at the front, up to a limit, are hexadecimal digits under the C locale.
std::size_t countDigits(std::string_view text, std::size_t limit) noexcept {
    ByteClasses const classes;
    std::size_t const most = std::min(text.size(), limit);
    std::size_t count = 0;
    while (count < most && classes.isHexDigit(text[count]))
        ++count;
    return count;
}

// Reads the byte that the digits at `text` give; moves `text` after them.
char readByte(char const*& text, char const* end) noexcept {
    std::string_view const rest(text, end);
    auto const quick = readFourDigits(rest);
    auto const [byte, size] = quick ? *quick : readDigits(rest);
    text += size;
    return byte;
}

// Reads what follows a backslash, at least one byte; moves `text` after the escape.
void readEscape(char const*& text, char const* end, char*& out) noexcept {
    char const letter = *text++;
    if (letter == 'u') {
        *out++ = readByte(text, end);
    } else if (letter == 'x') {
        // KEPT(x-drops-two-digits): these two are not the value.
        text += countDigits({text, end}, 2);
        *out++ = readByte(text, end);
    } else if (char const byte = BYTES_OF_LETTERS[static_cast<unsigned char>(letter)]; byte != 0) {
        *out++ = byte;
    } else {
        // KEPT(unknown-escape-is-two-backslashes): the letter itself is lost.
        *out++ = '\\';
        *out++ = '\\';
    }
}

// Reads an escape, or the backslash that ends the string.
void readBackslash(char const*& text, char const* end, char*& out) noexcept {
    ++text;
    if (text == end) {
        // KEPT(last-backslash-stays): it has nothing to escape.
        *out++ = '\\';
    } else {
        readEscape(text, end, out);
    }
}

// The functions below read into a block of the string's own size; no escape becomes longer. So
// `out` has as many bytes before its end as `text`. The two may not overlap.

constexpr std::ptrdiff_t STEP = sizeof(Bytes);

// Copies `size` bytes and up to STEP after them. It copies STEP bytes even if `size` is 0, because
// a processor cannot predict between which escapes there is nothing.
void copySteps(char const*& text, char*& out, std::ptrdiff_t size) noexcept {
    std::ptrdiff_t copied = 0;
    do {
        std::memcpy(out + copied, text + copied, STEP);
        copied += STEP;
    } while (copied < size);
    text += size;
    out += size;
}

// Reads blocks of 64 bytes while STEP more bytes follow. To find all backslashes of a block at once
// takes less time than to search after each escape.
void readBlocks(char const*& text, char const* end, char*& out) noexcept {
    constexpr std::ptrdiff_t BLOCK = 64;
    while (end - text >= BLOCK + STEP) {
        char const* const block = text;
        std::uint64_t backslashes = 0;
        for (std::ptrdiff_t i = 0; i < BLOCK; i += STEP)
            backslashes |= bitsOf(equal(loadBytes(block + i), '\\')) << i;
        while (text - block < BLOCK) {
            std::uint64_t const left = backslashes >> (text - block);
            if (left == 0) {
                copySteps(text, out, BLOCK - (text - block));
                break;
            }
            copySteps(text, out, std::countr_zero(left));
            readBackslash(text, end, out);
        }
    }
}

// Reads the whole string. Returns the position after the last byte of the result.
char* readEscapes(char* out, char const* text, char const* end) noexcept {
    readBlocks(text, end, out);
    while (text != end) {
        if (*text == '\\') {
            readBackslash(text, end, out);
        } else {
            *out++ = *text++;
        }
    }
    return out;
}

}  // namespace

DigitsRead readDigits(std::string_view text) noexcept {
    std::array<char, 5> digits{};
    std::size_t const count = countDigits(text, 4);
    text.copy(digits.data(), count);
    // KEPT(no-digits-give-zero): strtoul returns 0 for no digits, and 0 is a byte like any other.
    // KEPT(escape-is-one-byte): the low eight bits of the number.
    return {static_cast<char>(std::strtoul(digits.data(), nullptr, 16)), count};
}

}  // namespace com::halvorin::internal

namespace com::halvorin::utilities {

std::string unescapeString(std::string const& text) {
    constexpr std::size_t SHORT_SIZE = 8192;  // these are written to the stack first
    std::size_t const plain = std::min(text.find('\\'), text.size());
    if (plain == text.size()) return text;

    char const* const rest = text.data() + plain;
    char const* const end = text.data() + text.size();
    if (text.size() <= SHORT_SIZE) {
        UTILLIBRARY_UNINITIALIZED std::array<char, SHORT_SIZE> result;
        char* const out = std::copy_n(text.data(), plain, result.data());
        return {result.data(), internal::readEscapes(out, rest, end)};
    }
    // To count the bytes first would take as long as to read them.
    std::string result(text.size(), '\0');
    char* const out = std::copy_n(text.data(), plain, result.data());
    result.resize(static_cast<std::size_t>(internal::readEscapes(out, rest, end) - result.data()));
    if (result.size() < result.capacity() / 2) result.shrink_to_fit();
    return result;
}

}  // namespace com::halvorin::utilities
