#include <cfenv>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/xtime_conversions.h>

#include "support/locales.h"
#include "support/random.h"
#include "support/rounding_words.h"
#include "support/time_models.h"
#include "support/time_printing.h"
#include "support/time_zone.h"

// How the time strings round, and which floating-point flags they raise, in every state of the two
// rounding words: as printf and sscanf do.

using com::halvorin::datatypes::xtime_t;
using namespace testing_support;

namespace {

unsigned long rounds(unsigned long full) { return sweepStride() == 1 ? full : full / 20; }

// Nanoseconds whose rounding is hard: up to a microsecond before or after each whole millisecond,
// exact binary fractions, the last of a second, and random ones.
std::vector<unsigned> hardNanoseconds() {
    std::vector<unsigned> all = {999999519, 999999520, 999999521, 999999522, 999999969,
                                 999999970, 999999971, 999999999, 1,         29};
    for (unsigned millisecond = 0; millisecond < 1000; ++millisecond) {
        for (int const beside : {-1000, -501, -500, -499, -30, -1, 0, 1, 30, 499, 500, 501, 1000}) {
            all.push_back(
                (millisecond * 1'000'000U + 1'000'000'000U + static_cast<unsigned>(beside)) %
                1'000'000'000U);
        }
    }
    // Multiples of 1/512 s, which a float contains exactly.
    for (unsigned i = 0; i < 512; ++i)
        all.push_back(i * 1953125U);
    std::mt19937_64 engine = randomEngine();
    for (unsigned long i = 0; i < rounds(4'000); ++i)
        all.push_back(static_cast<unsigned>(engine()));
    return all;
}

TEST(XtimeToString, RoundsAsPrintfInEveryStateOfTheRoundingWords) {
    ScopedTimeZone const utc("UTC0");
    std::vector<unsigned> const hard = hardNanoseconds();
    for (char const* const name : {"C", "de_DE.UTF-8", "ps_AF.UTF-8"}) {
        ScopedCLocale const locale(name);
        for (RoundingWords const& words : allRoundingWords()) {
            SCOPED_TRACE(testing::Message() << name << ", " << words);
            ScopedRoundingWords const scope(words);
            for (unsigned const nanoseconds : hard) {
                xtime_t const time(1709618889, nanoseconds);
                std::string const ours = time.toString(true, 0, "");
                std::string const theirs = modelOfToString(time, true, 0, true);
                ASSERT_EQ(ours, theirs) << nanoseconds;
            }
        }
    }
}

TEST(XtimeToString, RaisesNoFlagThatItsStepsDoNotRaise) {
    ScopedTimeZone const utc("UTC0");
    for (RoundingWords const& words : allRoundingWords()) {
        SCOPED_TRACE(words);
        ScopedRoundingWords const scope(words);
        for (unsigned const nanoseconds : hardNanoseconds()) {
            xtime_t const time(-1, nanoseconds);
            int const ours = flagsRaisedBy([&] { time.toString(true, 3600, ""); });
            int const theirs = flagsRaisedBy([&] { modelOfToString(time, true, 3600, true); });
            ASSERT_EQ(ours & ~theirs, 0) << nanoseconds;
        }
    }
}

// 1/512 s, 3/512 s, 5/512 s and 7/512 s, and these times powers of two: a float contains both the
// nanoseconds and the fraction, so that no step rounds anything.
TEST(XtimeToString, RaisesNoFlagForExactFractions) {
    ScopedCLocale const point("C");
    for (RoundingWords const& words : allRoundingWords()) {
        SCOPED_TRACE(words);
        ScopedRoundingWords const scope(words);
        for (unsigned const odd : {1U, 3U, 5U, 7U}) {
            for (unsigned parts = odd; parts < 512; parts *= 2) {
                xtime_t const time(-1, parts * 1953125U);
                ASSERT_EQ(flagsRaisedBy([&] { time.toString(true, 0, ""); }), 0) << parts;
            }
        }
    }
}

// Seconds whose rounding is hard: decimal forms of floats and of halfway points, cut to 0 to 10
// digits, and random digits. The fast path takes at most nine.
std::vector<std::string> hardSeconds() {
    std::vector<std::string> all = {
        "09",         "09.1",         "09.25",        "09.5",      "09.7",         "09.0000009",
        "59.9999999", "59.999998092", "59.999998093", "59.999996", "00.0",         "00.000000001",
        "9.5",        "009.5",        "00.",          "0x1.8",     "00.999999999", "31.999999046",
        "nan",        "inf",          "1e99"};
    std::mt19937_64 engine = randomEngine();
    for (unsigned long i = 0; i < rounds(3'000); ++i) {
        char text[64];
        double const second = static_cast<double>(engine() % 60'000'000'000) / 1e9;
        auto const near = static_cast<double>(static_cast<float>(second));
        int const digits = static_cast<int>(engine() % 11);
        // 2^-19 to 2^-25 are halves of a float's last place.
        double const half =
            static_cast<double>(engine() % 3) / static_cast<double>(1 << (18 + engine() % 8));
        std::snprintf(text, sizeof text, "%0*.*f", digits + 3, digits,
                      engine() % 2 == 0 ? second : near + half);
        all.emplace_back(text);
        for (unsigned k = 1; k <= 10; ++k) {
            if (engine() % 16 == 0)
                all.push_back(all.back() + static_cast<char>('0' + engine() % 10));
        }
    }
    return all;
}

TEST(XtimeFromString, RoundsAsScanfInEveryStateOfTheRoundingWords) {
    ScopedCLocale const point("C");
    ScopedTimeZone const utc("UTC0");
    std::vector<std::string> const hard = hardSeconds();
    for (RoundingWords const& words : allRoundingWords()) {
        SCOPED_TRACE(words);
        ScopedRoundingWords const scope(words);
        for (std::string const& seconds : hard) {
            std::string const text = "2024-03-05T06:08:" + seconds + "+01:00";
            IsoReading const expected = modelOfFromString(text);
            xtime_t time(77, 77);
            ASSERT_EQ(time.fromString(text), expected.read) << text;
            ASSERT_EQ(time, expected.time) << text;
        }
    }
}

// sscanf is all that may raise a flag. What follows only cuts, and cutting a float loses nothing.
TEST(XtimeFromString, RaisesNoFlagThatScanfDoesNotRaise) {
    ScopedCLocale const point("C");
    std::vector<std::string> const hard = hardSeconds();
    for (RoundingWords const& words : allRoundingWords()) {
        SCOPED_TRACE(words);
        ScopedRoundingWords const scope(words);
        for (std::string const& seconds : hard) {
            std::string const text = "2024-03-05T06:08:" + seconds;
            float value = 0;
            xtime_t time;
            int const ours = flagsRaisedBy([&] { time.fromString(text); });
            int const theirs = flagsRaisedBy([&] { std::sscanf(seconds.c_str(), "%f", &value); });
            ASSERT_EQ(ours, theirs) << text;
        }
    }
}

TEST(FourteenDigits, RaiseNoFlag) {
    for (RoundingWords const& words : allRoundingWords()) {
        SCOPED_TRACE(words);
        ScopedRoundingWords const scope(words);
        using namespace com::halvorin::utilities;
        for (long const seconds : {0L, 1709618889L, 253402300800L, -62135596800L}) {
            EXPECT_EQ(flagsRaisedBy([&] { timeToYYYYString(seconds); }), 0);
        }
        EXPECT_EQ(flagsRaisedBy([&] { YYYYStringTotime("20240305060809"); }), 0);
        EXPECT_EQ(flagsRaisedBy([&] { YYYYStringTotime("2024 3 5 6 8 9"); }), 0);
    }
}

}  // namespace
