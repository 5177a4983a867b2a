#include "utillibrary/utilities/mktimeEx.h"

#include <array>
#include <cstddef>
#include <cstring>

#include "utillibrary/internal/calendar.h"

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

struct Days {
    int ofWeek;
    int ofYear;
};

static_assert(offsetof(std::tm, tm_yday) - offsetof(std::tm, tm_wday) == offsetof(Days, ofYear));

// One store for the two neighbours: whoever reads them together would wait for two to meet.
void writeDays(std::tm* record, Days const& days) noexcept {
    void* const start = record;
    std::memcpy(static_cast<char*>(start) + offsetof(std::tm, tm_wday), &days, sizeof days);
}

// The days since 1970-01-01, which was a Thursday.
constexpr int dayOfWeek(long days) noexcept { return static_cast<int>((days + 4) % 7); }

// The rule itself, for fields of any size. Kept out of line, since it needs more registers than
// ordinary records should pay for.
[[gnu::noinline]] long secondsOfAny(std::tm* record, int adjustment) noexcept {
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

    writeDays(record, {dayOfWeek(days), dayOfYear(date)});
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

// The quarter days of a year before each month; the year has 1461. From March on there is one more:
// with the three that 1972 and each fourth year after it have over, it makes a day, 29 February.
constexpr std::array<unsigned, 12> QUARTERS_BEFORE = {
    4 * 0,       4 * 31,      4 * 59 + 1,  4 * 90 + 1,  4 * 120 + 1, 4 * 151 + 1,
    4 * 181 + 1, 4 * 212 + 1, 4 * 243 + 1, 4 * 273 + 1, 4 * 304 + 1, 4 * 334 + 1};

// The same as for any days, where these are few: what has gone of a week is a fraction in 32 bits.
constexpr int dayOfOrdinaryWeek(unsigned days) noexcept {
    constexpr unsigned SEVENTH = 613566757;  // 2^32 / 7, rounded up
    unsigned const gone = SEVENTH * (days + 4);
    return static_cast<int>(7UL * gone >> 32);
}

long secondsOfOrdinary(std::tm* record, int adjustment) noexcept {
    auto const natural = [](int field) { return static_cast<unsigned>(field); };
    unsigned const newYear = 1461 * (natural(record->tm_year) - 70) + 1;  // in quarter days
    unsigned const month = newYear + QUARTERS_BEFORE[natural(record->tm_mon)];
    unsigned const days = month / 4 + natural(record->tm_mday) - 1;
    writeDays(record, {dayOfOrdinaryWeek(days), static_cast<int>(days - newYear / 4)});

    unsigned const hours = 24 * days + natural(record->tm_hour);
    unsigned const minutes = 60 * hours + natural(record->tm_min);
    // These years end before the range does.
    long const seconds = 60 * minutes + natural(record->tm_sec);
    return inCalendarRange(seconds + adjustment) ? seconds + adjustment : -1;
}

}  // namespace

long mktimeEx(std::tm* record, int adjustment) noexcept {
    return isOrdinary(*record) ? secondsOfOrdinary(record, adjustment)
                               : secondsOfAny(record, adjustment);
}

}  // namespace com::halvorin::utilities
