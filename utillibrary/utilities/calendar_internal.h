#pragma once

#include <climits>

// The Gregorian calendar in UTC: days to dates, dates to days, and seconds to all six fields.
//
// Years begin in March here, so that a leap day is a year's last day and the months' lengths follow
// one straight line. Both directions work without a table or a loop, in time that does not depend
// on the date. They are the algorithms of C. Neri and L. Schneider, "Euclidean affine functions and
// their application to calendar algorithms" (2022), carried out in 64 bits.
namespace com::halvorin::internal {

inline constexpr long SECONDS_PER_DAY = 86400;

/// The quotient rounded down, for a positive divisor.
constexpr long floorDivide(long dividend, long divisor) noexcept {
    return dividend / divisor - (dividend % divisor < 0 ? 1 : 0);
}

// KEPT(calendar-ends-in-2038): the results' type could hold more; hosts rely on the end.
constexpr bool inCalendarRange(long seconds) noexcept { return seconds >= 0 && seconds <= INT_MAX; }

/// Seconds since 1970 and an adjustment to them, or -1 where one or the other leaves the range.
constexpr long adjustedSeconds(long seconds, long adjustment) noexcept {
    bool const inRange = inCalendarRange(seconds) && inCalendarRange(seconds + adjustment);
    return inRange ? seconds + adjustment : -1;
}

struct CivilDate {
    long year;
    int month;      // 1..12
    int day;        // 1..31
    int dayOfYear;  // 0..365, from 1 January
};

inline constexpr unsigned long DAYS_PER_ERA = 146097;  // 400 years
inline constexpr unsigned long YEARS_PER_ERA = 400;
// Moves every date of a 64-bit second to the positive side: 3.2e11 years, where 2^63 s are 2.92e11.
inline constexpr unsigned long ERAS_SHIFTED = 800'000'000;
// From the shifted origin, 1 March of the year 0 of that many eras before, to 1 January 1970.
inline constexpr unsigned long DAYS_SHIFTED = ERAS_SHIFTED * DAYS_PER_ERA + 719468;
inline constexpr unsigned long YEARS_SHIFTED = ERAS_SHIFTED * YEARS_PER_ERA;

static_assert(DAYS_SHIFTED > static_cast<unsigned long>(LONG_MAX) / SECONDS_PER_DAY + 1);

constexpr bool isLeapYear(unsigned long year) noexcept {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

/// Days from 1970-01-01 to the first of a month.
/// Takes  year: within 3.1e11 of 0; month: 1..12
constexpr long daysToMonth(long year, int month) noexcept {
    bool const beforeMarch = month <= 2;
    auto const y = static_cast<unsigned long>(year) + YEARS_SHIFTED - (beforeMarch ? 1 : 0);
    auto const m = static_cast<unsigned long>(beforeMarch ? month + 12 : month);  // [3, 14]
    unsigned long const century = y / 100;
    unsigned long const dayOfYears = 1461 * y / 4 - century + century / 4;
    unsigned long const dayOfMonths = (979 * m - 2919) / 32;  // [0, 337]
    return static_cast<long>(dayOfYears + dayOfMonths - DAYS_SHIFTED);
}

/// Days from 1970-01-01 to a date whose month and day may be any: what a year or a month cannot
/// hold goes into the next ones.
/// Takes  year: the full year; month: from 1; day: from 1; each within 2^33 of 0
constexpr long daysToDate(long year, long month, long day) noexcept {
    bool const carries = month < 1 || month > 12;
    long const years = carries ? floorDivide(month - 1, 12) : 0;
    return daysToMonth(year + years, static_cast<int>(month - 12 * years)) + day - 1;
}

/// The date of a day counted from 1970-01-01.
/// Takes  days: within 1.1e14 of 0, which every 64-bit second is
constexpr CivilDate dateOfDay(long days) noexcept {
    unsigned long const shifted = 4 * (static_cast<unsigned long>(days) + DAYS_SHIFTED) + 3;
    unsigned long const century = shifted / DAYS_PER_ERA;
    unsigned long const dayOfCentury = shifted % DAYS_PER_ERA / 4;           // [0, 36524]
    unsigned long const product = 2939745 * (4 * dayOfCentury + 3);          // < 2^39
    unsigned long const yearOfCentury = product >> 32;                       // [0, 99]
    unsigned const marchDay = static_cast<unsigned>(product) / 2939745 / 4;  // [0, 365]
    unsigned const month = 2141 * marchDay + 197913;  // month in the high half
    bool const nextYear = marchDay >= 306;            // January and February

    unsigned long const year = 100 * century + yearOfCentury + (nextYear ? 1 : 0);
    unsigned const marchFirst = 59 + (isLeapYear(year) ? 1 : 0);
    return {static_cast<long>(year - YEARS_SHIFTED),
            static_cast<int>((month >> 16) - (nextYear ? 12 : 0)),
            static_cast<int>((month & 0xFFFF) / 2141 + 1),
            static_cast<int>(nextYear ? marchDay - 306 : marchDay + marchFirst)};
}

static_assert(daysToMonth(1970, 1) == 0 && daysToMonth(2000, 3) == 11017);
static_assert(dateOfDay(0).dayOfYear == 0 && dateOfDay(11016).dayOfYear == 59);

/// A second broken down in UTC.
struct BrokenDownTime {
    int year;    // the full year
    int month;   // 1..12
    int day;     // 1..31
    int hour;    // 0..23
    int minute;  // 0..59
    int second;  // 0..59
};

/// What `gmtime_r` gives for a second, without its process-wide lock and with no leap second under
/// a zone that counts them. Its record holds years since 1900 in an int: where these do not fit,
/// the record is all zero (the year 1900, month 1, day 0); where they fit and the full year does
/// not, the year wraps. KEPT(year-wraps-at-32-bits)
constexpr BrokenDownTime breakDown(long seconds) noexcept {
    // Counted from before all 64-bit seconds, in natural numbers; the last day of all wraps to the
    // first, which has no year that fits either.
    constexpr unsigned long SECONDS = SECONDS_PER_DAY;
    constexpr unsigned long DAYS_BEFORE = (1UL << 63) / SECONDS + 1;
    unsigned long const moved = static_cast<unsigned long>(seconds) + DAYS_BEFORE * SECONDS;
    long const days = static_cast<long>(moved / SECONDS - DAYS_BEFORE);
    auto const secondOfDay = static_cast<unsigned>(moved % SECONDS);  // [0, 86399]
    unsigned const minuteOfDay = secondOfDay / 60;                    // [0, 1439]
    CivilDate const date = dateOfDay(days);
    long const sinceNineteenHundred = date.year - 1900;
    if (sinceNineteenHundred < INT_MIN || sinceNineteenHundred > INT_MAX) {
        return {1900, 1, 0, 0, 0, 0};
    }
    return {static_cast<int>(date.year),
            date.month,
            date.day,
            static_cast<int>(minuteOfDay / 60),
            static_cast<int>(minuteOfDay % 60),
            static_cast<int>(secondOfDay % 60)};
}

}  // namespace com::halvorin::internal
