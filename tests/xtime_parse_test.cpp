#include <cfenv>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include <gtest/gtest.h>

#include "utillibrary/datatypes/xtime_readers_internal.h"
#include <utillibrary/datatypes/xtime.h>

#include "support/locales.h"
#include "support/recorded_reports.h"
#include "support/rounding.h"
#include "support/time_printing.h"

// xtime_t::fromString: what it reads; general and fast path compared. Long, since each
// part of the string has its table.

using namespace com::halvorin::datatypes;
using testing_support::ScopedCLocale;

namespace {

using namespace std::string_literals;

template <auto Function, typename Signature>
constexpr bool IS = std::is_same_v<decltype(Function), Signature>;

static_assert(IS<&xtime_t::fromString, bool (xtime_t::*)(std::string const&) noexcept>);

long const SECONDS = 1709618889;  // 2024-03-05T06:08:09

void expectRead(std::string const& text, xtime_t const& expected) {
    xtime_t time(77, 77);
    EXPECT_TRUE(time.fromString(text));
    EXPECT_EQ(time, expected);
}

void expectRefused(std::string const& text) {
    xtime_t time(77, 77);
    EXPECT_FALSE(time.fromString(text));
    EXPECT_FALSE(time.isSet());
}

struct ReadFact {
    char const* fact;
    char const* text;
    long seconds;
};

ReadFact const DATE_FACTS[] = {
    {"a present-day second", "2024-03-05T06:08:09", 1709618889},
    {"the epoch is read, and is not set", "1970-01-01T00:00:00", 0},
    {"no seconds count as 0", "2024-03-05T07:08", 1709622480},
    {"no seconds after their colon count as 0", "2024-03-05T06:08:", 1709618880},
    {"no number after the seconds' colon counts as 0", "2024-03-05T06:08:x9", 1709618880},
    {"leading zeros are not needed", "2024-3-5T6:8:9", 1709618889},
    {"more leading zeros are accepted", "002024-0003-0005T0006:0008:0009", 1709618889},
    {"whitespace before numbers is accepted", " 2024- 3-\t5T 6: 8:\n9", 1709618889},
    {"plus signs before numbers are accepted", "+2024-+3-+5T06:08:09", 1709618889},
    // KEPT(rest-is-ignored): after every number that could be read.
    {"bytes after the day are ignored", "2024-03-05 or soT06:08:09", 1709618889},
    {"a second T is among the bytes that are ignored", "2024-03-05T06:08:09T07:00", 1709618889},
    {"bytes after the minutes are ignored", "2024-03-05T06:08 or so", 1709618880},
    {"a space before the seconds' colon ends the time", "2024-03-05T06:08 :09", 1709618880},
    {"bytes after the seconds are ignored", "2024-03-05T06:08:09 or so", 1709618889},

    {"year 1970 is accepted", "1970-01-01T00:00:01", 1},
    {"year 1971 is accepted", "1971-01-01T00:00:00", 31536000},
    {"month 1 is accepted", "2024-01-01T00:00:00", 1704067200},
    {"month 12 is accepted", "2024-12-01T00:00:00", 1733011200},
    {"day 1 is accepted", "2024-03-01T00:00:00", 1709251200},
    {"day 31 is accepted", "2024-03-31T00:00:00", 1711843200},
    // KEPT(day-31-of-any-month)
    {"31 February 2023 is 3 March", "2023-02-31T00:00:00", 1677801600},
    {"30 February 2024 is 1 March", "2024-02-30T00:00:00", 1709251200},
    {"31 April is 1 May", "2024-04-31T00:00:00", 1714521600},
    {"29 February 2000 is accepted", "2000-02-29T12:00:00", 951825600},
    {"hour 0 is accepted", "2024-03-05T00:08:09", 1709597289},
    {"hour 23 is accepted", "2024-03-05T23:08:09", 1709680089},
    {"minute 0 is accepted", "2024-03-05T06:00:09", 1709618409},
    {"minute 59 is accepted", "2024-03-05T06:59:09", 1709621949},
    {"second 0 is accepted", "2024-03-05T06:08:00", 1709618880},
    {"second 59 is accepted", "2024-03-05T06:08:59", 1709618939},

    // KEPT(digits-wrap-at-32-bits)
    {"year 2^32 + 2024 is read as 2024", "4294969320-3-5T06:08:09", 1709618889},
    {"year 2^32 + 2025 is read as 2025", "4294969321-01-02T00:00", 1735776000},
    {"month 2^32 + 3 is read as 3", "2024-4294967299-5T06:08:09", 1709618889},
    {"day 2^32 + 5 is read as 5", "2024-3-4294967301T06:08:09", 1709618889},
    {"hour 2^32 + 6 is read as 6", "2024-3-5T4294967302:08:09", 1709618889},
    {"minute 2^32 + 8 is read as 8", "2024-3-5T06:4294967304:09", 1709618889},
    {"zone hour 2^32 + 1 is read as 1", "2024-3-5T07:08:09+4294967297:0", 1709618889},

    // what the calendar refuses
    {"the last second but one of 31 bits is stored", "2038-01-19T03:14:06Z", 2147483646},
    {"the last second of 31 bits is stored", "2038-01-19T03:14:07Z", 2147483647},
    // KEPT(refused-time-is-minus-one)
    {"the second after 31 bits is stored as -1", "2038-01-19T03:14:08Z", -1},
    {"year 9999 is stored as -1", "9999-12-31T23:59:59Z", -1},
    {"the largest year is stored as -1", "2147483647-12-31T23:59:59Z", -1},
    {"a zone of a minute moves the epoch to -1", "1970-01-01T00:00:00+00:01", -1},
    {"a zone moves 00:59:59 of 1970 to -1", "1970-01-01T00:59:59+01:00", -1},
    {"01:00 at +01:00 is the epoch", "1970-01-01T01:00:00+01:00", 0},
    {"01:00:01 at +01:00 is second 1", "1970-01-01T01:00:01+01:00", 1},
    {"the last second is stored from a zone in the west", "2038-01-19T02:14:07-01:00", 2147483647},
    {"the second after the last, from a zone in the west, is -1", "2038-01-19T02:14:08-01:00", -1},
    {"a time beyond 31 bits is -1 though its zone moves it back", "2038-01-19T04:14:07+01:00", -1},
};

TEST(XtimeFromString, ReadsDateAndTime) {
    for (ReadFact const& row : DATE_FACTS) {
        SCOPED_TRACE(row.fact);
        expectRead(row.text, xtime_t(row.seconds, 0));
    }
}

// Times with a zone. Most of them are 06:08:09 UTC, which is second 1709618889.
ReadFact const ZONE_FACTS[] = {
    {"no zone is UTC", "2024-03-05T06:08:09", 1709618889},
    {"Z is UTC", "2024-03-05T06:08:09Z", 1709618889},
    {"bytes after Z are ignored", "2024-03-05T06:08:09Zulu", 1709618889},
    {"a zone after Z is ignored", "2024-03-05T06:08:09Z+01:00", 1709618889},
    {"+hh is accepted", "2024-03-05T07:08:09+01", 1709618889},
    {"+h is accepted", "2024-03-05T07:08:09+1", 1709618889},
    {"+hhmm is accepted", "2024-03-05T07:38:09+0130", 1709618889},
    {"+hhm is accepted", "2024-03-05T07:13:09+015", 1709618889},
    {"+12 and one digit of minutes are accepted", "2024-03-05T18:11:09+123", 1709618889},
    {"a fifth digit is ignored", "2024-03-05T18:42:09+12345", 1709618889},
    {"minutes after a space are accepted", "2024-03-05T07:13:09+01 5", 1709618889},
    {"digits after a letter are ignored", "2024-03-05T07:08:09+01x5", 1709618889},
    {"+0x1 is +0", "2024-03-05T06:08:09+0x1", 1709618889},
    {"+hh:mm is accepted", "2024-03-05T07:38:09+01:30", 1709618889},
    {"+h:m is accepted", "2024-03-05T07:13:09+1:5", 1709618889},
    {"+hhhh:mmmm is accepted", "2024-03-05T07:13:09+0001:0005", 1709618889},
    {"a space after the colon is accepted", "2024-03-05T07:13:09+1: 5", 1709618889},
    {"a plus sign after the colon is accepted", "2024-03-05T07:13:09+1:+5", 1709618889},
    {"a plus sign after the hours starts the minutes", "2024-03-05T07:13:09+01+5", 1709618889},
    {"bytes after the zone's minutes are ignored", "2024-03-05T07:38:09+01:30 in summer",
     1709618889},
    {"a zone after the minutes is accepted", "2024-03-05T07:08+01", 1709618880},
    {"a zone with a colon after the minutes is accepted", "2024-03-05T07:08+01:00", 1709618880},
    {"a zone after the seconds' colon is accepted", "2024-03-05T07:08:+01:00", 1709618880},
    {"+00:00 is UTC", "2024-03-05T06:08:09+00:00", 1709618889},
    {"23 hours east are accepted", "2024-03-06T05:08:09+23", 1709618889},
    {"23 hours west are accepted", "2024-03-04T07:08:09-23", 1709618889},
    {"59 minutes are accepted", "2024-03-05T07:07:09+00:59", 1709618889},
    {"+23:59 is accepted", "2024-03-06T06:07:09+23:59", 1709618889},
    // KEPT(zone-minutes-subtracted): the hours' sign is not that of the minutes.
    {"in the east hours and minutes are subtracted", "2024-03-05T06:08:09+05:30", 1709599089},
    {"in the west the hours are added", "2024-03-05T06:08:09-05:00", 1709636889},
    {"in the west the minutes are subtracted", "2024-03-05T06:08:09-05:30", 1709635089},
    {"in the west minutes without a colon are subtracted", "2024-03-05T06:08:09-0530", 1709635089},
    {"-00:30 subtracts 30 minutes", "2024-03-05T06:08:09-00:30", 1709617089},
    {"+00:30 subtracts 30 minutes", "2024-03-05T06:08:09+00:30", 1709617089},
};

TEST(XtimeFromString, ReadsTheZone) {
    for (ReadFact const& row : ZONE_FACTS) {
        SCOPED_TRACE(row.fact);
        expectRead(row.text, xtime_t(row.seconds, 0));
    }
}

struct SecondsFact {
    char const* fact;
    char const* secondsText;  // after "2024-03-05T06:08:"
    int seconds;
    unsigned int nanoseconds;
};

// Seconds are one float, and its fraction is cut.
SecondsFact const SECONDS_FACTS[] = {
    {"a quarter is exact", "09.25", 9, 250000000},
    {"a quarter before Z is exact", "09.25Z", 9, 250000000},
    {"a quarter before a zone is exact", "09.25-01:00", 3609, 250000000},
    {"0.1 is a float above 0.1", "00.1", 0, 100000001},
    {"9.1 is a float farther above", "09.1", 9, 100000381},
    {"59.999 is a float above it", "59.999", 59, 999000549},
    {"0.7 is a float below it", "00.7", 0, 699999988},
    {"nine digits are read", "00.123456789", 0, 123456791},
    {"ten digits are read", "00.1234567891", 0, 123456791},
    {"the tenth digit counts", "00.0000000019", 0, 1},
    {"a nanosecond is a float below 1 ns", "00.000000001", 0, 0},
    {"two nanoseconds are a float below 2 ns", "00.000000002", 0, 1},
    {"the largest float below 60", "59.999996", 59, 999996185},
    {"59.999998 rounds down to the largest float below 60", "59.999998", 59, 999996185},
    {"59.999998092 rounds down to the largest float below 60", "59.999998092", 59, 999996185},
    {"seventeen digits below the middle round down", "59.99999809265136718", 59, 999996185},
    {"a point without digits after it is accepted", "09.", 9, 0},
    {"a point without digits before a zone is accepted", "09.+00:00", 9, 0},
    {"a point without digits before it is accepted", ".5", 0, 500000000},
    {"a point alone is no number and counts as 0", ".", 0, 0},
    {"one digit before the point is accepted", "9.5", 9, 500000000},
    {"three digits before the point are accepted", "009.5", 9, 500000000},
    {"bytes after the digits are ignored", "09.5x5", 9, 500000000},
    {"an exponent is read", "1e1", 10, 0},
    {"an exponent without digits is ignored", "1e", 1, 0},
    {"the sign of an exponent starts a zone", "5e-1", 3605, 0},
    {"a hexadecimal number is read", "0x10", 16, 0},
    {"a hexadecimal number with a fraction is read", "0X1.8p1", 3, 0},
    {"0x.8 is a half", "0x.8", 0, 500000000},
    {"the largest float below 60 is read in hexadecimal", "0x3b.ffffc", 59, 999996185},
    {"the sign of a hexadecimal power starts a zone", "0x1p-1", 3601, 0},
    {"59 with an exponent is read", "5.9e1", 59, 0},
};

TEST(XtimeFromString, ReadsSecondsAsAFloat) {
    ScopedCLocale const point("C");
    for (SecondsFact const& row : SECONDS_FACTS) {
        SCOPED_TRACE(row.fact);
        expectRead("2024-03-05T06:08:"s + row.secondsText,
                   xtime_t(1709618880 + row.seconds, row.nanoseconds));
    }
    // KEPT(refused-time-is-minus-one): the fraction is stored all the same.
    expectRead("2038-01-19T03:14:08.5Z", xtime_t(-1, 500000000));
}

struct RoundedSecondsFact {
    char const* secondsText;
    unsigned int nearest;
    unsigned int upward;
    unsigned int downward;
};

RoundedSecondsFact const ROUNDED_SECONDS_FACTS[] = {
    {"09.1", 100000381, 100000381, 99999427},
    {"09.25", 250000000, 250000000, 250000000},
    {"09.5", 500000000, 500000000, 500000000},
    {"09.7", 699999809, 700000762, 699999809},
    {"09.0000009", 953, 953, 0},
};

void expectReadIn(int rounding, char const* secondsText, unsigned int nanoseconds) {
    SCOPED_TRACE(rounding);
    testing_support::ScopedRounding const scope(rounding);
    expectRead("2024-03-05T06:08:"s + secondsText, xtime_t(SECONDS, nanoseconds));
}

TEST(XtimeFromString, ReadsSecondsInTheRoundingModeOfTheHost) {
    ScopedCLocale const point("C");
    for (RoundedSecondsFact const& row : ROUNDED_SECONDS_FACTS) {
        SCOPED_TRACE(row.secondsText);
        expectReadIn(FE_TONEAREST, row.secondsText, row.nearest);
        expectReadIn(FE_UPWARD, row.secondsText, row.upward);
        expectReadIn(FE_DOWNWARD, row.secondsText, row.downward);
        expectReadIn(FE_TOWARDZERO, row.secondsText, row.downward);
    }
    // To the nearest, these seconds round to 60 and are refused. Downward they do not.
    testing_support::ScopedRounding const downward(FE_DOWNWARD);
    expectRead("2024-03-05T06:08:59.9999999", xtime_t(1709618939, 999996185));
}

struct RefusedFact {
    char const* fact;
    char const* text;
};

RefusedFact const REFUSED_FACTS[] = {
    {"an empty string is refused", ""},
    {"a T alone is refused", "T"},
    {"a date without T is refused", "2024-03-05"},
    {"a space in place of T is refused", "2024-03-05 06:08:09"},
    {"a small t is refused", "2024-03-05t06:08:09"},
    {"a U in place of T is refused", "2024-03-05U06:08:09"},
    {"a comma for the first dash is refused", "2024,03-05T06:08:09"},
    {"a comma for the second dash is refused", "2024-03,05T06:08:09"},
    {"a semicolon for the colon is refused", "2024-03-05T06;08:09"},
    {"a colon for the day's digits is refused", "2024-03-0:T06:08:09"},
    {"a slash for the day's digits is refused", "2024-03-0/T06:08:09"},
    {"nothing after T is refused", "2024-03-05T"},
    {"nothing before T is refused", "T06:08:09"},
    {"hours without minutes are refused", "2024-03-05T06"},
    {"no minutes after their colon are refused", "2024-03-05T06:"},
    {"a date without a day is refused", "2024-03T06:08:09"},
    {"no day after its dash is refused", "2024-03-T06:08:09"},
    {"a date without dashes is refused", "20240305T06:08:09"},
    {"a time without colons is refused", "2024-03-05T060809"},
    {"a zone in place of the minutes is refused", "2024-03-05T06:+08"},
    {"a sign before the hours starts a zone and is refused", "2024-03-05T-6:08"},
    {"a space before a dash is refused", "2024 -03-05T06:08:09"},
    {"a space before the minutes' colon is refused", "2024-03-05T06 :08:09"},
    {"a date in words is refused", "Tue Mar 5 06:08:09 2024"},

    {"year 1969 is refused", "1969-12-31T23:59:59Z"},
    {"year 0 is refused", "0000-01-01T00:00:00Z"},
    {"a negative year is refused", "-2024-03-05T06:08:09"},
    {"year 2^31 wraps to a negative year and is refused", "2147483648-01-01T00:00:00"},
    {"a year beyond 64 bits is read as -1 and refused", "99999999999999999999-01-01T00:00:00"},
    {"month 0 is refused", "2024-00-05T06:08:09"},
    {"month 13 is refused", "2024-13-05T06:08:09"},
    {"month -1 is refused", "2024--1-05T06:08:09"},
    {"day 0 is refused", "2024-03-00T06:08:09"},
    {"day 32 is refused", "2024-03-32T06:08:09"},
    {"day -5 is refused", "2024-03--5T06:08:09"},
    {"hour 24 is refused", "2024-03-05T24:00:00"},
    {"hour 2^32 - 1 wraps to -1 and is refused", "2024-03-05T4294967295:08:09"},
    {"minute 60 is refused", "2024-03-05T06:60:00"},
    {"minute 2^32 - 1 wraps to -1 and is refused", "2024-03-05T06:4294967295:09"},
    {"a leap second is refused", "2024-03-05T06:08:60"},
    {"second 61 is refused", "2024-03-05T06:08:61"},

    {"a zone of a sign alone is refused", "2024-03-05T06:08:09+"},
    {"a zone of a sign, a space and a digit is refused", "2024-03-05T06:08:09+ 1"},
    {"a zone with two signs is refused", "2024-03-05T06:08:09+-1"},
    {"a zone of a sign and a letter is refused", "2024-03-05T06:08:09+Z"},
    {"a zone without hours is refused", "2024-03-05T06:08:09+:30"},
    {"a zone without minutes after its colon is refused", "2024-03-05T06:08:09+01:"},
    {"a letter after the zone's colon is refused", "2024-03-05T06:08:09+01:x"},
    {"a colon after +hhmm is refused", "2024-03-05T06:08:09+0130:"},
    {"24 hours east are refused", "2024-03-05T06:08:09+24:00"},
    {"24 hours west are refused", "2024-03-05T06:08:09-24:00"},
    {"24 hours east without minutes are refused", "2024-03-05T06:08:09+24"},
    {"24 hours west without a colon are refused", "2024-03-05T06:08:09-2400"},
    {"99 hours are refused", "2024-03-05T06:08:09+99"},
    {"zone hour 2^31 wraps and is refused", "2024-03-05T06:08:09+2147483648:0"},
    {"60 minutes of a zone are refused", "2024-03-05T06:08:09+01:60"},
    {"60 minutes of a zone without a colon are refused", "2024-03-05T06:08:09+0160"},
    {"negative minutes of a zone are refused", "2024-03-05T06:08:09+01:-1"},
    {"negative minutes of a zone without a colon are refused", "2024-03-05T06:08:09+01-1"},
};

TEST(XtimeFromString, RefusesOtherText) {
    for (RefusedFact const& row : REFUSED_FACTS) {
        SCOPED_TRACE(row.fact);
        expectRefused(row.text);
    }
    EXPECT_TRUE(testing_support::takeReports().empty());
}

// After "2024-03-05T06:08:".
RefusedFact const REFUSED_SECONDS_FACTS[] = {
    {"59.9999999 rounds up to 60 and is refused", "59.9999999"},
    {"59.999998093 rounds up to 60 and is refused", "59.999998093"},
    {"seventeen digits above the halfway point round up to 60", "59.99999809265136719"},
    {"the halfway point rounds to even, which is 60", "59.9999980926513671875"},
    {"60 in hexadecimal is refused", "0x3c"},
    {"60 with an exponent is refused", "6e1"},
    {"60.0 is refused", "60.0"},
    {"99.999 is refused", "99.999"},
    {"a number beyond a float is refused", "1e99"},
    {"inf is refused", "inf"},
    {"INFINITY is refused", "INFINITY"},
    {"nan is refused", "nan"},
    {"NaN(1) is refused", "NaN(1)"},
};

TEST(XtimeFromString, RefusesSecondsFrom60On) {
    ScopedCLocale const point("C");
    for (RefusedFact const& row : REFUSED_SECONDS_FACTS) {
        SCOPED_TRACE(row.fact);
        expectRefused("2024-03-05T06:08:"s + row.text);
    }
}

// A text with a number of bytes in its middle.
struct PaddedFact {
    char const* fact;
    char const* before;
    std::size_t count;
    char padding;
    char const* after;
    long seconds;
};

PaddedFact const PADDED_FACTS[] = {
    {"62 bytes are read whole", "", 43, ' ', "2024-03-05T06:08:09", 1709618889},
    {"63 bytes are read whole", "", 44, ' ', "2024-03-05T06:08:09", 1709618889},
    {"of 64 bytes the last is ignored", "", 45, ' ', "2024-03-05T06:08:09", 1709618880},
    {"a long text is cut", "2024-03-05T06:08:09", 100000, 'x', "", 1709618889},
    {"30 bytes of time are read whole", "2024-03-05T", 22, ' ', "06:08:09", 1709618889},
    {"31 bytes of time are read whole", "2024-03-05T", 23, ' ', "06:08:09", 1709618889},
    {"of 32 bytes of time the last is ignored", "2024-03-05T", 24, ' ', "06:08:09", 1709618880},
    {"30 bytes of time and zone are read whole", "2024-03-05T07:38:9.", 16, '0', "+01:30",
     1709618889},
    {"31 bytes of time and zone are read whole", "2024-03-05T07:38:9.", 17, '0', "+01:30",
     1709618889},
    {"of 32 bytes of time and zone the last is ignored", "2024-03-05T07:11:9.", 18, '0', "+01:30",
     1709618889},
    {"14 bytes of zone are read whole", "2024-03-05T7:38+01:", 8, ' ', "30", 1709618880},
    {"15 bytes of zone are read whole", "2024-03-05T7:38+01:", 9, ' ', "30", 1709618880},
    {"of 16 bytes of zone the last is ignored", "2024-03-05T7:11+01:", 10, ' ', "30", 1709618880},
    {"a colon as the 16th byte of the zone is ignored", "2024-03-05T7:38+0130", 10, ' ', ":",
     1709618880},
};

constexpr long REFUSED = -77;

PaddedFact const REFUSED_PADDED_FACTS[] = {
    {"a T as the 63rd byte leaves no time and is refused", "", 52, ' ', "2024-03-05T06:08:09",
     REFUSED},
    {"a T as the 64th byte is ignored, so that none is left", "", 53, ' ', "2024-03-05T06:08:09",
     REFUSED},
    {"minutes after the 31st byte of time are missing", "2024-03-05T", 28, ' ', "06:08:09",
     REFUSED},
    {"a zone's minutes after the 31st byte are missing", "2024-03-05T07:38:9.", 19, '0', "+01:30",
     REFUSED},
    {"a zone's hours after the 31st byte are missing", "2024-03-05T07:38:9.", 22, '0', "+01:30",
     REFUSED},
    {"a colon as the 15th byte of the zone counts", "2024-03-05T7:38+0130", 9, ' ', ":", REFUSED},
};

std::string textOf(PaddedFact const& row) {
    return row.before + std::string(row.count, row.padding) + row.after;
}

TEST(XtimeFromString, ReadsSoManyBytesOfEachPart) {
    ScopedCLocale const point("C");
    for (PaddedFact const& row : PADDED_FACTS) {
        SCOPED_TRACE(row.fact);
        expectRead(textOf(row), xtime_t(row.seconds, 0));
    }
    for (PaddedFact const& row : REFUSED_PADDED_FACTS) {
        SCOPED_TRACE(row.fact);
        expectRefused(textOf(row));
    }
}

struct ZeroByteFact {
    char const* fact;
    std::string text;
    long seconds;
};

ZeroByteFact const ZERO_BYTE_FACTS[] = {
    {"a zero byte after the seconds hides the zone", "2024-03-05T06:08:09\0+01:00"s, 1709618889},
    {"a zero byte within the seconds cuts them", "2024-03-05T06:08:0\0009"s, 1709618880},
    {"a zero byte for the seconds' colon leaves no seconds", "2024-03-05T06:08\00009"s, 1709618880},
    {"a zero byte for the seconds' point cuts the fraction", "2024-03-05T06:08:09\0005"s,
     1709618889},
    {"a zero byte within the zone hides its minutes", "2024-03-05T07:08:09+01\0:30"s, 1709618889},
    {"a zero byte after the zone hides what follows", "2024-03-05T07:38:09+01:30\0x"s, 1709618889},
    {"a zero byte at the start leaves nothing", "\0002024-03-05T06:08:09"s, REFUSED},
    {"a zero byte before the T hides it", "2024-03-05\0T06:08:09"s, REFUSED},
    {"a zero byte in place of the T is refused", "2024-03-05\00006:08:09"s, REFUSED},
    {"a zero byte for a dash is refused", "2024-03\00005T06:08:09"s, REFUSED},
    {"a zero byte after the hours leaves no minutes", "2024-03-05T06\0:08:09"s, REFUSED},
    {"a zero byte for a digit of the year is refused", "202\000-03-05T06:08:09"s, REFUSED},
};

TEST(XtimeFromString, EndsAtAZeroByte) {
    for (ZeroByteFact const& row : ZERO_BYTE_FACTS) {
        SCOPED_TRACE(row.fact);
        if (row.seconds == REFUSED) {
            expectRefused(row.text);
        } else {
            expectRead(row.text, xtime_t(row.seconds, 0));
        }
    }
}

struct SecondsPointFact {
    char const* fact;
    char const* locale;
    char const* text;
    unsigned int nanoseconds;
};

SecondsPointFact const SECONDS_POINT_FACTS[] = {
    {"a point is read under en_US", "en_US.UTF-8", "2024-03-05T06:08:09.25Z", 250000000},
    {"a comma is no decimal point under en_US", "en_US.UTF-8", "2024-03-05T06:08:09,25Z", 0},
    {"a comma is read under de_DE", "de_DE.UTF-8", "2024-03-05T06:08:09,25Z", 250000000},
    {"a point is no decimal point under de_DE", "de_DE.UTF-8", "2024-03-05T06:08:09.25Z", 0},
    {"a comma is read under fr_FR", "fr_FR.ISO-8859-15", "2024-03-05T06:08:09,25Z", 250000000},
    {"a decimal point of two bytes is read under ps_AF", "ps_AF.UTF-8",
     "2024-03-05T06:08:09\331\25325Z", 250000000},
    {"a point is no decimal point under ps_AF", "ps_AF.UTF-8", "2024-03-05T06:08:09.25Z", 0},
    {"half of the decimal point is none under ps_AF", "ps_AF.UTF-8", "2024-03-05T06:08:09\33125Z",
     0},
};

TEST(XtimeFromString, ReadsTheDecimalPointOfTheCLocale) {
    for (SecondsPointFact const& row : SECONDS_POINT_FACTS) {
        SCOPED_TRACE(row.fact);
        ScopedCLocale const locale(row.locale);
        expectRead(row.text, xtime_t(SECONDS, row.nanoseconds));
    }
}

struct SkippedSignFact {
    char const* fact;
    char const* text;
    long seconds;
};

// The fast path used to read these signs, as under "C".
SkippedSignFact const SKIPPED_SIGN_FACTS[] = {
    {"a minus that is whitespace leaves the hours positive", "2024-03-05T06:08:09-05:30",
     SECONDS - 5 * 3600 - 30 * 60},
    {"a minus that is whitespace is not one of three characters of the hours",
     "2024-03-05T06:08:09-0160", SECONDS - 16 * 3600},
    {"a plus that is whitespace is not one of three characters of the hours",
     "2024-03-05T06:08:09+0015", SECONDS - 1 * 3600 - 5 * 60},
};

TEST(XtimeFromString, SkipsASignOfTheZoneThatIsWhitespace) {
    {
        ScopedCLocale const locale("ss_SS.ISO-8859-1");
        for (SkippedSignFact const& row : SKIPPED_SIGN_FACTS) {
            SCOPED_TRACE(row.fact);
            expectRead(row.text, xtime_t(row.seconds, 0));
        }
    }
    ScopedCLocale const onlyTheMinus("rr_RR.ISO-8859-1");
    SkippedSignFact const& minus = SKIPPED_SIGN_FACTS[0];
    expectRead(minus.text, xtime_t(minus.seconds, 0));
}

// Half a second is written and read exactly. The odd seconds of an offset are not written.
TEST(XtimeFromString, ReadsWhatToStringWrites) {
    for (std::string const& name : testing_support::allLocales()) {
        SCOPED_TRACE(name);
        ScopedCLocale const locale(name);
        for (int offset : {0, 3600, 45296, 86340}) {
            xtime_t const time(SECONDS, 500000000);
            xtime_t back;
            ASSERT_TRUE(back.fromString(time.toString(true, offset, "")));
            EXPECT_EQ(back.getNanoseconds(), 500000000U);
            EXPECT_EQ(back.getDateTime(), SECONDS + offset % 60);
        }
    }
}

// ---- the general path and the fast path

struct PathFact {
    char const* fact;
    std::string text;
    bool fast;
};

PathFact const PATH_FACTS[] = {
    {"the fast path reads hours and minutes", "2024-03-05T06:08", true},
    {"the fast path reads seconds", "2024-03-05T06:08:09", true},
    {"the fast path reads 1 digit after the point", "2024-03-05T06:08:09.2", true},
    {"the fast path reads 8 digits after the point", "2024-03-05T06:08:09.12345678", true},
    {"the fast path reads 9 digits after the point", "2024-03-05T06:08:09.123456789", true},
    {"the fast path declines 10 digits after the point", "2024-03-05T06:08:09.1234567891", false},
    {"the fast path declines a point without digits", "2024-03-05T06:08:09.", false},
    {"the fast path reads Z", "2024-03-05T06:08:09Z", true},
    {"the fast path reads Z without seconds", "2024-03-05T06:08Z", true},
    {"the fast path reads Z after a fraction", "2024-03-05T06:08:09.25Z", true},
    {"the fast path reads +hh", "2024-03-05T06:08:09+01", true},
    {"the fast path reads -hh", "2024-03-05T06:08:09-01", true},
    {"the fast path reads +hhmm", "2024-03-05T06:08:09+0130", true},
    {"the fast path reads -hhmm", "2024-03-05T06:08:09-0130", true},
    {"the fast path reads +hh:mm", "2024-03-05T06:08:09+01:30", true},
    {"the fast path reads -hh:mm", "2024-03-05T06:08:09.25-01:30", true},
    {"the fast path reads a zone without seconds", "2024-03-05T06:08+01:30", true},
    {"the fast path reads numbers out of range", "0000-99-99T99:99:99.9+99:99", true},

    {"the fast path declines 15 bytes", "2024-03-05T06:0", false},
    {"the fast path declines no bytes", "", false},
    {"the fast path declines a letter in the year", "202x-03-05T06:08:09", false},
    {"the fast path declines a letter in the month", "2024-0x-05T06:08:09", false},
    {"the fast path declines a letter in the day", "2024-03-0xT06:08:09", false},
    {"the fast path declines a letter in the hour", "2024-03-05T0x:08:09", false},
    {"the fast path declines a letter in the minute", "2024-03-05T06:0x:09", false},
    {"the fast path declines '/' for a digit", "2024-03-05T06:0/:09", false},
    {"the fast path declines ':' for a digit", "2024-03-05T06:0::09", false},
    {"the fast path declines another first dash", "2024/03-05T06:08:09", false},
    {"the fast path declines another second dash", "2024-03/05T06:08:09", false},
    {"the fast path declines t for T", "2024-03-05t06:08:09", false},
    {"the fast path declines another colon", "2024-03-05T06;08:09", false},
    {"the fast path declines bytes beyond ASCII for digits", "\xB2\xB0\xB2\xB4-03-05T06:08:09",
     false},
    {"the fast path declines a colon without seconds", "2024-03-05T06:08:", false},
    {"the fast path declines one digit of seconds", "2024-03-05T06:08:9", false},
    {"the fast path declines three digits of seconds", "2024-03-05T06:08:009", false},
    {"the fast path declines a letter in the seconds", "2024-03-05T06:08:0x", false},
    {"the fast path declines a letter after the seconds", "2024-03-05T06:08:09x", false},
    {"the fast path declines a letter after the minutes", "2024-03-05T06:08x", false},
    {"the fast path declines a letter after Z", "2024-03-05T06:08:09Zx", false},
    {"the fast path declines a sign alone", "2024-03-05T06:08:09+", false},
    {"the fast path declines one digit of zone", "2024-03-05T06:08:09+1", false},
    {"the fast path declines three digits of zone", "2024-03-05T06:08:09+013", false},
    {"the fast path declines five digits of zone", "2024-03-05T06:08:09+01300", false},
    {"the fast path declines a zone without minutes after ':'", "2024-03-05T06:08:09+01:", false},
    {"the fast path declines a letter after the zone", "2024-03-05T06:08:09+01:30x", false},
    {"the fast path declines a zero byte at the end", "2024-03-05T06:08:09\0"s, false},
    {"the fast path declines a space before the year", " 2024-03-05T06:08:09", false},
};

TEST(XtimeFromString, ReadsTheUsualFormsByTheFastPath) {
    ScopedCLocale const point("C");
    for (PathFact const& row : PATH_FACTS) {
        SCOPED_TRACE(row.fact);
        auto const read = readIsoNumbers(row.text);
        EXPECT_EQ(read.has_value(), row.fast);
        EXPECT_EQ(read, row.fast ? scanIsoNumbers(row.text) : std::nullopt);
    }
}

// What the fast path answers is what sscanf reads, in every table of this file.
void expectSameByBothPaths(std::string const& text) {
    SCOPED_TRACE(text);
    auto const read = readIsoNumbers(text);
    if (!read) return;
    EXPECT_EQ(read, scanIsoNumbers(text));
}

TEST(XtimeFromString, ReadsTheSameByBothPaths) {
    ScopedCLocale const point("C");
    for (ReadFact const& row : DATE_FACTS)
        expectSameByBothPaths(row.text);
    for (ReadFact const& row : ZONE_FACTS)
        expectSameByBothPaths(row.text);
    for (SecondsFact const& row : SECONDS_FACTS)
        expectSameByBothPaths("2024-03-05T06:08:"s + row.secondsText);
    for (RefusedFact const& row : REFUSED_FACTS)
        expectSameByBothPaths(row.text);
    for (RefusedFact const& row : REFUSED_SECONDS_FACTS)
        expectSameByBothPaths("2024-03-05T06:08:"s + row.text);
    for (PaddedFact const& row : PADDED_FACTS)
        expectSameByBothPaths(textOf(row));
}

TEST(XtimeFromString, LeavesAFractionToScanfUnlessLibcRoundsToTheNearest) {
    ScopedCLocale const point("C");
    for (int const mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        testing_support::ScopedRounding const scope(mode);
        EXPECT_FALSE(readIsoNumbers("2024-03-05T06:08:09.1").has_value());
        EXPECT_TRUE(readIsoNumbers("2024-03-05T06:08:09").has_value());
    }
}

TEST(XtimeFromString, LeavesAFractionToScanfUnlessTheDecimalPointIsADot) {
    for (char const* const name : {"de_DE.UTF-8", "ps_AF.UTF-8"}) {
        SCOPED_TRACE(name);
        ScopedCLocale const locale(name);
        EXPECT_FALSE(readIsoNumbers("2024-03-05T06:08:09.1").has_value());
        EXPECT_TRUE(readIsoNumbers("2024-03-05T06:08:09").has_value());
    }
}

}  // namespace
