#include "readings/number_text.h"

#include <cmath>

#include "readings/reading.h"

namespace monitor {

using com::halvorin::datatypes::Variant;

namespace {

// A whole number from 100000 on takes all six significant digits that Variant::toString writes.
constexpr double NO_DECIMAL_FROM = 100000;

}  // namespace

std::string missingText(Variant const& value) { return value.isNull() ? value.toString() : ""; }

std::string oneDecimal(Variant const& number, double unit) {
    if (!isKnown(number)) return missingText(number);
    double const rounded = std::round(number.toDouble() / unit * 10) / 10;
    std::string text = Variant(rounded).toString();
    if (std::abs(rounded) < NO_DECIMAL_FROM && text.find('.') == std::string::npos) text += ".0";
    return text;
}

}  // namespace monitor
