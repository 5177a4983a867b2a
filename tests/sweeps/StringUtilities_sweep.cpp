#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>

#include <gtest/gtest.h>

#include <utillibrary/utilities/StringUtilities.h>

#include "support/locales.h"
#include "support/random.h"
#include "support/text_models.h"

using namespace com::halvorin::utilities;
using namespace testing_support;

namespace {

void expectModels(std::string const& text) {
    ASSERT_EQ(escapeString(text, false), modelOfEscape(text, false))
        << testing::PrintToString(text);
    ASSERT_EQ(escapeString(text, true), modelOfEscape(text, true)) << testing::PrintToString(text);
    ASSERT_EQ(unescapeString(text), modelOfUnescape(text)) << testing::PrintToString(text);
}

// All texts of one length, or every so many of them.
void sweep(std::size_t size, std::uint64_t stride) {
    std::string text(size, '\0');
    for (std::uint64_t number = 0; number < 1UL << (8 * size); number += stride) {
        for (std::size_t i = 0; i < size; ++i)
            text[i] = static_cast<char>(number >> (8 * i));
        expectModels(text);
        if (testing::Test::HasFatalFailure()) return;
    }
}

TEST(StringEscapes, EqualTheirModelsOnEveryTextOfUpToThreeBytes) {
    ScopedCLocale const scope("C");
    for (std::size_t size : {0U, 1U, 2U})
        sweep(size, 1);
    sweep(3, sweepStride());
}

TEST(StringEscapes, EqualTheirModelsInLocalesWithMoreGraphicBytes) {
    for (char const* const locale : {"fr_FR.ISO-8859-15", "xx_XX.ISO-8859-1"}) {
        ScopedCLocale const scope(locale);
        for (std::size_t size : {0U, 1U})
            sweep(size, 1);
        sweep(2, sweepStride() == 1 ? 1 : 13);
        sweep(3, 257 * sweepStride());
    }
}

// All texts of a length over the bytes that escapes are made of.
TEST(StringEscapes, EqualTheirModelsOnEveryTextOfEscapeCharacters) {
    ScopedCLocale const scope("C");
    std::string const characters("\\ux04fGn\xFF", 9);
    std::string text(7, '\0');
    for (std::uint64_t number = 0; number < 4'782'969; number += sweepStride()) {  // 9^7
        std::uint64_t rest = number;
        for (char& c : text) {
            c = characters[rest % characters.size()];
            rest /= characters.size();
        }
        ASSERT_EQ(unescapeString(text), modelOfUnescape(text)) << text;
    }
}

void expectAsPrinted(double value) {
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%g", value);
    ASSERT_EQ(to_string(value, "%g"), text.data());
    std::snprintf(text.data(), text.size(), "%g", -value);
    ASSERT_EQ(to_string(-value, "%g"), text.data());
}

// The doubles around each power of ten, where the number of digits changes, and around some of its
// multiples.
TEST(ShortNumbers, EqualLibcAroundEveryPowerOfTen) {
    ScopedCLocale const scope("C");
    for (int exponent = -20; exponent <= 20; ++exponent) {
        for (double const factor : {1.0, 0.9999995, 9.999995, 1.000005, 1.234565, 5.0}) {
            double below = factor * std::pow(10, exponent);
            double above = below;
            for (std::uint64_t i = 0; i < 2000; i += sweepStride() == 1 ? 1 : 101) {
                ASSERT_NO_FATAL_FAILURE(expectAsPrinted(below));
                ASSERT_NO_FATAL_FAILURE(expectAsPrinted(above));
                below = std::nextafter(below, 0);
                above = std::nextafter(above, HUGE_VAL);
            }
        }
    }
}

// Six digits and a half, which goes to the even one, and the same with more digits after the point.
TEST(ShortNumbers, EqualLibcOnEveryTieOfSixDigits) {
    ScopedCLocale const scope("C");
    for (std::uint64_t number = 100'000; number < 1'000'000; number += sweepStride()) {
        auto const digits = static_cast<double>(number);
        for (double const value : {digits + 0.5, 10 * digits + 5, 1e9 * digits + 5e8}) {
            ASSERT_NO_FATAL_FAILURE(expectAsPrinted(value));
            ASSERT_NO_FATAL_FAILURE(expectAsPrinted(std::nextafter(value, HUGE_VAL)));
            ASSERT_NO_FATAL_FAILURE(expectAsPrinted(std::nextafter(value, 0)));
            ASSERT_NO_FATAL_FAILURE(expectAsPrinted(value / 8));
        }
    }
}

}  // namespace
