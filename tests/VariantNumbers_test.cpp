#include <bit>
#include <cfloat>
#include <climits>
#include <cmath>
#include <iostream>
#include <locale>
#include <new>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/Variant.h>

#include "support/cancellation.h"
#include "support/locales.h"
#include "support/recorded_reports.h"
#include "support/variant_readings.h"

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::VariantType;
using com::halvorin::datatypes::xtime_t;
using testing_support::cancelThisThread;
using testing_support::endsByCancellation;
using testing_support::expectBoolean;
using testing_support::expectFloating;
using testing_support::expectIntegers;
using testing_support::Integers;
using testing_support::lowBitsOf;
using testing_support::ScopedLocale;

// How a Variant of each type reads as each kind of number, as a Boolean and as a time. Long for its
// tables.
namespace {

using uchar = unsigned char;
using ushort = unsigned short;
using wide = std::wstring;

using namespace std::string_literals;

constexpr float INFINITE_FLOAT = INFINITY;
constexpr float NAN_FLOAT = NAN;

// A Variant of a type, with these bits in its slot.
Variant slot(VariantType type, unsigned long bits) {
    Variant variant;
    variant.dataType = type;
    variant.uVal.asUint64 = bits;
    return variant;
}

// A DateTime that is read as these OpenVMS seconds.
Variant dateTime(double vmsSeconds) { return slot(13, std::bit_cast<unsigned long>(vmsSeconds)); }

// ---- integers

struct IntegerFact {
    char const* fact;
    Variant value;
    Integers integers;
};

IntegerFact reads(char const* fact, Variant const& value, Integers const& integers) {
    return {fact, value, integers};
}

IntegerFact const INTEGER_FACTS[] = {
    reads("an UnsignedByte of 200 is extended by zeros", uchar{200},
          {200, -56, 200, 200, 200, 200, 200, 200}),
    reads("the largest UnsignedByte is -1 in 8 signed bits", uchar{255},
          {255, -1, 255, 255, 255, 255, 255, 255}),
    reads("the largest Uint16 is extended by zeros", ushort{65535},
          {255, -1, -1, 65535, 65535, 65535, 65535, 65535}),
    reads("a Uint16 of 32767 fits an Int16", ushort{32767},
          {255, -1, 32767, 32767, 32767, 32767, 32767, 32767}),
    reads("a Uint16 of 32768 is -32768 in an Int16", ushort{32768},
          {0, 0, -32768, 32768, 32768, 32768, 32768, 32768}),
    reads("the largest Uint32 is extended by zeros", 4294967295U,
          {255, -1, -1, 65535, -1, 4294967295, 4294967295, 4294967295}),
    reads("a Uint32 of 2^31 is -2^31 in an Int32", 2147483648U,
          {0, 0, 0, 0, INT_MIN, 2147483648, 2147483648, 2147483648}),
    reads("a Byte of -1 is extended by its sign", '\xFF',
          {255, -1, -1, 65535, -1, 4294967295, -1, 18446744073709551615U}),
    reads("the least Byte is extended by its sign", '\x80',
          {128, -128, -128, 65408, -128, 4294967168, -128, 18446744073709551488U}),
    reads("the largest Byte is the same for every target", '\x7F',
          {127, 127, 127, 127, 127, 127, 127, 127}),
    reads("the least Int16 is extended by its sign", short{-32768},
          {0, 0, -32768, 32768, -32768, 4294934528, -32768, 18446744073709518848U}),
    reads("an Int32 of 40000 is cut to 16 bits", 40000,
          {64, 64, -25536, 40000, 40000, 40000, 40000, 40000}),
    reads("the least Int32 is extended by its sign", INT_MIN,
          {0, 0, 0, 0, INT_MIN, 2147483648, -2147483648, 18446744071562067968U}),
    reads("an Int32 of four different bytes is cut to its low bytes", 0x12345687,
          {0x87, -121, 0x5687, 0x5687, 0x12345687, 0x12345687, 0x12345687, 0x12345687}),
    reads("the least Int64 has low bits of 0", LONG_MIN,
          {0, 0, 0, 0, 0, 0, LONG_MIN, 9223372036854775808U}),
    reads("the largest Int64 has low bits of 1", LONG_MAX,
          {255, -1, -1, 65535, -1, 4294967295, LONG_MAX, 9223372036854775807}),
    reads("an Int64 of -1 has bits of 1 for every target", -1L,
          {255, -1, -1, 65535, -1, 4294967295, -1, 18446744073709551615U}),
    reads("the largest Uint64 has bits of 1 for every target", ULONG_MAX,
          {255, -1, -1, 65535, -1, 4294967295, -1, 18446744073709551615U}),
    reads("a Uint64 of 2^32 has low bits of 0", 4294967296UL,
          {0, 0, 0, 0, 0, 0, 4294967296, 4294967296}),
    reads("a Uint64 of 2^63 is the least Int64", 9223372036854775808UL,
          {0, 0, 0, 0, 0, 0, LONG_MIN, 9223372036854775808U}),
    reads("true is 1", true, {1, 1, 1, 1, 1, 1, 1, 1}),
    reads("false is 0", false, {0, 0, 0, 0, 0, 0, 0, 0}),
    reads("a Boolean byte of 2 is true", slot(12, 2), {1, 1, 1, 1, 1, 1, 1, 1}),
    reads("a Boolean byte of 255 is true", slot(12, 255), {1, 1, 1, 1, 1, 1, 1, 1}),
    reads("a Boolean is the low byte of the slot alone", slot(12, 0xFFFFFFFFFFFFFF00),
          {0, 0, 0, 0, 0, 0, 0, 0}),
    reads("an UnsignedByte is the low byte of a full slot", slot(1, 0x1111111111111142),
          {0x42, 0x42, 0x42, 0x42, 0x42, 0x42, 0x42, 0x42}),
    reads("a Uint16 is the low 16 bits of a full slot", slot(2, 0xFFFFFFFFFFFF0001),
          {1, 1, 1, 1, 1, 1, 1, 1}),
    reads("a Uint32 is the low 32 bits of a full slot", slot(3, 0xFFFFFFFF00000001),
          {1, 1, 1, 1, 1, 1, 1, 1}),
    reads("a Byte is the low byte of a full slot", slot(4, 0xFFFFFFFFFFFFFF01),
          {1, 1, 1, 1, 1, 1, 1, 1}),
    reads("an Int16 is the low 16 bits of a full slot", slot(5, 0xFFFFFFFFFFFF0001),
          {1, 1, 1, 1, 1, 1, 1, 1}),
    reads("an Int32 is the low 32 bits of a full slot", slot(6, 0xFFFFFFFF00000001),
          {1, 1, 1, 1, 1, 1, 1, 1}),
    reads("a Float is the low 32 bits of a full slot", slot(7, 0xFFFFFFFF3F800000),
          {1, 1, 1, 1, 1, 1, 1, 1}),
    reads("300.7 is cut to 300, and 300 to the low bits", 300.7,
          {44, 44, 300, 300, 300, 300, 300, 300}),
    reads("-1.5 is cut toward zero", -1.5,
          {255, -1, -1, 65535, -1, 4294967295, -1, 18446744073709551615U}),
    reads("a Float is read as a Double is", -300.7F,
          {212, -44, -300, 65236, -300, 4294966996, -300, 18446744073709551316U}),
    // KEPT(small-integers-through-int32): 0, and not the low bits of a 64-bit integer.
    reads("2^31 is 0 in 8 and 16 bits", 2147483648.0,
          {0, 0, 0, 0, INT_MIN, 2147483648, 2147483648, 2147483648}),
    reads("2^31 + 77 is 0 in 8 and 16 bits, and not its low bits", 2147483725.0,
          {0, 0, 0, 0, INT_MIN, 2147483725, 2147483725, 2147483725}),
    reads("2^31 - 1 is its low bits in 8 and 16 bits", 2147483647.0,
          {255, -1, -1, 65535, 2147483647, 2147483647, 2147483647, 2147483647}),
    reads("3e9 fits an unsigned int", 3e9F,
          {0, 0, 0, 0, INT_MIN, 3000000000, 3000000000, 3000000000}),
    reads("a DateTime is its OpenVMS seconds", xtime_t(1763164800, 0),
          {0, 0, 0, 0, INT_MIN, 974914304, 5269881600, 5269881600}),
    reads("the fraction of a DateTime's OpenVMS seconds is cut", xtime_t(1763164800, 999000000),
          {0, 0, 0, 0, INT_MIN, 974914304, 5269881600, 5269881600}),
    reads("a String of 70000 is read and then cut", L"70000",
          {112, 112, 4464, 4464, 70000, 70000, 70000, 70000}),
    reads("a String of a negative number is extended by its sign", "  -12xyz",
          {244, -12, -12, 65524, -12, 4294967284, -12, 18446744073709551604U}),
    reads("a String of 2^32 - 1 is read as a long", "4294967295",
          {255, -1, -1, 65535, -1, 4294967295, 4294967295, 4294967295}),
    // KEPT(text-is-read-as-int64): the same for each target.
    reads("a String of 2^64 - 1 is read as LONG_MAX", "18446744073709551615",
          {255, -1, -1, 65535, -1, 4294967295, LONG_MAX, 9223372036854775807}),
};

TEST(VariantNumbers, ReadsEveryTypeAsEveryInteger) {
    ScopedLocale const classic("C");
    for (IntegerFact const& row : INTEGER_FACTS) {
        SCOPED_TRACE(row.fact);
        expectIntegers(row.value, row.integers);
    }
}

// Reads the value from a Double, from a DateTime, and from a Float if it is exact in one.
void expectFloatingRead(double value, int int32, long int64, unsigned long uint64) {
    Integers expected = lowBitsOf(int32);
    expected.uint32 = static_cast<unsigned int>(int64);
    expected.int64 = int64;
    expected.uint64 = uint64;
    expectIntegers(Variant(value), expected);
    expectIntegers(dateTime(value), expected);
    auto const single = static_cast<float>(value);
    if (static_cast<double>(single) == value || std::isnan(value)) {
        expectIntegers(Variant(single), expected);
    }
}

// Values whose whole part fits an int: every target gets its low bits.
struct SmallFloatingFact {
    char const* fact;
    double value;
    int whole;
};

SmallFloatingFact const SMALL_FLOATING_FACTS[] = {
    {"zero", 0.0, 0},
    {"negative zero", -0.0, 0},
    {"the least number above 0 is cut to 0", 5e-324, 0},
    {"the largest number below 1 is cut to 0", 0x1.fffffffffffffp-1, 0},
    {"one", 1.0, 1},
    {"the least number above 1 is cut to 1", 0x1.0000000000001p0, 1},
    {"the least number above -1 is cut to 0", -0x1.fffffffffffffp-1, 0},
    {"minus one", -1.0, -1},
    {"a number below -1 is cut to -1", -1.999, -1},
    {"a number below 128 is cut to 127", 127.999, 127},
    {"128 is above the range of a Byte", 128.0, 128},
    {"a number above 16 bits is cut to 65537", 65537.25, 65537},
    {"a number below 16 bits is cut to -65537", -65537.25, -65537},
    {"the largest Float below 2^31", 2147483520.0, 2147483520},
    {"a number below 2^31 - 1 is cut to 2^31 - 2", 2147483646.5, 2147483646},
    {"2^31 - 1", 2147483647.0, 2147483647},
    {"a number above 2^31 - 1 is cut to 2^31 - 1", 2147483647.5, 2147483647},
    {"the largest Double below 2^31 is cut to 2^31 - 1", 0x1.fffffffffffffp30, 2147483647},
    {"a number above -2^31 is cut to -2^31 + 1", -2147483647.5, -2147483647},
    {"-2^31", -2147483648.0, INT_MIN},
    {"a number below -2^31 is cut to -2^31", -2147483648.5, INT_MIN},
    {"the least Double above -2^31 - 1 is cut to -2^31", -0x1.000000001ffffp31, INT_MIN},
};

TEST(VariantNumbers, CutsAFloatingValueTowardZero) {
    for (SmallFloatingFact const& row : SMALL_FLOATING_FACTS) {
        SCOPED_TRACE(row.fact);
        expectFloatingRead(row.value, row.whole, row.whole, static_cast<unsigned long>(row.whole));
    }
}

// Values whose whole part fits a long only: it is the result for long, unsigned long and, cut,
// unsigned int. All other targets get the low bits of INT_MIN.
struct LargeFloatingFact {
    char const* fact;
    double value;
    long int64;
};

LargeFloatingFact const LARGE_FLOATING_FACTS[] = {
    {"2^31", 2147483648.0, 2147483648},
    {"a number above 2^31 is cut to 2^31", 2147483648.5, 2147483648},
    {"-2^31 - 1", -2147483649.0, -2147483649},
    {"a number below 2^32 - 1 is cut to 2^32 - 2", 4294967294.5, 4294967294},
    {"2^32 - 1", 4294967295.0, 4294967295},
    {"a number above 2^32 - 1 is cut to 2^32 - 1", 4294967295.5, 4294967295},
    {"2^32", 4294967296.0, 4294967296},
    {"2^32 + 1", 4294967297.0, 4294967297},
    {"3e9, above the range of int", 3e9, 3000000000},
    {"-3e9, below the range of int", -3e9, -3000000000},
    {"2^53 + 2", 9007199254740994.0, 9007199254740994},
    {"the largest Float below 2^63", 9223371487098961920.0, 9223371487098961920},
    {"the largest Double below 2^63", 9223372036854774784.0, 9223372036854774784},
    {"the least Double above -2^63", -9223372036854774784.0, -9223372036854774784},
};

TEST(VariantNumbers, ReadsWhatDoesNotFitAnIntAsTheLeastInt) {
    for (LargeFloatingFact const& row : LARGE_FLOATING_FACTS) {
        SCOPED_TRACE(row.fact);
        expectFloatingRead(row.value, INT_MIN, row.int64, static_cast<unsigned long>(row.int64));
    }
}

// Values at and beyond the ends of a long.
struct HugeFloatingFact {
    char const* fact;
    double value;
    unsigned long uint64;
};

// KEPT(uint64-from-floating)
HugeFloatingFact const HUGE_FLOATING_FACTS[] = {
    {"-2^63, which fits in a long", -0x1p63, 0x8000000000000000U},
    {"the largest Double below -2^63", -0x1.0000000000001p63, 0x8000000000000000U},
    {"-1e300, far below -2^63", -1e300, 0x8000000000000000U},
    {"2^63", 0x1p63, 0x8000000000000000U},
    {"the least Double above 2^63", 0x1.0000000000001p63, 0x8000000000000800U},
    {"the least Float above 2^63", 0x1.000002p63, 0x8000010000000000U},
    {"between 2^63 and 2^64", 0x1.8p63, 0xC000000000000000U},
    {"the largest Float below 2^64", 0x1.fffffep63, 0xFFFFFF0000000000U},
    {"the largest Double below 2^64", 0x1.fffffffffffffp63, 0xFFFFFFFFFFFFF800U},
    {"2^64 gives 2^63", 0x1p64, 0x8000000000000000U},
    {"the least Double above 2^64 gives 2^63", 0x1.0000000000001p64, 0x8000000000000000U},
    {"the largest Double gives 2^63", DBL_MAX, 0x8000000000000000U},
    {"the largest Float gives 2^63", FLT_MAX, 0x8000000000000000U},
    {"infinity gives 2^63", INFINITY, 0x8000000000000000U},
    {"negative infinity gives 2^63", -INFINITY, 0x8000000000000000U},
    {"NaN gives 2^63", NAN, 0x8000000000000000U},
    {"negative NaN gives 2^63", -NAN, 0x8000000000000000U},
};

TEST(VariantNumbers, ReadsWhatDoesNotFitALongAsTheLeastLong) {
    for (HugeFloatingFact const& row : HUGE_FLOATING_FACTS) {
        SCOPED_TRACE(row.fact);
        expectFloatingRead(row.value, INT_MIN, LONG_MIN, row.uint64);
    }
}

// ---- floating values

struct FloatingFact {
    char const* fact;
    Variant value;
    double asDouble;
    float asFloat;
};

FloatingFact reads(char const* fact, Variant const& value, double asDouble, float asFloat) {
    return {fact, value, asDouble, asFloat};
}

FloatingFact const FLOATING_FACTS[] = {
    reads("an UnsignedByte is exact", uchar{255}, 255, 255),
    reads("a Uint16 is exact", ushort{65535}, 65535, 65535),
    reads("the largest Uint32 is exact in a double and rounded in a float", 4294967295U,
          4294967295.0, 4294967296.0F),
    reads("a Byte is exact", '\x80', -128, -128),
    reads("an Int16 is exact", short{-32768}, -32768, -32768),
    reads("the largest Int32 is exact in a double and rounded in a float", 2147483647, 2147483647.0,
          2147483648.0F),
    reads("an Int32 halfway between two floats is rounded down to the even one", 16777217,
          16777217.0, 16777216.0F),
    reads("an Int32 halfway between two floats is rounded up to the even one", 16777219, 16777219.0,
          16777220.0F),
    reads("an Int64 halfway between two doubles is rounded down to the even one", 9007199254740993L,
          9007199254740992.0, 9007199254740992.0F),
    reads("an Int64 halfway between two doubles is rounded up to the even one", 9007199254740995L,
          9007199254740996.0, 9007199254740992.0F),
    reads("the largest Int64 is rounded to 2^63", LONG_MAX, 0x1p63, 0x1p63F),
    reads("the least Int64 is exact", LONG_MIN, -0x1p63, -0x1p63F),
    // Rounded to a double first, it would be halfway, and the float would be 0x1p60.
    reads("an Int64 is rounded once on its way to a float", 0x1000001000000001L, 0x1.000001p60,
          0x1.000002p60F),
    reads("a negative Int64 is rounded once on its way to a float", -0x1000001000000001L,
          -0x1.000001p60, -0x1.000002p60F),
    reads("the largest Uint64 is rounded to 2^64", ULONG_MAX, 0x1p64, 0x1p64F),
    reads("a Uint64 of 2^63 is exact", 0x8000000000000000UL, 0x1p63, 0x1p63F),
    reads("a Uint64 halfway between two doubles is rounded to the even one", 0x8000000000000400UL,
          0x1p63, 0x1p63F),
    reads("a Uint64 above halfway between two doubles is rounded up", 0x8000000000000401UL,
          0x1.0000000000001p63, 0x1p63F),
    reads("a Uint64 is rounded once on its way to a float", 0x8000008000000001UL, 0x1.000001p63,
          0x1.000002p63F),
    reads("a Float is exact in a double", 0.1F, 0x1.99999ap-4, 0.1F),
    reads("the least Float is exact in a double", 0x1p-149F, 0x1p-149, 0x1p-149F),
    reads("a Float of -0 keeps its sign", -0.0F, -0.0, -0.0F),
    reads("a Float of infinity is infinity", INFINITE_FLOAT, INFINITY, INFINITE_FLOAT),
    reads("a Float of NaN is NaN", NAN_FLOAT, NAN, NAN_FLOAT),
    reads("a Double is rounded to a float", 0.1, 0.1, 0.1F),
    reads("a Double of -0 keeps its sign", -0.0, -0.0, -0.0F),
    reads("a Double halfway between two floats is rounded to the even one", 0x1.000001p0,
          0x1.000001p0, 1.0F),
    reads("a Double above halfway between two floats is rounded up", 0x1.0000010000001p0,
          0x1.0000010000001p0, 0x1.000002p0F),
    reads("a Double above all floats is infinity as a float", 1e39, 1e39, INFINITE_FLOAT),
    reads("a Double may be rounded down to the largest float", 0x1.fffffefffffffp127,
          0x1.fffffefffffffp127, FLT_MAX),
    reads("a Double halfway above the largest float is infinity as a float", 0x1.ffffffp127,
          0x1.ffffffp127, INFINITE_FLOAT),
    reads("a Double too small for a float is 0 with its sign", -1e-46, -1e-46, -0.0F),
    reads("a Double of -infinity is -infinity", -INFINITY, -INFINITY, -INFINITE_FLOAT),
    reads("a Double of NaN is NaN", NAN, NAN, NAN_FLOAT),
    reads("a DateTime is its OpenVMS seconds", xtime_t(1763164800, 0), 5269881600.0, 5269881856.0F),
    reads("a DateTime is its OpenVMS seconds with their fraction", xtime_t(1763164800, 250000000),
          5269881600.25, 5269881856.0F),
    reads("true is 1", true, 1, 1),
    reads("false is 0", false, 0, 0),
    reads("a Boolean byte of 2 is true", slot(12, 2), 1, 1),
    reads("a Boolean byte of 255 is true", slot(12, 255), 1, 1),
    reads("a Boolean is the low byte of the slot alone", slot(12, 0x100), 0, 0),
    reads("a String is the number that it contains", L"1e3", 1000, 1000),
    reads("an empty String is 0", L"", 0, 0),
    reads("a Float is the low 32 bits of a full slot", slot(7, 0x3FF000003FC00000), 1.5, 1.5),
};

TEST(VariantNumbers, ReadsEveryTypeAsFloatAndDouble) {
    ScopedLocale const classic("C");
    for (FloatingFact const& row : FLOATING_FACTS) {
        SCOPED_TRACE(row.fact);
        expectFloating(row.value, row.asDouble, row.asFloat);
    }
}

// ---- Booleans

Variant booleanByte(uchar byte) { return slot(12, byte); }

// A slot in which all bits above the lowest byte are set.
Variant upperBytes(VariantType type) { return slot(type, 0xFFFFFFFFFFFFFF00); }

xtime_t afterVmsEpoch(unsigned int nanoseconds) { return {-3506716800, nanoseconds}; }

struct BooleanFact {
    char const* fact;
    Variant value;
    bool boolean;
};

// KEPT(first-letter-decides): "Yellow", "n1", and " true" with its space.
BooleanFact const BOOLEAN_FACTS[] = {
    {"UnsignedByte 0", uchar{0}, false},
    {"UnsignedByte not 0", uchar{128}, true},
    {"Uint16 0", ushort{0}, false},
    {"Uint16 256, whose low byte is 0", ushort{256}, true},
    {"Uint32 0", 0U, false},
    {"Uint32 65536, whose low 16 bits are 0", 0x10000U, true},
    {"Byte 0", '\0', false},
    {"Byte below 0", '\xFF', true},
    {"Int16 0", short{0}, false},
    {"Int16 below 0", short{-1}, true},
    {"Int32 0", 0, false},
    {"the least Int32", INT_MIN, true},
    {"Int64 0", 0L, false},
    {"Int64 2^32, whose low 32 bits are 0", 0x100000000L, true},
    {"Uint64 0", 0UL, false},
    {"Uint64 2^63, only the top bit", 0x8000000000000000UL, true},
    {"Float 0", 0.0F, false},
    {"Float -0 is false", -0.0F, false},
    {"the least Float above 0 is true", 0x1p-149F, true},
    {"Float NaN is true", NAN_FLOAT, true},
    {"Double 0", 0.0, false},
    {"Double -0 is false", -0.0, false},
    {"Double 0.5 is true", 0.5, true},
    {"the largest Double below 0 is true", -5e-324, true},
    {"Double NaN is true", NAN, true},
    {"Double negative infinity is true", -INFINITY, true},
    {"DateTime of 1970 is true", xtime_t(), true},
    {"DateTime of the OpenVMS epoch is false", afterVmsEpoch(0), false},
    {"DateTime 100 ns after the OpenVMS epoch is true", afterVmsEpoch(100), true},
    {"DateTime with -0 OpenVMS seconds is false", dateTime(-0.0), false},
    {"DateTime with NaN OpenVMS seconds is true", dateTime(NAN), true},
    {"Boolean true", true, true},
    {"Boolean false", false, false},
    {"a Boolean byte of 2", booleanByte(2), true},
    {"a Boolean byte of 255", booleanByte(255), true},
    {"the bytes of the slot above a Boolean do not count", upperBytes(12), false},
    {"the bytes of the slot above an UnsignedByte do not count", upperBytes(1), false},
    {"the empty string is false", L"", false},
    {"yes is true", L"yes", true},
    {"Yes is true", L"Yes", true},
    {"y is true", L"y", true},
    {"Y is true", L"Y", true},
    {"Yellow is true by its first letter", L"Yellow", true},
    {"the string true is true", L"true", true},
    {"the string True is true", L"True", true},
    {"t is true", L"t", true},
    {"T is true", L"T", true},
    {"t0 is true by its first letter", L"t0", true},
    {"no is false", L"no", false},
    {"Nope is false by its first letter", L"Nope", false},
    {"n1 is false by its first letter", L"n1", false},
    {"N is false", L"N", false},
    {"the string false is false", L"false", false},
    {"the string False is false", L"False", false},
    {"f1 is false by its first letter", L"f1", false},
    {"F is false", L"F", false},
    {"a space before true makes it false", L" true", false},
    {"abc is false", L"abc", false},
    {"on is false", L"on", false},
    {"the string 0 is false", L"0", false},
    {"the string 2 is true", L"2", true},
    {"a number after whitespace is read", L" \t\n2", true},
    {"a number with a sign", L"-1", true},
    {"zero with a sign", L"+0", false},
    {"a number before letters", L"1abc", true},
    {"leading zeros are read", L"0001", true},
    {"0x10 is read as 0", L"0x10", false},
    {"0.5 is read as 0", L"0.5", false},
    {"1.5 is read as 1", L"1.5", true},
    {"0e5 is read as 0", L"0e5", false},
    {"a number beyond 64 bits is true", L"99999999999999999999", true},
    {"2^64 is true, though its low 64 bits are 0", L"18446744073709551616", true},
    {"a zero character ends the number before it", L"0\0001"s, false},
    {"a string that begins with a zero character is false", L"\0true"s, false},
    {"the first letter decides before a zero character", L"t\0f"s, true},
    {"a letter with the low byte of Y", L"\u0159", false},
    {"a wide letter Y", L"\uFF39", false},
    {"a character below zero", "\xF9", false},
};

TEST(VariantNumbers, ReadsEveryTypeAsBoolean) {
    ScopedLocale const classic("C");
    for (BooleanFact const& row : BOOLEAN_FACTS) {
        SCOPED_TRACE(row.fact);
        expectBoolean(row.value, row.boolean);
    }
}

TEST(VariantNumbers, TakesNoOtherFirstLetterForAnAnswer) {
    ScopedLocale const classic("C");
    for (wchar_t letter = 1; letter < 0x250; ++letter) {
        SCOPED_TRACE(static_cast<int>(letter));
        bool const expected =
            wide(L"YyTt").find(letter) != wide::npos || (letter >= L'1' && letter <= L'9');
        EXPECT_EQ(Variant(wide(1, letter)).toBool(), expected);
        bool const beforeOne = expected || wide(L"0 \t\n\v\f\r+-").find(letter) != wide::npos;
        EXPECT_EQ(Variant(wide(1, letter) + L"1").toBool(), beforeOne);
    }
}

// ---- no value

constexpr char const* MESSAGE =
    "com::halvorin::utility::Variant::convert::Failed to convert data type because type is not "
    "supported";  // KEPT(message-says-utility)

// Takes what is written to standard output, and counts how often it is flushed.
class CapturedOutput : public std::stringbuf {
public:
    CapturedOutput() : previous_(std::cout.rdbuf(this)) {}
    ~CapturedOutput() override { std::cout.rdbuf(previous_); }
    CapturedOutput(CapturedOutput const&) = delete;
    CapturedOutput& operator=(CapturedOutput const&) = delete;

    int flushes() const { return flushes_; }

protected:
    int sync() override {
        ++flushes_;
        return 0;
    }

private:
    std::streambuf* previous_;
    int flushes_ = 0;
};

template <auto NAMED>
double read(Variant const& variant) {
    return static_cast<double>((variant.*NAMED)());
}

template <typename Target>
double converted(Variant const& variant) {
    return static_cast<double>(static_cast<Target>(variant));
}

struct Conversion {
    char const* name;
    double (*convert)(Variant const&);
};

Conversion const CONVERSIONS[] = {
    {"toUbyte", read<&Variant::toUbyte>},
    {"toByte", read<&Variant::toByte>},
    {"toInt16", read<&Variant::toInt16>},
    {"toUint16", read<&Variant::toUint16>},
    {"toInt32", read<&Variant::toInt32>},
    {"toUint32", read<&Variant::toUint32>},
    {"toInt64", read<&Variant::toInt64>},
    {"toUint64", read<&Variant::toUint64>},
    {"toFloat", read<&Variant::toFloat>},
    {"toDouble", read<&Variant::toDouble>},
    {"toBool", read<&Variant::toBool>},
    {"operator unsigned char", converted<unsigned char>},
    {"operator char", converted<char>},
    {"operator short", converted<short>},
    {"operator unsigned short", converted<unsigned short>},
    {"operator int", converted<int>},
    {"operator unsigned int", converted<unsigned int>},
    {"operator long", converted<long>},
    {"operator unsigned long", converted<unsigned long>},
    {"operator float", converted<float>},
    {"operator double", converted<double>},
    {"operator bool", converted<bool>},
};

// A Variant with a value in every member that a conversion might read.
Variant ofType(VariantType type) {
    Variant variant(L"42");
    variant.dataType = type;
    variant.uVal.asUint64 = 0x3FF000003F800001;  // not zero at any width
    return variant;
}

TEST(VariantNumbers, SaysOnceOnStandardOutputThatThereIsNoValue) {
    EXPECT_EQ(std::string(MESSAGE).size(), 99U);
    for (VariantType const type : {0, 15, 16, -1, -2, INT_MIN, INT_MAX}) {
        for (Conversion const& conversion : CONVERSIONS) {
            SCOPED_TRACE(conversion.name);
            SCOPED_TRACE(type);
            Variant const variant = ofType(type);
            CapturedOutput const output;
            double const result = conversion.convert(variant);
            EXPECT_EQ(result, 0.0);
            EXPECT_FALSE(std::signbit(result));
            EXPECT_EQ(output.str(), std::string(MESSAGE) + '\n');
            EXPECT_EQ(output.flushes(), 1);
        }
    }
    EXPECT_EQ(testing_support::takeReports(), std::vector<testing_support::Report>());
}

TEST(VariantNumbers, SaysItForEachConversionAnew) {
    CapturedOutput const output;
    Variant const variant;
    EXPECT_EQ(variant.toInt32(), 0);
    EXPECT_EQ(variant.toBool(), false);
    EXPECT_EQ(output.str(), std::string(MESSAGE) + '\n' + MESSAGE + '\n');
}

TEST(VariantNumbers, IsSilentWhereThereIsAValue) {
    for (Conversion const& conversion : CONVERSIONS) {
        SCOPED_TRACE(conversion.name);
        CapturedOutput const output;
        EXPECT_EQ(conversion.convert(ofType(14)), 0.0);  // Null is a value, and zero
        for (VariantType type = 1; type <= 13; ++type) {
            EXPECT_NE(conversion.convert(ofType(type)), 0.0) << type;
        }
        EXPECT_EQ(output.str(), "");
        EXPECT_EQ(output.flushes(), 0);
    }
}

// A host's output stream that fails in one of five ways.
class FailingOutput : public CapturedOutput {
public:
    enum class Failure { REFUSES, CANNOT_FLUSH, THROWS, THROWS_A_NUMBER, HAS_NO_MEMORY };

    explicit FailingOutput(Failure failure) : failure_(failure) {
        std::cout.exceptions(std::ios_base::badbit | std::ios_base::failbit |
                             std::ios_base::eofbit);
    }
    ~FailingOutput() override { std::cout.exceptions(std::ios_base::goodbit); }
    FailingOutput(FailingOutput const&) = delete;
    FailingOutput& operator=(FailingOutput const&) = delete;

protected:
    std::streamsize xsputn(char const* text, std::streamsize size) override {
        if (failure_ == Failure::THROWS) throw std::runtime_error("no output");
        if (failure_ == Failure::THROWS_A_NUMBER) throw 42;
        if (failure_ == Failure::HAS_NO_MEMORY) throw std::bad_alloc();
        return failure_ == Failure::REFUSES ? 0 : CapturedOutput::xsputn(text, size);
    }
    int sync() override { return failure_ == Failure::CANNOT_FLUSH ? -1 : 0; }

private:
    Failure failure_;
};

// Earlier, the exception that a host's own buffer throws came out.
TEST(VariantNumbers, DoesNotThrowWhenStandardOutputDoes) {
    using Failure = FailingOutput::Failure;
    for (Failure const failure : {Failure::REFUSES, Failure::CANNOT_FLUSH, Failure::THROWS,
                                  Failure::THROWS_A_NUMBER, Failure::HAS_NO_MEMORY}) {
        for (Conversion const& conversion : CONVERSIONS) {
            SCOPED_TRACE(conversion.name);
            SCOPED_TRACE(static_cast<int>(failure));
            FailingOutput const output(failure);
            double result = 1;
            EXPECT_NO_THROW(result = conversion.convert(ofType(0)));
            EXPECT_EQ(result, 0.0);
            EXPECT_TRUE(std::cout.bad());
        }
    }
    EXPECT_TRUE(std::cout.good());
}

// A host's output stream at which a thread is cancelled.
class CancellingOutput : public CapturedOutput {
protected:
    std::streamsize xsputn(char const* /*text*/, std::streamsize size) override {
        cancelThisThread();
        return size;
    }
};

TEST(VariantNumbers, LetsTheCancellationOfAThreadPassThroughStandardOutput) {
    CancellingOutput const output;
    EXPECT_TRUE(endsByCancellation([] { static_cast<void>(Variant().toInt32()); }));
    std::cout.clear();
}

// Earlier, 21 asterisks came before the message, and the width was reset.
TEST(VariantNumbers, SaysItWithoutAHostsWidth) {
    CapturedOutput const output;
    std::cout.width(120);
    std::cout.fill('*');
    EXPECT_EQ(Variant().toInt32(), 0);
    EXPECT_EQ(output.str(), std::string(MESSAGE) + '\n');
    EXPECT_EQ(std::cout.width(), 120);
    std::cout.width(0);
    std::cout.fill(' ');
}

// ---- times

constexpr long SECONDS = 1763164800;

void nothing(Variant&) {}
void aTime(Variant& variant) { variant = xtime_t(SECONDS, 7); }
void aTimeOfTooManyNanoseconds(Variant& variant) { variant = xtime_t(SECONDS, 4294967295); }
void aTimeThenClear(Variant& variant) {
    aTime(variant);
    variant.clear();
}
void aTimeThenNull(Variant& variant) {
    aTime(variant);
    variant.makeNull();
}
void aTimeThenANumber(Variant& variant) {
    aTime(variant);
    variant = 42;
}
void aTimeThenText(Variant& variant) {
    aTime(variant);
    variant = "2000-01-01T00:00:00Z";
}
void aTimeThenAnImpossibleType(Variant& variant) {
    aTime(variant);
    variant.dataType = 99;
}
void itsVmsSecondsAsADouble(Variant& variant) { variant = 5269881600.0; }

struct TimeFact {
    char const* fact;
    void (*prepare)(Variant&);
    long seconds;
    unsigned int nanoseconds;
};

// KEPT(time-whatever-the-type)
TimeFact const TIME_FACTS[] = {
    {"a Variant that never had a time", nothing, 0, 0},
    {"a Variant with a time", aTime, SECONDS, 7},
    {"nanoseconds as they were given", aTimeOfTooManyNanoseconds, SECONDS, 4294967295},
    {"a cleared Variant still gives its time", aTimeThenClear, SECONDS, 7},
    {"a Null still gives its earlier time", aTimeThenNull, SECONDS, 7},
    {"a number still gives the earlier time", aTimeThenANumber, SECONDS, 7},
    {"a String still gives the earlier time", aTimeThenText, SECONDS, 7},
    {"a type number that does not exist gives the earlier time", aTimeThenAnImpossibleType, SECONDS,
     7},
    {"OpenVMS seconds in the slot do not give a time", itsVmsSecondsAsADouble, 0, 0},
};

TEST(VariantNumbers, GivesTheTimeWhateverTheType) {
    CapturedOutput const output;
    for (TimeFact const& row : TIME_FACTS) {
        SCOPED_TRACE(row.fact);
        Variant variant;
        row.prepare(variant);
        EXPECT_EQ(variant.toXtime_t(), xtime_t(row.seconds, row.nanoseconds));
        EXPECT_EQ(variant.operator xtime_t(), xtime_t(row.seconds, row.nanoseconds));
    }
    EXPECT_EQ(output.str(), "");
}

}  // namespace
