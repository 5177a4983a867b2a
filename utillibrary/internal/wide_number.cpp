#include "utillibrary/internal/wide_number.h"

#include <cwchar>
#include <sstream>

#include "utillibrary/internal/digits.h"
#include "utillibrary/internal/formatted.h"
#include "utillibrary/internal/locale.h"
#include "utillibrary/internal/plain_number.h"

namespace com::halvorin::internal {

namespace {

using Characters = std::ctype<wchar_t>;

// True for the six characters that streams skip in the classic locale. A test compares every
// character with the facet of that locale.
bool isClassicWhitespace(wchar_t c) noexcept { return c == L' ' || (c >= L'\t' && c <= L'\r'); }

bool isPartOfIntegers(wchar_t c) noexcept { return isDecimalDigit(c) || isSign(c); }

// For every locale but the classic one. Not inlined, because it needs more registers than the path
// of the classic locale.
[[gnu::noinline]] long readUnderNamedLocale(std::wstring const& text, std::locale const& locale) {
    if (auto const value = readStandardInt64(text, locale)) return *value;
    return extractInt64(text);
}

}  // namespace

long extractInt64(std::wstring const& text) {
    if (text.empty()) return 0;
    std::wistringstream stream(text);
    long value = 0;
    runFormatted(stream, [&value](std::wistream& in) { in >> std::dec >> value; });
    return value;
}

long readClassicInt64(std::wstring const& text) {
    wchar_t const* at = text.c_str();
    while (isClassicWhitespace(*at))  // the zero after the string ends the loop
        ++at;
    return takeInteger(at).value;
}

// A stream reads a separator or a decimal point as such even if the character is also a digit or a
// sign. This does not ask whether the locale groups digits: without groups the separator has no
// effect, and to decline is correct as well.
std::optional<long> readStandardInt64(std::wstring const& text, std::locale const& locale) {
    auto const facets = standardReadingFacets(locale);
    if (!facets) return std::nullopt;
    wchar_t const separator = facets->punctuation.thousands_sep();
    wchar_t const point = facets->punctuation.decimal_point();
    if (isPartOfIntegers(separator) || isPartOfIntegers(point)) return std::nullopt;

    wchar_t const* first = text.c_str();
    wchar_t const* const end = first + text.size();
    // A digit is whitespace in no locale. A sign may be.
    if (!isDecimalDigit(*first)) first = facets->characters.scan_not(Characters::space, first, end);
    auto const integer = takeInteger(first);
    if (integer.end != end && *integer.end == separator) return std::nullopt;
    return integer.value;
}

long wideTextToInt64(std::wstring const& text) {
    std::locale const global;
    if (isClassic(global)) return readClassicInt64(text);
    return readUnderNamedLocale(text, global);
}

double convertDouble(std::wstring const& text) noexcept {
    return std::wcstod(text.c_str(), nullptr);
}

std::optional<double> readDouble(std::wstring const& text) noexcept {
    return readPlain<double>(text, wideDecimalPoint);
}

// Calls readPlain, which is inlined, and not readDouble: plain_number.h says why.
double wideTextToDouble(std::wstring const& text) noexcept {
    if (auto const value = readPlain<double>(text, wideDecimalPoint)) return *value;
    return convertDouble(text);
}

}  // namespace com::halvorin::internal
