#include "utillibrary/internal/decimal.h"

#include <array>
#include <bit>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdio>
#include <optional>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "support/locales.h"
#include "support/random.h"
#include "support/rounding.h"

using namespace com::halvorin::internal;
using testing_support::randomEngine;
using testing_support::ScopedCLocale;
using testing_support::ScopedRounding;

// The writers of digits that all units share.
namespace {

// What a writer puts at the start of a buffer whose bytes it may all overwrite.
template <typename Writer>
std::string written(Writer const& write) {
    std::array<char, 64> buffer;
    buffer.fill('?');
    return {buffer.data(), static_cast<std::size_t>(write(buffer.data()) - buffer.data())};
}

std::optional<std::string> bySixDigits(double value) {
    std::array<char, GENERAL_SIZE> buffer;
    auto const end = writeSixDigits(buffer.data(), value);
    if (!end) return std::nullopt;
    return std::string(buffer.data(), *end);
}

// ---- "%g"

struct GeneralFact {
    char const* fact;
    double value;
    char const* text;
    bool fast;  // the fast path answers
};

GeneralFact const GENERAL_FACTS[] = {
    {"zero is written by the fast path", 0.0, "0", true},
    {"negative zero keeps its sign", -0.0, "-0", true},
    {"one digit", 1.0, "1", true},
    {"zeros before the point stay", 100000.0, "100000", true},
    {"zeros after the point are dropped", 1.5, "1.5", true},
    {"six digits without an exponent", 999999.0, "999999", true},
    {"10^6 has an exponent", 1e6, "1e+06", true},
    {"10^-4 has none", 0.0001, "0.0001", true},
    {"10^-5 has one", 0.00001, "1e-05", true},
    {"an exponent of three digits", 1e100, "1e+100", true},
    {"the largest double", DBL_MAX, "1.79769e+308", true},
    {"the longest result", -1.23457e+308, "-1.23457e+308", true},
    {"the least normal double", DBL_MIN, "2.22507e-308", true},
    {"a carry through all digits, above half", 999999.75, "1e+06", true},
    {"exactly half, to the even digit above", 999999.5, "1e+06", false},
    {"exactly half, to the even digit below", 100000.5, "100000", false},
    {"one step below half", 0x1.86a07fffffffep16, "100000", true},
    {"one step above half", 0x1.86a0800000002p16, "100001", true},
    {"the largest subnormal double", 0x0.fffffffffffffp-1022, "2.22507e-308", false},
    {"the least subnormal double", 5e-324, "4.94066e-324", false},
    {"infinity", INFINITY, "inf", false},
    {"negative infinity", -INFINITY, "-inf", false},
    {"not a number", NAN, "nan", false},
};

TEST(Decimal, WritesTheGeneralFormOnBothPaths) {
    ScopedCLocale const c("C");
    for (GeneralFact const& row : GENERAL_FACTS) {
        SCOPED_TRACE(row.fact);
        auto const exactly = [&](char* out) { return writeGeneralExactly(out, row.value); };
        auto const general = [&](char* out) { return writeGeneral(out, row.value); };
        EXPECT_EQ(written(exactly), row.text);
        EXPECT_EQ(written(general), row.text);
        EXPECT_EQ(bySixDigits(row.value),
                  row.fast ? std::optional<std::string>(row.text) : std::optional<std::string>());
    }
}

// writeGeneral stores whole words, whose last bytes may be after the result.
TEST(Decimal, StoresNothingBeyondItsSize) {
    constexpr std::size_t SPARE = 16;
    for (double const value : {-12345.6, -123456.0, 0.0, 1.5, -1e-4, -DBL_MAX, -DBL_TRUE_MIN}) {
        SCOPED_TRACE(value);
        std::string bytes(GENERAL_SIZE + SPARE, '!');
        writeGeneral(bytes.data(), value);
        EXPECT_EQ(bytes.substr(GENERAL_SIZE), std::string(SPARE, '!'));
    }
}

TEST(Decimal, WritesRandomNumbersAlikeOnBothPaths) {
    std::mt19937_64 engine = randomEngine();
    int declined = 0;
    for (int i = 0; i < 200'000; ++i) {
        auto const bits = engine();
        double const value = i % 2 == 0 ? std::bit_cast<double>(bits)
                                        : static_cast<double>(bits % 2'000'000'001) / 1000;
        std::string const exactly =
            written([&](char* out) { return writeGeneralExactly(out, value); });
        auto const fast = bySixDigits(value);
        if (fast) {
            ASSERT_EQ(*fast, exactly);
        } else {
            ++declined;
        }
    }
    // Of random bits one in 1024 is infinite, not a number or subnormal; ties are about as rare.
    EXPECT_LT(declined, 1000);
}

TEST(Decimal, PrintsTheGeneralFormAsLibcDoesNow) {
    auto const printed = [](double value, bool plain) {
        return written([&](char* out) { return printGeneral(out, value, plain); });
    };
    {
        ScopedCLocale const c("C");
        EXPECT_EQ(printed(-1.23457e-300, true), "-1.23457e-300");
        EXPECT_EQ(printed(-1.23457e-300, false), "-1.23457e-300");
        ScopedRounding const upward(FE_UPWARD);
        EXPECT_EQ(printed(1000001, false), "1.00001e+06");
    }
    ScopedCLocale const c("ps_AF.UTF-8");
    EXPECT_EQ(printed(-1.23457e-300, false),
              "-1\xD9\xAB"
              "23457e-300");
}

// ---- whole numbers

TEST(Decimal, WritesWholeNumbersOfEveryLength) {
    struct {
        int value;
        char const* text;
    } const rows[] = {
        {0, "0"},
        {9, "9"},
        {10, "10"},
        {99, "99"},
        {100, "100"},
        {999, "999"},
        {1000, "1000"},
        {9999, "9999"},
        {10000, "10000"},
        {99999, "99999"},
        {100000, "100000"},
        {999999, "999999"},
        {1000000, "1000000"},
        {9999999, "9999999"},
        {10000000, "10000000"},
        {99999999, "99999999"},
        {100000000, "100000000"},
        {999999999, "999999999"},
        {1000000000, "1000000000"},
        {INT_MAX, "2147483647"},
        {-1, "-1"},
        {-10, "-10"},
        {INT_MIN, "-2147483648"},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(written([&](char* out) { return writeWhole(out, row.value); }), row.text);
        EXPECT_EQ(wholeText(row.value), row.text);
    }
}

TEST(Decimal, WritesLongNumbersInGroupsOfEightDigits) {
    EXPECT_EQ(wholeText(100000000), "100000000");
    EXPECT_EQ(wholeText(1000000001), "1000000001");
    EXPECT_EQ(wholeText(9999999999999999), "9999999999999999");
    EXPECT_EQ(wholeText(10000000000000000), "10000000000000000");
    EXPECT_EQ(wholeText(LONG_MAX), "9223372036854775807");
    EXPECT_EQ(wholeText(LONG_MIN), "-9223372036854775808");
}

TEST(Decimal, WritesTwoAndFourDigitsWithZerosInFront) {
    EXPECT_EQ(written([](char* out) { return writeTwoDigits(out, 0); }), "00");
    EXPECT_EQ(written([](char* out) { return writeTwoDigits(out, 7); }), "07");
    EXPECT_EQ(written([](char* out) { return writeTwoDigits(out, 99); }), "99");
    EXPECT_EQ(written([](char* out) { return writeFourDigits(out, 0); }), "0000");
    EXPECT_EQ(written([](char* out) { return writeFourDigits(out, 1234); }), "1234");
    EXPECT_EQ(written([](char* out) { return writeFourDigits(out, 9999); }), "9999");
}

TEST(Decimal, HasSixteenHexadecimalDigits) {
    std::string digits;
    for (unsigned value = 0; value < 16; ++value) {
        std::array<char, 2> digit;
        std::snprintf(digit.data(), digit.size(), "%x", value);
        digits += digit[0];
    }
    EXPECT_EQ(std::string(HEXADECIMAL_DIGITS), digits);
}

}  // namespace
