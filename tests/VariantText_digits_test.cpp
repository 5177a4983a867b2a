#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/Variant.h>

#include "support/locales.h"

using com::halvorin::datatypes::Variant;
using testing_support::ScopedLocale;

// The six significant digits that a Variant writes for a double.
namespace {

constexpr char const* C = "C";

struct DigitsFact {
    char const* fact;
    double value;
    char const* text;
};

DigitsFact const DIGITS_FACTS[] = {
    {"zero", 0.0, "0"},
    {"negative zero", -0.0, "-0"},
    {"one", 1.0, "1"},
    {"minus one", -1.0, "-1"},
    {"zeros after the point are dropped", 1.5, "1.5"},
    {"zeros before the point stay", 100.0, "100"},
    {"six digits", 123456.0, "123456"},
    {"seven digits", 1234567.0, "1.23457e+06"},
    {"seven digits, six of them zero", 1000000.0, "1e+06"},
    {"the largest without an exponent", 999999.0, "999999"},
    {"just below halfway between 999999 and 1e+06", 0x1.e847effffffffp19, "999999"},
    {"halfway between 999999 and 1e+06 goes to the even digit", 999999.5, "1e+06"},
    {"halfway goes down to an even digit", 999998.5, "999998"},
    {"halfway goes down to 0", 100000.5, "100000"},
    {"halfway goes up to an even digit", 100001.5, "100002"},
    {"halfway of seven digits goes down to 0", 1000005.0, "1e+06"},
    {"halfway of seven digits goes up to 2", 1000015.0, "1.00002e+06"},
    {"halfway of seven digits goes down to 2", 1000025.0, "1.00002e+06"},
    {"seven digits just below halfway by the fraction", 1000014.5, "1.00001e+06"},
    {"seven digits just above halfway by the fraction", 1000005.5, "1.00001e+06"},
    {"halfway of eighteen digits goes down to 0", 100000500000000000.0, "1e+17"},
    {"halfway of eighteen digits goes up to 2", 100001500000000000.0, "1.00002e+17"},
    {"a decimal tie whose double is below the tie", 99999.95, "99999.9"},
    {"a decimal tie whose double is above the tie", 9.999995, "10"},
    {"a carry into a new digit", 0.9999996, "1"},
    {"a carry that removes the exponent", 9.9999996e-5, "0.0001"},
    {"9.9999949e-5 carries nothing", 9.9999949e-5, "9.99999e-05"},
    {"a carry that needs an exponent", 999999.6, "1e+06"},
    {"the exponent -4", 0.0001, "0.0001"},
    {"the exponent -4, all digits", 0.000123456789, "0.000123457"},
    {"the exponent -5", 0.00001, "1e-05"},
    {"the exponent -5, all digits", 0.0000123456789, "1.23457e-05"},
    {"the exponent 5", 543210.0, "543210"},
    {"the exponent 6", 5432100.0, "5.4321e+06"},
    {"the exponent -3", 0.00123, "0.00123"},
    {"the exponent -2", 0.0123, "0.0123"},
    {"the exponent -1", 0.123, "0.123"},
    {"a point after one digit", 1.23456, "1.23456"},
    {"a point after two digits", 12.3456, "12.3456"},
    {"a point after three digits", 123.456, "123.456"},
    {"a point after four digits", 1234.56, "1234.56"},
    {"a point after five digits", 12345.6, "12345.6"},
    {"an exponent of three digits", 1.5e100, "1.5e+100"},
    {"a negative exponent of three digits", -1.5e-100, "-1.5e-100"},
    {"the longest text of all", -1.23457e+308, "-1.23457e+308"},
    {"2^53", 9007199254740992.0, "9.0072e+15"},
    {"10^16", 1e16, "1e+16"},
    {"almost 10^17", 99999949999999990.0, "9.99999e+16"},
    {"rounded to 10^17", 99999950000000016.0, "1e+17"},
    {"10^17", 1e17, "1e+17"},
    {"10^23, which is below it as a double", 1e23, "1e+23"},
    {"10^-16", 1e-16, "1e-16"},
    {"the double just below 10^-16", 0x1.cd2b297d889bbp-54, "1e-16"},
    {"10^-17", 1e-17, "1e-17"},
    {"the largest double", DBL_MAX, "1.79769e+308"},
    {"the least normal double", DBL_MIN, "2.22507e-308"},
    {"the largest subnormal double", 0x0.fffffffffffffp-1022, "2.22507e-308"},
    {"the least subnormal double", 5e-324, "4.94066e-324"},
    {"the largest negative double", -5e-324, "-4.94066e-324"},
    {"infinity", INFINITY, "inf"},
    {"negative infinity", -INFINITY, "-inf"},
    {"not a number", NAN, "nan"},
    {"not a number, with a sign", -NAN, "-nan"},
};

TEST(VariantTextDigits, PrintsADoubleWithSixSignificantDigits) {
    ScopedLocale const classic(C);
    for (DigitsFact const& row : DIGITS_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(Variant(row.value).toString(), row.text);
        EXPECT_EQ(Variant(row.value).toString(1033),
                  std::wstring(row.text, row.text + std::strlen(row.text)));
    }
}

double powerOfTen(int exponent) {
    return std::strtod(("1e" + std::to_string(exponent)).c_str(), nullptr);
}

// Powers of ten whose nearest doubles have few bits, so that their six digits are others.
struct FewBitsFact {
    int exponent;
    char const* text;
};

FewBitsFact const FEW_BITS_FACTS[] = {
    {-323, "9.88131e-324"}, {-322, "9.88131e-323"}, {-321, "9.98013e-322"},
    {-320, "9.99989e-321"}, {-319, "9.99989e-320"}, {-318, "9.99999e-319"},
};

TEST(VariantTextDigits, PrintsEveryPowerOfTen) {
    ScopedLocale const classic(C);
    for (int exponent = -317; exponent <= 308; ++exponent) {
        SCOPED_TRACE(exponent);
        double const value = powerOfTen(exponent);
        std::string text;
        if (exponent < -4 || exponent > 5) {
            std::string const digits = std::to_string(std::abs(exponent));
            text = (exponent < 0 ? "1e-" : "1e+") + (digits.size() < 2 ? "0" + digits : digits);
        } else if (exponent < 0) {
            text = "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + "1";
        } else {
            text = "1" + std::string(static_cast<std::size_t>(exponent), '0');
        }
        EXPECT_EQ(Variant(value).toString(), text);
        EXPECT_EQ(Variant(-value).toString(), "-" + text);
    }
    for (FewBitsFact const& row : FEW_BITS_FACTS) {
        SCOPED_TRACE(row.exponent);
        double const value = powerOfTen(row.exponent);
        EXPECT_EQ(Variant(value).toString(), row.text);
    }
}

}  // namespace
