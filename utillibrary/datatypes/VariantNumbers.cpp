#include <cwchar>
#include <iostream>
#include <string_view>
#include <type_traits>

#include "utillibrary/datatypes/Variant.h"
#include "utillibrary/datatypes/Variant_internal.h"
#include "utillibrary/internal/formatted.h"
#include "utillibrary/internal/truncation.h"
#include "utillibrary/internal/wide_number.h"

// A Variant read as a number, a Boolean or a time, and the comparison of floating values.
namespace com::halvorin::datatypes {

namespace {

using namespace com::halvorin::internal;

// KEPT(message-says-utility): the namespace is not "utilities", and no full stop ends the line.
constexpr std::string_view NO_VALUE =
    "com::halvorin::utility::Variant::convert::"
    "Failed to convert data type because type is not supported";
static_assert(NO_VALUE.size() == 99);

void reportNoValue() {
    // A host may have set the stream so that it throws; a conversion then does not throw. The text
    // is written unformatted, so that a width that the host has set waits for the host's output.
    try {
        std::cout.write(NO_VALUE.data(), NO_VALUE.size());
        std::cout << std::endl;  // NOLINT(performance-avoid-endl): flushed on purpose
    } catch (...) {
        // The stream keeps its error state.
        if (threadIsBeingCancelled()) throw;
    }
}

// Calls the reader with the value: an integer, a bool, a float, a double or a std::wstring. A
// Variant without a value gives zero.
template <typename Result, typename Reader>
Result readAs(Variant const& variant, Reader const& reader) {
    return visitValue(variant, [&reader](auto const& value) -> Result {
        using Value = std::decay_t<decltype(value)>;
        if constexpr (std::is_same_v<Value, NoValue> || std::is_same_v<Value, UnsupportedType>) {
            reportNoValue();
            return Result{};
        } else if constexpr (std::is_same_v<Value, NullValue>) {
            return Result{};
        } else if constexpr (std::is_same_v<Value, DateTime>) {
            return reader(value.vmsSeconds());
        } else {
            return reader(value);
        }
    });
}

template <typename Target>
Target truncateTo(double value) noexcept {
    if constexpr (std::is_same_v<Target, unsigned long>) {
        return truncateToUint64(value);
    } else if constexpr (std::is_same_v<Target, long>) {
        return truncateToInt64(value);
    } else if constexpr (std::is_same_v<Target, unsigned int>) {
        return truncateToUint32(value);
    } else {
        // KEPT(small-integers-through-int32): neither clamped to the target nor cut to 64 bits
        // first.
        return static_cast<Target>(truncateToInt32(value));
    }
}

template <typename Target>
struct IntegerReader {
    template <typename Value>
    Target operator()(Value value) const noexcept {
        if constexpr (std::is_floating_point_v<Value>) {
            return truncateTo<Target>(static_cast<double>(value));
        } else {
            return static_cast<Target>(value);
        }
    }
    // KEPT(text-is-read-as-int64): for unsigned long as well, so that "18446744073709551615" gives
    // 2^63 - 1.
    Target operator()(std::wstring const& text) const {
        return static_cast<Target>(wideTextToInt64(text));
    }
};

template <typename Target>
struct FloatingReader {
    template <typename Value>
    Target operator()(Value value) const noexcept {
        return static_cast<Target>(value);
    }
    Target operator()(std::wstring const& text) const {
        return static_cast<Target>(wideTextToDouble(text));
    }
};

struct BooleanReader {
    template <typename Value>
    bool operator()(Value value) const noexcept {
        return value != Value{};
    }
    bool operator()(std::wstring const& text) const noexcept {
        // KEPT(first-letter-decides): "Yellow" is true, and " true" is not.
        switch (text.empty() ? L'\0' : text.front()) {
            case L'Y':
            case L'y':
            case L'T':
            case L't':
                return true;
            case L'F':
            case L'f':
            case L'N':
            case L'n':
                return false;
            default:
                return std::wcstol(text.c_str(), nullptr, 10) != 0;
        }
    }
};

template <typename Target>
Target toInteger(Variant const& variant) {
    return readAs<Target>(variant, IntegerReader<Target>());
}

}  // namespace

unsigned char Variant::toUbyte() const { return toInteger<unsigned char>(*this); }
char Variant::toByte() const { return toInteger<char>(*this); }
short Variant::toInt16() const { return toInteger<short>(*this); }
unsigned short Variant::toUint16() const { return toInteger<unsigned short>(*this); }
int Variant::toInt32() const { return toInteger<int>(*this); }
unsigned int Variant::toUint32() const { return toInteger<unsigned int>(*this); }
long Variant::toInt64() const { return toInteger<long>(*this); }
unsigned long Variant::toUint64() const { return toInteger<unsigned long>(*this); }

float Variant::toFloat() const { return readAs<float>(*this, FloatingReader<float>()); }
double Variant::toDouble() const { return readAs<double>(*this, FloatingReader<double>()); }
bool Variant::toBool() const { return readAs<bool>(*this, BooleanReader()); }

xtime_t Variant::toXtime_t() const noexcept {
    // KEPT(time-whatever-the-type): the type number is not read.
    return {timeVal.getDateTime(), timeVal.getNanoseconds()};
}

Variant::operator unsigned char() const { return toUbyte(); }
Variant::operator char() const { return toByte(); }
Variant::operator short() const { return toInt16(); }
Variant::operator unsigned short() const { return toUint16(); }
Variant::operator int() const { return toInt32(); }
Variant::operator unsigned int() const { return toUint32(); }
Variant::operator long() const { return toInt64(); }
Variant::operator unsigned long() const { return toUint64(); }
Variant::operator float() const { return toFloat(); }
Variant::operator double() const { return toDouble(); }
Variant::operator bool() const { return toBool(); }
Variant::operator xtime_t() const noexcept { return toXtime_t(); }

int Variant::compareDoublesHelper(double a, double b, double threshold) noexcept {
    // KEPT(zero-is-below-all): there is no ratio to zero. So zero is below negative numbers, too.
    if (a == 0.0 && b != 0.0) return -1;
    if (b == 0.0 && a != 0.0) return 1;
    // KEPT(comparison-follows-the-ratio): signs are not compared, so that -2 is above -1.
    double const distance = a != 0.0 ? a / b - 1.0 : a - b;
    if (distance < -threshold) return -1;
    return distance > threshold ? 1 : 0;
}

int Variant::compareDoubles(double a, double b) noexcept {
    return compareDoublesHelper(a, b, DBL_THRESHOLD);
}

int Variant::compareFloats(float a, float b) noexcept {
    return compareDoublesHelper(static_cast<double>(a), static_cast<double>(b), FLT_THRESHOLD);
}

}  // namespace com::halvorin::datatypes
