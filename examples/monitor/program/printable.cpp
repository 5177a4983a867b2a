#include "program/printable.h"

namespace monitor {

namespace {

// The least character that takes so many bytes; a smaller one is not valid in that length.
constexpr unsigned int LEAST[] = {0, 0, 0x80, 0x800, 0x10000};

constexpr bool isControl(unsigned int character) noexcept {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

constexpr bool isCharacter(unsigned int number) noexcept {
    bool const isSurrogate = number >= 0xD800 && number <= 0xDFFF;
    return number <= 0x10FFFF && !isSurrogate;
}

// The bytes that the first byte of a character announces, or 0 if it is no first byte.
constexpr std::size_t announcedSize(unsigned int first) noexcept {
    if (first < 0x80) return 1;
    if (first >= 0xC0 && first < 0xE0) return 2;
    if (first >= 0xE0 && first < 0xF0) return 3;
    return first >= 0xF0 && first < 0xF8 ? 4 : 0;
}

// The bytes of the first character of a text, or 0 if that is invalid or a control character.
std::size_t printableSize(std::string_view text) noexcept {
    unsigned int const first = static_cast<unsigned char>(text[0]);
    std::size_t const size = announcedSize(first);
    if (size == 0 || size > text.size()) return 0;
    unsigned int character = size == 1 ? first : first & (0x7FU >> size);
    for (std::size_t i = 1; i < size; ++i) {
        unsigned int const next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0U) != 0x80) return 0;
        character = character << 6U | (next & 0x3FU);
    }
    bool const isValid = character >= LEAST[size] && isCharacter(character);
    return isValid && !isControl(character) ? size : 0;
}

}  // namespace

std::string printable(std::string_view text) {
    constexpr char const* DIGITS = "0123456789ABCDEF";
    std::string result;
    while (!text.empty()) {
        std::size_t const size = printableSize(text);
        if (size > 0) {
            result += text.substr(0, size);
            text.remove_prefix(size);
            continue;
        }
        unsigned int const byte = static_cast<unsigned char>(text[0]);
        result.append("\\x").append(1, DIGITS[byte >> 4U]).append(1, DIGITS[byte & 0xFU]);
        text.remove_prefix(1);
    }
    return result;
}

bool isPrintable(std::string_view text) noexcept {
    while (!text.empty()) {
        std::size_t const size = printableSize(text);
        if (size == 0) return false;
        text.remove_prefix(size);
    }
    return true;
}

}  // namespace monitor
