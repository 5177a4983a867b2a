#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <optional>
#include <string_view>

#include "utillibrary/internal/decimal.h"
#include "utillibrary/internal/locale.h"
#include "utillibrary/internal/plain_number.h"
#include "utillibrary/utilities/StringNumbers_internal.h"
#include "utillibrary/utilities/StringUtilities.h"

// Numbers to strings and back: the functions of StringUtilities.h that write or read one.
namespace com::halvorin::internal {

std::string printWithLibc(double value, char const* format) {
    // KEPT(numbers-cut-at-31): the length is not measured first, so a longer result is cut.
    std::array<char, LONGEST_PRINTED + 1> area{};
    if (std::snprintf(area.data(), area.size(), format, value) < 0 && errno == ENOMEM) {
        throw std::bad_alloc();
    }
    return area.data();
}

std::optional<double> readWithLibc(std::string const& text) noexcept {
    char* end = nullptr;
    // KEPT(range-error-is-silent): errno is not read.
    double const number = std::strtod(text.c_str(), &end);
    if (end == text.c_str()) return std::nullopt;
    return number;
}

}  // namespace com::halvorin::internal

namespace com::halvorin::utilities {

namespace {

using namespace com::halvorin::internal;

std::string generalFormat(double value) {
    std::string text(GENERAL_SIZE, '\0');  // in place, without the heap
    if (auto const size = writeGeneralFormat(text.data(), value)) {
        text.erase(*size);
    } else {
        text = printWithLibc(value, GENERAL_FORMAT);
    }
    return text;
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
    if (std::string_view{format} == GENERAL_FORMAT) return generalFormat(value);
    std::array<char, LONGEST_PRINTED> area;
    if (auto const size = writeFixed(area.data(), value, format)) return {area.data(), *size};
    return printWithLibc(value, format.c_str());
}

bool strtodEx(std::string const& text, double& value) noexcept {
    auto number = readPlain<double>(text, singleDecimalPoint);
    if (!number) number = readWithLibc(text);
    if (number) value = *number;  // KEPT(number-at-the-front): the rest is not checked
    return number.has_value();
}

std::string convertToHex(unsigned int value) {
    std::string text = "0x00000000";
    for (std::size_t i = text.size() - 1; i >= 2; --i, value >>= 4)
        text[i] = HEXADECIMAL_DIGITS[value & 0xF];
    return text;
}

}  // namespace com::halvorin::utilities
