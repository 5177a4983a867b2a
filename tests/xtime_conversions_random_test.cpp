#include <clocale>
#include <cstdio>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/xtime_conversions.h>

#include "support/locales.h"
#include "support/random.h"
#include "support/rounding.h"
#include "support/time_models.h"
#include "support/time_printing.h"
#include "support/time_zone.h"

using com::halvorin::datatypes::xtime_t;
using com::halvorin::utilities::timeToYYYYString;
using com::halvorin::utilities::YYYYStringTotime;
using namespace testing_support;

// Texts of times, written and read, held against libc under every locale and rounding mode.
namespace {

using namespace std::string_view_literals;

// What a random text is made of, and how many texts are tried under one locale and rounding mode.
unsigned long rounds(unsigned long full) { return sweepStride() == 1 ? full : full / 100; }

template <typename Body>
void underEveryLocaleAndRounding(Body const& body) {
    ScopedTimeZone const utc("UTC0");
    std::mt19937_64 engine = randomEngine();
    for (std::string const& name : allLocales()) {
        SCOPED_TRACE(name);
        ScopedCLocale const locale(name);
        for (int const rounding : ROUNDING_MODES) {
            SCOPED_TRACE(rounding);
            ScopedRounding const scope(rounding);
            body(engine);
            if (testing::Test::HasFatalFailure()) return;
        }
    }
}

int between(std::mt19937_64& engine, int first, int last) {
    auto const count = static_cast<unsigned long>(last) - static_cast<unsigned long>(first) + 1;
    return first + static_cast<int>(engine() % count);
}

TEST(XtimeToString, AgreesWithPrintfOnRandomTimes) {
    underEveryLocaleAndRounding([](std::mt19937_64& engine) {
        for (unsigned long i = 0; i < rounds(60'000); ++i) {
            // Seconds of every magnitude, though most of them of a year that has four digits.
            auto const far = static_cast<long>(engine()) >> (engine() % 64);
            auto const near = static_cast<long>(engine() % 253402300800);
            auto const any = static_cast<unsigned>(engine());
            xtime_t const time(engine() % 4 == 0 ? far : near,
                               engine() % 4 == 0 ? any : any % 1000000000);
            bool const applyOffset = engine() % 4 != 0;
            int const anyOffset = static_cast<int>(engine());
            int const offset = engine() % 8 == 0 ? anyOffset : anyOffset % 90000;
            bool const fraction = engine() % 8 != 0;
            ASSERT_EQ(time.toString(applyOffset, offset, fraction ? "" : "I"),
                      modelOfToString(time, applyOffset, offset, fraction))
                << testing::PrintToString(time) << ' ' << offset;
        }
    });
}

// A text as `toString` might have written it, its fields up to a little beyond their ranges.
std::string randomIsoText(std::mt19937_64& engine) {
    char text[128];
    int const year = engine() % 16 == 0 ? between(engine, 0, 9999) : between(engine, 1969, 2039);
    std::string result(
        text, static_cast<std::size_t>(std::snprintf(
                  text, sizeof text, "%04d-%02d-%02dT%02d:%02d", year, between(engine, 0, 13),
                  between(engine, 0, 32), between(engine, 0, 24), between(engine, 0, 60))));
    if (engine() % 8 != 0) {
        std::snprintf(text, sizeof text, ":%02d", between(engine, 0, 60));
        result += text;
        if (engine() % 4 != 0) {
            result += std::localeconv()->decimal_point;
            for (int digits = between(engine, 0, 12); digits > 0; --digits)
                result += static_cast<char>('0' + engine() % 10);
        }
    }
    switch (char const sign = engine() % 2 == 0 ? '+' : '-'; engine() % 5) {
        case 0:
            return result;
        case 1:
            return result + "Z";
        case 2:
            std::snprintf(text, sizeof text, "%c%02d", sign, between(engine, 0, 24));
            break;
        case 3:
            std::snprintf(text, sizeof text, "%c%02d%02d", sign, between(engine, 0, 24),
                          between(engine, 0, 60));
            break;
        default:
            std::snprintf(text, sizeof text, "%c%02d:%02d", sign, between(engine, 0, 24),
                          between(engine, 0, 60));
    }
    return result + text;
}

// Puts, replaces or removes a few bytes, from a set that numbers are made of.
void mutate(std::mt19937_64& engine, std::string& text) {
    static constexpr std::string_view BYTES = "0123456789-+:.,TZ \t\0xXpPeEinfa(_\xD9\xAB\xA0"sv;
    for (unsigned long times = 1 + engine() % 3; times > 0; --times) {
        std::size_t const at = engine() % (text.size() + 1);
        char const byte = BYTES[engine() % BYTES.size()];
        switch (engine() % 4) {
            case 0:
                text.insert(at, 1, byte);
                break;
            case 1:
                text.erase(at, 1 + engine() % 2);
                break;
            case 2:
                text.insert(at, engine() % 40, byte);
                break;
            default:
                text.replace(at, 1, 1, byte);
        }
    }
}

TEST(XtimeFromString, AgreesWithScanfOnRandomTexts) {
    underEveryLocaleAndRounding([](std::mt19937_64& engine) {
        unsigned long read = 0;
        unsigned long const count = rounds(60'000);
        for (unsigned long i = 0; i < count; ++i) {
            std::string text = randomIsoText(engine);
            if (engine() % 2 == 0) mutate(engine, text);
            IsoReading const expected = modelOfFromString(text);
            xtime_t time(77, 77);
            ASSERT_EQ(time.fromString(text), expected.read) << testing::PrintToString(text);
            ASSERT_EQ(time, expected.time) << testing::PrintToString(text);
            if (expected.read) ++read;
        }
        EXPECT_GT(read, count / 4);
        EXPECT_LT(read, count - count / 4);
    });
}

TEST(FourteenDigits, AgreeWithPrintfOnRandomSeconds) {
    underEveryLocaleAndRounding([](std::mt19937_64& engine) {
        for (unsigned long i = 0; i < rounds(30'000); ++i) {
            auto const far = static_cast<long>(engine()) >> (engine() % 64);
            auto const near = static_cast<long>(engine() % 253402300800);
            long const seconds = engine() % 4 == 0 ? far : near;
            ASSERT_EQ(timeToYYYYString(seconds), modelOfFourteenDigits(seconds)) << seconds;
        }
    });
}

TEST(FourteenDigits, AgreeWithStrtolOnRandomTexts) {
    underEveryLocaleAndRounding([](std::mt19937_64& engine) {
        for (unsigned long i = 0; i < rounds(30'000); ++i) {
            char digits[128];
            std::snprintf(digits, sizeof digits, "%04d%02d%02d%02d%02d%02d",
                          between(engine, 1965, 2040), between(engine, 0, 99),
                          between(engine, 0, 99), between(engine, 0, 99), between(engine, 0, 99),
                          between(engine, 0, 99));
            std::string text = digits;
            if (engine() % 2 == 0) mutate(engine, text);
            if (engine() % 16 != 0) text.resize(14, '7');
            auto const expected = text.size() == 14 ? modelOfFourteenDigitsRead(text) : 0;
            if (expected) {
                ASSERT_EQ(YYYYStringTotime(text), *expected) << testing::PrintToString(text);
            } else {
                ASSERT_THROW(YYYYStringTotime(text), std::invalid_argument)
                    << testing::PrintToString(text);
            }
        }
    });
}

}  // namespace
