#include "utillibrary/internal/plain_number.h"

#include <climits>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "utillibrary/internal/digits.h"

#include "support/locales.h"

using com::halvorin::internal::isDecimalDigit;
using com::halvorin::internal::readPlain;
using com::halvorin::internal::takeInteger;
using testing_support::ScopedCLocale;

// The readers of digits, and which strings the fast path reads as a number. What a number is in
// each state of the rounding words is tested by VariantNumbers_rounding_test.
namespace {

using namespace std::string_literals;

// ---- digits

TEST(Digits, AreTheTenOfAscii) {
    for (int c = -128; c <= 127; ++c) {
        bool const isDigit =
            std::string_view("0123456789").find(static_cast<char>(c)) != std::string_view::npos;
        EXPECT_EQ(isDecimalDigit(static_cast<char>(c)), isDigit) << c;
        EXPECT_EQ(isDecimalDigit(static_cast<wchar_t>(c)), isDigit) << c;
    }
    EXPECT_FALSE(isDecimalDigit(L'\u0664'));
    EXPECT_FALSE(isDecimalDigit(static_cast<wchar_t>(0x10035)));
}

struct IntegerFact {
    char const* fact;
    std::string text;
    long value;
    long size;  // of the sign and the digits
};

std::string const ZEROS(30, '0');

IntegerFact const INTEGER_FACTS[] = {
    {"no digits are 0", "", 0, 0},
    {"a letter is no digit", "x", 0, 0},
    {"a sign alone is 0", "-", 0, 1},
    {"a second sign ends the number", "+-1", 0, 1},
    {"a minus negates", "-42", -42, 3},
    {"a plus does not negate", "+42", 42, 3},
    {"the character before 0 ends the number", "1/2", 1, 1},
    {"the character after 9 ends the number", "1:2", 1, 1},
    {"18 digits fit", "999999999999999999", 999999999999999999, 18},
    {"one less than the largest long fits", "9223372036854775806", LONG_MAX - 1, 19},
    {"the largest long fits", "9223372036854775807", LONG_MAX, 19},
    {"one more than the largest long is the largest", "9223372036854775808", LONG_MAX, 19},
    {"one more than the smallest long fits", "-9223372036854775807", LONG_MIN + 1, 20},
    {"the smallest long fits", "-9223372036854775808", LONG_MIN, 20},
    {"one less than the smallest long is the smallest", "-9223372036854775809", LONG_MIN, 20},
    {"19 nines are the largest long", "9999999999999999999", LONG_MAX, 19},
    {"2^64, which wraps to 0, is the largest long", "18446744073709551616", LONG_MAX, 20},
    {"2^64 + 1 with a minus is the smallest long", "-18446744073709551617", LONG_MIN, 21},
    {"20 digits of which one is significant", "00000000000000000007", 7, 20},
    {"leading zeros do not count", ZEROS + "42", 42, 32},
    {"19 digits after zeros fit", ZEROS + "9223372036854775806", LONG_MAX - 1, 49},
    {"20 digits after zeros do not", "-" + ZEROS + "18446744073709551617", LONG_MIN, 51},
    {"zeros alone are 0", "-" + ZEROS, 0, 31},
};

TEST(Digits, MakeALongThatStaysAtTheEndsOfItsRange) {
    for (IntegerFact const& row : INTEGER_FACTS) {
        SCOPED_TRACE(row.fact);
        auto const narrow = takeInteger(row.text.c_str());
        EXPECT_EQ(narrow.value, row.value);
        EXPECT_EQ(narrow.end - row.text.c_str(), row.size);
        std::wstring const wide(row.text.begin(), row.text.end());
        EXPECT_EQ(takeInteger(wide.c_str()).value, row.value);
        EXPECT_EQ(takeInteger(wide.c_str()).end - wide.c_str(), row.size);
    }
}

// ---- plain numbers

struct PlainFact {
    char const* fact;
    std::string text;
    std::optional<double> value;
};

PlainFact const PLAIN_FACTS[] = {
    {"digits are read", "42", 42},
    {"a minus is read", "-42", -42},
    {"a plus is read", "+42", 42},
    {"negative zero is read", "-0", -0.0},
    {"a zero with an exponent is read", "-0e50", -0.0},
    {"a point among digits is read", "42.5", 42.5},
    {"a point before digits is read", ".5", 0.5},
    {"a point after digits is read", "5.", 5},
    {"19 digits are read", "1234567890123456789", 1234567890123456768.0},
    {"20 digits are declined", "12345678901234567890", std::nullopt},
    {"19 digits with a point are read", "1.234567890123456789", 1.2345678901234568},
    {"20 digits with a point are declined", "1.2345678901234567890", std::nullopt},
    {"an exponent is read", "15e2", 1500},
    {"a negative exponent is read", "15e-2", 0.15},
    {"an exponent with a plus is read", "15e+2", 1500},
    {"an exponent of two digits is read", "1e30", 1e30},
    {"an exponent of three digits is declined", "1e100", std::nullopt},
    {"an exponent without digits is 0", "15e", 15},
    {"an exponent of a sign alone is 0", "15e-", 15},
    {"the longest number is read", "-1.234567890123456789e-10", -1.2345678901234568e-10},
    {"a character after the exponent is declined", "15e2x", std::nullopt},
    {"a second point is declined", "1.2.3", std::nullopt},
    {"a large E is declined", "15E2", std::nullopt},
    {"an exponent alone is declined", "e5", std::nullopt},
    {"a point alone is declined", ".", std::nullopt},
    {"a sign alone is declined", "-", std::nullopt},
    {"an empty string is declined", "", std::nullopt},
    {"whitespace before a number is declined", " 42", std::nullopt},
    {"whitespace after a number is declined", "42 ", std::nullopt},
    {"letters after a number are declined", "42km", std::nullopt},
    {"hexadecimal digits are declined", "0x1F", std::nullopt},
    {"infinity is declined", "inf", std::nullopt},
    {"a zero character is declined", "4\0002"s, std::nullopt},
};

void expectPlain(PlainFact const& row) {
    auto const narrowPoint = [] { return '.'; };
    auto const widePoint = [] { return L'.'; };
    std::wstring const wide(row.text.begin(), row.text.end());
    auto const number = readPlain<double>(row.text, narrowPoint);
    EXPECT_EQ(number, row.value);
    if (number) {
        EXPECT_EQ(std::signbit(*number), std::signbit(*row.value));
    }
    EXPECT_EQ(readPlain<double>(wide, widePoint), row.value);
    EXPECT_EQ(readPlain<double>(std::string_view(row.text), narrowPoint), row.value);
    // A view need not end where its characters end.
    std::string const longer = row.text + "9";
    EXPECT_EQ(readPlain<double>(std::string_view(longer.data(), row.text.size()), narrowPoint),
              row.value);
}

TEST(PlainNumber, IsASignDigitsAPointAndAShortExponent) {
    for (PlainFact const& row : PLAIN_FACTS) {
        SCOPED_TRACE(row.fact);
        expectPlain(row);
    }
}

TEST(PlainNumber, IsReadAsAFloatWithinTheNormalNumbers) {
    auto const point = [] { return '.'; };
    EXPECT_EQ(readPlain<float>("0.1"s, point), 0.1F);
    EXPECT_EQ(readPlain<float>("16777217"s, point), std::nullopt);  // halfway
    EXPECT_EQ(readPlain<float>("16777218"s, point), 16777218.0F);
    EXPECT_EQ(readPlain<float>("3.4028235e38"s, point), 3.4028235e38F);
    EXPECT_EQ(readPlain<float>("3.4028236e38"s, point), std::nullopt);
    EXPECT_EQ(readPlain<float>("1.1754945e-38"s, point), 1.1754945e-38F);
    EXPECT_EQ(readPlain<float>("1.1754943508e-38"s, point), std::nullopt);  // the smallest
    EXPECT_EQ(readPlain<float>("1e-40"s, point), std::nullopt);
}

TEST(PlainNumber, DependsOnTheDecimalPointOfLibc) {
    auto const with = [](char point) { return [point] { return point; }; };
    EXPECT_EQ(readPlain<double>("42"s, with(',')), 42);
    EXPECT_EQ(readPlain<double>("1e3"s, with(',')), 1000);
    EXPECT_EQ(readPlain<double>("1.5"s, with(',')), std::nullopt);
    EXPECT_EQ(readPlain<double>("1.5"s, with('\0')), std::nullopt);
    EXPECT_EQ(readPlain<double>("1e3"s, with('e')), std::nullopt);
    EXPECT_EQ(readPlain<double>("1e3"s, with('\0')), std::nullopt);
}

TEST(PlainNumber, DoesNotBeginWithWhitespaceOfTheLocale) {
    auto const point = [] { return '.'; };
    auto const widePoint = [] { return L'.'; };
    ScopedCLocale const c("ss_SS.ISO-8859-1");
    for (char const* const text : {"-42", "+42", ".5"}) {
        SCOPED_TRACE(text);
        std::string const narrow = text;
        EXPECT_EQ(readPlain<double>(narrow, point), std::nullopt);
        std::wstring const wide(narrow.begin(), narrow.end());
        EXPECT_EQ(readPlain<double>(wide, widePoint), std::nullopt);
    }
    EXPECT_EQ(readPlain<double>("4.5e-1"s, point), 0.45);
}

}  // namespace
