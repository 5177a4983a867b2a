#include <algorithm>
#include <climits>
#include <functional>
#include <iterator>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "support/axis_models.h"
#include "support/random.h"
#include "support/time_axes.h"

// Both functions with random arguments: compared with models, and with properties of the results.

using namespace testing_support;

namespace {

constexpr unsigned int MOST = 4294967295;  // 32 bits
constexpr long FIRST = LONG_MIN;
constexpr long LAST = LONG_MAX;

using Times = std::vector<long>;

// The number of which the starts of a row are multiples.
long gridOf(Step const& row) { return row.granularity == 0 ? row.seconds : row.granularity; }

// True if a scale of this row can start at or before tMin and end at or after tMax. For times from
// 1970 on.
bool covers(Step const& row, long tMin, long tMax, long ticks) {
    return tMin - tMin % gridOf(row) + row.seconds * (ticks - 1) >= tMax;
}

void expectSmallestAndLatest(long tMin, long tMax, unsigned int ticks, long minStep) {
    auto const row = std::find_if(std::begin(STEPS), std::end(STEPS), [&](Step const& candidate) {
        return candidate.seconds >= minStep && covers(candidate, tMin, tMax, ticks);
    });
    if (row == std::end(STEPS)) return;
    auto const step = static_cast<unsigned long>(row->seconds);
    long const start = tMin - tMin % gridOf(*row);
    ASSERT_EQ(scaleOf(tMin, tMax, ticks, static_cast<unsigned long>(minStep)),
              (Scale{start, start + row->seconds * (ticks - 1L), step, row->minor}))
        << tMin << ", " << tMax << ", " << ticks << ", " << minStep;
}

TEST(MovingTimeScale, OfAnyRangeFromTheTableIsSmallestAndLatest) {
    for (long tMin = 0; tMin < 100'000; tMin += 1 + tMin / 7) {
        for (long length = 1; length < 300'000; length += 1 + length / 9) {
            for (unsigned int const ticks : {3U, 4U, 5U, 6U, 7U, 11U, 50U}) {
                for (long const minStep : {0, 1, 7, 60, 601, 43201}) {
                    expectSmallestAndLatest(tMin, tMin + length, ticks, minStep);
                    if (HasFatalFailure()) return;
                }
            }
        }
    }
}

// Times near the ends of 64 bits, near 1970, near now, and anywhere.
class Times64 {
public:
    long time() {
        long const near[] = {FIRST, LAST, 0, 1709618889, -1709618889, static_cast<long>(engine_())};
        unsigned long const distance = engine_() >> (number(0, 63));
        unsigned long const base = static_cast<unsigned long>(near[number(0, 5)]);
        return static_cast<long>(number(0, 1) == 0 ? base + distance : base - distance);
    }

    unsigned int ticks() {
        unsigned int const some[] = {3, 4, MOST - 1, MOST, 0x80000000, 86401};
        return number(0, 1) == 0 ? some[number(0, 5)] : number(3, 60);
    }

    unsigned long minStep() { return number(0, 2) != 0 ? 0 : engine_() >> number(0, 63); }

    unsigned int number(unsigned int least, unsigned int most) {
        return std::uniform_int_distribution<unsigned int>(least, most)(engine_);
    }

private:
    std::mt19937_64 engine_ = testing_support::randomEngine();
};

TEST(MovingTimeScale, OfAnyArgumentsIsWhatTheRuleSays) {
    Times64 random;
    for (int i = 0; i < 200'000; ++i) {
        long const one = random.time();
        long const other = random.time();
        long const tMin = std::min(one, other);
        long const tMax = std::max(one, other);
        unsigned int const ticks = random.ticks();
        unsigned long const minStep = random.minStep();
        ASSERT_EQ(scaleOf(tMin, tMax, ticks, minStep), modelOfScale(tMin, tMax, ticks, minStep))
            << tMin << ", " << tMax << ", " << ticks << ", " << minStep;
    }
}

TEST(MovingTimeScale, OfShortRangesAnywhereIsWhatTheRuleSays) {
    Times64 random;
    for (int i = 0; i < 200'000; ++i) {
        long const one = random.time();
        auto const length = static_cast<unsigned long>(random.number(0, 500'000));
        long const other = static_cast<long>(static_cast<unsigned long>(one) + length);
        long const tMin = std::min(one, other);
        long const tMax = std::max(one, other);
        unsigned int const ticks = random.number(3, 20);
        unsigned long const minStep = random.number(0, 3) == 0 ? random.number(0, 4000) : 0;
        ASSERT_EQ(scaleOf(tMin, tMax, ticks, minStep), modelOfScale(tMin, tMax, ticks, minStep))
            << tMin << ", " << tMax << ", " << ticks << ", " << minStep;
    }
}

TEST(MovingTimeAxis, OfAnyArgumentsIsWhatTheRuleSays) {
    Times64 random;
    for (int i = 0; i < 30'000; ++i) {
        long const one = random.time();
        long const other = random.time();
        long const tMin = std::min(one, other);
        long const tMax = std::max(one, other);
        unsigned int const ticks = random.number(3, 60);
        ASSERT_EQ(axisOf(tMin, tMax, ticks), modelOfAxis(tMin, tMax, ticks))
            << tMin << ", " << tMax << ", " << ticks;
    }
}

TEST(MovingTimeAxis, OfShortRangesAnywhereIsWhatTheRuleSays) {
    Times64 random;
    for (int i = 0; i < 30'000; ++i) {
        long const one = random.time();
        unsigned long const length = random.number(0, 500'000) >> random.number(0, 18);
        long const other = static_cast<long>(static_cast<unsigned long>(one) + length);
        bool const wraps = other < one;
        long const tMin = wraps ? LAST - static_cast<long>(length) : one;
        long const tMax = wraps ? LAST : other;
        unsigned int const ticks = length < 1000 ? random.ticks() : random.number(3, 60);
        ASSERT_EQ(axisOf(tMin, tMax, ticks), modelOfAxis(tMin, tMax, ticks))
            << tMin << ", " << tMax << ", " << ticks;
    }
}

// ---- properties of every axis

// True if each time is later than the one before, and all are strictly between two others.
bool riseBetween(Times const& times, long first, long last) {
    return std::adjacent_find(times.begin(), times.end(), std::greater_equal<>()) == times.end() &&
           (times.empty() || (times.front() > first && times.back() < last));
}

bool areMultiples(Times const& times, long step) {
    return std::all_of(times.begin(), times.end(), [&](long time) { return time % step == 0; });
}

bool haveNoneInCommon(Times const& some, Times const& others) {
    Times common;
    std::set_intersection(some.begin(), some.end(), others.begin(), others.end(),
                          std::back_inserter(common));
    return common.empty();
}

// The number of multiples of a step between two times, without these two.
std::size_t multiplesBetween(long first, long last, long step) {
    auto const upTo = [step](long time) { return time / step - (time % step < 0 ? 1 : 0); };
    return static_cast<std::size_t>(upTo(last - 1) - upTo(first));
}

void expectTicksInOrder(long tMin, long tMax, unsigned int ticks) {
    Axis const axis = axisOf(tMin, tMax, ticks);
    auto const row = std::find_if(std::begin(STEPS), std::end(STEPS), [&](Step const& candidate) {
        return candidate.seconds * (ticks - 1L) >= tMax - tMin;
    });
    long const step = row->seconds;
    ASSERT_EQ(axis.step, static_cast<unsigned long>(step));
    ASSERT_EQ(axis.minor, row->minor);

    ASSERT_TRUE(riseBetween(axis.majors, tMin - 1, tMax + 1));
    ASSERT_TRUE(areMultiples(axis.majors, step));
    ASSERT_EQ(axis.majors.size(), multiplesBetween(tMin - 1, tMax + 1, step));

    long const grid = step / (row->minor + 1L);
    ASSERT_TRUE(riseBetween(axis.minors, tMin, tMax));
    ASSERT_TRUE(areMultiples(axis.minors, grid));
    ASSERT_TRUE(haveNoneInCommon(axis.minors, axis.majors));
    ASSERT_EQ(axis.minors.size(), axis.majors.empty() ? 0
                                                      : multiplesBetween(tMin, tMax, grid) -
                                                            multiplesBetween(tMin, tMax, step));
}

TEST(MovingTimeAxis, HasItsTicksInOrderInBoundsAndOnTheirGrid) {
    for (long tMin = -3000; tMin < 3000; tMin += 37) {
        for (unsigned int const ticks : {3U, 4U, 6U, 11U, 30U}) {
            for (long length = ticks; length <= 86400L * (ticks - 1); length += 1 + length / 5) {
                SCOPED_TRACE(testing::Message() << tMin << ", " << length << ", " << ticks);
                expectTicksInOrder(tMin, tMin + length, ticks);
                if (HasFatalFailure()) return;
            }
        }
    }
}

}  // namespace
