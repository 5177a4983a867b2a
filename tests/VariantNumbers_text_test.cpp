#include <cfloat>
#include <climits>
#include <cmath>
#include <locale>
#include <string>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/Variant.h>

#include "support/locales.h"
#include "support/variant_readings.h"

using com::halvorin::datatypes::Variant;
using testing_support::expectBoolean;
using testing_support::expectFloating;
using testing_support::expectIntegers;
using testing_support::lowBitsOf;
using testing_support::ScopedCLocale;
using testing_support::ScopedCppLocale;
using testing_support::ScopedLocale;

using namespace std::string_literals;

// How the text of a Variant reads as a number, under either locale. Long for its tables.
namespace {

using wide = std::wstring;

constexpr float INFINITE_FLOAT = INFINITY;
constexpr float NAN_FLOAT = NAN;

// Locales by the short name that a table has room for.
constexpr char const* C = "C";
constexpr char const* DE = "de_DE.UTF-8";
constexpr char const* EN = "en_US.UTF-8";
constexpr char const* FR = "fr_FR.ISO-8859-15";
constexpr char const* PS = "ps_AF.UTF-8";

// ---- text to integers

struct TextFact {
    char const* fact;
    wide text;
    long value;
};

wide const THIRTY_ZEROS(30, L'0');
wide const THIRTY_NINES(30, L'9');

// KEPT(text-is-read-as-int64): 2^63 and 2^64 are beyond the range for unsigned targets too.
TextFact const TEXT_FACTS[] = {
    {"no text", L"", 0},
    {"blanks, digits, letters", L" 42abc", 42},
    {"every blank of the C locale", L"\t\n\v\f\r 5", 5},
    {"blanks alone", L"  ", 0},
    {"a blank behind", L"7 ", 7},
    {"a second number", L"1 2", 1},
    {"a plus", L"+7", 7},
    {"a minus", L"-7", -7},
    {"a minus after blanks", L"  -7", -7},
    {"a blank after the sign", L"+ 7", 0},
    {"two signs", L"+-7", 0},
    {"a plus alone", L"+", 0},
    {"a minus alone", L"-", 0},
    {"no hexadecimal", L"0x1F", 0},
    {"nor with a large X", L"0X1F", 0},
    {"no octal", L"010", 10},
    {"a point ends the number", L"3.9", 3},
    {"a point before digits", L".9", 0},
    {"an exponent is none", L"1e3", 1},
    {"no digits", L"abc", 0},
    {"words are no numbers", L"true", 0},
    {"a group is none in the C locale", L"1,234", 1},
    {"the character before 0", L"1/2", 1},
    {"the character after 9", L"1:2", 1},
    {"a digit of another script", L"\u0665", 0},
    {"a wide digit", L"1\uFF12", 1},
    {"a character with a digit's low byte", L"1\u0132", 1},
    {"a zero character ends the number", L"12\00034"s, 12},
    {"also in front", L"\00034"s, 0},
    {"also behind", L"34\0"s, 34},
    {"one digit", L"0", 0},
    {"zero with a sign", L"-0", 0},
    {"17 digits", L"12345678901234567", 12345678901234567},
    {"18 digits", L"123456789012345678", 123456789012345678},
    {"the most of 18 digits", L"999999999999999999", 999999999999999999},
    {"with a plus", L"+999999999999999999", 999999999999999999},
    {"with a minus", L"-999999999999999999", -999999999999999999},
    {"19 digits", L"1000000000000000000", 1000000000000000000},
    {"19 digits with a minus", L"-1234567890123456789", -1234567890123456789},
    {"zeros in front, 19 in all", L"0000000000000000042", 42},
    {"zeros in front, 32 in all", THIRTY_ZEROS + L"42", 42},
    {"below the upper end", L"9223372036854775806", LONG_MAX - 1},
    {"the upper end", L"9223372036854775807", LONG_MAX},
    {"above it", L"9223372036854775808", LONG_MAX},
    {"20 digits", L"12345678901234567890", LONG_MAX},
    {"2^64", L"18446744073709551616", LONG_MAX},
    {"30 digits", THIRTY_NINES, LONG_MAX},
    {"above the lower end", L"-9223372036854775807", LONG_MIN + 1},
    {"the lower end", L"-9223372036854775808", LONG_MIN},
    {"below it", L"-9223372036854775809", LONG_MIN},
    {"20 digits and a minus", L"-12345678901234567890", LONG_MIN},
    {"beyond it, before letters", L"99999999999999999999x", LONG_MAX},
};

TEST(VariantNumbersText, ReadsTextAsALongAndCutsIt) {
    ScopedLocale const classic("C");
    for (TextFact const& row : TEXT_FACTS) {
        SCOPED_TRACE(row.fact);
        expectIntegers(Variant(row.text), lowBitsOf(row.value));
    }
}

struct LocalTextFact {
    char const* fact;
    char const* cppLocale;
    char const* cLocale;
    wide text;
    long value;
};

LocalTextFact const LOCAL_TEXT_FACTS[] = {
    {"groups of the global locale", DE, C, L"1.234.567", 1234567},
    {"not those of the C locale", C, DE, L"1.234.567", 1},
    {"groups may be missing", DE, C, L"1234567", 1234567},
    {"in part as well", DE, C, L"1234.567", 1234567},
    {"a wrong group is read too", DE, C, L"12.34", 1234},
    {"letters after groups", DE, C, L"-1.234x", -1234},
    {"an empty group", DE, C, L"1..2", 0},
    {"a separator first", DE, C, L".12", 0},
    {"a separator last", DE, C, L"12.", 12},
    {"the decimal point ends it", DE, C, L"1,5", 1},
    {"the end of 64 bits", DE, C, L"9.223.372.036.854.775.807", LONG_MAX},
    {"beyond them", DE, C, L"9.223.372.036.854.775.808", LONG_MAX},
    {"18 digits without groups", DE, C, L"123456789012345678", 123456789012345678},
    {"another separator", EN, C, L"1,234,567", 1234567},
    {"whose point ends the number", EN, C, L"1,234.567", 1234},
    {"a separator that is a blank", FR, C, L"1\u202F234", 1234},
    {"a separator beyond a byte", PS, C, L"1\u066C234", 1234},
    {"blanks of the global locale", EN, C, L"\u20037", 7},
    {"not those of the C locale", C, EN, L"\u20037", 0},
    {"a no-break space is none", EN, C, L"\u00A07", 0},
};

TEST(VariantNumbersText, ReadsTextAsIntegerUnderTheGlobalCppLocale) {
    for (LocalTextFact const& row : LOCAL_TEXT_FACTS) {
        SCOPED_TRACE(row.fact);
        ScopedCppLocale const cpp(row.cppLocale);
        ScopedCLocale const c(row.cLocale);
        expectIntegers(Variant(row.text), lowBitsOf(row.value));
    }
}

// What a host of its own making says every number is.
class AlwaysTheSame : public std::num_get<wchar_t> {
    iter_type do_get(iter_type from, iter_type /*end*/, std::ios_base& /*stream*/,
                     std::ios_base::iostate& /*state*/, long& value) const override {
        value = 777;
        return from;
    }
};

TEST(VariantNumbersText, ReadsEachStringByTheFacetsOfAHost) {
    ScopedCppLocale const cpp(std::locale(std::locale::classic(), new AlwaysTheSame));
    EXPECT_EQ(Variant(L"42").toInt64(), 777);
    EXPECT_EQ(Variant(L"-123456789012345678").toInt64(), 777);
    EXPECT_EQ(Variant(L"1234567890123456789").toInt64(), 777);
    EXPECT_EQ(Variant(L" 42").toInt64(), 777);
    EXPECT_EQ(Variant(L"").toInt64(), 0);
}

// A locale keeps its name when `combine` gives it another's facet, and is not the same for all that.
TEST(VariantNumbersText, AsksForTheFacetsOfALocaleThatPassesForTheClassicOne) {
    std::locale const classic = std::locale::classic();
    std::locale const host(classic, new AlwaysTheSame);
    {
        ScopedCppLocale const cpp(classic.combine<std::num_get<wchar_t>>(host));
        EXPECT_EQ(Variant(L" 42").toInt64(), 777);
    }
    ScopedCppLocale const cpp(classic.combine<std::numpunct<wchar_t>>(std::locale(DE)));
    EXPECT_EQ(Variant(L" 1.234 ").toInt64(), 1234);
    EXPECT_EQ(Variant(L"1.234").toInt64(), 1234);
}

// ---- text to floating values

struct DoubleTextFact {
    char const* fact;
    wide text;
    double value;
};

wide const THIRTY_ONES(30, L'1');

DoubleTextFact const DOUBLE_TEXT_FACTS[] = {
    {"no text", L"", 0.0},
    {"digits", L"42", 42.0},
    {"a point", L"0.1", 0.1},
    {"three decimals", L"123456.789", 123456.789},
    {"a point first", L".5", 0.5},
    {"a point last", L"5.", 5.0},
    {"a point alone", L".", 0.0},
    {"two points", L"1.2.3", 1.2},
    {"a plus", L"+1.5", 1.5},
    {"a minus", L"-1.5", -1.5},
    {"a minus before a point", L"-.5", -0.5},
    {"negative zero", L"-0", -0.0},
    {"negative zero with a point", L"-0.0", -0.0},
    {"a blank after the sign", L"- 5", 0.0},
    {"two signs", L"--5", 0.0},
    {"a sign alone", L"-", 0.0},
    {"blanks and letters", L" \t\n\v\f\r1.5abc", 1.5},
    {"blanks alone", L"  ", 0.0},
    {"a blank behind", L"1.5 ", 1.5},
    {"a comma ends it", L"1,5", 1.0},
    {"the character before 0 ends it", L"1.5/2", 1.5},
    {"the character after 9 ends it", L"1.5:2", 1.5},
    {"no number", L"abc", 0.0},
    {"a digit of another script", L"\u0665", 0.0},
    {"a point's low byte is no point", L"1\u012E5", 1.0},
    {"a zero character ends it", L"1.5\0007"s, 1.5},
    {"also in front", L"\0007"s, 0.0},
    {"an exponent", L"1e3", 1000.0},
    {"a large E and a sign", L"1.5E-2", 0.015},
    {"an exponent without digits", L"5e+", 5.0},
    {"hexadecimal", L"0x1F", 31.0},
    {"with point and exponent", L"-0X1.8p4", -24.0},
    {"hexadecimal without digits", L"0x", 0.0},
    {"infinity", L"inf", INFINITY},
    {"by its long name", L" -INFINITYx", -INFINITY},
    {"not a number", L"nan", NAN},
    {"too large", L"1e400", INFINITY},
    {"too large below zero", L"-1e400", -INFINITY},
    {"the largest", L"1.7976931348623157e308", DBL_MAX},
    {"too small", L"-1e-400", -0.0},
    {"the least", L"3e-324", 5e-324},
    {"below half of it", L"2e-324", 0.0},
    {"2^53 - 1", L"9007199254740991", 0x1.fffffffffffffp52},
    {"2^53", L"9007199254740992", 0x1p53},
    {"2^53 + 1 is halfway, to even", L"9007199254740993", 0x1p53},
    {"above halfway", L"9007199254740993.1", 0x1.0000000000001p53},
    {"2^53 + 3 is halfway, to even", L"9007199254740995", 0x1.0000000000002p53},
    {"17 digits", L"0.30000000000000004", 0x1.3333333333334p-2},
    {"17 digits, the last one less", L"0.30000000000000001", 0x1.3333333333333p-2},
    {"18 digits", L"299792458.123456789", 0x1.1de784a1f9addp28},
    {"19 digits", L"-1234567890123456789", -1234567890123456768.0},
    {"the most of 19 digits", L"9999999999999999999", 1e19},
    {"19 digits and a point", L"1.234567890123456789", 1.2345678901234568},
    {"19 digits after a point", L".1234567890123456789", 0.12345678901234568},
    {"19 digits before a point", L"1234567890123456789.", 1234567890123456768.0},
    {"19 digits, 18 after the point", L"0.000000000000000001", 1e-18},
    {"19 digits, none before it", L".0000000000000000001", 1e-19},
    {"20 digits", L"12345678901234567890", 12345678901234567168.0},
    {"20 digits, 2^64 and more", L"20000000000000000001", 2e19},
    {"20 digits, the first ones zero", L"0000000000.0000000001", 1e-10},
    {"30 digits", THIRTY_ONES, 111111111111111111111111111111.0},
};

TEST(VariantNumbersText, ReadsTextAsADouble) {
    ScopedLocale const classic("C");
    for (DoubleTextFact const& row : DOUBLE_TEXT_FACTS) {
        SCOPED_TRACE(row.fact);
        expectFloating(Variant(row.text), row.value, static_cast<float>(row.value));
    }
}

struct FloatTextFact {
    char const* fact;
    wide text;
    double asDouble;
    float asFloat;
};

// 1.00000005960464477540 is halfway between two Floats, and more by what a Double cannot hold; read
// as a Float at once it would be 1.0000001.
FloatTextFact const FLOAT_TEXT_FACTS[] = {
    {"a Float", L"0.1", 0.1, 0.1F},
    {"by way of Double", L"1.00000005960464477540", 0x1.000001p0, 1.0F},
    {"also of 18 digits", L"16777217.0000000001", 16777217.0, 16777216.0F},
    {"the largest", L"3.4028234663852886e38", 0x1.fffffep127, FLT_MAX},
    {"too large", L"1e39", 1e39, INFINITE_FLOAT},
    {"the least", L"1e-45", 1e-45, 0x1p-149F},
    {"too small", L"-1e-46", -1e-46, -0.0F},
    {"not a number", L"nan", NAN, NAN_FLOAT},
    {"infinity", L"-inf", -INFINITY, -INFINITE_FLOAT},
};

TEST(VariantNumbersText, ReadsTextAsAFloatByWayOfADouble) {
    ScopedLocale const classic("C");
    for (FloatTextFact const& row : FLOAT_TEXT_FACTS) {
        SCOPED_TRACE(row.fact);
        expectFloating(Variant(row.text), row.asDouble, row.asFloat);
    }
}

struct LocalFloatingTextFact {
    char const* fact;
    char const* cLocale;
    char const* cppLocale;
    wide text;
    double value;
};

LocalFloatingTextFact const LOCAL_FLOATING_TEXT_FACTS[] = {
    {"the point of the C locale", DE, C, L"1,5", 1.5},
    {"a point is none there", DE, C, L"1.5", 1.0},
    {"not even in front", DE, C, L".5", 0.0},
    {"nor among many digits", DE, C, L"9007199254740995.1", 9007199254740996.0},
    {"the global locale has no say", C, DE, L"1.5", 1.5},
    {"nor its comma", C, DE, L"1,5", 1.0},
    {"digits need no point", DE, DE, L"-123", -123.0},
    {"groups are not read", EN, EN, L"1,234.5", 1.0},
    {"a comma in an 8-bit locale", FR, C, L"-0,25", -0.25},
    {"a point of two bytes", PS, C, L"1\u066B5", 1.5},
    {"where a plain one is none", PS, C, L"1.5", 1.0},
    {"blanks of the C locale", EN, C, L"\u20031.5", 1.5},
    {"not those of the global locale", C, EN, L"\u20031.5", 0.0},
};

TEST(VariantNumbersText, ReadsTextAsDoubleUnderTheCLocale) {
    for (LocalFloatingTextFact const& row : LOCAL_FLOATING_TEXT_FACTS) {
        SCOPED_TRACE(row.fact);
        ScopedCLocale const c(row.cLocale);
        ScopedCppLocale const cpp(row.cppLocale);
        expectFloating(Variant(row.text), row.value, static_cast<float>(row.value));
    }
}

TEST(VariantNumbersText, ReadsTextAsBooleanUnderTheCLocale) {
    wide const text = L"\u20037";
    {
        ScopedCLocale const c("en_US.UTF-8");
        ScopedCppLocale const cpp("C");
        expectBoolean(Variant(text), true);
    }
    ScopedCLocale const c("C");
    ScopedCppLocale const cpp("en_US.UTF-8");
    expectBoolean(Variant(text), false);
}

}  // namespace
