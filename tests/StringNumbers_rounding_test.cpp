#include <array>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/utilities/StringUtilities.h>

#include "support/locales.h"
#include "support/random.h"
#include "support/rounding_words.h"

using com::halvorin::utilities::strtodEx;
using com::halvorin::utilities::to_string;
using testing_support::allRoundingWords;
using testing_support::flagsRaisedBy;
using testing_support::randomEngine;
using testing_support::RoundingWords;
using testing_support::ScopedCLocale;
using testing_support::ScopedNoSubnormals;
using testing_support::ScopedRoundingWords;

// What `to_string` writes and `strtodEx` reads in every state of the rounding words: what snprintf
// and strtod do. Neither raises a floating-point flag that these do not raise.
namespace {

char const* const FORMATS[] = {"%g",    "%.0f", "%.1f", "%.3f", "%.9f", "%.10f",
                               "%.17g", "%f",   "%a",   "%.2a", "%e",   "%.3e"};

void expectAsPrinted(double value, char const* format) {
    std::array<char, 32> expected{};
    int const flags =
        flagsRaisedBy([&] { std::snprintf(expected.data(), expected.size(), format, value); });
    std::string text;
    EXPECT_EQ(flagsRaisedBy([&] { text = to_string(value, format); }), flags)
        << format << ' ' << value;
    EXPECT_EQ(text, expected.data()) << format << ' ' << value;
}

// Values whose last digit depends on the rounding, and the ends of the range.
std::vector<double> doubles() {
    std::vector<double> values = {0.0,     -0.0,    2.5,      -0.5,     0.1,       -0.1, 1.0 / 3,
                                  1000005, 1000015, 0.0625,   1.0005,   999.9995,  1e23, 5e-324,
                                  DBL_MIN, DBL_MAX, -DBL_MAX, INFINITY, -INFINITY, NAN};
    std::mt19937_64 engine = randomEngine();
    for (int i = 0; i < 100; ++i)
        values.push_back(std::bit_cast<double>(engine()));
    for (int i = 0; i < 200; ++i)
        values.push_back(static_cast<double>(engine() % 100'000'000) / 4096);
    return values;
}

TEST(ToStringRounding, WritesAsLibcDoesInEachStateOfTheRoundingWords) {
    std::vector<double> const values = doubles();
    for (char const* const locale : {"C", "de_DE.UTF-8"}) {
        ScopedCLocale const c(locale);
        for (RoundingWords const& words : allRoundingWords()) {
            SCOPED_TRACE(testing::Message() << locale << ", " << words);
            ScopedRoundingWords const scope(words);
            for (double const value : values) {
                for (char const* const format : FORMATS)
                    expectAsPrinted(value, format);
                ASSERT_FALSE(HasFailure());
            }
        }
    }
}

// "%g" used to give "0" here.
TEST(ToStringRounding, WritesSubnormalNumbersWhereTheProcessorTakesThemForZero) {
    ScopedCLocale const c("C");
    std::array<double, 4> const subnormal = {5e-324, -5e-324, 0x0.fffffffffffffp-1022, -1e-310};
    ScopedNoSubnormals const scope;
    for (double const value : subnormal) {
        for (char const* const format : FORMATS)
            expectAsPrinted(value, format);
    }
    EXPECT_EQ(to_string(subnormal[1], "%g"), "-4.94066e-324");
#ifdef __x86_64__
    double const volatile least = subnormal[0];
    EXPECT_TRUE(least == 0) << "the setting of the host must come back";
#endif
}

TEST(ToStringRounding, WidensAFloatInEachStateOfTheRoundingWords) {
    ScopedCLocale const c("C");
    for (RoundingWords const& words : allRoundingWords()) {
        SCOPED_TRACE(testing::Message() << words);
        ScopedRoundingWords const scope(words);
        for (float const value : {0.1F, 1.5F, 16777217.0F, FLT_MAX, 0x1p-149F, 100000.5F}) {
            for (char const* const format : FORMATS) {
                EXPECT_EQ(to_string(value, format), to_string(static_cast<double>(value), format));
            }
        }
    }
}

void expectAsRead(std::string const& text) {
    double expected = 0;
    int const flags = flagsRaisedBy([&] { expected = std::strtod(text.c_str(), nullptr); });
    double value = 99;
    bool read = false;
    int const raised = flagsRaisedBy([&] { read = strtodEx(text, value); });
    EXPECT_TRUE(read) << text;
    EXPECT_EQ(raised & ~flags, 0) << text;
    EXPECT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected)) << text;
}

// A number of up to 20 digits, often with a point and an exponent.
std::string anyDecimal(std::mt19937_64& engine) {
    std::string text = engine() % 2 == 0 ? "-" : "";
    std::size_t const digits = 1 + engine() % 20;
    for (std::size_t i = 0; i < digits; ++i)
        text += static_cast<char>('0' + engine() % 10);
    if (engine() % 2 == 0) text.insert(text.size() - engine() % digits, ".");
    if (engine() % 3 == 0) text += "e" + std::to_string(static_cast<int>(engine() % 60) - 30);
    return text;
}

TEST(StrtodExRounding, ReadsAsStrtodDoesInEachStateOfTheRoundingWords) {
    ScopedCLocale const c("C");
    std::vector<std::string> texts = {"0.1",     "0.3",
                                      "1e23",    "9007199254740993",
                                      "5e-324",  "1e400",
                                      "1e-400",  "2.5",
                                      "0x1.8p1", "-0",
                                      "inf",     "1e22",
                                      "-1e23",   "123456789.123456789"};
    std::mt19937_64 engine = randomEngine();
    for (int i = 0; i < 1000; ++i)
        texts.push_back(anyDecimal(engine));
    for (RoundingWords const& words : allRoundingWords()) {
        SCOPED_TRACE(testing::Message() << words);
        ScopedRoundingWords const scope(words);
        for (std::string const& text : texts) {
            expectAsRead(text);
            ASSERT_FALSE(HasFailure());
        }
    }
}

// Written out: 0.0625 lies halfway between two results of three decimals.
TEST(ToStringRounding, RoundsByTheWordThatLibcObeys) {
    ScopedCLocale const c("C");
    struct {
        RoundingWords words;
        char const* text;
    } const rows[] = {
        {{FE_TONEAREST, FE_TONEAREST}, "0.062"},
        {{FE_UPWARD, FE_UPWARD}, "0.063"},
#ifdef __x86_64__
        {{FE_TONEAREST, FE_UPWARD}, "0.063"},
        {{FE_UPWARD, FE_TONEAREST}, "0.062"},
#endif
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(testing::Message() << row.words);
        ScopedRoundingWords const scope(row.words);
        EXPECT_EQ(to_string(0.0625, "%.3f"), row.text);
    }
}

TEST(ToStringRounding, RaisesNoFlagForANumberThatADoubleContains) {
    ScopedCLocale const c("C");
    for (char const* const format : FORMATS) {
        EXPECT_EQ(flagsRaisedBy([&] { static_cast<void>(to_string(0.1, format)); }), 0) << format;
    }
}

}  // namespace
