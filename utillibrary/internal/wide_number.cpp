#include "utillibrary/internal/wide_number.h"

#include <algorithm>
#include <cwchar>
#include <sstream>

#include "utillibrary/internal/formatted.h"
#include "utillibrary/internal/locale.h"
#include "utillibrary/internal/plain_number.h"

namespace com::halvorin::internal {

namespace {

// The rule itself.
long extractInt64(std::wstring const& text) {
    std::wistringstream stream(text);
    long value = 0;
    runFormatted(stream, [&value](std::wistream& in) { in >> std::dec >> value; });
    return value;
}

// Reads a sign, if there is one, and digits. Gives what follows, or null where there are more digits
// than are sure to fit.
wchar_t const* readInteger(std::wstring const& text, wchar_t const* at, long& number) noexcept {
    constexpr long SURE_DIGITS = 18;  // 19 may pass 64 bits
    auto const [minus, first] = takeSign(at, text.data() + text.size());
    auto const digits = takeDigits(first, endOfDigits(text));
    if (digits.end - first > SURE_DIGITS) return nullptr;
    number = static_cast<long>(digits.value);
    if (minus) number = -number;
    return digits.end;
}

// Owns plain digits with or without a sign. No standard locale reads those differently, and no
// digits are 0 in all of them.
// KEPT(plain-digits): a host's own facets are not asked for: that takes longer than reading.
bool readWhole(std::wstring const& text, long& number) noexcept {
    return readInteger(text, text.data(), number) == text.data() + text.size();
}

// Owns whatever stands before and behind them in the classic locale, where nothing is a group. What
// blanks there are beyond ASCII is not known here.
bool readClassic(std::wstring const& text, long& number) noexcept {
    std::size_t const start = std::min(text.find_first_not_of(L" \t\n\v\f\r"), text.size());
    bool const isAscii = static_cast<unsigned>(text.c_str()[start]) <= 0x7F;
    if (!isAscii || !globalLocaleIsClassic()) return false;
    return readInteger(text, text.data() + start, number) != nullptr;
}

}  // namespace

long wideTextToInt64(std::wstring const& text) {
    long value = 0;
    if (readWhole(text, value) || readClassic(text, value)) return value;
    return extractInt64(text);
}

double wideTextToDouble(std::wstring const& text) {
    double value = 0;
    if (readPlain(text, decimalPointIsDot, value)) return value;
    return std::wcstod(text.c_str(), nullptr);
}

}  // namespace com::halvorin::internal
