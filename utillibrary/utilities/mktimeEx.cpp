#include "utillibrary/utilities/mktimeEx.h"

#include "utillibrary/utilities/calendar_internal.h"

namespace com::halvorin::utilities {

namespace {

using namespace com::halvorin::internal;

// What a unit holds too much of, or too little, goes into the next larger one.
struct Carried {
    long carry;
    int rest;
};

constexpr Carried carryOver(long value, long unit) noexcept {
    long const carry = floorDivide(value, unit);
    return {carry, static_cast<int>(value - carry * unit)};
}

}  // namespace

long mktimeEx(std::tm* record, int adjustment) noexcept {
    Carried const seconds = carryOver(record->tm_sec, 60);
    Carried const minutes = carryOver(record->tm_min + seconds.carry, 60);
    Carried const hours = carryOver(record->tm_hour + minutes.carry, 24);
    long const days =
        daysToDate(1900L + record->tm_year, 1L + record->tm_mon, record->tm_mday + hours.carry);
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
    long const secondOfDay = hours.rest * 3600L + minutes.rest * 60L + seconds.rest;
    return adjustedSeconds(days * SECONDS_PER_DAY + secondOfDay, adjustment);
}

}  // namespace com::halvorin::utilities
