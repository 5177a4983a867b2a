#include <climits>
#include <cstdlib>
#include <ctime>
#include <ostream>
#include <random>
#include <string_view>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/xtime.h>

#include "support/random.h"
#include "support/time_zone.h"

// Times as calendar fields.

using com::halvorin::datatypes::xtime_t;

namespace {

long const SECONDS = 1709618889;  // 2024-03-05T06:08:09

// ---- calendar fields

struct Calendar {
    int year = -7;
    int month = -7;
    int day = -7;
    int hour = -7;
    int minute = -7;
    int second = -7;

    bool operator==(Calendar const&) const = default;
};

std::ostream& operator<<(std::ostream& out, Calendar const& c) {
    return out << '{' << c.year << ", " << c.month << ", " << c.day << ", " << c.hour << ", "
               << c.minute << ", " << c.second << '}';
}

Calendar decomposed(long seconds) {
    Calendar c;
    unsigned int nanoseconds = 0;
    xtime_t(seconds).decompose(c.year, c.month, c.day, c.hour, c.minute, c.second, nanoseconds);
    return c;
}

struct DecomposeFact {
    char const* fact;
    long seconds;
    Calendar fields;
};

constexpr Calendar ALL_ZERO_RECORD = {1900, 1, 0, 0, 0, 0};

DecomposeFact const DECOMPOSE_FACTS[] = {
    {"the epoch", 0, {1970, 1, 1, 0, 0, 0}},
    {"a second after the epoch", 1, {1970, 1, 1, 0, 0, 1}},
    {"a second before the epoch", -1, {1969, 12, 31, 23, 59, 59}},
    {"the last second of a minute", 59, {1970, 1, 1, 0, 0, 59}},
    {"the first second of the second minute", 60, {1970, 1, 1, 0, 1, 0}},
    {"the last second of an hour", 3599, {1970, 1, 1, 0, 59, 59}},
    {"the first second of the second hour", 3600, {1970, 1, 1, 1, 0, 0}},
    {"the last second of a day", 86399, {1970, 1, 1, 23, 59, 59}},
    {"the first second of the second day", 86400, {1970, 1, 2, 0, 0, 0}},
    {"the last day before the epoch", -86400, {1969, 12, 31, 0, 0, 0}},
    {"the second before the last day before the epoch", -86401, {1969, 12, 30, 23, 59, 59}},
    {"a present-day second", 1709618889, {2024, 3, 5, 6, 8, 9}},
    {"the last second of 32 bits", 2147483647, {2038, 1, 19, 3, 14, 7}},
    {"the first second beyond 31 bits", 2147483648, {2038, 1, 19, 3, 14, 8}},
    {"the first second of 32 bits", -2147483648, {1901, 12, 13, 20, 45, 52}},
    {"a leap day", 1709251199, {2024, 2, 29, 23, 59, 59}},
    {"the day after a leap day", 1709251200, {2024, 3, 1, 0, 0, 0}},
    {"a leap second is not counted", 1483228800, {2017, 1, 1, 0, 0, 0}},
    {"the last second of 1999", 946684799, {1999, 12, 31, 23, 59, 59}},
    {"the first second of 2000", 946684800, {2000, 1, 1, 0, 0, 0}},
    {"2000 has a 29 February", 951825600, {2000, 2, 29, 12, 0, 0}},
    {"in 2000 March follows 29 February", 951868800, {2000, 3, 1, 0, 0, 0}},
    {"28 February 1900", -2203891201, {1900, 2, 28, 23, 59, 59}},
    {"in 1900 March follows 28 February", -2203891200, {1900, 3, 1, 0, 0, 0}},
    {"28 February 2100", 4107542399, {2100, 2, 28, 23, 59, 59}},
    {"in 2100 March follows 28 February", 4107542400, {2100, 3, 1, 0, 0, 0}},
    {"the day before the calendar's introduction is Gregorian too",
     -12219292801,
     {1582, 10, 14, 23, 59, 59}},
    {"1600 is leap", -11670998400, {1600, 2, 29, 0, 0, 0}},
    {"year 1", -62135596800, {1, 1, 1, 0, 0, 0}},
    {"year 0", -62167219200, {0, 1, 1, 0, 0, 0}},
    {"year -1", -62167219201, {-1, 12, 31, 23, 59, 59}},
    {"year -400 is leap", -74784902400, {-400, 2, 29, 0, 0, 0}},
    {"year 9999", 253402300799, {9999, 12, 31, 23, 59, 59}},
    {"year 10000", 253402300800, {10000, 1, 1, 0, 0, 0}},

    // KEPT(year-wraps-at-32-bits)
    {"the largest year", 67767976233532799, {INT_MAX, 12, 31, 23, 59, 59}},
    {"the year after the largest wraps to the smallest",
     67767976233532800,
     {INT_MIN, 1, 1, 0, 0, 0}},
    {"the last second whose years since 1900 fit an int",
     67768036191676799,
     {-2147481749, 12, 31, 23, 59, 59}},
    {"the second after it gives a record of zeros", 67768036191676800, ALL_ZERO_RECORD},
    {"LONG_MAX gives a record of zeros", LONG_MAX, ALL_ZERO_RECORD},
    {"the first second whose years since 1900 fit an int",
     -67768040609740800,
     {-2147481748, 1, 1, 0, 0, 0}},
    {"the second before it gives a record of zeros", -67768040609740801, ALL_ZERO_RECORD},
    {"the smallest year itself gives a record of zeros", -67768100567971200, ALL_ZERO_RECORD},
    {"LONG_MIN gives a record of zeros", LONG_MIN, ALL_ZERO_RECORD},
};

TEST(XtimeDecompose, GivesCalendarFieldsInUtc) {
    for (DecomposeFact const& row : DECOMPOSE_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(decomposed(row.seconds), row.fields);
    }
}

TEST(XtimeDecompose, GivesTheNanosecondsAsTheyAre) {
    for (unsigned int const nanoseconds : {0U, 1U, 999999999U, 1000000000U, UINT_MAX}) {
        for (long const seconds : {59L, LONG_MAX}) {
            SCOPED_TRACE(testing::Message() << seconds << ' ' << nanoseconds);
            Calendar c;
            unsigned int given = 7;
            xtime_t(seconds, nanoseconds)
                .decompose(c.year, c.month, c.day, c.hour, c.minute, c.second, given);
            EXPECT_EQ(given, nanoseconds);
            EXPECT_EQ(c, decomposed(seconds));
        }
    }
}

// A caller who passes one variable for several results gets the last of them in the stated order:
// year, month, day, hour, minute, second, nanoseconds.
TEST(XtimeDecompose, StoresItsResultsInTheStatedOrder) {
    // 2024-03-05T06:08:09, and a time that the record cannot contain.
    struct {
        long seconds;
        int results[7];
    } const times[] = {{SECONDS, {2024, 3, 5, 6, 8, 9, 77}}, {LONG_MAX, {1900, 1, 0, 0, 0, 0, 77}}};
    for (auto const& row : times) {
        for (std::size_t one = 0; one < 7; ++one) {
            for (std::size_t other = one + 1; other < 7; ++other) {
                SCOPED_TRACE(testing::Message() << row.seconds << ' ' << one << ' ' << other);
                int results[7] = {-7, -7, -7, -7, -7, -7, -7};
                int* where[7];
                for (std::size_t i = 0; i < 7; ++i)
                    where[i] = &results[i == one ? other : i];
                // The unsigned type of an int may refer to it.
                auto& nanoseconds = reinterpret_cast<unsigned int&>(*where[6]);
                xtime_t(row.seconds, 77)
                    .decompose(*where[0], *where[1], *where[2], *where[3], *where[4], *where[5],
                               nanoseconds);
                for (std::size_t i = 0; i < 7; ++i)
                    EXPECT_EQ(results[i], i == one ? -7 : row.results[i]);
            }
        }
    }
}

// libc's own breakdown follows the leap seconds of a "right/" zone: 27 were counted by 2024.
TEST(XtimeDecompose, CountsNoLeapSecondsUnderAZoneThatDoes) {
    char const* const zone = std::getenv("TZ");
    bool const zoneCounts = zone != nullptr && std::string_view(zone).starts_with("right/");
    std::time_t const seconds = 1709618889;
    std::tm theirs{};
    gmtime_r(&seconds, &theirs);

    Calendar const withLeapSeconds = {2024, 3, 5, 6, 7, 42};
    Calendar const without = {2024, 3, 5, 6, 8, 9};
    EXPECT_EQ((Calendar{theirs.tm_year + 1900, theirs.tm_mon + 1, theirs.tm_mday, theirs.tm_hour,
                        theirs.tm_min, theirs.tm_sec}),
              zoneCounts ? withLeapSeconds : without);
    EXPECT_EQ(decomposed(seconds), without);
}

TEST(XtimeDecompose, AgreesWithGmtimeOnRandomSeconds) {
    testing_support::ScopedTimeZone const utc("UTC0");
    std::mt19937_64 engine = testing_support::randomEngine();
    unsigned long const count = testing_support::sweepStride() == 1 ? 10'000'000 : 100'000;
    for (unsigned long i = 0; i < count; ++i) {
        // Every magnitude: one year in eight does not fit an int.
        std::time_t const seconds = static_cast<long>(engine()) >> (engine() % 64);
        std::tm theirs{};
        if (gmtime_r(&seconds, &theirs) == nullptr) theirs = std::tm{};
        Calendar const expected = {static_cast<int>(static_cast<unsigned>(theirs.tm_year) + 1900),
                                   theirs.tm_mon + 1,
                                   theirs.tm_mday,
                                   theirs.tm_hour,
                                   theirs.tm_min,
                                   theirs.tm_sec};
        ASSERT_EQ(decomposed(seconds), expected) << seconds;
    }
}

}  // namespace
