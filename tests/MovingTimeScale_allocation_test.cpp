#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/utilities/MovingTimeScale.h>

#include "support/failing_allocations.h"

// What an axis allocates, and what it leaves in its lists when an allocation fails.

using com::halvorin::utilities::MovingTimeAxis;
using com::halvorin::utilities::MovingTimeScale;
using testing_support::allocationsOf;
using testing_support::failsWithout;

namespace {

constexpr unsigned int MOST = 4294967295;  // 32 bits

using Times = std::vector<long>;

struct AxisTest : testing::Test {
    void list(long tMin, long tMax, unsigned int ticks) {
        MovingTimeAxis(tMin, tMax, ticks, step, minor, majors, minors);
    }

    unsigned long step = 99;
    unsigned int minor = 98;
    Times majors;
    Times minors;
};

TEST(MovingTimeScale, AllocatesNothing) {
    long start = 0;
    long end = 0;
    unsigned long step = 0;
    unsigned int minor = 0;
    EXPECT_EQ(allocationsOf([&] { MovingTimeScale(7, 35, 5, 0, start, end, step, minor); }), 0);
}

TEST_F(AxisTest, AllocatesOnceForEachList) {
    EXPECT_EQ(allocationsOf([this] { list(0, 100'000, 1000); }), 2);
    EXPECT_EQ(majors.size(), 834U);
    EXPECT_EQ(minors.size(), 2500U);
    EXPECT_EQ(allocationsOf([this] { list(0, 100'000, 1000); }), 0);

    minors = Times();
    EXPECT_EQ(allocationsOf([this] { list(29, 91, 3); }), 1);  // more on both sides than between
    EXPECT_EQ(minors, (Times{30, 45, 75, 90}));
}

TEST_F(AxisTest, AllocatesOnceForEverySecond) {
    EXPECT_EQ(allocationsOf([this] { list(0, 1000, 2000); }), 2);
    EXPECT_EQ(minors.size(), 999U);
    EXPECT_EQ(minors.capacity(), 999U);
}

TEST_F(AxisTest, AllocatesNothingForMinorTicksThatThereAreNot) {
    EXPECT_EQ(allocationsOf([this] { list(0, 10, 11); }), 1);  // a step of one second
    majors = Times();
    EXPECT_EQ(allocationsOf([this] { list(5, 6, 5); }), 1);  // neighbours
    majors = Times();
    EXPECT_EQ(allocationsOf([this] { list(5, 5, 5); }), 1);  // an instant
    majors = Times();
    EXPECT_EQ(allocationsOf([this] { list(1, 242, 3); }), 0);  // no major
}

struct FailureFact {
    char const* fact;
    long tMax;
    unsigned int ticks;
    long failing;
    unsigned long step;
};

FailureFact const FAILURE_FACTS[] = {
    {"no memory for the first of two lists", 100'000, 1000, 0, 120},
    {"no memory for the second of two lists", 100'000, 1000, 1, 120},
    {"no memory for the first list of a step of 0", 1000, 2000, 0, 0},
    {"no memory for the second list of a step of 0", 1000, 2000, 1, 0},
    {"no memory for the longest range with a step of 0", 4'294'967'000, MOST, 0, 0},
    {"no memory for the most ticks", 8'589'934'588, MOST, 0, 2},
};

TEST_F(AxisTest, HasEmptyListsWhenMemoryFails) {
    for (FailureFact const& row : FAILURE_FACTS) {
        SCOPED_TRACE(row.fact);
        majors = Times(1, 97);
        minors = Times(1, 96);
        EXPECT_TRUE(failsWithout(row.failing, [&] { list(0, row.tMax, row.ticks); }));
        EXPECT_EQ(step, row.step);
        EXPECT_EQ(majors, Times());
        EXPECT_EQ(minors, Times());
    }
}

struct OneListFact {
    char const* fact;
    long tMax;
    unsigned int ticks;
    std::size_t count;
};

OneListFact const ONE_LIST_FACTS[] = {
    {"a step of 120 s gives 834 majors and 2500 minor ticks", 100'000, 1000, 3334},
    {"a step of 0 gives 2 majors and 999 minor ticks", 1000, 2000, 1001},
    {"neighbours are 2 majors and no minor tick", 1, 3, 2},
    {"an instant is 2 majors and no minor tick", 0, 3, 2},
};

// Earlier, the room for the majors and for the minor ticks was made one after the other. If the
// second allocation failed, the list contained 2505 ticks.
TEST_F(AxisTest, AllocatesOnceForOneListThatIsGivenForBoth) {
    for (OneListFact const& row : ONE_LIST_FACTS) {
        SCOPED_TRACE(row.fact);
        Times one;
        auto const listBoth = [&] {
            MovingTimeAxis(0, row.tMax, row.ticks, step, minor, one, one);
        };
        EXPECT_TRUE(failsWithout(0, listBoth));
        EXPECT_EQ(one, Times());
        EXPECT_EQ(allocationsOf(listBoth), 1);
        EXPECT_EQ(one.size(), row.count);
    }
}

}  // namespace
