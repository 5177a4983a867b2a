#include "utillibrary/utilities/mktimeEx.h"

#include <climits>

#include "utillibrary/utilities/calendar_internal.h"

namespace com::halvorin::utilities {

namespace {

using namespace com::halvorin::internal;

constexpr long LAST_SECOND = INT_MAX;

// What a unit holds too much of, or too little, goes into the next larger one.
struct Carried {
    long carry;
    int rest;
};

constexpr Carried carryOver(long value, long unit) noexcept {
    long const carry = floorDivide(value, unit);
    return {carry, static_cast<int>(value - carry * unit)};
}

// KEPT(calendar-ends-in-2038): the type could hold more, hosts rely on the end.
constexpr bool inRange(long seconds) noexcept { return seconds >= 0 && seconds <= LAST_SECOND; }

}  // namespace

long mktimeEx(std::tm* record, int adjustment) noexcept {
    Carried const seconds = carryOver(record->tm_sec, 60);
    Carried const minutes = carryOver(record->tm_min + seconds.carry, 60);
    Carried const hours = carryOver(record->tm_hour + minutes.carry, 24);
    Carried const months = carryOver(record->tm_mon, 12);
    long const days = daysToMonth(1900L + record->tm_year + months.carry, months.rest + 1) +
                      (record->tm_mday - 1L) + hours.carry;
    CivilDate const date = dateOfDay(days);

    // KEPT(calendar-normalises-on-failure): written before anything can fail.
    record->tm_sec = seconds.rest;
    record->tm_min = minutes.rest;
    record->tm_hour = hours.rest;
    record->tm_mday = date.day;
    record->tm_mon = date.month - 1;
    record->tm_year = static_cast<int>(date.year - 1900);
    // KEPT(calendar-weekday-from-1970): not moved down; the two fields below stay unwritten.
    if (date.year < 1970) return -1;

    record->tm_yday = date.dayOfYear;
    record->tm_wday = static_cast<int>((days + 4) % 7);  // 1970-01-01 was a Thursday
    long const result =
        days * SECONDS_PER_DAY + hours.rest * 3600L + minutes.rest * 60L + seconds.rest;
    return inRange(result) && inRange(result + adjustment) ? result + adjustment : -1;
}

}  // namespace com::halvorin::utilities
