#include <bit>
#include <cerrno>
#include <cfenv>
#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "utillibrary/internal/locale.h"
#include "utillibrary/internal/plain_number.h"
#include "utillibrary/internal/rounding.h"
#include "utillibrary/internal/wide_number.h"
#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/utilities/StringUtilities.h>

#include "support/locales.h"
#include "support/random.h"
#include "support/rounding_words.h"

using com::halvorin::datatypes::Variant;
using com::halvorin::internal::readDouble;
using com::halvorin::internal::readPlain;
using com::halvorin::internal::singleDecimalPoint;
using com::halvorin::utilities::strtodEx;
using testing_support::allRoundingWords;
using testing_support::flagsRaisedBy;
using testing_support::randomEngine;
using testing_support::RoundingWords;
using testing_support::ScopedCLocale;
using testing_support::ScopedRoundingWords;

// Strings as float and double, in every state of the rounding words: the number that strtof, strtod
// or wcstod gives, and no floating-point flag that this call does not raise.
namespace {

std::wstring widened(std::string const& text) { return {text.begin(), text.end()}; }

template <typename Floating>
auto bitsOf(Floating value) {
    if constexpr (sizeof(Floating) == sizeof(float)) {
        return std::bit_cast<std::uint32_t>(value);
    } else {
        return std::bit_cast<std::uint64_t>(value);
    }
}

// The result of a call, and the floating-point flags and errno after it.
template <typename Floating>
struct Reading {
    Floating value;
    int flags;
    int error;
};

template <typename Floating, typename Read>
Reading<Floating> readingOf(Read const& read) {
    Reading<Floating> reading{};
    errno = 0;
    reading.flags = flagsRaisedBy([&] { reading.value = read(); });
    reading.error = errno;
    return reading;
}

template <typename Floating>
void expectAsLibc(Reading<Floating> const& read, Reading<Floating> const& libc) {
    EXPECT_EQ(bitsOf(read.value), bitsOf(libc.value)) << read.value << ' ' << libc.value;
    EXPECT_EQ(read.flags & ~libc.flags, 0) << "flags that libc does not raise";
    EXPECT_EQ(read.error, libc.error);
}

// Volatile, so that the compiler narrows here and not after the flags are read.
float narrowed(double value) {
    double const volatile now = value;
    float const volatile result = static_cast<float>(now);
    return result;
}

void expectReadAsByLibc(std::string const& text) {
    SCOPED_TRACE(text);
    std::wstring const wide = widened(text);
    Variant const variant(wide);
    auto const libc = readingOf<double>([&] { return std::wcstod(wide.c_str(), nullptr); });
    expectAsLibc(readingOf<double>([&] { return variant.toDouble(); }), libc);
    expectAsLibc(readingOf<float>([&] { return variant.toFloat(); }),
                 readingOf<float>([&] { return narrowed(std::wcstod(wide.c_str(), nullptr)); }));

    char* end = nullptr;
    auto const narrow = readingOf<double>([&] { return std::strtod(text.c_str(), &end); });
    bool found = false;
    auto const read = readingOf<double>([&] {
        double value = 0;
        found = strtodEx(text, value);
        return value;
    });
    EXPECT_EQ(found, end != text.c_str());
    expectAsLibc(read, narrow);

    // The running average reads floats by this fast path.
    std::optional<float> fast;
    auto const single = readingOf<float>([&] {
        fast = readPlain<float>(std::string_view(text), singleDecimalPoint);
        return fast.value_or(0);
    });
    if (fast)
        expectAsLibc(single, readingOf<float>([&] { return std::strtof(text.c_str(), &end); }));
}

char const* const HARD_TEXTS[] = {
    "0",
    "-0",
    "0.0",
    "-0.00",
    "0e5",
    "-0e-30",
    "42",
    "42.5",
    "-42.5",
    "0.1",
    "-0.1",
    "0.57",
    "49e-2",
    "1e-1",
    "123456.789",
    "-123456.789",
    "1e22",
    "1e23",
    "-1e23",
    "1e10",
    "1e11",
    "3e10",
    "1e-10",
    "1e-22",
    "1e-23",
    "9e-22",
    "16777216",
    "16777217",
    "-16777217",
    "16777219",
    "1.5e10",
    "16777215e10",
    "16777215e-10",
    "9007199254740991",
    "9007199254740991e1",
    "9007199254740991e22",
    "9007199254740991e-22",
    "9007199254740992",
    "9007199254740993",
    "-9007199254740993",
    "9007199254740995",
    "900719925474099.3",
    "0.30000000000000004",
    "0.30000000000000001",
    "1.00000005960464477",
    "1.000000059604644775",
    "1.0000000596046447754",
    "1.0000000596046447755",
    "5.5555555555555555555",
    "299792458.123456789",
    "1234567890123456789",
    "-1234567890123456789",
    "9999999999999999999",
    "12345678901234567890",
    "0.000000000000000001",
    "1.1754943508222875e-38",
    "1.1754942807573643e-38",
    "1e-38",
    "1e-45",
    "1e38",
    "3.4028235e38",
    "3.4028236e38",
    "1e39",
    "-1e39",
    "1e99",
    "1e-99",
    "1e308",
    "1.7976931348623157e308",
    "1.8e308",
    "-1.8e308",
    "2.2250738585072014e-308",
    "2.2250738585072011e-308",
    "5e-324",
    "2e-324",
    "1e-400",
    "1e400",
    "1.5e",
    "1.5e+",
    "5.",
    ".5",
    ".",
    "-",
    "",
    "abc",
    " 0.1",
    "0.1 km",
    "0x1.8p3",
    "0x1.00000000000008p0",
    "inf",
    "-inf",
};

TEST(VariantNumbersRounding, ReadsHardNumbersAsLibcInEveryStateOfTheWords) {
    ScopedCLocale const c("C");
    for (RoundingWords const& words : allRoundingWords()) {
        SCOPED_TRACE(words);
        ScopedRoundingWords const rounding(words);
        for (char const* const text : HARD_TEXTS)
            expectReadAsByLibc(text);
        if (HasFailure()) return;
    }
}

std::string randomDigits(std::mt19937_64& engine, std::size_t least, std::size_t most) {
    std::string digits;
    for (std::size_t count = least + engine() % (most - least + 1); count > 0; --count)
        digits += static_cast<char>('0' + engine() % 10);
    return digits;
}

std::string randomNumber(std::mt19937_64& engine) {
    std::string text = engine() % 2 == 0 ? "-" : "";
    text += randomDigits(engine, 1, engine() % 3 == 0 ? 20 : 9);
    if (engine() % 4 != 0) text += "." + randomDigits(engine, 0, engine() % 3 == 0 ? 12 : 4);
    if (engine() % 3 == 0) {
        text += engine() % 2 == 0 ? "e-" : "e";
        text += randomDigits(engine, 1, 2);
    }
    return text;
}

// A number halfway between two doubles, or near it.
std::string randomHalfway(std::mt19937_64& engine) {
    std::uint64_t const halfway = (std::uint64_t{1} << 53) + 2 * (engine() % (1UL << 40)) + 1;
    std::string text = std::to_string(halfway << engine() % 10);
    if (engine() % 3 == 0) text.back() = static_cast<char>('0' + engine() % 10);
    if (engine() % 2 == 0) text.insert(1 + engine() % text.size(), ".");
    return text;
}

TEST(VariantNumbersRounding, ReadsRandomNumbersAsLibcInEveryStateOfTheWords) {
    ScopedCLocale const c("C");
    std::mt19937_64 engine = randomEngine();
    for (RoundingWords const& words : allRoundingWords()) {
        SCOPED_TRACE(words);
        ScopedRoundingWords const rounding(words);
        for (int i = 0; i < 1500; ++i)
            expectReadAsByLibc(i % 4 == 0 ? randomHalfway(engine) : randomNumber(engine));
        if (HasFailure()) return;
    }
}

// ---- which numbers the fast path reads

TEST(VariantNumbersRounding, ReadsPlainNumbersWithoutLibcIfLibcRoundsToTheNearest) {
    ScopedCLocale const c("C");
    for (RoundingWords const& words : allRoundingWords()) {
        SCOPED_TRACE(words);
        ScopedRoundingWords const rounding(words);
        bool const nearest = com::halvorin::internal::decimalsRoundToNearest();
        bool const alike = com::halvorin::internal::arithmeticRoundsAsDecimals();
        EXPECT_EQ(nearest, words.x87 == FE_TONEAREST);
        EXPECT_EQ(alike, words.x87 == words.sse);
        EXPECT_TRUE(readDouble(L"42").has_value());
        EXPECT_TRUE(readDouble(L"-0.0").has_value());
        EXPECT_EQ(readDouble(L"42.5").has_value(), nearest || alike);
        EXPECT_EQ(readDouble(L"0.1").has_value(), nearest || alike);
        EXPECT_EQ(readDouble(L"1e22").has_value(), nearest || alike);
        EXPECT_EQ(readDouble(L"0.57").has_value(), nearest || alike);  // 57 / 100 * 100 is not 57
        EXPECT_EQ(readDouble(L"1e30").has_value(), nearest);
        EXPECT_FALSE(readDouble(L"1e23").has_value());  // too near to halfway
        EXPECT_EQ(readDouble(L"0.30000000000000004").has_value(), nearest);
    }
}

}  // namespace
