#include "utillibrary/internal/calendar.h"

#include <climits>

#include <gtest/gtest.h>

using namespace com::halvorin::internal;

namespace {

struct DateFact {
    char const* fact;
    long days;  // since 1970-01-01
    long year;
    int month;
    int day;
    int dayOfYear;
};

DateFact const DATE_FACTS[] = {
    {"the epoch", 0, 1970, 1, 1, 0},
    {"the day before the epoch", -1, 1969, 12, 31, 364},
    {"28 February of a common year", 19416, 2023, 2, 28, 58},
    {"1 March of a common year", 19417, 2023, 3, 1, 59},
    {"28 February of a leap year", 19781, 2024, 2, 28, 58},
    {"29 February of a leap year", 19782, 2024, 2, 29, 59},
    {"1 March of a leap year", 19783, 2024, 3, 1, 60},
    {"31 December of a leap year", 20088, 2024, 12, 31, 365},
    {"1 January after a leap year", 20089, 2025, 1, 1, 0},
    {"29 February 2000, which 400 divides", 11016, 2000, 2, 29, 59},
    {"28 February 2100, which is not leap", 47540, 2100, 2, 28, 58},
    {"1 March 2100", 47541, 2100, 3, 1, 59},
    {"1 January of year 0", -719528, 0, 1, 1, 0},
    {"31 December of year -1", -719529, -1, 12, 31, 364},
};

TEST(Calendar, GoesBothWaysBetweenDaysAndDates) {
    for (DateFact const& row : DATE_FACTS) {
        SCOPED_TRACE(row.fact);
        CivilDate const date = dateOfDay(row.days);
        EXPECT_EQ(date.year, row.year);
        EXPECT_EQ(date.month, row.month);
        EXPECT_EQ(date.day, row.day);
        EXPECT_EQ(dayOfYear(date), row.dayOfYear);
        EXPECT_EQ(daysToDate(row.year, row.month, row.day), row.days);
    }
}

struct CarriedFact {
    char const* fact;
    long month;
    long day;
    long days;
};

// In 2024.
CarriedFact const CARRIED_FACTS[] = {
    {"month 0 is December of the year before", 0, 5, 19696},
    {"month -11 is January of the year before", -11, 5, 19362},
    {"month -12 is December two years before", -12, 5, 19331},
    {"month 12 is December", 12, 5, 20062},
    {"month 13 is January of the next year", 13, 5, 20093},
    {"month 25 is January two years later", 25, 5, 20458},
    {"day 0 is the last of the month before", 3, 0, 19782},
    {"day 32 is the first of the next month", 3, 32, 19814},
};

TEST(Calendar, CarriesMonthsAndDays) {
    for (CarriedFact const& row : CARRIED_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(daysToDate(2024, row.month, row.day), row.days);
    }
}

struct SecondsFact {
    char const* fact;
    long days;
    ClockTime clock;
    long adjustment;
    long seconds;
};

SecondsFact const SECONDS_FACTS[] = {
    {"the first second", 0, {0, 0, 0}, 0, 0},
    {"an hour, a minute and a second", 0, {1, 1, 1}, 0, 3661},
    {"the second before the first", 0, {0, 0, -1}, 0, -1},
    {"the last second", 24855, {3, 14, 7}, 0, 2147483647},
    {"the second after the last", 24855, {3, 14, 8}, 0, -1},
    {"an adjustment to the first second", 0, {1, 0, 0}, -3600, 0},
    {"an adjustment to before the first", 0, {1, 0, 0}, -3601, -1},
    {"an adjustment to the last second", 24855, {3, 13, 7}, 60, 2147483647},
    {"an adjustment to after the last", 24855, {3, 13, 7}, 61, -1},
    {"an adjustment does not bring a second after the last into the range",
     24855,
     {3, 14, 8},
     -1,
     -1},
    {"an adjustment does not bring a second before the first into the range", 0, {0, 0, -1}, 1, -1},
};

TEST(Calendar, CountsSecondsUpTo2038) {  // KEPT(calendar-ends-in-2038)
    for (SecondsFact const& row : SECONDS_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(secondsOf(row.days, row.clock, row.adjustment), row.seconds);
    }
}

// Seconds that fit 31 bits find their century by a shorter calculation than all others.
TEST(Calendar, FindsTheSameDateByBothWays) {
    constexpr unsigned long SHIFTED = DAYS_SHIFTED * SECONDS_PER_DAY;
    for (long const seconds : {0L, 1L, 86399L, 86400L, 951868799L, 951868800L, 1709618889L,
                               static_cast<long>(INT_MAX) - 1, static_cast<long>(INT_MAX)}) {
        SCOPED_TRACE(seconds);
        SecondOfCentury const place = secondOfCentury(seconds);
        unsigned long const shifted = static_cast<unsigned long>(seconds) + SHIFTED;
        CivilDate const general = dateOf(centuryOf(shifted / SECONDS_PER_DAY));
        CivilDate const fast = dateOf(place.day);
        EXPECT_EQ(place.secondOfDay, shifted % SECONDS_PER_DAY);
        EXPECT_EQ(fast.year, general.year);
        EXPECT_EQ(fast.month, general.month);
        EXPECT_EQ(fast.day, general.day);
        EXPECT_EQ(place.day.firstYear, 1900);
    }
    EXPECT_EQ(secondOfCentury(-1).secondOfDay, 86399U);
    EXPECT_EQ(secondOfCentury(INT_MAX + 1L).secondOfDay, 11648U);
    EXPECT_EQ(secondOfCentury(INT_MAX + 1L).day.firstYear, 2000);
}

// Every fourth year has 366 days there, so the days of four years repeat.
TEST(Calendar, FindsTheDatesOfACenturyOfAnyLength) {
    constexpr unsigned FOUR_YEARS = 4 * 365 + 1;
    for (unsigned day = 0; day < 1U << 22; ++day) {
        CivilDate const date = dateOf({0, day});
        CivilDate const sameDay = dateOf({0, day % FOUR_YEARS});
        ASSERT_EQ(date.year, sameDay.year + 4 * (day / FOUR_YEARS)) << day;
        ASSERT_EQ(date.month, sameDay.month) << day;
        ASSERT_EQ(date.day, sameDay.day) << day;
        ASSERT_EQ(date.marchDay, sameDay.marchDay) << day;
    }
}

TEST(Calendar, RecordsSecondsWhoseYearsFitAnInt) {  // KEPT(year-wraps-at-32-bits)
    EXPECT_FALSE(isRecorded(FIRST_RECORDED - 1));
    EXPECT_TRUE(isRecorded(FIRST_RECORDED));
    EXPECT_TRUE(isRecorded(END_OF_RECORDED - 1));
    EXPECT_FALSE(isRecorded(END_OF_RECORDED));
    EXPECT_EQ(FIRST_RECORDED, -67768040609740800);
    EXPECT_EQ(END_OF_RECORDED, 67768036191676800);
}

}  // namespace
