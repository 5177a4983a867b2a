#include "variant_model.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cwchar>

using com::halvorin::datatypes::xtime_t;

namespace {

// 128 bits, which contain every integer of 64 bits.
__extension__ typedef __int128 Exact;

enum Type {
    UBYTE = 1,
    UINT16,
    UINT32,
    BYTE,
    INT16,
    INT32,
    FLOAT,
    DOUBLE,
    STRING,
    INT64,
    UINT64,
    BOOLEAN,
    DATE_TIME,
    EMPTY
};

Exact const TOP_BIT = Exact(1) << 63;

// What a processor's conversion gives: the least number where a number does not fit.
long truncatedTo(double value, int bits) {
    Exact const limit = Exact(1) << (bits - 1);
    if (!(std::fabs(value) < 1e30)) return static_cast<long>(-limit);
    auto const whole = static_cast<Exact>(value);
    return static_cast<long>(whole < -limit || whole >= limit ? -limit : whole);
}

unsigned long truncatedToUint64(double value) {
    if (!(value >= 0x1p63)) return static_cast<unsigned long>(truncatedTo(value, 64));
    if (!(value < 0x1p64)) return static_cast<unsigned long>(TOP_BIT);
    return static_cast<unsigned long>(static_cast<Exact>(value));
}

unsigned long converted(double value, int bits, bool isSigned) {
    if (bits == 64 && !isSigned) return truncatedToUint64(value);
    bool const isWide = bits == 64 || (bits == 32 && !isSigned);
    return static_cast<unsigned long>(truncatedTo(value, isWide ? 64 : 32));
}

// The integer in a slot.
Exact integerIn(int type, unsigned long slot) {
    switch (type) {
        case BYTE:
            return static_cast<std::int8_t>(slot);
        case INT16:
            return static_cast<std::int16_t>(slot);
        case INT32:
            return static_cast<std::int32_t>(slot);
        case INT64:
            return static_cast<std::int64_t>(slot);
        case UBYTE:
            return static_cast<std::uint8_t>(slot);
        case UINT16:
            return static_cast<std::uint16_t>(slot);
        case UINT32:
            return static_cast<std::uint32_t>(slot);
        case BOOLEAN:
            return static_cast<std::uint8_t>(slot) != 0 ? 1 : 0;
        default:
            return slot;
    }
}

float floatIn(unsigned long slot) { return std::bit_cast<float>(static_cast<std::uint32_t>(slot)); }

// The decimal number at the front, cut to the range of a long.
long integerOf(std::wstring const& text) {
    Exact const limit = TOP_BIT;
    std::size_t at = std::min(text.find_first_not_of(L" \t\n\v\f\r"), text.size());
    bool const isNegative = text.substr(at, 1) == L"-";
    if (isNegative || text.substr(at, 1) == L"+") ++at;
    Exact number = 0;
    for (; at < text.size() && text[at] >= L'0' && text[at] <= L'9'; ++at)
        number = std::min(number * 10 + (text[at] - L'0'), limit);
    return static_cast<long>(isNegative ? -number : std::min(number, limit - 1));
}

}  // namespace

void VariantModel::clear() {
    type = 0;
    slot = 0;
    text.clear();
}

void VariantModel::assignBits(int newType, unsigned long bits) {
    clear();
    slot = bits;
    type = newType;
}

void VariantModel::assignText(std::wstring const& newText) {
    clear();
    text = newText;
    type = STRING;
}

void VariantModel::assignBytes(std::string const& bytes) {
    std::wstring wide;
    for (char const c : bytes) {
        if (c == '\0') break;
        wide += static_cast<wchar_t>(static_cast<signed char>(c));
    }
    assignText(wide);
}

void VariantModel::assignTime(xtime_t const& newTime) {
    assignBits(DATE_TIME, std::bit_cast<unsigned long>(newTime.toVMSTime()));
    time = newTime;
}

void VariantModel::assign(VariantModel const& other) {
    clear();
    type = other.type;
    slot = other.slot;
    text = other.text;
    auxiliary = other.auxiliary;
    xtime_t copy(other.time.getDateTime(), 0);
    copy.putNanoseconds(other.time.getNanoseconds());
    time = copy;
}

bool VariantModel::hasConversions() const { return type >= UBYTE && type <= EMPTY; }

unsigned long VariantModel::toInteger(int bits, bool isSigned) const {
    if (!hasConversions() || type == EMPTY) return 0;
    if (type == STRING) return static_cast<unsigned long>(integerOf(text));
    if (type == FLOAT) return converted(static_cast<double>(floatIn(slot)), bits, isSigned);
    if (type == DOUBLE || type == DATE_TIME) {
        return converted(std::bit_cast<double>(slot), bits, isSigned);
    }
    return static_cast<unsigned long>(integerIn(type, slot));
}

double VariantModel::toDouble() const {
    if (!hasConversions() || type == EMPTY) return 0;
    if (type == STRING) return text.empty() ? 0 : std::wcstod(text.c_str(), nullptr);
    if (type == FLOAT) return static_cast<double>(floatIn(slot));
    if (type == DOUBLE || type == DATE_TIME) return std::bit_cast<double>(slot);
    return static_cast<double>(integerIn(type, slot));
}

float VariantModel::toFloat() const {
    if (type == FLOAT) return floatIn(slot);
    bool const isInteger =
        hasConversions() && type != EMPTY && type != STRING && type != DOUBLE && type != DATE_TIME;
    // An integer is rounded once, and not to a double first.
    return isInteger ? static_cast<float>(integerIn(type, slot)) : static_cast<float>(toDouble());
}

bool VariantModel::toBool() const {
    if (!hasConversions() || type == EMPTY) return false;
    if (type == STRING) {
        std::wstring const first = text.substr(0, 1);
        if (first.empty()) return false;
        if (first.find_first_of(L"YyTt") == 0) return true;
        if (first.find_first_of(L"FfNn") == 0) return false;
        return std::wcstol(text.c_str(), nullptr, 10) != 0;
    }
    if (type == FLOAT || type == DOUBLE || type == DATE_TIME) return toDouble() != 0;
    return integerIn(type, slot) != 0;
}

int modelOfCompareDoubles(double a, double b, double threshold) {
    if (a == 0 && b != 0) return -1;
    if (b == 0 && a != 0) return 1;
    double const difference = a == 0 ? a - b : a / b - 1.0;
    if (difference < -threshold) return -1;
    return difference > threshold ? 1 : 0;
}
