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

// How a String of a Variant reads as a number, under the C locale and the global C++ locale. Long
// for its tables.
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

// KEPT(text-is-read-as-int64): 2^63 and 2^64 are out of range for unsigned targets too.
TextFact const TEXT_FACTS[] = {
    {"an empty string is 0", L"", 0},
    {"whitespace before and letters after a number are ignored", L" 42abc", 42},
    {"all six whitespace characters of the C locale are skipped", L"\t\n\v\f\r 5", 5},
    {"whitespace alone is 0", L"  ", 0},
    {"a space after a number is ignored", L"7 ", 7},
    {"a second number is ignored", L"1 2", 1},
    {"a plus is accepted", L"+7", 7},
    {"a minus is accepted", L"-7", -7},
    {"a minus after whitespace is accepted", L"  -7", -7},
    {"a space between sign and digits gives 0", L"+ 7", 0},
    {"two signs give 0", L"+-7", 0},
    {"a plus alone is 0", L"+", 0},
    {"a minus alone is 0", L"-", 0},
    {"0x is no prefix, so the 0 is the number", L"0x1F", 0},
    {"0X is no prefix, so the 0 is the number", L"0X1F", 0},
    {"a leading 0 does not make the number octal", L"010", 10},
    {"a point ends the number, and the fraction is ignored", L"3.9", 3},
    {"a point before digits gives 0", L".9", 0},
    {"an exponent is ignored", L"1e3", 1},
    {"letters alone are 0", L"abc", 0},
    {"the word true is 0", L"true", 0},
    {"a comma ends the number in the C locale", L"1,234", 1},
    {"the character before 0 ends the number", L"1/2", 1},
    {"the character after 9 ends the number", L"1:2", 1},
    {"a digit of another script is no digit", L"\u0665", 0},
    {"a full-width digit ends the number", L"1\uFF12", 1},
    {"a character whose low byte is a digit ends the number", L"1\u0132", 1},
    {"a zero character ends the number", L"12\00034"s, 12},
    {"a zero character before digits gives 0", L"\00034"s, 0},
    {"a zero character after digits is ignored", L"34\0"s, 34},
    {"one digit is read", L"0", 0},
    {"zero with a minus is 0", L"-0", 0},
    {"17 digits are read", L"12345678901234567", 12345678901234567},
    {"18 digits are read", L"123456789012345678", 123456789012345678},
    {"18 nines are read", L"999999999999999999", 999999999999999999},
    {"18 nines with a plus are read", L"+999999999999999999", 999999999999999999},
    {"18 nines with a minus are read", L"-999999999999999999", -999999999999999999},
    {"19 digits are read", L"1000000000000000000", 1000000000000000000},
    {"19 digits with a minus are read", L"-1234567890123456789", -1234567890123456789},
    {"leading zeros up to 19 digits are ignored", L"0000000000000000042", 42},
    {"leading zeros up to 32 digits are ignored", THIRTY_ZEROS + L"42", 42},
    {"one less than the largest long is read", L"9223372036854775806", LONG_MAX - 1},
    {"the largest long is read", L"9223372036854775807", LONG_MAX},
    {"one more than the largest long gives the largest", L"9223372036854775808", LONG_MAX},
    {"20 digits give the largest long", L"12345678901234567890", LONG_MAX},
    {"2^64 gives the largest long", L"18446744073709551616", LONG_MAX},
    {"30 nines give the largest long", THIRTY_NINES, LONG_MAX},
    {"one more than the smallest long is read", L"-9223372036854775807", LONG_MIN + 1},
    {"the smallest long is read", L"-9223372036854775808", LONG_MIN},
    {"one less than the smallest long gives the smallest", L"-9223372036854775809", LONG_MIN},
    {"20 digits with a minus give the smallest long", L"-12345678901234567890", LONG_MIN},
    {"20 digits before letters give the largest long", L"99999999999999999999x", LONG_MAX},
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
    {"groups of the global C++ locale are read", DE, C, L"1.234.567", 1234567},
    {"groups of the C locale are not read", C, DE, L"1.234.567", 1},
    {"digits without groups are read", DE, C, L"1234567", 1234567},
    {"a number with one of two separators is read", DE, C, L"1234.567", 1234567},
    {"a group of two digits is read", DE, C, L"12.34", 1234},
    {"letters after groups are ignored", DE, C, L"-1.234x", -1234},
    {"an empty group gives 0", DE, C, L"1..2", 0},
    {"a separator before digits gives 0", DE, C, L".12", 0},
    {"a separator after digits is ignored", DE, C, L"12.", 12},
    {"the decimal point ends the number", DE, C, L"1,5", 1},
    {"the largest long in groups is read", DE, C, L"9.223.372.036.854.775.807", LONG_MAX},
    {"one more than the largest long in groups gives the largest", DE, C,
     L"9.223.372.036.854.775.808", LONG_MAX},
    {"18 digits without groups are read in a grouping locale", DE, C, L"123456789012345678",
     123456789012345678},
    {"a comma separates groups in en_US", EN, C, L"1,234,567", 1234567},
    {"a point ends the number in en_US", EN, C, L"1,234.567", 1234},
    {"a space separates groups in fr_FR", FR, C, L"1\u202F234", 1234},
    {"a character beyond a byte separates groups in ps_AF", PS, C, L"1\u066C234", 1234},
    {"whitespace of the global C++ locale is skipped", EN, C, L"\u20037", 7},
    {"whitespace of the C locale alone gives 0", C, EN, L"\u20037", 0},
    {"a no-break space is no whitespace", EN, C, L"\u00A07", 0},
};

TEST(VariantNumbersText, ReadsTextAsIntegerUnderTheGlobalCppLocale) {
    for (LocalTextFact const& row : LOCAL_TEXT_FACTS) {
        SCOPED_TRACE(row.fact);
        ScopedCppLocale const cpp(row.cppLocale);
        ScopedCLocale const c(row.cLocale);
        expectIntegers(Variant(row.text), lowBitsOf(row.value));
    }
}

// A facet of a host that gives the same number for each string.
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

// A locale keeps its name when `combine` gives it a facet of another, but it is another locale.
TEST(VariantNumbersText, UsesTheFacetsOfALocaleThatHasTheNameOfTheClassicOne) {
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
    {"an empty string is 0", L"", 0.0},
    {"digits are read", L"42", 42.0},
    {"a point among digits is read", L"0.1", 0.1},
    {"three decimals are read", L"123456.789", 123456.789},
    {"a point before digits is read", L".5", 0.5},
    {"a point after digits is read", L"5.", 5.0},
    {"a point alone is 0", L".", 0.0},
    {"a second point ends the number", L"1.2.3", 1.2},
    {"a plus is accepted", L"+1.5", 1.5},
    {"a minus is accepted", L"-1.5", -1.5},
    {"a minus before a point is accepted", L"-.5", -0.5},
    {"negative zero is read", L"-0", -0.0},
    {"negative zero with a point is read", L"-0.0", -0.0},
    {"a space between sign and digits gives 0", L"- 5", 0.0},
    {"two signs give 0", L"--5", 0.0},
    {"a sign alone is 0", L"-", 0.0},
    {"whitespace before and letters after a number are ignored", L" \t\n\v\f\r1.5abc", 1.5},
    {"whitespace alone is 0", L"  ", 0.0},
    {"a space after a number is ignored", L"1.5 ", 1.5},
    {"a comma ends the number in the C locale", L"1,5", 1.0},
    {"the character before 0 ends the number", L"1.5/2", 1.5},
    {"the character after 9 ends the number", L"1.5:2", 1.5},
    {"letters alone are 0", L"abc", 0.0},
    {"a digit of another script is no digit", L"\u0665", 0.0},
    {"a character whose low byte is a point ends the number", L"1\u012E5", 1.0},
    {"a zero character ends the number", L"1.5\0007"s, 1.5},
    {"a zero character before digits gives 0", L"\0007"s, 0.0},
    {"an exponent is read", L"1e3", 1000.0},
    {"an exponent with a large E and a sign is read", L"1.5E-2", 0.015},
    {"an exponent without digits is ignored", L"5e+", 5.0},
    {"hexadecimal digits are read", L"0x1F", 31.0},
    {"hexadecimal digits with point and exponent are read", L"-0X1.8p4", -24.0},
    {"a hexadecimal prefix without digits is 0", L"0x", 0.0},
    {"the word inf is infinity", L"inf", INFINITY},
    {"the word INFINITY after whitespace and a minus is -infinity", L" -INFINITYx", -INFINITY},
    {"the word nan is NaN", L"nan", NAN},
    {"a number above the largest is infinity", L"1e400", INFINITY},
    {"a number below the lowest is -infinity", L"-1e400", -INFINITY},
    {"the largest double is read", L"1.7976931348623157e308", DBL_MAX},
    {"a number too near to zero is zero with its sign", L"-1e-400", -0.0},
    {"a number near the smallest subnormal is that subnormal", L"3e-324", 5e-324},
    {"a number below half of the smallest subnormal is 0", L"2e-324", 0.0},
    {"2^53 - 1 is read", L"9007199254740991", 0x1.fffffffffffffp52},
    {"2^53 is read", L"9007199254740992", 0x1p53},
    {"2^53 + 1 is halfway and rounds down to even", L"9007199254740993", 0x1p53},
    {"2^53 + 1.1 is above halfway and rounds up", L"9007199254740993.1", 0x1.0000000000001p53},
    {"2^53 + 3 is halfway and rounds up to even", L"9007199254740995", 0x1.0000000000002p53},
    {"17 digits are read", L"0.30000000000000004", 0x1.3333333333334p-2},
    {"17 digits of the double below are read", L"0.30000000000000001", 0x1.3333333333333p-2},
    {"18 digits are read", L"299792458.123456789", 0x1.1de784a1f9addp28},
    {"19 digits are read", L"-1234567890123456789", -1234567890123456768.0},
    {"19 nines are read", L"9999999999999999999", 1e19},
    {"19 digits with a point among them are read", L"1.234567890123456789", 1.2345678901234568},
    {"19 digits after a point are read", L".1234567890123456789", 0.12345678901234568},
    {"19 digits before a point are read", L"1234567890123456789.", 1234567890123456768.0},
    {"19 digits, of which 18 are after the point, are read", L"0.000000000000000001", 1e-18},
    {"19 digits, all after the point, are read", L".0000000000000000001", 1e-19},
    {"20 digits are read", L"12345678901234567890", 12345678901234567168.0},
    {"20 digits above 2^64 are read", L"20000000000000000001", 2e19},
    {"20 digits with leading zeros are read", L"0000000000.0000000001", 1e-10},
    {"30 digits are read", THIRTY_ONES, 111111111111111111111111111111.0},
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

// 1.00000005960464477540 is so little above the point halfway between two floats that the double is
// that point. Rounded to a float directly it would be 1.0000001.
FloatTextFact const FLOAT_TEXT_FACTS[] = {
    {"a float is read", L"0.1", 0.1, 0.1F},
    {"a number is rounded to a double and then to a float", L"1.00000005960464477540", 0x1.000001p0,
     1.0F},
    {"a number of 18 digits is rounded twice", L"16777217.0000000001", 16777217.0, 16777216.0F},
    {"the largest float is read", L"3.4028234663852886e38", 0x1.fffffep127, FLT_MAX},
    {"a number above the largest float is infinity", L"1e39", 1e39, INFINITE_FLOAT},
    {"a number near the smallest float is that float", L"1e-45", 1e-45, 0x1p-149F},
    {"a number too near to zero for a float is zero with its sign", L"-1e-46", -1e-46, -0.0F},
    {"the word nan is NaN", L"nan", NAN, NAN_FLOAT},
    {"the word -inf is -infinity", L"-inf", -INFINITY, -INFINITE_FLOAT},
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
    {"the decimal comma of the C locale is read", DE, C, L"1,5", 1.5},
    {"a point ends the number in de_DE", DE, C, L"1.5", 1.0},
    {"a point before digits gives 0 in de_DE", DE, C, L".5", 0.0},
    {"a point after 16 digits ends the number in de_DE", DE, C, L"9007199254740995.1",
     9007199254740996.0},
    {"the global C++ locale does not change the decimal point", C, DE, L"1.5", 1.5},
    {"the decimal comma of the global C++ locale is not read", C, DE, L"1,5", 1.0},
    {"digits without a point are read in de_DE", DE, DE, L"-123", -123.0},
    {"a separator of groups ends the number", EN, EN, L"1,234.5", 1.0},
    {"the decimal comma of an 8-bit locale is read", FR, C, L"-0,25", -0.25},
    {"a decimal point of two bytes is read", PS, C, L"1\u066B5", 1.5},
    {"a plain point ends the number in ps_AF", PS, C, L"1.5", 1.0},
    {"an e that is the decimal point is read as one", "ee_EE.ISO-8859-1", C, L"1e5", 1.5},
    {"a minus that is whitespace is skipped", "ss_SS.ISO-8859-1", C, L"-42", 42.0},
    {"whitespace of the C locale is skipped", EN, C, L"\u20031.5", 1.5},
    {"whitespace of the global C++ locale alone gives 0", C, EN, L"\u20031.5", 0.0},
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
