#include <climits>
#include <ctime>

#include <gtest/gtest.h>

#include <utillibrary/utilities/mktimeEx.h>

using com::halvorin::utilities::mktimeEx;

namespace {

std::tm record(int year, int month, int day, int hour, int minute, int second) {
    std::tm fields{};
    fields.tm_year = year;
    fields.tm_mon = month;
    fields.tm_mday = day;
    fields.tm_hour = hour;
    fields.tm_min = minute;
    fields.tm_sec = second;
    return fields;
}

struct SecondsFact {
    char const* fact;
    std::tm fields;  // years since 1900, month from 0
    int adjustment;
    long seconds;
};

SecondsFact const SECONDS_FACTS[] = {
    {"the epoch is second 0",  record(70,  0, 1,  0, 0,  0), 0, 0         },
    {"the last second of all", record(138, 0, 19, 3, 14, 7), 0, 2147483647},
    {"and the one after it",   record(138, 0, 19, 3, 14, 8), 0, -1        }, // KEPT(calendar-ends-in-2038)
};

TEST(MktimeEx, CountsTheSecondsOfARecord) {
    for (SecondsFact const& row : SECONDS_FACTS) {
        SCOPED_TRACE(row.fact);
        std::tm fields = row.fields;
        EXPECT_EQ(mktimeEx(&fields, row.adjustment), row.seconds);
    }
}

}  // namespace
