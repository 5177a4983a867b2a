#include "utillibrary/datatypes/wide_number_internal.h"

#include <array>
#include <charconv>
#include <cwchar>
#include <optional>
#include <sstream>
#include <string_view>

#include "utillibrary/utilities/locale_internal.h"

namespace com::halvorin::internal {

namespace {

constexpr bool isDigit(wchar_t c) noexcept { return c >= L'0' && c <= L'9'; }

// Takes the sign off a text, if it has one; true for a minus.
bool takeSign(std::wstring_view& text) noexcept {
    bool const minus = !text.empty() && text.front() == L'-';
    if (minus || (!text.empty() && text.front() == L'+')) text.remove_prefix(1);
    return minus;
}

// The rule itself.
long extractInt64(std::wstring const& text) {
    std::wistringstream stream(text);
    stream.exceptions(std::ios_base::badbit);  // no failed allocation passes for a short number
    long value = 0;
    stream >> std::dec >> value;
    return value;
}

// Owns one case: an optional sign and up to 18 digits, nothing else. No standard locale reads those
// differently, no digits are 0 in all of them, and 18 cannot overflow.
// KEPT(plain-digits): a host's own facets are not asked for, which would take longer than the reading.
std::optional<long> plainDecimal(std::wstring_view text) noexcept {
    bool const minus = takeSign(text);
    if (text.size() > 18) return std::nullopt;
    long value = 0;
    for (wchar_t const c : text) {
        if (!isDigit(c)) return std::nullopt;
        value = 10 * value + (c - L'0');
    }
    return minus ? -value : value;
}

constexpr std::size_t MOST_DIGITS = 19;  // below 2^64
constexpr std::array<double, MOST_DIGITS + 1> POWERS_OF_TEN = {
    1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,
    1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19};

// Digits with at most one point in them, copied to single bytes on the way.
struct PlainDigits {
    std::array<char, MOST_DIGITS + 1> bytes;
    std::size_t size = 0;
    std::size_t digits = 0;
    std::size_t places = 0;  // digits after the point
    bool point = false;
    unsigned long value = 0;  // without the point
};

std::optional<PlainDigits> plainDigits(std::wstring_view text) noexcept {
    PlainDigits plain;
    if (text.size() > plain.bytes.size()) return std::nullopt;
    for (wchar_t const c : text) {
        if (isDigit(c) && plain.digits < MOST_DIGITS) {
            plain.value = 10 * plain.value + static_cast<unsigned long>(c - L'0');
            ++plain.digits;
            if (plain.point) ++plain.places;
        } else if (c == L'.' && !plain.point) {
            plain.point = true;
        } else {
            return std::nullopt;
        }
        plain.bytes[plain.size++] = static_cast<char>(c);
    }
    if (plain.digits == 0) return std::nullopt;
    return plain;
}

// Owns texts of an optional sign and up to 19 digits, with a point among them where libc has it so.
// Digits below 2^53 and a power of ten up to 10^22 are exact doubles, so that their quotient is
// rounded once, as wcstod rounds. Longer ones are for from_chars, which equals wcstod under
// round-to-nearest: plain decimals of this size neither overflow nor vanish.
std::optional<double> plainFloating(std::wstring_view text) noexcept {
    bool const minus = takeSign(text);
    auto const plain = plainDigits(text);
    if (!plain || (plain->point && !decimalPointIsDot())) return std::nullopt;

    if (plain->value < 1UL << 53) {
        auto const digits = static_cast<double>(plain->value);
        return (minus ? -digits : digits) / POWERS_OF_TEN[plain->places];
    }
    if (!roundsToNearest()) return std::nullopt;
    double value = 0;
    std::from_chars(plain->bytes.data(), plain->bytes.data() + plain->size, value);
    return minus ? -value : value;
}

}  // namespace

long wideTextToInt64(std::wstring const& text) {
    if (auto const value = plainDecimal(text)) return *value;
    return extractInt64(text);
}

double wideTextToDouble(std::wstring const& text) {
    if (auto const value = plainFloating(text)) return *value;
    return std::wcstod(text.c_str(), nullptr);
}

}  // namespace com::halvorin::internal
