#include "utillibrary/utilities/StringUtilities.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>
#include <system_error>

#include "utillibrary/internal/byte_block.h"
#include "utillibrary/internal/byte_class.h"
#include "utillibrary/internal/decimal.h"
#include "utillibrary/internal/plain_number.h"

namespace com::halvorin::utilities {

namespace {

using namespace com::halvorin::internal;

// ---- searching

// std::string looks for the first byte and then compares, which is the quickest way for what people
// look for, but takes the product of both lengths at worst. memmem takes their sum.
bool holds(std::string const& element, std::string const& text) noexcept {
    constexpr std::size_t LONG = 64;
    if (text.size() < LONG) return element.find(text) != std::string::npos;
    return memmem(element.data(), element.size(), text.data(), text.size()) != nullptr;
}

template <typename List>
auto search(List& list, std::string const& text, bool partial) noexcept {
    if (!partial) return std::find(list.begin(), list.end(), text);
    auto const matches = [&text](std::string const& element) { return holds(element, text); };
    return std::find_if(list.begin(), list.end(), matches);
}

// ---- comparing without case

constexpr std::size_t BLOCK = sizeof(Bytes);

// The rule itself, for so many bytes.
bool equalByTable(LowerCase const& lower, char const* left, char const* right,
                  std::size_t size) noexcept {
    for (std::size_t i = 0; i < size; ++i) {
        if (lower(left[i]) != lower(right[i])) return false;
    }
    return true;
}

// Whether the locale takes each letter from A to Z for its small one. Where the i has no dot, in
// Turkish, it does not.
bool pairsLetters(LowerCase const& lower) noexcept {
    int differences = 0;
    for (int i = 0; i < 26; ++i) {
        differences |= lower(static_cast<char>('A' + i)) ^ lower(static_cast<char>('a' + i));
    }
    return differences == 0;
}

// ASCII's capital letters as small ones.
Bytes withoutCase(Bytes bytes) noexcept { return bytes | (between(bytes, 'A', 'Z') & 0x20); }

// Owns a block of bytes each of which is the same on both sides, or a letter and its other case: it
// is equal in a locale that pairs the letters. False is no answer.
bool equalBlock(char const* left, char const* right) noexcept {
    return !any(withoutCase(loadBytes(left)) ^ withoutCase(loadBytes(right)));
}

bool equalWithoutCase(char const* left, char const* right, std::size_t size) noexcept {
    LowerCase const lower;
    if (size < BLOCK || !pairsLetters(lower)) return equalByTable(lower, left, right, size);
    auto const equalAt = [&](std::size_t i) {
        return equalBlock(left + i, right + i) || equalByTable(lower, left + i, right + i, BLOCK);
    };
    for (std::size_t i = 0; i + BLOCK < size; i += BLOCK) {
        if (!equalAt(i)) return false;
    }
    return equalAt(size - BLOCK);  // the last block may overlap the one before it
}

// ---- numbers

constexpr std::size_t LONGEST = 31;

// Owns "%.0f" to "%.9f" where the text is not cut: both printers round the exact value, ties to
// even, and spell infinity and NaN alike. Gives the end of what was written; null is no answer.
char* writeFixed(std::array<char, LONGEST>& area, double value, std::string_view format) noexcept {
    bool const fixed = format.size() == 4 && format.starts_with("%.") && format[2] >= '0' &&
                       format[2] <= '9' && format[3] == 'f';
    if (!fixed || !libcPrintsPlainNumbers()) return nullptr;
    auto const [end, error] = std::to_chars(area.data(), area.data() + area.size(), value,
                                            std::chars_format::fixed, format[2] - '0');
    return error == std::errc() ? end : nullptr;
}

// The rule itself.
std::string printed(double value, char const* format) {
    // KEPT(numbers-cut-at-31): the area is part of the contract; asking for the length first would
    // give hosts texts that they have no room for.
    std::array<char, LONGEST + 1> area{};
    if (std::snprintf(area.data(), area.size(), format, value) < 0 && errno == ENOMEM) {
        throw std::bad_alloc();
    }
    return area.data();
}

}  // namespace

std::vector<std::string>::const_iterator searchVector(std::vector<std::string> const& list,
                                                      std::string const& text,
                                                      bool partial) noexcept {
    return search(list, text, partial);
}

std::vector<std::string>::iterator searchVector(std::vector<std::string>& list,
                                                std::string const& text, bool partial) noexcept {
    return search(list, text, partial);
}

bool iequals(std::string const& text, std::string const& other) noexcept {
    // KEPT(iequals-looks-one-way): no test for equal lengths; the second text may go on.
    return text.size() <= other.size() && equalWithoutCase(text.data(), other.data(), text.size());
}

std::string to_string(int const& value) { return std::to_string(value); }

std::string to_string(unsigned int const& value) { return std::to_string(value); }

std::string to_string(long const& value) { return wholeText(value); }

std::string to_string(bool const& value) { return value ? "true" : "false"; }

std::string to_string(std::string const& value) { return value; }

std::string to_string(float const& value, std::string const& format) {
    return to_string(static_cast<double>(value), format);
}

std::string to_string(double const& value, std::string const& format) {
    bool const general = std::string_view{format} == "%g";
    if (general && libcPrintsPlainNumbers()) return generalText(value);
    std::array<char, LONGEST> area;
    if (char* const end = writeFixed(area, value, format)) return {area.data(), end};
    return printed(value, format.c_str());
}

bool strtodEx(std::string const& text, double& value) noexcept {
    double number = 0;
    if (!readPlain(text, decimalPointIsDot, number)) {
        char* end = nullptr;
        // KEPT(range-error-is-silent): errno is not asked.
        number = std::strtod(text.c_str(), &end);
        if (end == text.c_str()) return false;
    }
    value = number;  // KEPT(number-at-the-front): what follows it is not looked at
    return true;
}

std::string convertToHex(unsigned int value) {
    constexpr char DIGITS[] = "0123456789abcdef";
    std::string text = "0x00000000";
    for (std::size_t i = text.size() - 1; i >= 2; --i, value >>= 4)
        text[i] = DIGITS[value & 0xF];
    return text;
}

}  // namespace com::halvorin::utilities
