#include "utillibrary/datatypes/wide_number_internal.h"

#include <cwchar>
#include <sstream>

#include "utillibrary/utilities/locale_internal.h"
#include "utillibrary/utilities/plain_number_internal.h"

namespace com::halvorin::internal {

namespace {

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
// KEPT(plain-digits): a host's own facets are not asked for: that takes longer than reading.
bool readPlainInteger(std::wstring const& text, long& number) noexcept {
    wchar_t const* const end = text.data() + text.size();
    auto const [minus, first] = takeSign(text.data(), end);
    if (end - first > 18) return false;
    auto const digits = takeDigits(first, endOfDigits(text));
    if (digits.end != end) return false;
    number = static_cast<long>(digits.value);
    if (minus) number = -number;
    return true;
}

}  // namespace

long wideTextToInt64(std::wstring const& text) {
    long value = 0;
    return readPlainInteger(text, value) ? value : extractInt64(text);
}

double wideTextToDouble(std::wstring const& text) {
    double value = 0;
    if (readPlain(text, decimalPointIsDot, value)) return value;
    return std::wcstod(text.c_str(), nullptr);
}

}  // namespace com::halvorin::internal
