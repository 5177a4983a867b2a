#pragma once

#include <ctime>

#include <utillibrary/export.h>

namespace com::halvorin::utilities {

/// The seconds since 1970-01-01T00:00:00 UTC of a calendar record read as UTC; `record` is
/// normalised on the way. No time zone is consulted and no leap second counted.
/// Takes    record: seconds, minutes, hours, day of the month (from 1), month (from 0) and years
///          since 1900, each of any size; it must not be null. adjustment: seconds added to the
///          result.
/// Gives    the seconds; in `record` the six fields in their ranges, the day of the week (0 is
///          Sunday) and the day of the year (from 0). The daylight-saving flag and the zone fields
///          are neither read nor written.
/// Range    0 to 2147483647 (2038-01-19T03:14:07). KEPT(calendar-ends-in-2038)
/// Fails    with -1 outside that range, before or after the adjustment; the six fields are
///          normalised even then. KEPT(calendar-normalises-on-failure) Before 1970 the day of the
///          week and of the year are left as they were. KEPT(calendar-weekday-from-1970)
/// Cost     the same for every record: nothing is stepped through month by month.
/// Source   the Gregorian calendar, carried back before its introduction.
/// Example  day 0 of March 2024 is 29 February 2024
UTILLIBRARY_EXPORT long mktimeEx(std::tm* record, int adjustment) noexcept;

}  // namespace com::halvorin::utilities
