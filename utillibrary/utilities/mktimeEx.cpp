#include "utillibrary/utilities/mktimeEx.h"

#include <array>
#include <cstddef>
#include <cstring>

#include "utillibrary/internal/calendar.h"
#include "utillibrary/internal/wrapping.h"
#include "utillibrary/utilities/mktimeEx_internal.h"
#include <utillibrary/export.h>

namespace com::halvorin::utilities {

namespace {

using namespace com::halvorin::internal;

// A field brought into its range, and what is carried into the next larger one.
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

// Writes both fields with one store. A caller that copies the record reads them with one load,
// which would wait for two stores.
void writeDays(std::tm* record, Days const& days) noexcept {
    void* const start = record;
    std::memcpy(static_cast<char*>(start) + offsetof(std::tm, tm_wday), &days, sizeof days);
}

// Takes    days: since 1970-01-01, which was a Thursday
constexpr int dayOfWeek(long days) noexcept { return static_cast<int>((days + 4) % 7); }

bool isOrdinary(std::tm const& record) noexcept {
    auto const isOneOf = [](int value, unsigned first, unsigned count) UTILLIBRARY_WRAPS {
        return static_cast<unsigned>(value) - first < count;
    };
    return isOneOf(record.tm_sec, 0, 60) && isOneOf(record.tm_min, 0, 60) &&
           isOneOf(record.tm_hour, 0, 24) && isOneOf(record.tm_mday, 1, 28) &&
           isOneOf(record.tm_mon, 0, 12) && isOneOf(record.tm_year, 70, 68);
}

// The quarter days of a year before each month; a year has 1461. From March on one is added. In
// 1972 and each fourth year after it, three quarter days are left over from the years before.
// Together with the added one they make a day: 29 February.
constexpr std::array<unsigned, 12> QUARTERS_BEFORE = {
    4 * 0,       4 * 31,      4 * 59 + 1,  4 * 90 + 1,  4 * 120 + 1, 4 * 151 + 1,
    4 * 181 + 1, 4 * 212 + 1, 4 * 243 + 1, 4 * 273 + 1, 4 * 304 + 1, 4 * 334 + 1};

// dayOfWeek for fewer than 2^16 days. `gone` is the part of the week that is over, in units of
// 2^-32.
UTILLIBRARY_WRAPS constexpr int dayOfOrdinaryWeek(unsigned days) noexcept {
    constexpr unsigned SEVENTH = 613566757;  // 2^32 / 7, rounded up
    unsigned const gone = SEVENTH * (days + 4);
    return static_cast<int>(7UL * gone >> 32);
}

}  // namespace

// Not inlined: it needs many registers, which the fast path would have to save as well.
[[gnu::noinline]] long secondsOfAnyRecord(std::tm* record, int adjustment) noexcept {
    Carried const seconds = carryOver(record->tm_sec, 60);
    Carried const minutes = carryOver(record->tm_min + seconds.carry, 60);
    Carried const hours = carryOver(record->tm_hour + minutes.carry, 24);
    long const days =
        daysToDate(1900L + record->tm_year, 1L + record->tm_mon, record->tm_mday + hours.carry);
    CivilDate const date = dateOfDay(days);

    // KEPT(calendar-normalises-on-failure): written before the range is checked.
    record->tm_sec = seconds.rest;
    record->tm_min = minutes.rest;
    record->tm_hour = hours.rest;
    record->tm_mday = date.day;
    record->tm_mon = date.month - 1;
    record->tm_year = static_cast<int>(date.year - 1900);
    // KEPT(calendar-weekday-from-1970): before 1970 the two days below stay unwritten.
    if (date.year < 1970) return -1;

    writeDays(record, {dayOfWeek(days), dayOfYear(date)});
    return secondsOf(days, {hours.rest, minutes.rest, seconds.rest}, adjustment);
}

std::optional<long> secondsOfOrdinaryRecord(std::tm* record, int adjustment) noexcept {
    if (!isOrdinary(*record)) return std::nullopt;
    unsigned const newYear = 1461 * (asUnsigned(record->tm_year) - 70) + 1;  // in quarter days
    unsigned const month = newYear + QUARTERS_BEFORE[asUnsigned(record->tm_mon)];
    unsigned const days = month / 4 + asUnsigned(record->tm_mday) - 1;
    writeDays(record, {dayOfOrdinaryWeek(days), static_cast<int>(days - newYear / 4)});

    unsigned const hours = 24 * days + asUnsigned(record->tm_hour);
    unsigned const minutes = 60 * hours + asUnsigned(record->tm_min);
    // These years are in the range, so only the adjustment can leave it.
    long const seconds = 60 * minutes + asUnsigned(record->tm_sec);
    return inCalendarRange(seconds + adjustment) ? seconds + adjustment : -1;
}

long mktimeEx(std::tm* record, int adjustment) noexcept {
    if (auto const seconds = secondsOfOrdinaryRecord(record, adjustment)) return *seconds;
    return secondsOfAnyRecord(record, adjustment);
}

}  // namespace com::halvorin::utilities
