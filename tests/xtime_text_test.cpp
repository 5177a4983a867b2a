#include <cfenv>
#include <climits>
#include <clocale>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include <gtest/gtest.h>

#include "utillibrary/datatypes/xtime_writers_internal.h"
#include <utillibrary/datatypes/xtime.h>
#include <utillibrary/datatypes/xtime_conversions.h>

#include "support/locales.h"
#include "support/rounding.h"
#include "support/time_printing.h"

// xtime_t::toString: the strings, and general and fast paths compared.

using namespace com::halvorin::datatypes;
using com::halvorin::internal::breakDown;
using com::halvorin::utilities::to_string;
using testing_support::ScopedCLocale;

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

template <auto Function, typename Signature>
constexpr bool IS = std::is_same_v<decltype(Function), Signature>;

static_assert(
    IS<&xtime_t::toString, std::string (xtime_t::*)(bool, int, std::string const&) const>);

long const SECONDS = 1709618889;  // 2024-03-05T06:08:09
xtime_t const QUARTER(SECONDS, 250000000);

struct OffsetFact {
    char const* fact;
    bool applyOffset;
    int offsetSeconds;
    char const* text;
};

OffsetFact const OFFSET_FACTS[] = {
    {"without applyOffset there is no zone", false, 0, "2024-03-05T06:08:09.250"},
    {"without applyOffset an offset of an hour is ignored", false, 3600, "2024-03-05T06:08:09.250"},
    {"without applyOffset an offset of a day is ignored", false, 90000, "2024-03-05T06:08:09.250"},
    {"offset 0 is Z", true, 0, "2024-03-05T06:08:09.250Z"},
    {"an hour east", true, 3600, "2024-03-05T07:08:09.250+0100"},
    {"5 h 30 min west", true, -19800, "2024-03-05T00:38:09.250-0530"},

    // the suffix drops the odd seconds of the offset, but they shift the time
    {"a second east shifts, and its zone is +0000", true, 1, "2024-03-05T06:08:10.250+0000"},
    {"a second west shifts, and its zone is -0000", true, -1, "2024-03-05T06:08:08.250-0000"},
    {"59 s east shift, and their zone is +0000", true, 59, "2024-03-05T06:09:08.250+0000"},
    {"a minute east is +0001", true, 60, "2024-03-05T06:09:09.250+0001"},
    {"a minute west is -0001", true, -60, "2024-03-05T06:07:09.250-0001"},
    {"3599 s east are +0059", true, 3599, "2024-03-05T07:08:08.250+0059"},
    {"an hour west is -0100", true, -3600, "2024-03-05T05:08:09.250-0100"},
    {"36061 s east are +1001", true, 36061, "2024-03-05T16:09:10.250+1001"},
    {"86399 s east are +2359", true, 86399, "2024-03-06T06:08:08.250+2359"},
    {"86399 s west are -2359", true, -86399, "2024-03-04T06:08:10.250-2359"},
    // KEPT(offset-of-a-day-is-silent)
    {"a day east shifts, and has no zone", true, 86400, "2024-03-06T06:08:09.250"},
    {"a day west shifts, and has no zone", true, -86400, "2024-03-04T06:08:09.250"},
    {"25 hours east shift, and have no zone", true, 90000, "2024-03-06T07:08:09.250"},
    {"the largest offset shifts, and has no zone", true, INT_MAX, "2092-03-23T09:22:16.250"},
    {"the smallest offset shifts, and has no zone", true, INT_MIN, "1956-02-16T02:54:01.250"},
};

TEST(XtimeToString, ShiftsByTheOffsetAndNamesIt) {
    ScopedCLocale const point("C");
    for (OffsetFact const& row : OFFSET_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(QUARTER.toString(row.applyOffset, row.offsetSeconds, ""), row.text);
    }
}

struct OptionsFact {
    char const* fact;
    std::string options;
    bool applyOffset;
    int offsetSeconds;
    char const* text;
};

OptionsFact const OPTIONS_FACTS[] = {
    {"I hides the fraction", "I", true, 0, "2024-03-05T06:08:09Z"},
    {"I hides the fraction without applyOffset", "I", false, 0, "2024-03-05T06:08:09"},
    {"I hides the fraction before a zone", "I", true, 3600, "2024-03-05T07:08:09+0100"},
    {"I hides the fraction with an offset of 25 hours", "I", true, 90000, "2024-03-06T07:08:09"},
    {"I counts at the end of the options", "abcI", true, 0, "2024-03-05T06:08:09Z"},
    {"I counts among other options", "i I i", true, 0, "2024-03-05T06:08:09Z"},
    {"I counts after a zero byte", "\0I"s, true, 0, "2024-03-05T06:08:09Z"},
    {"a small i does nothing", "i", true, 0, "2024-03-05T06:08:09.250Z"},
    {"no other letter does anything", "ABCDEFGHJKLZ1|", true, 0, "2024-03-05T06:08:09.250Z"},
};

TEST(XtimeToString, FollowsItsOptions) {
    ScopedCLocale const point("C");
    for (OptionsFact const& row : OPTIONS_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(QUARTER.toString(row.applyOffset, row.offsetSeconds, row.options), row.text);
    }
}

struct ShownFact {
    char const* fact;
    xtime_t time;
    int offsetSeconds;
    char const* text;
};

ShownFact const SHOWN_FACTS[] = {
    {"the epoch", {0, 0}, 0, "1970-01-01T00:00:00.000Z"},
    {"before the epoch", {-1, 500000000}, 0, "1969-12-31T23:59:59.500Z"},
    {"999000000 ns carry nothing", {0, 999000000}, 0, "1970-01-01T00:00:00.999Z"},
    {"1000000000 ns carry a second", {0, 1000000000}, 0, "1970-01-01T00:00:01.000Z"},
    {"1250000000 ns carry a second and leave a fraction",
     {0, 1250000000},
     0,
     "1970-01-01T00:00:01.250Z"},
    {"4294967295 ns carry four seconds", {0, UINT_MAX}, 0, "1970-01-01T00:00:04.294Z"},
    {"a carry leads into a new year", {-1, 1000000000}, 0, "1970-01-01T00:00:00.000Z"},
    {"an offset leads into a new year", {-1, 0}, 3600, "1970-01-01T00:59:59.000+0100"},
    {"an offset leads past a leap day", {1709251199, 0}, 60, "2024-03-01T00:00:59.000+0001"},
    {"a carry and an offset lead into a new year",
     {-2, 1000000000},
     1,
     "1970-01-01T00:00:00.000+0000"},
    // KEPT(year-wraps-at-32-bits)
    {"an offset leads out of the recorded years",
     {-67768040609740800, 0},
     -60,
     "1900-01-00T00:00:00.000-0001"},
    {"a carry leads out of the recorded years",
     {67768036191676799, 1000000000},
     0,
     "1900-01-00T00:00:00.000Z"},
    {"the sum of the largest seconds, nanoseconds and offset wraps",
     {LONG_MAX, UINT_MAX},
     INT_MAX,
     "1900-01-00T00:00:00.294"},
    {"the sum of the smallest seconds and offset wraps",
     {LONG_MIN, 0},
     INT_MIN,
     "1900-01-00T00:00:00.000"},
};

TEST(XtimeToString, ShowsTheSumOfSecondsCarryAndOffset) {
    ScopedCLocale const point("C");
    for (ShownFact const& row : SHOWN_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(row.time.toString(true, row.offsetSeconds, ""), row.text);
    }
}

struct YearFact {
    char const* fact;
    long seconds;
    char const* text;
};

YearFact const YEAR_FACTS[] = {
    {"year 10000", 253402300800, "10000-01-01T00:00:00"},
    {"year 9999", 253402300799, "9999-12-31T23:59:59"},
    {"year 1000", -30610224000, "1000-01-01T00:00:00"},
    {"year 999", -30610224001, "0999-12-31T23:59:59"},
    {"year 1", -62135596800, "0001-01-01T00:00:00"},
    {"year 0", -62167219200, "0000-01-01T00:00:00"},
    {"year -1", -62167219201, "-001-12-31T23:59:59"},
    {"year -999", -93692592000, "-999-01-01T00:00:00"},
    {"year -1000", -93692592001, "-1000-12-31T23:59:59"},
    {"year 99999", 3093527980799, "99999-12-31T23:59:59"},
    // KEPT(year-wraps-at-32-bits)
    {"the largest year", 67767976233532799, "2147483647-12-31T23:59:59"},
    {"the year after the largest is the smallest", 67767976233532800, "-2147483648-01-01T00:00:00"},
    {"the last that is shown", 67768036191676799, "-2147481749-12-31T23:59:59"},
    {"the second after the last that is shown", 67768036191676800, "1900-01-00T00:00:00"},
    {"the first that is shown", -67768040609740800, "-2147481748-01-01T00:00:00"},
    {"the second before the first that is shown", -67768040609740801, "1900-01-00T00:00:00"},
    {"LONG_MAX seconds show the record of zeros", LONG_MAX, "1900-01-00T00:00:00"},
    {"LONG_MIN seconds show the record of zeros", LONG_MIN, "1900-01-00T00:00:00"},
};

TEST(XtimeToString, ShowsEveryYear) {
    for (YearFact const& row : YEAR_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(xtime_t(row.seconds).toString(false, 0, "I"), row.text);
    }
}

TEST(XtimeToString, HasThirtyFiveBytesAtMost) {
    ScopedCLocale const point("C");
    xtime_t const smallestYear(67767976233532800);  // KEPT(year-wraps-at-32-bits)
    std::string const text = smallestYear.toString(true, 60, "");
    EXPECT_EQ(text, "-2147483648-01-01T00:01:00.000+0001");
    EXPECT_EQ(text.size(), 35U);
}

TEST(XtimeToString, IsWhatToStringOfAConstantTimeGives) {
    ScopedCLocale const point("C");
    EXPECT_EQ(to_string(QUARTER), "2024-03-05T06:08:09.250Z");
    EXPECT_EQ(to_string(xtime_t(0, 0)), "1970-01-01T00:00:00.000Z");
    EXPECT_EQ(to_string(xtime_t(1, 999999999)), "1970-01-01T00:00:01.000Z");
}

struct FractionFact {
    char const* fact;
    unsigned int nanoseconds;
    char const* nearest;
    char const* upward;
    char const* downward;
};

// Six decimals of a float, in the rounding mode of the host, of which three are shown.
// KEPT(fraction-of-six-decimals)
FractionFact const FRACTION_FACTS[] = {
    {"0 ns", 0, ".000", ".000", ".000"},
    {"1 ns shows nothing", 1, ".000", ".000", ".000"},
    {"999499 ns are 999 us", 999499, ".000", ".001", ".000"},
    {"999500 ns round up to a millisecond", 999500, ".001", ".001", ".000"},
    {"999999 ns round up to a millisecond", 999999, ".001", ".001", ".000"},
    {"1000000 ns are a float below 1 ms", 1000000, ".001", ".001", ".000"},
    {"1000499 ns are 1000 us", 1000499, ".001", ".001", ".001"},
    {"a half, which a float is", 500000000, ".500", ".500", ".500"},
    {"a quarter", 250000000, ".250", ".250", ".250"},
    {"123999499 ns are 123999 us", 123999499, ".123", ".124", ".123"},
    {"123999500 ns round up to 124 ms", 123999500, ".124", ".124", ".123"},
    {"123999999 ns round up to 124 ms", 123999999, ".124", ".124", ".123"},
    {"999499999 ns are 999 ms", 999499999, ".999", ".999", ".999"},
    {"999999520 ns are 999 ms", 999999520, ".999", ".000", ".999"},
    {"999999521 ns round up to a second and show 000", 999999521, ".000", ".000", ".999"},
    {"999999999 ns round up to a second and show 000", 999999999, ".000", ".000", ".999"},
    {"of 1250000000 ns a quarter is shown", 1250000000, ".250", ".250", ".250"},
    {"of 4000999500 ns the last 999500 are shown", 4000999500, ".001", ".001", ".000"},
    {"of 1999999999 ns the last 999999999 are shown", 1999999999, ".000", ".000", ".999"},
    {"of 4294967295 ns the last 294967295 are shown", UINT_MAX, ".294", ".294", ".294"},
};

std::string fractionOf(unsigned int nanoseconds, int rounding) {
    testing_support::ScopedRounding const scope(rounding);
    std::string const text = xtime_t(0, nanoseconds).toString(false, 0, "");
    return text.substr(std::string_view("1970-01-01T00:00:00").size());
}

TEST(XtimeToString, ShowsThreeOfSixRoundedDecimals) {
    ScopedCLocale const point("C");
    for (FractionFact const& row : FRACTION_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(fractionOf(row.nanoseconds, FE_TONEAREST), row.nearest);
        EXPECT_EQ(fractionOf(row.nanoseconds, FE_UPWARD), row.upward);
        EXPECT_EQ(fractionOf(row.nanoseconds, FE_DOWNWARD), row.downward);
        EXPECT_EQ(fractionOf(row.nanoseconds, FE_TOWARDZERO), row.downward);
    }
}

struct PointFact {
    char const* fact;
    char const* locale;
    unsigned int nanoseconds;
    char const* fraction;
};

PointFact const POINT_FACTS[] = {
    {"C has a point", "C", 250000000, ".250"},
    {"en_US has a point, and its groups do not show", "en_US.UTF-8", 250000000, ".250"},
    {"de_DE has a comma", "de_DE.UTF-8", 250000000, ",250"},
    {"fr_FR in Latin has a comma", "fr_FR.ISO-8859-15", 250000000, ",250"},
    {"a comma precedes 000 when the fraction rounds up", "tr_TR.UTF-8", 999999521, ",000"},
    {"a decimal point of two bytes leaves two digits", "ps_AF.UTF-8", 259000000, "\331\25325"},
    {"a decimal point of two bytes leaves two digits of 000", "ps_AF.UTF-8", 999999521,
     "\331\25300"},
    {"a digit as decimal point is written as printf writes it", "nn_NN.ISO-8859-1", 616994734,
     "5617"},
    {"printf rounds a fraction with a digit as decimal point upward here", "nn_NN.ISO-8859-1",
     498994577, "5499"},
};

TEST(XtimeToString, ShowsTheDecimalPointOfTheCLocale) {
    for (PointFact const& row : POINT_FACTS) {
        SCOPED_TRACE(row.fact);
        xtime_t const time(SECONDS, row.nanoseconds);
        std::string const text = "2024-03-05T06:08:09"s + row.fraction + "Z";
        {
            ScopedCLocale const locale(row.locale);
            EXPECT_EQ(to_string(time), text);
        }
        // The locale of the thread comes before that of the process.
        ScopedCLocale const process("C");
        locale_t const mine = newlocale(LC_ALL_MASK, row.locale, nullptr);
        ASSERT_NE(mine, nullptr);
        locale_t const previous = uselocale(mine);
        EXPECT_EQ(to_string(time), text);
        uselocale(previous);
        freelocale(mine);
    }
}

TEST(XtimeToString, DoesNotFollowTheCppLocale) {
    ScopedCLocale const point("C");
    for (std::string const& name : testing_support::allLocales()) {
        SCOPED_TRACE(name);
        testing_support::ScopedCppLocale const locale(name);
        EXPECT_EQ(to_string(QUARTER), "2024-03-05T06:08:09.250Z");
    }
}

// ---- general paths and fast paths

constexpr std::size_t ROOM = ISO_BUFFER_SIZE;

std::string printed(long seconds) {
    char text[ROOM];
    return {text, printDateAndTime(text, breakDown(seconds))};
}

std::optional<std::string> written(long seconds) {
    char text[ROOM];
    auto const end = writeDateAndTime(text, breakDown(seconds));
    if (!end) return std::nullopt;
    return std::string(text, *end);
}

struct YearPathFact {
    char const* fact;
    long seconds;
    bool fast;
};

YearPathFact const YEAR_PATH_FACTS[] = {
    {"the fast path declines year -1", -62167219201, false},
    {"the fast path writes year 0", -62167219200, true},
    {"the fast path writes year 1", -62135596800, true},
    {"the fast path writes a present-day year", SECONDS, true},
    {"the fast path writes year 9998", 253370764799, true},
    {"the fast path writes year 9999", 253402300799, true},
    {"the fast path declines year 10000", 253402300800, false},
    {"the fast path declines the smallest year", 67767976233532800, false},
    {"the fast path declines the largest year", 67767976233532799, false},
    {"the fast path writes the record of zeros", LONG_MAX, true},
};

TEST(XtimeToString, WritesYearsOfFourDigitsByTheFastPath) {
    for (YearPathFact const& row : YEAR_PATH_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(written(row.seconds).has_value(), row.fast);
        EXPECT_EQ(written(row.seconds).value_or(printed(row.seconds)), printed(row.seconds));
    }
}

TEST(XtimeToString, WritesTheSameDateAndTimeByBothPaths) {
    for (YearFact const& row : YEAR_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(printed(row.seconds), row.text);
        EXPECT_EQ(written(row.seconds).value_or(row.text), row.text);
    }
}

std::string printedFraction(float fraction) {
    char text[ROOM];
    return {text, printFraction(text, fraction)};
}

std::optional<std::string> writtenFraction(float fraction) {
    char text[ROOM];
    auto const end = writeFraction(text, fraction);
    if (!end) return std::nullopt;
    return std::string(text, *end);
}

// The float of a fraction, made in the rounding mode of the caller.
float fractionOf(unsigned int nanoseconds) {
    return static_cast<float>(static_cast<double>(static_cast<float>(nanoseconds % 1'000'000'000)) /
                              1e9);
}

TEST(XtimeToString, WritesTheFractionByTheFastPathWhenLibcRoundsToTheNearest) {
    ScopedCLocale const point("C");
    for (FractionFact const& row : FRACTION_FACTS) {
        SCOPED_TRACE(row.fact);
        float const fraction = fractionOf(row.nanoseconds);
        EXPECT_EQ(writtenFraction(fraction), row.nearest);
        EXPECT_EQ(printedFraction(fraction), row.nearest);
    }
    for (int const mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        testing_support::ScopedRounding const scope(mode);
        EXPECT_EQ(writtenFraction(0.25F), std::nullopt);
        EXPECT_EQ(printedFraction(0.25F), ".250");
    }
}

TEST(XtimeToString, WritesTheFractionByTheFastPathWhenTheDecimalPointIsOneByteAndNoDigit) {
    for (PointFact const& row : POINT_FACTS) {
        SCOPED_TRACE(row.fact);
        ScopedCLocale const locale(row.locale);
        float const fraction = fractionOf(row.nanoseconds);
        EXPECT_EQ(printedFraction(fraction), row.fraction);
        bool const usual = row.locale != "ps_AF.UTF-8"sv && row.locale != "nn_NN.ISO-8859-1"sv;
        EXPECT_EQ(writtenFraction(fraction).has_value(), usual);
        EXPECT_EQ(writtenFraction(fraction).value_or(row.fraction), row.fraction);
    }
}

struct FixedPointFact {
    char const* fact;
    float value;
    unsigned long whole;
    unsigned long nanoseconds;
    unsigned long nearestMicroseconds;  // of the value, if it is 1 at most
};

FixedPointFact const FIXED_POINT_FACTS[] = {
    {"zero", 0.0F, 0, 0, 0},
    {"the smallest float of all", 0x1p-149F, 0, 0, 0},
    {"the smallest normal float", 0x1p-126F, 0, 0, 0},
    {"2^-41, far below a nanosecond", 0x1p-41F, 0, 0, 0},
    {"the largest below 1 ns", 0x1.12E0BCp-30F, 0, 0, 0},
    {"the smallest above 1 ns", 0x1.12E0C0p-30F, 0, 1, 0},
    {"below half a microsecond", 4.999e-7F, 0, 499, 0},
    {"above half a microsecond", 5.001e-7F, 0, 500, 1},
    {"1/128 is 7812.5 microseconds", 0x1p-7F, 0, 7812500, 7813},
    {"a half", 0.5F, 0, 500000000, 500000},
    {"the largest below 1", 0x1.FFFFFEp-1F, 0, 999999940, 1000000},
    {"one", 1.0F, 1, 0, 1000000},
};

TEST(FixedPoint, CutsAndRoundsAFloat) {
    for (FixedPointFact const& row : FIXED_POINT_FACTS) {
        SCOPED_TRACE(row.fact);
        FixedPoint const value(row.value);
        EXPECT_EQ(value.whole(), row.whole);
        EXPECT_EQ(value.fractionTimes(1'000'000'000), row.nanoseconds);
        EXPECT_EQ(value.timesToNearest(1'000'000), row.nearestMicroseconds);
    }
    EXPECT_EQ(FixedPoint(59.25F).whole(), 59U);
    EXPECT_EQ(FixedPoint(59.25F).fractionTimes(1'000'000'000), 250'000'000U);
    EXPECT_EQ(FixedPoint(16777215.0F).whole(), 16777215U);
    EXPECT_EQ(FixedPoint(16777215.0F).fractionTimes(1'000'000'000), 0U);
}

}  // namespace
