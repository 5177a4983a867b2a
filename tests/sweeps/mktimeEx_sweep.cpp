#include <climits>
#include <ctime>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/xtime.h>
#include <utillibrary/utilities/mktimeEx.h>

#include "support/random.h"
#include "support/time_zone.h"

using com::halvorin::datatypes::xtime_t;
using com::halvorin::utilities::mktimeEx;

namespace {

constexpr long SECONDS_PER_DAY = 86400;
constexpr long DAYS_PER_ERA = 146097;  // 400 years, after which the calendar repeats itself

bool sameFields(std::tm const& a, std::tm const& b) {
    return a.tm_year == b.tm_year && a.tm_mon == b.tm_mon && a.tm_mday == b.tm_mday &&
           a.tm_hour == b.tm_hour && a.tm_min == b.tm_min && a.tm_sec == b.tm_sec;
}

bool sameDays(std::tm const& a, std::tm const& b) {
    return a.tm_wday == b.tm_wday && a.tm_yday == b.tm_yday;
}

std::tm onlyFields(std::tm const& record) {
    std::tm fields{};
    fields.tm_year = record.tm_year;
    fields.tm_mon = record.tm_mon;
    fields.tm_mday = record.tm_mday;
    fields.tm_hour = record.tm_hour;
    fields.tm_min = record.tm_min;
    fields.tm_sec = record.tm_sec;
    fields.tm_wday = -1;
    fields.tm_yday = -1;
    return fields;
}

// A second, there and back: decompose against gmtime_r, mktimeEx against the second itself.
void expectBothWays(long seconds) {
    std::tm theirs{};
    ASSERT_NE(gmtime_r(&seconds, &theirs), nullptr);

    std::tm ours{};
    unsigned int nanoseconds = 0;
    xtime_t(seconds).decompose(ours.tm_year, ours.tm_mon, ours.tm_mday, ours.tm_hour, ours.tm_min,
                               ours.tm_sec, nanoseconds);
    ours.tm_year -= 1900;
    ours.tm_mon -= 1;
    ASSERT_TRUE(sameFields(ours, theirs)) << seconds;

    std::tm record = onlyFields(theirs);
    long const back = mktimeEx(&record, 0);
    ASSERT_EQ(back, seconds >= 0 && seconds <= INT_MAX ? seconds : -1) << seconds;
    ASSERT_TRUE(sameFields(record, theirs)) << seconds;
    ASSERT_TRUE(sameDays(record, seconds >= 0 ? theirs : onlyFields(theirs))) << seconds;
}

TEST(CalendarSweep, GoesBothWaysOnEveryDayFrom1970To2038) {
    testing_support::ScopedTimeZone const utc("UTC0");
    constexpr long LAST_DAY = INT_MAX / SECONDS_PER_DAY;
    for (long day = 0; day <= LAST_DAY; ++day) {
        for (long const second : {0L, 1L, 59L, 60L, 3599L, 3600L, 43200L, 86399L}) {
            ASSERT_NO_FATAL_FAILURE(expectBothWays(day * SECONDS_PER_DAY + second));
        }
    }
}

TEST(CalendarSweep, GoesBothWaysOnEveryDayOfAnEra) {
    testing_support::ScopedTimeZone const utc("UTC0");
    long const step = testing_support::sweepStride() == 1 ? 1 : 11;
    // The era of 1970, its neighbours, and some as far away as the years of an int reach.
    for (long const era : {-5368709L, -5368708L, -25L, -5L, -4L, -1L, 0L, 1L, 24L, 5368702L}) {
        for (long day = 0; day < DAYS_PER_ERA; day += step) {
            long const seconds = (era * DAYS_PER_ERA + day) * SECONDS_PER_DAY;
            ASSERT_NO_FATAL_FAILURE(expectBothWays(seconds));
            ASSERT_NO_FATAL_FAILURE(expectBothWays(seconds + SECONDS_PER_DAY - 1));
        }
    }
}

// Months beyond a year and days beyond a month, in every year of an era.
TEST(CalendarSweep, NormalisesEveryMonthAndDayOfAnEra) {
    testing_support::ScopedTimeZone const utc("UTC0");
    int const step = testing_support::sweepStride() == 1 ? 1 : 7;
    for (int year = 70; year < 470; year += step) {
        for (int month = -13; month <= 25; ++month) {
            for (int day = -31; day <= 62; ++day) {
                std::tm fields{};
                fields.tm_year = year;
                fields.tm_mon = month;
                fields.tm_mday = day;
                std::tm theirs = onlyFields(fields);
                std::tm ours = theirs;
                long const seconds = timegm(&theirs);
                bool const inRange = seconds >= 0 && seconds <= INT_MAX;

                ASSERT_EQ(mktimeEx(&ours, 0), inRange ? seconds : -1)
                    << year << ' ' << month << ' ' << day;
                ASSERT_TRUE(sameFields(ours, theirs)) << year << ' ' << month << ' ' << day;
                ASSERT_TRUE(sameDays(ours, seconds >= 0 ? theirs : onlyFields(theirs)))
                    << year << ' ' << month << ' ' << day;
            }
        }
    }
}

}  // namespace
