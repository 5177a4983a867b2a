#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "utillibrary/internal/byte_block.h"
#include "utillibrary/internal/byte_class.h"
#include "utillibrary/utilities/StringUtilities.h"

// The escaped form of texts, read. StringEscape.cpp writes it.
namespace com::halvorin::utilities {

namespace {

using namespace com::halvorin::internal;

constexpr signed char NO_DIGIT = -1;

// The value of each byte as a hexadecimal digit. POSIX has these digits in every locale.
constexpr auto DIGIT_VALUES = [] {
    std::array<signed char, 256> table{};
    for (signed char& value : table)
        value = NO_DIGIT;
    for (unsigned i = 0; i < 10; ++i)
        table['0' + i] = static_cast<signed char>(i);
    for (unsigned i = 0; i < 6; ++i) {
        table['a' + i] = table['A' + i] = static_cast<signed char>(10 + i);
    }
    return table;
}();

// What a backslash and this byte stand for, or 0.
constexpr char namedBy(char letter) noexcept {
    switch (letter) {
        case '"':
        case '\'':
        case '?':
        case '\\':
            return letter;
        case 'a':
            return '\a';
        case 'b':
            return '\b';
        case 'f':
            return '\f';
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
        case 'v':
            return '\v';
        default:
            return 0;
    }
}

// How many of the next bytes are hexadecimal digits, up to a limit.
std::size_t countDigits(char const* text, char const* end, std::size_t limit) noexcept {
    ByteClasses const classes;
    std::size_t count = 0;
    while (count < limit && text + count != end && classes.isHexDigit(text[count]))
        ++count;
    return count;
}

// The rule itself: the byte that up to four digits make; moves behind them.
char readDigits(char const*& text, char const* end) noexcept {
    std::array<char, 5> digits{};
    std::size_t const count = countDigits(text, end, 4);
    std::copy_n(text, count, digits.data());
    text += count;
    // KEPT(no-digits-give-zero): nothing to convert is 0 to strtoul, and a byte all the same.
    // KEPT(escape-is-one-byte): the value's low eight bits.
    return static_cast<char>(std::strtoul(digits.data(), nullptr, 16));
}

// Owns four digits from "0" to "F".
char readByte(char const*& text, char const* end) noexcept {
    if (end - text >= 4) {
        auto const valueAt = [text](int i) {
            return DIGIT_VALUES[static_cast<unsigned char>(text[i])];
        };
        if ((valueAt(0) | valueAt(1) | valueAt(2) | valueAt(3)) >= 0) {
            auto const byte = static_cast<char>(valueAt(2) << 4 | valueAt(3));
            text += 4;
            return byte;
        }
    }
    return readDigits(text, end);
}

// Reads what stands behind a backslash, one byte at least; moves both behind it.
void readEscape(char const*& text, char const* end, char*& out) noexcept {
    char const letter = *text++;
    if (letter == 'u') {
        *out++ = readByte(text, end);
    } else if (letter == 'x') {
        // KEPT(x-drops-two-digits): these two are not the value.
        text += countDigits(text, end, 2);
        *out++ = readByte(text, end);
    } else if (char const named = namedBy(letter); named != 0) {
        *out++ = named;
    } else {
        // KEPT(unknown-escape-is-two-backslashes): the letter itself is lost.
        *out++ = '\\';
        *out++ = '\\';
    }
}

// Reads a text into a room of its own size, which is enough: no escape becomes longer. The two may
// not overlap. Gives the end of what was written.
char* readEscapes(char* out, char const* text, char const* end) noexcept {
    constexpr std::ptrdiff_t STEP = sizeof(Bytes);
    while (text != end) {
        if (end - text >= STEP) {
            Bytes const bytes = loadBytes(text);
            std::memcpy(out, &bytes, sizeof bytes);
            std::uint64_t const found = bitsOf(equal(bytes, '\\'));
            std::ptrdiff_t const plain = found == 0 ? STEP : std::countr_zero(found);
            text += plain;
            out += plain;
            if (found == 0) continue;
        } else if (*text != '\\') {
            *out++ = *text++;
            continue;
        }
        // KEPT(last-backslash-stays): it has nothing to escape.
        if (end - text == 1) {
            *out++ = *text++;
        } else {
            readEscape(++text, end, out);
        }
    }
    return out;
}

}  // namespace

std::string unescapeString(std::string const& text) {
    constexpr std::size_t SHORT = 256;
    std::size_t const plain = std::min(text.find('\\'), text.size());
    if (plain == text.size()) return text;

    char const* const rest = text.data() + plain;
    char const* const end = text.data() + text.size();
    if (text.size() <= SHORT) {
        std::array<char, SHORT> result;
        char* const out = std::copy_n(text.data(), plain, result.data());
        return {result.data(), readEscapes(out, rest, end)};
    }
    std::string result(text.size(), '\0');
    char* const out = std::copy_n(text.data(), plain, result.data());
    result.resize(static_cast<std::size_t>(readEscapes(out, rest, end) - result.data()));
    if (result.size() < result.capacity() / 2) result.shrink_to_fit();
    return result;
}

}  // namespace com::halvorin::utilities
