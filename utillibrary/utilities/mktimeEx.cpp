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

// The days since 1970-01-01, which was a Thursday.
constexpr int dayOfWeek(long days) noexcept { return static_cast<int>((days + 4) % 7); }

// The rule itself, for fields of any size.
long secondsOfAny(std::tm* record, int adjustment) noexcept {
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

    record->tm_yday = dayOfYear(date);
    record->tm_wday = dayOfWeek(days);
    long const secondOfDay = hours.rest * 3600L + minutes.rest * 60L + seconds.rest;
    return adjustedSeconds(days * SECONDS_PER_DAY + secondOfDay, adjustment);
}

// Owns the years 1970 to 2037 and fields that lie in their ranges, with a day that every month has.
// Nothing is carried, every fourth year is a leap year, and the days fit 32 bits.
bool isOrdinary(std::tm const& record) noexcept {
    auto const isOneOf = [](int value, unsigned first, unsigned count) {
        return static_cast<unsigned>(value) - first < count;
    };
    return isOneOf(record.tm_sec, 0, 60) && isOneOf(record.tm_min, 0, 60) &&
           isOneOf(record.tm_hour, 0, 24) && isOneOf(record.tm_mday, 1, 28) &&
           isOneOf(record.tm_mon, 0, 12) && isOneOf(record.tm_year, 70, 68);
}

long secondsOfOrdinary(std::tm* record, int adjustment) noexcept {
    auto const years = static_cast<unsigned>(record->tm_year) - 70;  // [0, 67]
    auto const month = static_cast<unsigned>(record->tm_mon);        // [0, 11]
    unsigned const leapDay = years % 4 == 2 ? 1 : 0;
    // As if February had thirty days: the months' lengths follow one straight line then.
    unsigned const straight = (367 * month + 5) / 12 + static_cast<unsigned>(record->tm_mday) - 1;
    unsigned const dayOfYear = month < 2 ? straight : straight + leapDay - 2;
    unsigned const days = 365 * years + (years + 1) / 4 + dayOfYear;

    record->tm_yday = static_cast<int>(dayOfYear);
    record->tm_wday = dayOfWeek(days);
    int const secondOfDay = record->tm_hour * 3600 + record->tm_min * 60 + record->tm_sec;
    return adjustedSeconds(days * SECONDS_PER_DAY + secondOfDay, adjustment);
}

}  // namespace

long mktimeEx(std::tm* record, int adjustment) noexcept {
    return isOrdinary(*record) ? secondsOfOrdinary(record, adjustment)
                               : secondsOfAny(record, adjustment);
}

}  // namespace com::halvorin::utilities
