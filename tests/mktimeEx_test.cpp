#include <climits>
#include <ctime>
#include <ostream>
#include <random>
#include <type_traits>

#include <gtest/gtest.h>

#include "utillibrary/utilities/mktimeEx_internal.h"
#include <utillibrary/utilities/mktimeEx.h>

#include "support/random.h"
#include "support/time_zone.h"

// Records of every kind, through the general path, the fast path and the public function. Long for
// its tables.

using com::halvorin::utilities::mktimeEx;
using com::halvorin::utilities::secondsOfAnyRecord;
using com::halvorin::utilities::secondsOfOrdinaryRecord;

namespace {

static_assert(std::is_same_v<decltype(&mktimeEx), long (*)(std::tm*, int) noexcept>);

// The six fields that are read and written: years since 1900, month from 0.
struct Fields {
    int year;
    int month;
    int day;
    int hour;
    int minute;
    int second;

    bool operator==(Fields const&) const = default;
};

// The two that are written from 1970 on: days from Sunday, and from 1 January.
struct Day {
    int ofWeek;
    int ofYear;

    bool operator==(Day const&) const = default;
};

constexpr Day UNWRITTEN = {77, 7777};

constexpr Fields LARGEST = {INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX};
constexpr Fields SMALLEST = {INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN};

std::ostream& operator<<(std::ostream& out, Fields const& f) {
    return out << '{' << f.year << ", " << f.month << ", " << f.day << ", " << f.hour << ", "
               << f.minute << ", " << f.second << '}';
}

std::ostream& operator<<(std::ostream& out, Day const& d) {
    return out << '{' << d.ofWeek << ", " << d.ofYear << '}';
}

constexpr int DAYLIGHT = 55;
constexpr long EAST = 5555;
constexpr char const* ZONE = "a zone";

std::tm recordOf(Fields const& fields) {
    std::tm record{};
    record.tm_year = fields.year;
    record.tm_mon = fields.month;
    record.tm_mday = fields.day;
    record.tm_hour = fields.hour;
    record.tm_min = fields.minute;
    record.tm_sec = fields.second;
    record.tm_wday = UNWRITTEN.ofWeek;
    record.tm_yday = UNWRITTEN.ofYear;
    record.tm_isdst = DAYLIGHT;
    record.tm_gmtoff = EAST;
    record.tm_zone = ZONE;
    return record;
}

Fields fieldsOf(std::tm const& record) {
    return {record.tm_year, record.tm_mon, record.tm_mday,
            record.tm_hour, record.tm_min, record.tm_sec};
}

Day dayOf(std::tm const& record) { return {record.tm_wday, record.tm_yday}; }

// ---- the result and its range

struct SecondsFact {
    char const* fact;
    Fields fields;
    int adjustment;
    long seconds;
};

SecondsFact const SECONDS_FACTS[] = {
    {"the epoch is second 0", {70, 0, 1, 0, 0, 0}, 0, 0},
    {"the second after the epoch is 1", {70, 0, 1, 0, 0, 1}, 0, 1},
    {"the second before the epoch gives -1", {69, 11, 31, 23, 59, 59}, 0, -1},
    {"a day has 86400 seconds", {70, 0, 2, 0, 0, 0}, 0, 86400},
    {"an hour has 3600 seconds", {70, 0, 1, 1, 0, 0}, 0, 3600},
    {"a minute has 60 seconds", {70, 0, 1, 0, 1, 0}, 0, 60},
    {"a present-day second", {124, 2, 5, 6, 8, 9}, 0, 1709618889},
    {"day 28 of the last whole year", {137, 11, 28, 23, 59, 59}, 0, 2145657599},
    {"day 29 of the last whole year", {137, 11, 29, 0, 0, 0}, 0, 2145657600},
    {"the last second of the last whole year", {137, 11, 31, 23, 59, 59}, 0, 2145916799},
    {"the first second of the next year", {138, 0, 1, 0, 0, 0}, 0, 2145916800},
    {"the last day begins", {138, 0, 19, 0, 0, 0}, 0, 2147472000},
    {"the last second but one of 31 bits", {138, 0, 19, 3, 14, 6}, 0, 2147483646},
    {"the last second of 31 bits", {138, 0, 19, 3, 14, 7}, 0, 2147483647},
    // KEPT(calendar-ends-in-2038)
    {"the second after 31 bits gives -1", {138, 0, 19, 3, 14, 8}, 0, -1},
    {"a minute after 31 bits gives -1", {138, 0, 19, 3, 15, 0}, 0, -1},
    {"a day after 31 bits gives -1", {138, 0, 20, 0, 0, 0}, 0, -1},
    {"2^32 seconds give -1", {206, 1, 7, 6, 28, 16}, 0, -1},

    // the adjustment is added to the result
    {"an adjustment is added", {124, 2, 5, 6, 8, 9}, 3600, 1709622489},
    {"a negative adjustment is added", {124, 2, 5, 6, 8, 9}, -16200, 1709602689},
    {"an adjustment leads down to second 1", {70, 0, 1, 0, 1, 0}, -59, 1},
    {"an adjustment leads down to second 0", {70, 0, 1, 0, 1, 0}, -60, 0},
    {"an adjustment below second 0 gives -1", {70, 0, 1, 0, 1, 0}, -61, -1},
    {"an adjustment to before the epoch gives -1", {70, 0, 1, 0, 0, 0}, -1, -1},
    {"an adjustment leads up to the last second but one", {138, 0, 19, 3, 13, 7}, 59, 2147483646},
    {"an adjustment leads up to the last second", {138, 0, 19, 3, 13, 7}, 60, 2147483647},
    {"an adjustment above the last second gives -1", {138, 0, 19, 3, 13, 7}, 61, -1},
    {"an adjustment of 1 from the last second gives -1", {138, 0, 19, 3, 14, 7}, 1, -1},
    {"the largest adjustment from the epoch is the last second",
     {70, 0, 1, 0, 0, 0},
     INT_MAX,
     2147483647},
    {"the largest adjustment from second 1 gives -1", {70, 0, 1, 0, 0, 1}, INT_MAX, -1},
    {"an adjustment leads from the last second to 0", {138, 0, 19, 3, 14, 7}, -INT_MAX, 0},
    {"an adjustment below 0 from the last second but one gives -1",
     {138, 0, 19, 3, 14, 6},
     -INT_MAX,
     -1},
    {"an adjustment far after the last gives -1", {137, 11, 28, 23, 59, 59}, INT_MAX, -1},
    {"an adjustment far before the first gives -1", {137, 11, 28, 23, 59, 59}, INT_MIN, -1},
    {"the smallest adjustment from the last second gives -1", {138, 0, 19, 3, 14, 7}, INT_MIN, -1},
    // the range is looked at before the adjustment as well
    {"an adjustment does not bring a time after the last into the range",
     {138, 0, 19, 3, 14, 8},
     -1,
     -1},
    {"an adjustment does not bring a time before the first into the range",
     {69, 11, 31, 23, 59, 59},
     1,
     -1},
};

TEST(MktimeEx, CountsTheSecondsOfARecord) {
    for (SecondsFact const& row : SECONDS_FACTS) {
        SCOPED_TRACE(row.fact);
        std::tm record = recordOf(row.fields);
        EXPECT_EQ(mktimeEx(&record, row.adjustment), row.seconds);
    }
}

// ---- what is written back

struct NormalisedFact {
    char const* fact;
    Fields fields;
    Fields normalised;
};

NormalisedFact const NORMALISED_FACTS[] = {
    {"a record in its ranges stays", {124, 2, 5, 6, 8, 9}, {124, 2, 5, 6, 8, 9}},

    // seconds
    {"second -61 borrows two minutes", {124, 2, 5, 6, 8, -61}, {124, 2, 5, 6, 6, 59}},
    {"second -60 borrows one minute", {124, 2, 5, 6, 8, -60}, {124, 2, 5, 6, 7, 0}},
    {"second -59 borrows one minute", {124, 2, 5, 6, 8, -59}, {124, 2, 5, 6, 7, 1}},
    {"second -1 borrows one minute", {124, 2, 5, 6, 8, -1}, {124, 2, 5, 6, 7, 59}},
    {"second 0 stays", {124, 2, 5, 6, 8, 0}, {124, 2, 5, 6, 8, 0}},
    {"second 59 stays", {124, 2, 5, 6, 8, 59}, {124, 2, 5, 6, 8, 59}},
    {"second 60 is the next minute", {124, 2, 5, 6, 8, 60}, {124, 2, 5, 6, 9, 0}},
    {"second 61 is second 1 of the next minute", {124, 2, 5, 6, 8, 61}, {124, 2, 5, 6, 9, 1}},
    {"second 120 carries two minutes", {124, 2, 5, 6, 8, 120}, {124, 2, 5, 6, 10, 0}},
    {"a carry through every field", {123, 11, 31, 23, 59, 60}, {124, 0, 1, 0, 0, 0}},
    {"a borrow through every field", {124, 0, 1, 0, 0, -1}, {123, 11, 31, 23, 59, 59}},

    // minutes
    {"minute -61 borrows two hours", {124, 2, 5, 6, -61, 9}, {124, 2, 5, 4, 59, 9}},
    {"minute -60 borrows one hour", {124, 2, 5, 6, -60, 9}, {124, 2, 5, 5, 0, 9}},
    {"minute -1 borrows one hour", {124, 2, 5, 6, -1, 9}, {124, 2, 5, 5, 59, 9}},
    {"minute 59 stays", {124, 2, 5, 6, 59, 9}, {124, 2, 5, 6, 59, 9}},
    {"minute 60 is the next hour", {124, 2, 5, 6, 60, 9}, {124, 2, 5, 7, 0, 9}},
    {"minute 61 is minute 1 of the next hour", {124, 2, 5, 6, 61, 9}, {124, 2, 5, 7, 1, 9}},

    // hours
    {"hour -25 borrows two days", {124, 2, 5, -25, 8, 9}, {124, 2, 3, 23, 8, 9}},
    {"hour -24 borrows one day", {124, 2, 5, -24, 8, 9}, {124, 2, 4, 0, 8, 9}},
    {"hour -1 borrows one day", {124, 2, 5, -1, 8, 9}, {124, 2, 4, 23, 8, 9}},
    {"hour 23 stays", {124, 2, 5, 23, 8, 9}, {124, 2, 5, 23, 8, 9}},
    {"hour 24 is the next day", {124, 2, 5, 24, 8, 9}, {124, 2, 6, 0, 8, 9}},
    {"hour 25 is hour 1 of the next day", {124, 2, 5, 25, 8, 9}, {124, 2, 6, 1, 8, 9}},
    {"hour 48 of day 0 is day 2", {70, 0, 0, 48, 0, 0}, {70, 0, 2, 0, 0, 0}},

    // days
    {"day -1 is two days before the first", {124, 2, -1, 0, 0, 0}, {124, 1, 28, 0, 0, 0}},
    {"day 0 of March 2024 is 29 February", {124, 2, 0, 0, 0, 0}, {124, 1, 29, 0, 0, 0}},
    {"day 0 of March 2023 is 28 February", {123, 2, 0, 0, 0, 0}, {123, 1, 28, 0, 0, 0}},
    {"day 0 of January is 31 December", {124, 0, 0, 0, 0, 0}, {123, 11, 31, 0, 0, 0}},
    {"28 February 2023 stays", {123, 1, 28, 0, 0, 0}, {123, 1, 28, 0, 0, 0}},
    {"29 February 2023 is 1 March", {123, 1, 29, 0, 0, 0}, {123, 2, 1, 0, 0, 0}},
    {"29 February 2024 stays", {124, 1, 29, 0, 0, 0}, {124, 1, 29, 0, 0, 0}},
    {"30 February 2024 is 1 March", {124, 1, 30, 0, 0, 0}, {124, 2, 1, 0, 0, 0}},
    {"30 April stays", {124, 3, 30, 0, 0, 0}, {124, 3, 30, 0, 0, 0}},
    {"31 April is 1 May", {124, 3, 31, 0, 0, 0}, {124, 4, 1, 0, 0, 0}},
    {"31 December stays", {123, 11, 31, 0, 0, 0}, {123, 11, 31, 0, 0, 0}},
    {"32 December is 1 January", {123, 11, 32, 0, 0, 0}, {124, 0, 1, 0, 0, 0}},
    {"day 365 of 2023 is its last", {123, 0, 365, 0, 0, 0}, {123, 11, 31, 0, 0, 0}},
    {"day 366 of 2023 is in 2024", {123, 0, 366, 0, 0, 0}, {124, 0, 1, 0, 0, 0}},
    {"day 366 of 2024 is its last", {124, 0, 366, 0, 0, 0}, {124, 11, 31, 0, 0, 0}},
    {"day 367 of 2024 is in 2025", {124, 0, 367, 0, 0, 0}, {125, 0, 1, 0, 0, 0}},
    {"day -365 leads a year back", {124, 0, -365, 0, 0, 0}, {122, 11, 31, 0, 0, 0}},
    {"day 20000 leads to 2024", {70, 0, 20000, 0, 0, 0}, {124, 9, 3, 0, 0, 0}},

    // months
    {"month -13 borrows two years", {124, -13, 5, 6, 8, 9}, {122, 11, 5, 6, 8, 9}},
    {"month -12 borrows one year", {124, -12, 5, 6, 8, 9}, {123, 0, 5, 6, 8, 9}},
    {"month -1 borrows one year", {124, -1, 5, 6, 8, 9}, {123, 11, 5, 6, 8, 9}},
    {"month 11 stays", {123, 11, 5, 6, 8, 9}, {123, 11, 5, 6, 8, 9}},
    {"month 12 is the next January", {123, 12, 5, 6, 8, 9}, {124, 0, 5, 6, 8, 9}},
    {"month 13 is the next February", {123, 13, 5, 6, 8, 9}, {124, 1, 5, 6, 8, 9}},
    {"month 24 carries two years", {122, 24, 5, 6, 8, 9}, {124, 0, 5, 6, 8, 9}},
    {"months are carried before days: 29 February 2023",
     {122, 13, 29, 0, 0, 0},
     {123, 2, 1, 0, 0, 0}},
    {"months are carried before days: 29 February 2024",
     {123, 13, 29, 0, 0, 0},
     {124, 1, 29, 0, 0, 0}},

    // leap years
    {"2000 is leap", {100, 1, 29, 12, 0, 0}, {100, 1, 29, 12, 0, 0}},
    {"the last day of 2000 stays", {100, 11, 31, 0, 0, 0}, {100, 11, 31, 0, 0, 0}},
    {"2100 is not leap", {200, 1, 29, 0, 0, 0}, {200, 2, 1, 0, 0, 0}},
    {"1900 is not leap", {0, 1, 29, 0, 0, 0}, {0, 2, 1, 0, 0, 0}},
    {"1600 is leap", {-300, 1, 29, 0, 0, 0}, {-300, 1, 29, 0, 0, 0}},
    {"year 0 is leap", {-1900, 1, 29, 0, 0, 0}, {-1900, 1, 29, 0, 0, 0}},
    {"year -1 is not leap", {-1901, 1, 29, 0, 0, 0}, {-1901, 2, 1, 0, 0, 0}},
    {"year -4 is leap", {-1904, 1, 29, 0, 0, 0}, {-1904, 1, 29, 0, 0, 0}},
    {"year -100 is not leap", {-2000, 1, 29, 0, 0, 0}, {-2000, 2, 1, 0, 0, 0}},

    // years
    {"1969-12-31 stays", {69, 11, 31, 23, 59, 59}, {69, 11, 31, 23, 59, 59}},
    {"1970-01-01 stays", {70, 0, 1, 0, 0, 0}, {70, 0, 1, 0, 0, 0}},
    {"from 1969 into 1970", {69, 11, 31, 23, 59, 60}, {70, 0, 1, 0, 0, 0}},
    {"from 1970 into 1969", {70, 0, 1, 0, 0, -1}, {69, 11, 31, 23, 59, 59}},
};

// Sums that do not fit an int are correct; a field is cut to an int when it is written.
NormalisedFact const FAR_NORMALISED_FACTS[] = {
    {"the largest second", {70, 0, 1, 0, 0, INT_MAX}, {138, 0, 19, 3, 14, 7}},
    {"the smallest second", {138, 0, 19, 3, 15, INT_MIN}, {70, 0, 1, 0, 0, 52}},
    {"the largest minute", {70, 0, 1, 0, INT_MAX, 0}, {4153, 0, 23, 2, 7, 0}},
    {"a carry into the largest minute", {70, 0, 1, 0, INT_MAX, 60}, {4153, 0, 23, 2, 8, 0}},
    {"the smallest minute", {70, 0, 1, 0, INT_MIN, 0}, {-4014, 11, 8, 21, 52, 0}},
    {"a borrow from the smallest minute", {70, 0, 1, 0, INT_MIN, -1}, {-4014, 11, 8, 21, 51, 59}},
    {"the largest hour", {70, 0, 1, INT_MAX, 0, 0}, {245053, 9, 9, 7, 0, 0}},
    {"a carry into the largest hour", {70, 0, 1, INT_MAX, 60, 0}, {245053, 9, 9, 8, 0, 0}},
    {"the smallest hour", {70, 0, 1, INT_MIN, 0, 0}, {-244914, 2, 24, 16, 0, 0}},
    {"a borrow from the smallest hour", {70, 0, 1, INT_MIN, -1, 0}, {-244914, 2, 24, 15, 59, 0}},
    {"the largest day", {70, 0, INT_MAX, 0, 0, 0}, {5879680, 6, 10, 0, 0, 0}},
    {"the smallest day", {70, 0, INT_MIN, 0, 0, 0}, {-5879541, 5, 22, 0, 0, 0}},
    {"the largest month", {70, INT_MAX, 1, 0, 0, 0}, {178957040, 7, 1, 0, 0, 0}},
    {"the largest month, back to 1970", {-178956900, INT_MAX, 1, 0, 0, 0}, {70, 7, 1, 0, 0, 0}},
    {"the smallest month", {70, INT_MIN, 1, 0, 0, 0}, {-178956901, 4, 1, 0, 0, 0}},
    {"the smallest month, up to 2000", {178957071, INT_MIN, 1, 0, 0, 0}, {100, 4, 1, 0, 0, 0}},
    {"year 5885486", {5883586, 0, 1, 0, 0, 0}, {5883586, 0, 1, 0, 0, 0}},
    {"year 5885487", {5883587, 0, 1, 0, 0, 0}, {5883587, 0, 1, 0, 0, 0}},
    {"the largest year", {INT_MAX, 0, 1, 0, 0, 0}, {INT_MAX, 0, 1, 0, 0, 0}},
    {"a second after the largest year wraps",
     {INT_MAX, 11, 31, 23, 59, 60},
     {INT_MIN, 0, 1, 0, 0, 0}},
    {"a month after the largest year wraps", {INT_MAX, 12, 1, 0, 0, 0}, {INT_MIN, 0, 1, 0, 0, 0}},
    {"the smallest year", {INT_MIN, 0, 1, 0, 0, 0}, {INT_MIN, 0, 1, 0, 0, 0}},
    {"a second before the smallest year wraps",
     {INT_MIN, 0, 1, 0, 0, -1},
     {INT_MAX, 11, 31, 23, 59, 59}},
    {"a month before the smallest year wraps",
     {INT_MIN, -1, 1, 0, 0, 0},
     {INT_MAX, 11, 1, 0, 0, 0}},
    {"all fields at their largest", LARGEST, {-1962397934, 11, 27, 12, 21, 7}},
    {"all fields at their smallest", SMALLEST, {1962397931, 11, 1, 10, 37, 52}},
};

// The record is normalised, and the result is that of the normalised record.
void expectNormalised(NormalisedFact const& row) {
    SCOPED_TRACE(row.fact);
    std::tm record = recordOf(row.fields);
    long const seconds = mktimeEx(&record, 0);
    EXPECT_EQ(fieldsOf(record), row.normalised);
    EXPECT_EQ(mktimeEx(&record, 0), seconds);
    EXPECT_EQ(fieldsOf(record), row.normalised);
}

TEST(MktimeEx, NormalisesTheRecord) {
    for (NormalisedFact const& row : NORMALISED_FACTS)
        expectNormalised(row);
    for (NormalisedFact const& row : FAR_NORMALISED_FACTS)
        expectNormalised(row);
}

struct DayFact {
    char const* fact;
    Fields fields;
    Day day;
};

// KEPT(calendar-weekday-from-1970)
DayFact const DAY_FACTS[] = {
    {"1970-01-01 was a Thursday", {70, 0, 1, 0, 0, 0}, {4, 0}},
    {"1970-01-04 was a Sunday", {70, 0, 4, 0, 0, 0}, {0, 3}},
    {"1970-01-03 was a Saturday", {70, 0, 3, 0, 0, 0}, {6, 2}},
    {"the last second of 1969 gets no days", {69, 11, 31, 23, 59, 59}, UNWRITTEN},
    {"28 December 1969 gets no days", {69, 11, 28, 23, 59, 59}, UNWRITTEN},
    {"a borrow into 1969 gets no days", {70, 0, 1, 0, 0, -1}, UNWRITTEN},
    {"the year 1900 gets no days", {0, 0, 1, 0, 0, 0}, UNWRITTEN},
    {"the smallest year gets no days", {INT_MIN, 0, 1, 0, 0, 0}, UNWRITTEN},
    {"a carry into 1970 gets its days", {69, 11, 31, 23, 59, 60}, {4, 0}},
    {"2000-02-29", {100, 1, 29, 12, 0, 0}, {2, 59}},
    {"2000-03-01", {100, 2, 1, 0, 0, 0}, {3, 60}},
    {"2000-12-31", {100, 11, 31, 0, 0, 0}, {0, 365}},
    {"2023-12-31", {123, 11, 31, 0, 0, 0}, {0, 364}},
    {"2024-03-05", {124, 2, 5, 6, 8, 9}, {2, 64}},
    {"the days are those of the normalised record", {123, 13, 30, 24, 0, 0}, {6, 61}},
    {"day 28 of the last whole year", {137, 11, 28, 23, 59, 59}, {1, 361}},
    {"day 29 of the last whole year", {137, 11, 29, 0, 0, 0}, {2, 362}},
    {"the first day of the next year", {138, 0, 1, 0, 0, 0}, {5, 0}},
    {"the last day with seconds", {138, 0, 19, 3, 14, 7}, {2, 18}},
    {"a time beyond 31 bits gets its days", {138, 0, 19, 3, 14, 8}, {2, 18}},
    {"2100-02-28", {200, 1, 28, 0, 0, 0}, {0, 58}},
    {"2100-03-01", {200, 2, 1, 0, 0, 0}, {1, 59}},
    {"2400-12-31", {500, 11, 31, 0, 0, 0}, {0, 365}},
    {"year 5885486", {5883586, 0, 1, 0, 0, 0}, {5, 0}},
    {"year 5885487", {5883587, 0, 1, 0, 0, 0}, {6, 0}},
    {"the largest year", {INT_MAX, 11, 31, 0, 0, 0}, {3, 364}},
    {"a year that wraps when written", {INT_MAX, 11, 32, 0, 0, 0}, {4, 0}},
    {"a year that wraps upward", {INT_MIN, 0, 0, 0, 0, 0}, UNWRITTEN},
    {"everything at its largest", LARGEST, {3, 360}},
    {"everything at its smallest", SMALLEST, UNWRITTEN},
};

TEST(MktimeEx, WritesTheDaysOfWeekAndYearFrom1970) {
    for (DayFact const& row : DAY_FACTS) {
        SCOPED_TRACE(row.fact);
        std::tm record = recordOf(row.fields);
        mktimeEx(&record, 0);
        EXPECT_EQ(dayOf(record), row.day);
    }
}

// KEPT(calendar-normalises-on-failure)
TEST(MktimeEx, NormalisesWhateverTheAdjustment) {
    for (int const adjustment : {INT_MIN, -1, 0, 1, INT_MAX}) {
        SCOPED_TRACE(adjustment);
        std::tm record = recordOf({124, 2, 0, 24, 60, 60});
        mktimeEx(&record, adjustment);
        EXPECT_EQ(fieldsOf(record), (Fields{124, 2, 1, 1, 1, 0}));
        EXPECT_EQ(dayOf(record), (Day{5, 60}));
    }
}

TEST(MktimeEx, NeitherReadsNorWritesDaylightAndZone) {
    struct {
        int daylight;
        long east;
        char const* zone;
    } const others[] = {{DAYLIGHT, EAST, ZONE}, {-1, -43200, nullptr}, {1, 50400, ""}};
    for (auto const& other : others) {
        for (NormalisedFact const& row : NORMALISED_FACTS) {
            SCOPED_TRACE(row.fact);
            std::tm record = recordOf(row.fields);
            record.tm_isdst = other.daylight;
            record.tm_gmtoff = other.east;
            record.tm_zone = other.zone;
            mktimeEx(&record, 0);
            EXPECT_EQ(fieldsOf(record), row.normalised);
            EXPECT_EQ(record.tm_isdst, other.daylight);
            EXPECT_EQ(record.tm_gmtoff, other.east);
            EXPECT_EQ(record.tm_zone, other.zone);
        }
    }
}

TEST(MktimeEx, DoesNotReadTheDaysOfWeekAndYear) {
    for (int const given : {INT_MIN, -1, 0, 3, 400, INT_MAX}) {
        SCOPED_TRACE(given);
        std::tm record = recordOf({124, 2, 5, 6, 8, 9});
        record.tm_wday = given;
        record.tm_yday = given;
        EXPECT_EQ(mktimeEx(&record, 0), 1709618889);
        EXPECT_EQ(dayOf(record), (Day{2, 64}));
    }
}

// ---- the months

struct MonthFact {
    char const* month;
    int length;
    int leapLength;
    int before;
    int leapBefore;
};

MonthFact const MONTH_FACTS[] = {
    {"January", 31, 31, 0, 0},     {"February", 28, 29, 31, 31},   {"March", 31, 31, 59, 60},
    {"April", 30, 30, 90, 91},     {"May", 31, 31, 120, 121},      {"June", 30, 30, 151, 152},
    {"July", 31, 31, 181, 182},    {"August", 31, 31, 212, 213},   {"September", 30, 30, 243, 244},
    {"October", 31, 31, 273, 274}, {"November", 30, 30, 304, 305}, {"December", 31, 31, 334, 335},
};

struct YearFact {
    char const* fact;
    int year;
    bool leap;
    int firstDayOfWeek;
};

YearFact const YEAR_FACTS[] = {
    {"1970", 70, false, 4},
    {"1972, the first leap year", 72, true, 6},
    {"1999", 99, false, 5},
    {"2000, leap by its fourth century", 100, true, 6},
    {"2001", 101, false, 1},
    {"2023", 123, false, 0},
    {"2024", 124, true, 1},
    {"2038", 138, false, 5},
    {"2100, not leap", 200, false, 5},
    {"2200, not leap", 300, false, 3},
    {"2300, not leap", 400, false, 1},
    {"2400, leap", 500, true, 6},
};

TEST(MktimeEx, KnowsTheLengthOfEachMonth) {
    for (YearFact const& year : YEAR_FACTS) {
        SCOPED_TRACE(year.fact);
        int month = 0;
        for (MonthFact const& row : MONTH_FACTS) {
            SCOPED_TRACE(row.month);
            int const length = year.leap ? row.leapLength : row.length;
            int const before = year.leap ? row.leapBefore : row.before;

            std::tm first = recordOf({year.year, month, 1, 0, 0, 0});
            mktimeEx(&first, 0);
            EXPECT_EQ(fieldsOf(first), (Fields{year.year, month, 1, 0, 0, 0}));
            EXPECT_EQ(dayOf(first), (Day{(year.firstDayOfWeek + before) % 7, before}));

            std::tm last = recordOf({year.year, month, length, 0, 0, 0});
            mktimeEx(&last, 0);
            EXPECT_EQ(fieldsOf(last), (Fields{year.year, month, length, 0, 0, 0}));
            EXPECT_EQ(last.tm_yday, before + length - 1);

            std::tm after = recordOf({year.year, month, length + 1, 0, 0, 0});
            mktimeEx(&after, 0);
            EXPECT_EQ(after.tm_mday, 1);
            EXPECT_EQ(after.tm_mon, (month + 1) % 12);

            ++month;
        }
    }
}

// ---- the general path and the fast path

struct PathFact {
    char const* fact;
    Fields fields;
    bool fast;
};

PathFact const PATH_FACTS[] = {
    {"the fast path counts a present-day second", {124, 2, 5, 6, 8, 9}, true},
    {"the fast path declines year 69", {69, 2, 5, 6, 8, 9}, false},
    {"the fast path counts year 70", {70, 2, 5, 6, 8, 9}, true},
    {"the fast path counts year 71", {71, 2, 5, 6, 8, 9}, true},
    {"the fast path counts year 136", {136, 2, 5, 6, 8, 9}, true},
    {"the fast path counts year 137", {137, 2, 5, 6, 8, 9}, true},
    {"the fast path declines year 138", {138, 2, 5, 6, 8, 9}, false},
    {"the fast path declines month -1", {124, -1, 5, 6, 8, 9}, false},
    {"the fast path counts month 0", {124, 0, 5, 6, 8, 9}, true},
    {"the fast path counts month 11", {124, 11, 5, 6, 8, 9}, true},
    {"the fast path declines month 12", {124, 12, 5, 6, 8, 9}, false},
    {"the fast path declines day 0", {124, 2, 0, 6, 8, 9}, false},
    {"the fast path counts day 1", {124, 2, 1, 6, 8, 9}, true},
    {"the fast path counts day 28", {124, 2, 28, 6, 8, 9}, true},
    {"the fast path declines day 29", {124, 2, 29, 6, 8, 9}, false},
    {"the fast path declines hour -1", {124, 2, 5, -1, 8, 9}, false},
    {"the fast path counts hour 0", {124, 2, 5, 0, 8, 9}, true},
    {"the fast path counts hour 23", {124, 2, 5, 23, 8, 9}, true},
    {"the fast path declines hour 24", {124, 2, 5, 24, 8, 9}, false},
    {"the fast path declines minute -1", {124, 2, 5, 6, -1, 9}, false},
    {"the fast path counts minute 0", {124, 2, 5, 6, 0, 9}, true},
    {"the fast path counts minute 59", {124, 2, 5, 6, 59, 9}, true},
    {"the fast path declines minute 60", {124, 2, 5, 6, 60, 9}, false},
    {"the fast path declines second -1", {124, 2, 5, 6, 8, -1}, false},
    {"the fast path counts second 0", {124, 2, 5, 6, 8, 0}, true},
    {"the fast path counts second 59", {124, 2, 5, 6, 8, 59}, true},
    {"the fast path declines second 60", {124, 2, 5, 6, 8, 60}, false},
    {"the fast path declines the largest fields", LARGEST, false},
    {"the fast path declines the smallest fields", SMALLEST, false},
};

// Both paths give the same result and the same record; one that declines writes nothing.
void expectSameByBothPaths(Fields const& fields, int adjustment) {
    std::tm general = recordOf(fields);
    long const seconds = secondsOfAnyRecord(&general, adjustment);
    std::tm fast = recordOf(fields);
    auto const answer = secondsOfOrdinaryRecord(&fast, adjustment);
    EXPECT_EQ(answer.value_or(seconds), seconds);
    EXPECT_EQ(fieldsOf(fast), answer ? fieldsOf(general) : fields);
    EXPECT_EQ(dayOf(fast), answer ? dayOf(general) : UNWRITTEN);
}

TEST(MktimeEx, CountsOrdinaryRecordsByTheFastPath) {
    for (PathFact const& row : PATH_FACTS) {
        SCOPED_TRACE(row.fact);
        std::tm record = recordOf(row.fields);
        EXPECT_EQ(secondsOfOrdinaryRecord(&record, 0).has_value(), row.fast);
        for (int const adjustment : {INT_MIN, -1, 0, 1, INT_MAX})
            expectSameByBothPaths(row.fields, adjustment);
    }
}

TEST(MktimeEx, CountsTheSameByBothPaths) {
    for (SecondsFact const& row : SECONDS_FACTS) {
        SCOPED_TRACE(row.fact);
        expectSameByBothPaths(row.fields, row.adjustment);
    }
    for (int year = 70; year < 138; ++year) {
        for (int month = 0; month < 12; ++month) {
            for (int day = 1; day <= 28; ++day)
                expectSameByBothPaths({year, month, day, 23, 59, 58}, 0);
        }
    }
}

// ---- against libc, which has the same calendar and no end in 2038

// A field near its own range, or anywhere in an int.
int randomField(std::mt19937_64& engine, int range) {
    if (engine() % 4 == 0) return static_cast<int>(engine());
    return static_cast<int>(engine() % (8UL * static_cast<unsigned>(range))) - 4 * range;
}

TEST(MktimeEx, AgreesWithTimegmOnRandomRecords) {
    testing_support::ScopedTimeZone const utc("UTC0");
    std::mt19937_64 engine = testing_support::randomEngine();
    unsigned long const count = testing_support::sweepStride() == 1 ? 3'000'000 : 30'000;
    for (unsigned long i = 0; i < count; ++i) {
        // Years far enough from the ends of int: after every carry they are in the range of timegm.
        int const far = static_cast<int>(engine()) / 4 * 3;
        int const near = static_cast<int>(engine() % 100) + 60;
        int const year = engine() % 4 == 0 ? far : near;
        Fields const fields = {year,
                               randomField(engine, 12),
                               randomField(engine, 31),
                               randomField(engine, 24),
                               randomField(engine, 60),
                               randomField(engine, 60)};
        int const adjustment = engine() % 2 == 0 ? 0 : randomField(engine, 86400);

        std::tm theirs = recordOf(fields);
        long const seconds = timegm(&theirs);
        bool const inRange = seconds >= 0 && seconds <= INT_MAX && seconds + adjustment >= 0 &&
                             seconds + adjustment <= INT_MAX;
        bool const from1970 = theirs.tm_year >= 70;

        std::tm ours = recordOf(fields);
        ASSERT_EQ(mktimeEx(&ours, adjustment), inRange ? seconds + adjustment : -1) << fields;
        ASSERT_EQ(fieldsOf(ours), fieldsOf(theirs)) << fields;
        ASSERT_EQ(dayOf(ours), from1970 ? dayOf(theirs) : UNWRITTEN) << fields;
    }
}

}  // namespace
