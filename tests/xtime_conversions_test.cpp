#include <climits>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>

#include <gtest/gtest.h>

#include "utillibrary/datatypes/xtime_readers_internal.h"
#include "utillibrary/datatypes/xtime_writers_internal.h"
#include <utillibrary/datatypes/xtime_conversions.h>

#include "support/locales.h"
#include "support/random.h"
#include "support/recorded_reports.h"
#include "support/time_printing.h"

// Fourteen digits, written and read; general and fast paths compared.

using namespace com::halvorin::datatypes;
using com::halvorin::internal::breakDown;
using com::halvorin::utilities::timeToYYYYString;
using com::halvorin::utilities::to_string;
using com::halvorin::utilities::YYYYStringTotime;

namespace {

using namespace std::string_literals;

template <auto Function, typename Signature>
constexpr bool IS = std::is_same_v<decltype(Function), Signature>;

static_assert(IS<&xtime_t::toYYYYString, std::string (xtime_t::*)() const>);
static_assert(IS<&timeToYYYYString, std::string (*)(long)>);
static_assert(IS<&YYYYStringTotime, long (*)(std::string const&)>);
static_assert(
    IS<static_cast<std::string (*)(xtime_t const&)>(&to_string), std::string (*)(xtime_t const&)>);

long const SECONDS = 1709618889;  // 2024-03-05T06:08:09

struct FourteenOutFact {
    char const* fact;
    long seconds;
    char const* text;
};

FourteenOutFact const FOURTEEN_OUT_FACTS[] = {
    {"the epoch", 0, "19700101000000"},
    {"a second before the epoch", -1, "19691231235959"},
    {"a present-day second", SECONDS, "20240305060809"},
    {"a leap day", 1709251199, "20240229235959"},
    {"after 2038", 4107542400, "21000301000000"},
    {"year 9999", 253402300799, "99991231235959"},
    {"year 10000", 253402300800, "100000101000000"},
    {"year 99999", 3093527980799, "999991231235959"},
    {"year 1000", -30610224000, "10000101000000"},
    // KEPT(space-padded-year)
    {"year 999", -30610224001, " 9991231235959"},
    {"year 99", -59011459201, "  991231235959"},
    {"year 9", -61851686400, "   91231000000"},
    {"year 0", -62167219200, "   00101000000"},
    {"year -1", -62167219201, "  -11231235959"},
    {"year -99", -65291356800, " -990101000000"},
    {"year -999", -93692592000, "-9990101000000"},
    {"year -1000", -93692592001, "-10001231235959"},
    // KEPT(year-wraps-at-32-bits)
    {"the largest year", 67767976233532799, "21474836471231235959"},
    {"the year after the largest is the smallest", 67767976233532800, "-21474836480101000000"},
    {"the last that is shown", 67768036191676799, "-21474817491231235959"},
    {"the second after the last gives the record of zeros", 67768036191676800, "19000100000000"},
    {"LONG_MAX gives the record of zeros", LONG_MAX, "19000100000000"},
    {"LONG_MIN gives the record of zeros", LONG_MIN, "19000100000000"},
};

TEST(FourteenDigits, AreWrittenOfSeconds) {
    for (FourteenOutFact const& row : FOURTEEN_OUT_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(timeToYYYYString(row.seconds), row.text);
        EXPECT_EQ(xtime_t(row.seconds).toYYYYString(), row.text);
    }
}

struct RoundedOutFact {
    char const* fact;
    xtime_t time;
    char const* text;
};

RoundedOutFact const ROUNDED_OUT_FACTS[] = {
    {"499999999 ns go down", {SECONDS, 499999999}, "20240305060809"},
    // KEPT(half-a-second-down)
    {"500000000 ns go down", {SECONDS, 500000000}, "20240305060809"},
    {"500000001 ns go up", {SECONDS, 500000001}, "20240305060810"},
    {"999999999 ns go up", {SECONDS, 999999999}, "20240305060810"},
    {"1000000000 ns add one second", {SECONDS, 1000000000}, "20240305060810"},
    {"4294967295 ns add one second", {SECONDS, UINT_MAX}, "20240305060810"},
    {"before the epoch 500000000 ns go down", {-1, 500000000}, "19691231235959"},
    {"before the epoch 500000001 ns go up", {-1, 500000001}, "19700101000000"},
    {"a second that rounds up leads into the next year", {1704067199, 600000000}, "20240101000000"},
    {"LONG_MAX seconds wrap", {LONG_MAX, 999999999}, "19000100000000"},
};

TEST(FourteenDigits, AreThoseOfTheNearestSecond) {
    for (RoundedOutFact const& row : ROUNDED_OUT_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(row.time.toYYYYString(), row.text);
    }
    // KEPT(half-a-second-up): the neighbour that goes the other way.
    xtime_t half(SECONDS, 500000000);
    EXPECT_EQ(timeToYYYYString(half), "20240305060810");
}

struct FourteenInFact {
    char const* fact;
    std::string text;
    long seconds;
};

FourteenInFact const FOURTEEN_IN_FACTS[] = {
    {"a present-day second", "20240305060809", 1709618889},
    {"the epoch", "19700101000000", 0},
    {"a second after the epoch", "19700101000001", 1},
    {"the second before the epoch gives -1", "19691231235959", -1},
    {"the last second but one of 31 bits", "20380119031406", 2147483646},
    {"the last second of 31 bits", "20380119031407", 2147483647},
    {"the second after 31 bits gives -1", "20380119031408", -1},
    {"zeros give -1", "00000000000000", -1},
    {"nines give -1", "99999999999999", -1},

    {"an empty string gives 0", "", 0},
    {"one byte gives 0", "2", 0},
    {"13 bytes give 0", "2024030506080", 0},
    {"15 bytes give 0", "202403050608090", 0},
    {"28 bytes give 0", "2024030506080920240305060809", 0},
    {"a zero byte is one of the 14", "2024030506080\0"s, 1709618880},
    {"14 digits and a zero byte are 15 bytes and give 0", "20240305060809\0"s, 0},
    {"13 bytes without digits give 0", "thirteen, no?", 0},

    // KEPT(fourteen-digits-unchecked)
    {"30 February is 1 March", "20240230000000", 1709251200},
    {"31 April is 1 May", "20240431000000", 1714521600},
    {"month 0 is December", "20240005060809", 1701756489},
    {"month 13 is January", "20231305060809", 1704434889},
    {"month 99", "20159905060809", 1677996489},
    {"day 0 is the month's eve", "20240300060809", 1709186889},
    {"day 99", "20240399060809", 1717740489},
    {"hour 24", "20240304240809", 1709597289},
    {"hour 99", "20240305990809", 1709953689},
    {"minute 60", "20240305056009", 1709618409},
    {"minute 99", "20240305069909", 1709624349},
    {"second 60", "20240305060860", 1709618940},
    {"second 99", "20240305060899", 1709618979},
    {"a carry into 1970", "19691231235960", 0},
    {"hour 48 of day 0", "19700100480000", 86400},
    {"hour 23 of day 0", "19700100230000", -1},

    // each field is a number of its own
    {"spaces before digits are accepted", "2024 3 5 6 8 9", 1709618889},
    {"other whitespace before digits is accepted", "2024\t3\n5\v6\f8\r9", 1709618889},
    {"plus signs before digits are accepted", "2024+3+5+6+8+9", 1709618889},
    {"a sign in the year is accepted", "+970+3+5+6+8+9", -1},
    {"negative fields borrow", "2024-1-1-1-1-1", 1698620339},
    {"a negative second", "202403050608-9", 1709618871},
    {"a negative year", "-02403050608-9", -1},
    {"what follows a digit is ignored", "20243x5y6z8.9,", 1709618889},
    {"what follows a digit of the year is ignored", "202x0305060809", -1},
    {"0x is no hexadecimal number", "20240305060x0x", 1709618400},
    {"a colon is no digit", "2024030:060809", 1709186889},
    {"a slash is no digit", "2024030/060809", 1709186889},
    {"a byte beyond ASCII is no digit", "2024030\272060809", 1709186889},
    {"a zero byte ends its field", "20243\0005\0006\0008\0009\000"s, 1709618889},
    {"a zero byte ends the year", "20\00020305060809"s, -1},
};

TEST(FourteenDigits, AreReadAsSeconds) {
    for (FourteenInFact const& row : FOURTEEN_IN_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(YYYYStringTotime(row.text), row.seconds);
    }
}

struct NoDigitsFact {
    char const* fact;
    std::string text;
};

NoDigitsFact const NO_DIGITS_FACTS[] = {
    {"a year of letters throws", "xxxx0305060809"},
    {"a month of letters throws", "2024ab05060809"},
    {"a day of letters throws", "202403cd060809"},
    {"an hour of letters throws", "20240305ef0809"},
    {"a minute of letters throws", "2024030506gh09"},
    {"a second of letters throws", "202403050608ij"},
    {"words throw", "fourteen bytes"},
    {"a field of spaces throws", "2024030506  09"},
    {"a field of a space and a letter throws", "2024 x05060809"},
    {"a field of a plus sign and a space throws", "2024+ 05060809"},
    {"a field of a minus sign and a space throws", "2024- 05060809"},
    {"a field of two signs throws", "2024--05060809"},
    {"a zero byte before a digit throws", "2024\000305060809"s},
    {"a field of zero bytes throws", "20240305\0\0000809"s},
    {"digits of another script throw",
     "2024\xD9\xA1"
     "05060809"},
};

TEST(FourteenDigits, ThrowForAFieldWithoutThem) {
    for (NoDigitsFact const& row : NO_DIGITS_FACTS) {
        SCOPED_TRACE(row.fact);
        ASSERT_EQ(row.text.size(), 14U);
        try {
            YYYYStringTotime(row.text);
            ADD_FAILURE() << "nothing was thrown";
        } catch (std::exception const& error) {
            EXPECT_EQ(typeid(error), typeid(std::invalid_argument));
            EXPECT_STREQ(error.what(), "stoi");
        }
    }
    EXPECT_TRUE(testing_support::takeReports().empty());
}

TEST(FourteenDigits, FollowNoLocale) {
    for (std::string const& name : testing_support::allLocales()) {
        SCOPED_TRACE(name);
        testing_support::ScopedLocale const locale(name);
        EXPECT_EQ(timeToYYYYString(SECONDS), "20240305060809");
        EXPECT_EQ(timeToYYYYString(253402300800), "100000101000000");
        EXPECT_EQ(YYYYStringTotime("20240305060809"), SECONDS);
        EXPECT_EQ(YYYYStringTotime("2024 3 5 6 8 9"), SECONDS);
    }
}

TEST(FourteenDigits, ComeBackFrom1970To2038) {
    std::mt19937_64 engine = testing_support::randomEngine();
    for (int i = 0; i < 100'000; ++i) {
        auto const seconds = static_cast<long>(engine() >> 33);
        ASSERT_EQ(YYYYStringTotime(timeToYYYYString(seconds)), seconds);
    }
}

// ---- general paths and fast paths

struct WrittenPathFact {
    char const* fact;
    long seconds;
    bool fast;
};

WrittenPathFact const WRITTEN_PATH_FACTS[] = {
    {"the fast path declines year 999", -30610224001, false},
    {"the fast path writes year 1000", -30610224000, true},
    {"the fast path writes year 1001", -30578688000, true},
    {"the fast path writes a present-day year", SECONDS, true},
    {"the fast path writes year 9999", 253402300799, true},
    {"the fast path declines year 10000", 253402300800, false},
    {"the fast path declines year -1000", -93692592001, false},
};

std::optional<std::string> writtenDigits(long seconds) {
    char digits[FOURTEEN_DIGITS];
    auto const end = writeFourteenDigits(digits, breakDown(seconds));
    if (!end) return std::nullopt;
    return std::string(digits, *end);
}

TEST(FourteenDigits, AreWrittenByTheFastPathForYearsOfFourDigits) {
    for (WrittenPathFact const& row : WRITTEN_PATH_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(writtenDigits(row.seconds).has_value(), row.fast);
    }
}

TEST(FourteenDigits, AreWrittenTheSameByBothPaths) {
    for (FourteenOutFact const& row : FOURTEEN_OUT_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(printFourteenDigits(breakDown(row.seconds)), row.text);
        EXPECT_EQ(writtenDigits(row.seconds).value_or(row.text), row.text);
    }
}

struct ReadPathFact {
    char const* fact;
    std::string text;
    bool fast;
};

ReadPathFact const READ_PATH_FACTS[] = {
    {"the fast path reads fourteen digits", "20240305060809", true},
    {"the fast path reads zeros", "00000000000000", true},
    {"the fast path reads nines", "99999999999999", true},
    {"the fast path declines a letter as byte 1", "x0240305060809", false},
    {"the fast path declines a letter as byte 6", "20240x05060809", false},
    {"the fast path declines a letter as byte 7", "202403x5060809", false},
    {"the fast path declines a letter as byte 8", "2024030x060809", false},
    {"the fast path declines a letter as byte 9", "20240305x60809", false},
    {"the fast path declines a letter as byte 14", "2024030506080x", false},
    {"the fast path declines '/' for a digit", "2024/305060809", false},
    {"the fast path declines ':' for a digit", "2024:305060809", false},
    {"the fast path declines spaces", "2024 3 5 6 8 9", false},
    {"the fast path declines a sign", "+0240305060809", false},
    {"the fast path declines a zero byte", "2024030506080\0"s, false},
    {"the fast path declines a byte beyond ASCII", "2024\260305060809", false},
};

TEST(FourteenDigits, AreReadByTheFastPathIfTheyAreDigits) {
    for (ReadPathFact const& row : READ_PATH_FACTS) {
        SCOPED_TRACE(row.fact);
        ASSERT_EQ(row.text.size(), FOURTEEN_DIGITS);
        EXPECT_EQ(readFourteenDigits(row.text).has_value(), row.fast);
    }
}

TEST(FourteenDigits, AreReadTheSameByBothPaths) {
    for (FourteenInFact const& row : FOURTEEN_IN_FACTS) {
        if (row.text.size() != FOURTEEN_DIGITS) continue;
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(convertFourteenDigits(row.text), row.seconds);
        EXPECT_EQ(readFourteenDigits(row.text).value_or(row.seconds), row.seconds);
    }
}

}  // namespace
