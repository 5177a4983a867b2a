#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string_view>
#include <system_error>

#include "utillibrary/internal/decimal.h"
#include "utillibrary/internal/plain_number.h"
#include "utillibrary/utilities/StringUtilities.h"

// Numbers to strings and back: the functions of StringUtilities.h that write or read one.
namespace com::halvorin::utilities {

namespace {

using namespace com::halvorin::internal;

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
    std::string text = "0x00000000";
    for (std::size_t i = text.size() - 1; i >= 2; --i, value >>= 4)
        text[i] = HEXADECIMAL_DIGITS[value & 0xF];
    return text;
}

}  // namespace com::halvorin::utilities
