#pragma once

#include <ctime>

#include <utillibrary/export.h>

// A name after "Kept" is a deliberate surprise; share/doc/utillibrary/kept.md explains each.

// Calendar fields in UTC as seconds since 1970. No state, no lock: any thread may call it.
//     std::tm record{};
//     record.tm_year = 124;
//     record.tm_mon = 2;
//     record.tm_mday = 0;
//     mktimeEx(&record, 0)             // 1709164800
//     record.tm_mon                    // 1
//     record.tm_mday                   // 29
namespace com::halvorin::utilities {

/// Converts a calendar record in UTC to seconds since 1970-01-01T00:00:00 UTC, and normalises it.
/// Takes    record: not null. Seconds, minutes, hours, day of the month (from 1), month (from 0)
///          and years since 1900 may each be any number: what does not fit a field is carried into
///          the next larger one. adjustment: seconds that are added to the result.
/// Gives    the seconds. In `record`: the six fields in their ranges, the day of the week (0 is
///          Sunday) and the day of the year (from 0).
/// Range    0 to 2147483647 (2038-01-19T03:14:07), before the adjustment and after it. A year that
///          does not fit 32 bits wraps when it is stored.
/// Fails    with -1 outside that range. The six fields are normalised even then. Before 1970 the
///          day of the week and the day of the year are unchanged.
/// Cost     the same for every record: no loop runs over months or years.
/// Like     timegm(3), except: (1) the result ends in 2038, and is -1 before 1970; (2) the
///          adjustment; (3) tm_isdst, tm_gmtoff and tm_zone are neither read nor written; (4)
///          before 1970 tm_wday and tm_yday are unchanged; (5) no leap seconds are counted,
///          whatever TZ says; (6) errno is not set.
/// Source   POSIX, seconds since the Epoch; the Gregorian calendar, also before its introduction
/// Example  std::tm record{};
///          record.tm_year = 138;
///          record.tm_mday = 19;
///          record.tm_hour = 3;
///          record.tm_min = 14;
///          record.tm_sec = 7;
///          mktimeEx(&record, 0)        // 2147483647
///          mktimeEx(&record, 1)        // -1
///          mktimeEx(&record, -3600)    // 2147480047
/// Kept     calendar-ends-in-2038, calendar-normalises-on-failure, calendar-weekday-from-1970
UTILLIBRARY_EXPORT long mktimeEx(std::tm* record, int adjustment) noexcept;

}  // namespace com::halvorin::utilities
