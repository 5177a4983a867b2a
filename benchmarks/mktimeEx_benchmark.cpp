#include <chrono>
#include <climits>
#include <ctime>
#include <tuple>

#include <utillibrary/utilities/mktimeEx.h>

#include "support/operation.h"
#include "support/pool.h"

#ifdef UTILLIBRARY_PEER_ABSL
#include <absl/time/civil_time.h>
#include <absl/time/time.h>
#endif
#ifdef UTILLIBRARY_PEER_BOOST
#include <boost/date_time/posix_time/posix_time.hpp>
#endif
#ifdef UTILLIBRARY_PEER_DATE
#include <date/date.h>
#endif
#ifdef UTILLIBRARY_PEER_GLIB
#include <glib.h>
#endif
#ifdef UTILLIBRARY_PEER_POCO
#include <Poco/DateTime.h>
#include <Poco/Timestamp.h>
#endif
#ifdef UTILLIBRARY_PEER_QT
#include <QDateTime>
#endif

// Calendar fields to seconds. The job is more than the seconds: the day of the week and of the year
// are filled in as well, and fields that are out of their ranges are carried.
namespace {

using namespace benchmarks;
using com::halvorin::utilities::mktimeEx;

constexpr char const* ONLY_SECONDS = "no day of the week, no day of the year";

struct Result {
    long seconds;
    int dayOfWeek;  // 0 is Sunday
    int dayOfYear;  // from 0

    bool operator==(Result const&) const = default;
};

// A record whose fields were carried into their ranges.
struct Carried {
    long seconds;
    std::tm fields;

    auto all() const {
        return std::tuple(seconds, fields.tm_year, fields.tm_mon, fields.tm_mday, fields.tm_hour,
                          fields.tm_min, fields.tm_sec, fields.tm_wday, fields.tm_yday);
    }
    bool operator==(Carried const& other) const { return all() == other.all(); }
};

struct Date {
    long year;
    int month;
    int day;

    bool operator==(Date const&) const = default;
};

Date dateOf(std::tm const& t) { return {t.tm_year + 1900L, t.tm_mon + 1, t.tm_mday}; }

// ---- the pools

std::tm ordinary(Random& random) {
    std::tm fields{};
    fields.tm_year = static_cast<int>(between(random, 70, 137));
    fields.tm_mon = static_cast<int>(between(random, 0, 11));
    std::chrono::year const year(fields.tm_year + 1900);
    std::chrono::month const month(static_cast<unsigned>(fields.tm_mon) + 1);
    unsigned const days = static_cast<unsigned>((year / month / std::chrono::last).day());
    fields.tm_mday = static_cast<int>(between(random, 1, days));
    fields.tm_hour = static_cast<int>(between(random, 0, 23));
    fields.tm_min = static_cast<int>(between(random, 0, 59));
    fields.tm_sec = static_cast<int>(between(random, 0, 59));
    return fields;
}

std::tm ofDay(long day) {
    std::tm fields{};
    fields.tm_year = 70;
    fields.tm_mday = static_cast<int>(day);
    return fields;
}

// Each field somewhat outside its range; the time is between 1970 and 2038.
std::tm outOfRange(Random& random) {
    std::tm fields = ordinary(random);
    fields.tm_year = static_cast<int>(between(random, 80, 130));
    fields.tm_mon = static_cast<int>(between(random, -40, 40));
    fields.tm_mday = static_cast<int>(between(random, -400, 400));
    fields.tm_hour = static_cast<int>(between(random, -200, 200));
    fields.tm_min = static_cast<int>(between(random, -500, 500));
    fields.tm_sec = static_cast<int>(between(random, -5000, 5000));
    return fields;
}

// Any int in each field, but a year that has room for what is carried into it.
std::tm anything(Random& random) {
    constexpr int MOST_YEARS = INT_MAX - 200'000'000;
    auto const any = [&random](int most) { return static_cast<int>(between(random, -most, most)); };
    std::tm fields{};
    fields.tm_year = any(MOST_YEARS);
    fields.tm_mon = any(INT_MAX);
    fields.tm_mday = any(INT_MAX);
    fields.tm_hour = any(INT_MAX);
    fields.tm_min = any(INT_MAX);
    fields.tm_sec = any(INT_MAX);
    return fields;
}

// ---- ours, and libc's

Result byLibc(std::tm fields) {
    long const seconds = timegm(&fields);
    return {seconds, fields.tm_wday, fields.tm_yday};
}

Result byUs(std::tm fields) {
    long const seconds = mktimeEx(&fields, 0);
    return {seconds, fields.tm_wday, fields.tm_yday};
}

Carried carriedByLibc(std::tm fields) {
    long const seconds = timegm(&fields);
    return {seconds, fields};
}

Carried carriedByUs(std::tm fields) {
    long const seconds = mktimeEx(&fields, 0);
    return {seconds, fields};
}

// The rule applied literally, one month and one year after the other.
Carried carriedByMonths(std::tm fields) {
    constexpr int LENGTHS[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    auto const leap = [](int year) {
        return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0) ? 1 : 0;
    };
    int day = fields.tm_mday - 1;
    int month = fields.tm_mon;
    int year = fields.tm_year + 1900;
    auto const length = [&] { return LENGTHS[month] + (month == 1 ? leap(year) : 0); };
    while (day >= length()) {
        day -= length();
        if (++month == 12) {
            month = 0;
            ++year;
        }
    }
    int dayOfYear = day;
    for (int m = 0; m < month; ++m)
        dayOfYear += LENGTHS[m] + (m == 1 ? leap(year) : 0);
    long days = dayOfYear;
    for (int y = 1970; y < year; ++y)
        days += 365 + leap(y);
    fields.tm_year = year - 1900;
    fields.tm_mon = month;
    fields.tm_mday = day + 1;
    fields.tm_wday = static_cast<int>((days + 4) % 7);
    fields.tm_yday = dayOfYear;
    return {days * 86400 + fields.tm_hour * 3600 + fields.tm_min * 60 + fields.tm_sec, fields};
}

// ---- what gives the same fields

template <typename Calendar>
long chronoDays(std::tm const& fields) {
    auto const date =
        typename Calendar::Date(typename Calendar::Year(fields.tm_year + 1900),
                                typename Calendar::Month(static_cast<unsigned>(fields.tm_mon + 1)),
                                typename Calendar::Day(static_cast<unsigned>(fields.tm_mday)));
    return typename Calendar::Days(date).time_since_epoch().count();
}

template <typename Calendar>
long chronoSeconds(std::tm const& fields) {
    return chronoDays<Calendar>(fields) * 86400 + fields.tm_hour * 3600L + fields.tm_min * 60L +
           fields.tm_sec;
}

template <typename Calendar>
Result chronoFields(std::tm const& fields) {
    using Days = typename Calendar::Days;
    long const days = chronoDays<Calendar>(fields);
    std::tm first = fields;
    first.tm_mon = 0;
    first.tm_mday = 1;
    typename Calendar::Weekday const weekday{Days(std::chrono::days(days))};
    return {days * 86400 + fields.tm_hour * 3600L + fields.tm_min * 60L + fields.tm_sec,
            static_cast<int>(weekday.c_encoding()),
            static_cast<int>(days - chronoDays<Calendar>(first))};
}

// Fields that may be out of their ranges: the months are carried into the year, and all other
// fields are added to the first day of the month. The date is then read from the sum.
template <typename Calendar>
Carried carriedFields(std::tm const& fields) {
    using Days = typename Calendar::Days;
    auto const month = typename Calendar::YearMonth(typename Calendar::Year(fields.tm_year + 1900),
                                                    typename Calendar::Month(1)) +
                       typename Calendar::Months(fields.tm_mon);
    auto const time = Days(month / 1) + std::chrono::days(fields.tm_mday - 1L) +
                      std::chrono::hours(fields.tm_hour) + std::chrono::minutes(fields.tm_min) +
                      std::chrono::seconds(fields.tm_sec);
    auto const day = std::chrono::floor<std::chrono::days>(time);
    std::chrono::hh_mm_ss const clock(time - day);
    typename Calendar::Date const date{Days(day)};
    typename Calendar::Date const first(date.year(), typename Calendar::Month(1),
                                        typename Calendar::Day(1));
    std::tm carried{};
    carried.tm_year = static_cast<int>(date.year()) - 1900;
    carried.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
    carried.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
    carried.tm_hour = static_cast<int>(clock.hours().count());
    carried.tm_min = static_cast<int>(clock.minutes().count());
    carried.tm_sec = static_cast<int>(clock.seconds().count());
    carried.tm_wday = static_cast<int>(typename Calendar::Weekday(Days(day)).c_encoding());
    carried.tm_yday = static_cast<int>((day - Days(first)).count());
    return {time.time_since_epoch().count(), carried};
}

struct StandardCalendar {
    using Date = std::chrono::year_month_day;
    using Year = std::chrono::year;
    using Month = std::chrono::month;
    using Day = std::chrono::day;
    using Days = std::chrono::sys_days;
    using Weekday = std::chrono::weekday;
    using YearMonth = std::chrono::year_month;
    using Months = std::chrono::months;
};

#ifdef UTILLIBRARY_PEER_DATE
struct DateCalendar {
    using Date = date::year_month_day;
    using Year = date::year;
    using Month = date::month;
    using Day = date::day;
    using Days = date::sys_days;
    using Weekday = date::weekday;
    using YearMonth = date::year_month;
    using Months = date::months;
};
#endif

void addPeers(Operation<std::tm, Result> const& operation) {
    operation.peer("std::chrono", chronoFields<StandardCalendar>);
    operation.otherJob("std::chrono, seconds", ONLY_SECONDS, chronoSeconds<StandardCalendar>);
#ifdef UTILLIBRARY_PEER_BOOST
    operation.peer("Boost", [](std::tm const& t) {
        boost::gregorian::date const date(static_cast<unsigned short>(t.tm_year + 1900),
                                          static_cast<unsigned short>(t.tm_mon + 1),
                                          static_cast<unsigned short>(t.tm_mday));
        boost::posix_time::ptime const time(
            date, boost::posix_time::time_duration(t.tm_hour, t.tm_min, t.tm_sec));
        return Result{boost::posix_time::to_time_t(time), date.day_of_week().as_number(),
                      date.day_of_year() - 1};
    });
#endif
#ifdef UTILLIBRARY_PEER_DATE
    operation.peer("date", chronoFields<DateCalendar>);
    operation.otherJob("date, seconds", ONLY_SECONDS, chronoSeconds<DateCalendar>);
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.peer("GLib", [](std::tm const& t) {
        GDateTime* const time = g_date_time_new_utc(t.tm_year + 1900, t.tm_mon + 1, t.tm_mday,
                                                    t.tm_hour, t.tm_min, t.tm_sec);
        Result const result{g_date_time_to_unix(time), g_date_time_get_day_of_week(time) % 7,
                            g_date_time_get_day_of_year(time) - 1};
        g_date_time_unref(time);
        return result;
    });
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer("Poco", [](std::tm const& t) {
        Poco::DateTime const time(t.tm_year + 1900, t.tm_mon + 1, t.tm_mday, t.tm_hour, t.tm_min,
                                  t.tm_sec);
        return Result{time.timestamp().epochTime(), time.dayOfWeek(), time.dayOfYear() - 1};
    });
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.peer("Qt", [](std::tm const& t) {
        QDate const date(t.tm_year + 1900, t.tm_mon + 1, t.tm_mday);
        QDateTime const time(date, QTime(t.tm_hour, t.tm_min, t.tm_sec), Qt::UTC);
        return Result{time.toSecsSinceEpoch(), date.dayOfWeek() % 7, date.dayOfYear() - 1};
    });
#endif
}

#ifdef UTILLIBRARY_PEER_ABSL
absl::CivilSecond civilSecond(std::tm const& t) {
    return absl::CivilSecond(t.tm_year + 1900L, t.tm_mon + 1L, t.tm_mday, t.tm_hour, t.tm_min,
                             t.tm_sec);
}
#endif

void addAbseil([[maybe_unused]] Operation<std::tm, Result> const& operation) {
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", [](std::tm const& t) {
        absl::CivilSecond const second = civilSecond(t);
        absl::CivilDay const day(second);
        return Result{absl::ToUnixSeconds(absl::FromCivil(second, absl::UTCTimeZone())),
                      (static_cast<int>(absl::GetWeekday(day)) + 1) % 7, absl::GetYearDay(day) - 1};
    });
#endif
}

// The libraries that carry fields which are out of their ranges.
void addCarryingPeers(Operation<std::tm, Carried> const& operation) {
    operation.peer("std::chrono", carriedFields<StandardCalendar>);
#ifdef UTILLIBRARY_PEER_DATE
    operation.peer("date", carriedFields<DateCalendar>);
#endif
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", [](std::tm const& t) {
        absl::CivilSecond const second = civilSecond(t);
        absl::CivilDay const day(second);
        std::tm carried{};
        carried.tm_year = static_cast<int>(second.year() - 1900);
        carried.tm_mon = second.month() - 1;
        carried.tm_mday = second.day();
        carried.tm_hour = second.hour();
        carried.tm_min = second.minute();
        carried.tm_sec = second.second();
        carried.tm_wday = (static_cast<int>(absl::GetWeekday(day)) + 1) % 7;
        carried.tm_yday = absl::GetYearDay(day) - 1;
        return Carried{absl::ToUnixSeconds(absl::FromCivil(second, absl::UTCTimeZone())), carried};
    });
#endif
}

}  // namespace

void benchmarks::addRows() {
    Operation const dates("calendar to seconds", pool(ordinary), byLibc);
    dates.plain("timegm", byLibc);
    dates.ours(byUs);
    addPeers(dates);
    addAbseil(dates);

    Operation const carried("calendar to seconds, fields out of range", pool(outOfRange),
                            carriedByLibc);
    carried.plain("timegm", carriedByLibc);
    carried.ours(carriedByUs);
    addCarryingPeers(carried);

    Operation const days(
        "calendar to seconds, day 20000 of a month",
        pool([](Random& random) { return ofDay(between(random, 19'000, 21'000)); }), carriedByLibc);
    days.plain("timegm", carriedByLibc);
    days.plain("one month at a time", carriedByMonths);
    days.ours(carriedByUs);
    addCarryingPeers(days);

    // Most times are outside the range of the seconds, which are then -1, but the date is carried.
    // std::chrono and date have no such years: theirs end at 32767.
    Operation const wide("calendar to seconds, any fields", pool(anything), [](std::tm fields) {
        timegm(&fields);
        return dateOf(fields);
    });
    wide.plain("timegm", [](std::tm fields) {
        timegm(&fields);
        return dateOf(fields);
    });
    wide.ours([](std::tm fields) {
        mktimeEx(&fields, 0);
        return dateOf(fields);
    });
#ifdef UTILLIBRARY_PEER_ABSL
    wide.peer("Abseil", [](std::tm const& t) {
        absl::CivilSecond const second = civilSecond(t);
        benchmark::DoNotOptimize(absl::FromCivil(second, absl::UTCTimeZone()));
        return Date{second.year(), second.month(), second.day()};
    });
#endif
}
