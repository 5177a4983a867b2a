// The deadlines of readings.
#include "program/schedule.h"

#include <gtest/gtest.h>

using namespace monitor;

namespace {

struct DeadlineFact {
    char const* fact;
    long previous;
    long interval;
    long now;
    long next;
};

DeadlineFact const DEADLINE_FACTS[] = {
    {"the next deadline is one interval later", 1000, 100, 1000, 1100},
    {"a delay does not move the next deadline", 1000, 100, 1099, 1100},
    {"a deadline that is now has passed", 1000, 100, 1100, 1200},
    {"deadlines that have passed are left out", 1000, 100, 1734, 1800},
    {"an interval of 3 ns gives the next multiple", 0, 3, 5, 6},
    {"a day of delay gives the next millisecond", 0, 1'000'000, 86'400'000'000'001,
     86'400'001'000'000},
};

TEST(Schedule, KeepsDeadlinesAtMultiplesOfTheInterval) {
    auto const at = [](long nanoseconds) {
        return Clock::time_point(std::chrono::nanoseconds(nanoseconds));
    };
    for (DeadlineFact const& row : DEADLINE_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(
            deadlineAfter(at(row.previous), std::chrono::nanoseconds(row.interval), at(row.now)),
            at(row.next));
    }
}

TEST(Schedule, UsesASteadyClock) { EXPECT_TRUE(Clock::is_steady); }

}  // namespace
