#pragma once

#include <climits>

#include <utillibrary/export.h>

// The Gregorian calendar in UTC: days to dates, dates to days, and seconds to all six fields.
//
// Years begin in March here. So a leap day is the last day of its year, and one linear function
// gives the lengths of the months. Both directions use no table and no loop, and take the same time
// for every date. They are the algorithms of C. Neri and L. Schneider, "Euclidean affine functions
// and their application to calendar algorithms" (2022), in 64 bits. Seconds from 1970 to 2038 find
// their century in 32 bits.
namespace com::halvorin::internal {

inline constexpr int SECONDS_PER_MINUTE = 60;
inline constexpr int SECONDS_PER_HOUR = 3600;
inline constexpr long SECONDS_PER_DAY = 86400;

/// The quotient rounded down, for a positive divisor.
constexpr long floorDivide(long dividend, long divisor) noexcept {
    return dividend / divisor - (dividend % divisor < 0 ? 1 : 0);
}

// KEPT(calendar-ends-in-2038): the results end here, though their type has 64 bits.
constexpr bool inCalendarRange(long seconds) noexcept { return seconds >= 0 && seconds <= INT_MAX; }

struct ClockTime {
    int hour;    // 0..23
    int minute;  // 0..59
    int second;  // 0..59
};

/// The result of `mktimeEx` and of the parsers of time: seconds since 1970 plus an adjustment. -1
/// if the seconds are outside the range, before the adjustment or after it.
/// Takes    days: since 1970, within 2^45; clock: its fields may lie outside their ranges
constexpr long secondsOf(long days, ClockTime const& clock, long adjustment) noexcept {
    long const secondOfDay = long{clock.hour} * SECONDS_PER_HOUR +
                             long{clock.minute} * SECONDS_PER_MINUTE + clock.second;
    long const seconds = days * SECONDS_PER_DAY + secondOfDay;
    bool const inRange = inCalendarRange(seconds) && inCalendarRange(seconds + adjustment);
    return inRange ? seconds + adjustment : -1;
}

inline constexpr unsigned long DAYS_PER_ERA = 146097;  // 400 years
inline constexpr unsigned long YEARS_PER_ERA = 400;
// Shifts the origin back by 2.4e9 years, so that every day number is positive. The farthest date
// that six ints can express, with everything that is carried into its year, is 2.34e9 years away.
inline constexpr unsigned long ERAS_SHIFTED = 6'000'000;
// From the shifted origin, 1 March of the year 0 of that many eras before, to 1 January 1970.
inline constexpr unsigned long DAYS_SHIFTED = ERAS_SHIFTED * DAYS_PER_ERA + 719468;
inline constexpr unsigned long YEARS_SHIFTED = ERAS_SHIFTED * YEARS_PER_ERA;

/// Days from 1970-01-01 to the first of a month.
/// Takes    year: within 2.39e9 of 0; month: 1..12
UTILLIBRARY_WRAPS constexpr long daysToMonth(long year, int month) noexcept {
    bool const beforeMarch = month <= 2;
    auto const y = static_cast<unsigned long>(year) + YEARS_SHIFTED - (beforeMarch ? 1 : 0);
    auto const m = static_cast<unsigned long>(beforeMarch ? month + 12 : month);  // [3, 14]
    unsigned long const century = y / 100;
    unsigned long const dayOfYears = 1461 * y / 4 - century + century / 4;
    unsigned long const dayOfMonths = (979 * m - 2919) / 32;  // [0, 337]
    return static_cast<long>(dayOfYears + dayOfMonths - DAYS_SHIFTED);
}

/// Days from 1970-01-01 to a date whose month and day may be any number: months beyond a year and
/// days beyond a month are carried.
/// Takes    year: the full year; month: from 1; day: from 1; together within 2.39e9 years of 0
constexpr long daysToDate(long year, long month, long day) noexcept {
    bool const carries = month < 1 || month > 12;
    long const years = carries ? floorDivide(month - 1, 12) : 0;
    return daysToMonth(year + years, static_cast<int>(month - 12 * years)) + day - 1;
}

struct CivilDate {
    long year;
    int month;     // 1..12
    int day;       // 1..31
    int marchDay;  // 0..365, from 1 March
};

constexpr bool isLeapYear(long year) noexcept {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

/// 0..365, from 1 January
constexpr int dayOfYear(CivilDate const& date) noexcept {
    bool const beforeMarch = date.month <= 2;
    return beforeMarch ? date.marchDay - 306 : date.marchDay + 59 + (isLeapYear(date.year) ? 1 : 0);
}

/// A day of a century, which begins on 1 March of a year that 100 divides.
struct DayOfCentury {
    long firstYear;
    unsigned day;  // from 0
};

/// The century of a day counted from the shifted origin.
/// Takes    shiftedDay: below 2^62
UTILLIBRARY_WRAPS constexpr DayOfCentury centuryOf(unsigned long shiftedDay) noexcept {
    unsigned long const quarters = 4 * shiftedDay + 3;
    return {static_cast<long>(100 * (quarters / DAYS_PER_ERA) - YEARS_SHIFTED),
            static_cast<unsigned>(quarters % DAYS_PER_ERA / 4)};
}

/// The date of a day of a century. The century may be longer than a hundred years, as long as every
/// fourth year is leap.
/// Takes    place: its day below 2^22
constexpr CivilDate dateOf(DayOfCentury place) noexcept {
    unsigned long const years = 2939745UL * (4 * place.day + 3);           // in units of 2^-32
    unsigned const marchDay = static_cast<unsigned>(years) / 2939745 / 4;  // [0, 365]
    unsigned const months = 2141 * marchDay + 197913;                      // in units of 2^-16
    unsigned const month = months >> 16;         // [3, 14]; 13 and 14 are January and February
    unsigned const nextYear = (month + 3) / 16;  // 1 for these two
    return {place.firstYear + static_cast<long>(years >> 32) + nextYear,
            static_cast<int>(month - 12 * nextYear), static_cast<int>((months & 0xFFFF) / 2141 + 1),
            static_cast<int>(marchDay)};
}

/// The date of a day counted from 1970-01-01.
/// Takes    days: within 2.39e9 years of 0
UTILLIBRARY_WRAPS constexpr CivilDate dateOfDay(long days) noexcept {
    return dateOf(centuryOf(static_cast<unsigned long>(days) + DAYS_SHIFTED));
}

static_assert(daysToMonth(1970, 1) == 0 && daysToMonth(2000, 3) == 11017);
static_assert(dayOfYear(dateOfDay(0)) == 0 && dayOfYear(dateOfDay(11016)) == 59);

// The seconds that `gmtime_r` has a record for: the record has the years since 1900 in an int.
inline constexpr long FIRST_RECORDED = daysToMonth(1900L + INT_MIN, 1) * SECONDS_PER_DAY;
inline constexpr long END_OF_RECORDED = daysToMonth(1901L + INT_MAX, 1) * SECONDS_PER_DAY;

static_assert(-FIRST_RECORDED < static_cast<long>(DAYS_SHIFTED) * SECONDS_PER_DAY);

constexpr bool isRecorded(long seconds) noexcept {
    return inCalendarRange(seconds) || (seconds >= FIRST_RECORDED && seconds < END_OF_RECORDED);
}

struct SecondOfCentury {
    DayOfCentury day;
    unsigned secondOfDay;  // [0, 86399]
};

/// Takes    seconds: since 1970; `isRecorded` is true for them
UTILLIBRARY_WRAPS constexpr SecondOfCentury secondOfCentury(long seconds) noexcept {
    // The century of 1900 goes on until 2100 here, because 2000 was a leap year.
    if (inCalendarRange(seconds)) {
        constexpr unsigned SECONDS = SECONDS_PER_DAY;
        constexpr auto DAYS_BEFORE = static_cast<unsigned>(-daysToMonth(1900, 3));
        auto const narrow = static_cast<unsigned>(seconds);
        return {{1900, DAYS_BEFORE + narrow / SECONDS}, narrow % SECONDS};
    }
    constexpr unsigned long SECONDS = SECONDS_PER_DAY;
    unsigned long const shifted = static_cast<unsigned long>(seconds) + DAYS_SHIFTED * SECONDS;
    return {centuryOf(shifted / SECONDS), static_cast<unsigned>(shifted % SECONDS)};
}

/// Takes    secondOfDay: [0, 86399]
constexpr ClockTime clockOf(unsigned secondOfDay) noexcept {
    unsigned const minuteOfDay = secondOfDay / 60;
    return {static_cast<int>(minuteOfDay / 60), static_cast<int>(minuteOfDay % 60),
            static_cast<int>(secondOfDay % 60)};
}

/// A second broken down in UTC.
struct BrokenDownTime {
    int year;    // the full year
    int month;   // 1..12
    int day;     // 1..31
    int hour;    // 0..23
    int minute;  // 0..59
    int second;  // 0..59
};

/// The record of a second for which `gmtime_r` fails: all its fields are zero.
inline constexpr BrokenDownTime ALL_ZERO_RECORD = {1900, 1, 0, 0, 0, 0};

/// What `gmtime_r` gives for a second, without its process-wide lock. No leap seconds are counted,
/// whatever TZ says. Where the years since 1900 fit an int and the full year does not, the year
/// wraps. KEPT(year-wraps-at-32-bits)
constexpr BrokenDownTime breakDown(long seconds) noexcept {
    if (!isRecorded(seconds)) return ALL_ZERO_RECORD;
    SecondOfCentury const place = secondOfCentury(seconds);
    ClockTime const clock = clockOf(place.secondOfDay);
    CivilDate const date = dateOf(place.day);
    return {
        static_cast<int>(date.year), date.month, date.day, clock.hour, clock.minute, clock.second};
}

}  // namespace com::halvorin::internal
