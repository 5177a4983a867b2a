#include "utillibrary/datatypes/wide_number_internal.h"

#include <cwchar>
#include <optional>
#include <sstream>
#include <string_view>

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
std::optional<long> plainDecimal(std::wstring_view text) noexcept {
    bool const minus = takeSign(text);
    std::size_t const size = text.size();
    unsigned long value = 0;
    if (size > 18 || takeDigits(text, value) != size) return std::nullopt;
    auto const number = static_cast<long>(value);
    return minus ? -number : number;
}

}  // namespace

long wideTextToInt64(std::wstring const& text) {
    if (auto const value = plainDecimal(text)) return *value;
    return extractInt64(text);
}

double wideTextToDouble(std::wstring const& text) {
    if (auto const value = plainNumber<double>(std::wstring_view{text}, decimalPointIsDot)) {
        return *value;
    }
    return std::wcstod(text.c_str(), nullptr);
}

}  // namespace com::halvorin::internal
