#include <algorithm>
#include <climits>
#include <cmath>
#include <functional>
#include <iterator>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "support/random.h"
#include "support/time_axes.h"

// The two helpers upon any arguments, against their rules and what follows from these.

using testing_support::Axis;
using testing_support::axisOf;
using testing_support::Scale;
using testing_support::scaleOf;

namespace {

constexpr unsigned int MOST = 4294967295;  // 32 bits
constexpr long FIRST = LONG_MIN;
constexpr long LAST = LONG_MAX;

using Times = std::vector<long>;

struct Step {
    long seconds;
    unsigned int minor;
    long granularity;
};

Step const STEPS[] = {
    {1, 0, 0},        {2, 1, 0},        {5, 4, 0},        {10, 4, 5},       {15, 2, 5},
    {30, 2, 5},       {60, 3, 10},      {120, 3, 15},     {300, 4, 60},     {600, 4, 300},
    {900, 2, 300},    {1200, 3, 300},   {1800, 2, 300},   {3600, 3, 300},   {7200, 3, 900},
    {14400, 3, 1800}, {21600, 3, 3600}, {28800, 3, 3600}, {43200, 3, 3600}, {86400, 3, 3600},
};

// What a row's starts are multiples of.
long gridOf(Step const& row) { return row.granularity == 0 ? row.seconds : row.granularity; }

// Whether a row has a start, not after tMin, from which it reaches tMax. From 1970 on.
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

// The scale as its rule is worded: every row and every shift in turn, in sums that wrap.
Scale scaleByTheRule(long tMin, long tMax, unsigned int ticks, unsigned long minStep) {
    auto const bits = [](long time) { return static_cast<unsigned long>(time); };
    auto const time = [](unsigned long value) { return static_cast<long>(value); };
    if (tMin == tMax) return {tMax, time(bits(tMax) + ticks - 1), 1, 3};
    for (Step const& row : STEPS) {
        unsigned long const step = bits(row.seconds);
        if (step < minStep) continue;
        for (long shift = row.seconds - gridOf(row); shift >= 0; shift -= gridOf(row)) {
            long const start = time(bits(tMin) - bits(tMin) % step + bits(shift));
            long const end = time(bits(start) + step * (ticks - 1));
            if (start <= tMin && end >= tMax) return {start, end, step, row.minor};
        }
    }
    long const start = time(bits(tMin) - bits(tMin) % 86400);
    unsigned long step = static_cast<unsigned int>(bits(tMax) - bits(start)) / (ticks - 1);
    if (step % 86400 != 0) step += 86400 - step % 86400;
    return {start, time(bits(start) + (ticks - 1) * step), step, 3};
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
        ASSERT_EQ(scaleOf(tMin, tMax, ticks, minStep), scaleByTheRule(tMin, tMax, ticks, minStep))
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
        ASSERT_EQ(scaleOf(tMin, tMax, ticks, minStep), scaleByTheRule(tMin, tMax, ticks, minStep))
            << tMin << ", " << tMax << ", " << ticks << ", " << minStep;
    }
}

__extension__ typedef __int128 Wide;

// The axis as its rule is worded, in 128 bits, where no sum overflows.
Axis axisByTheRule(long tMin, long tMax, unsigned int ticks) {
    Wide const range = Wide(tMax) - tMin;
    float const x = static_cast<float>(range) / static_cast<float>(ticks - 1);
    Axis axis{0, 0, {}, {}};
    if (x < 1) {
        axis.majors = {tMin, tMax};
        for (Wide time = Wide(tMin) + 1; time < tMax; ++time) {
            axis.minors.push_back(static_cast<long>(time));
        }
        axis.minor = static_cast<unsigned int>(range - 1);
        return axis;
    }
    Wide step = static_cast<Wide>(std::ceil(x));
    step = (step + 86399) / 86400 * 86400;
    axis.minor = 3;
    for (Step const& row : STEPS) {
        if ((x == 1 || row.seconds > 1) && static_cast<float>(row.seconds) >= x) {
            step = row.seconds;
            axis.minor = row.minor;
            break;
        }
    }
    axis.step = static_cast<unsigned long>(step);

    Wide first = tMin / step * step;
    while (first < tMin)
        first += step;
    for (Wide major = first; major <= tMax; major += step) {
        axis.majors.push_back(static_cast<long>(major));
    }
    if (axis.majors.empty()) return axis;
    float const spacing = static_cast<float>(step) / static_cast<float>(axis.minor + 1);
    for (Wide major = first - step; major <= tMax; major += step) {
        for (unsigned int k = 1; k <= axis.minor; ++k) {
            Wide const time = major + std::lroundf(static_cast<float>(k) * spacing);
            if (time > tMin && time < tMax) axis.minors.push_back(static_cast<long>(time));
        }
    }
    return axis;
}

TEST(MovingTimeAxis, OfAnyArgumentsIsWhatTheRuleSays) {
    Times64 random;
    for (int i = 0; i < 30'000; ++i) {
        long const one = random.time();
        long const other = random.time();
        long const tMin = std::min(one, other);
        long const tMax = std::max(one, other);
        unsigned int const ticks = random.number(3, 60);
        ASSERT_EQ(axisOf(tMin, tMax, ticks), axisByTheRule(tMin, tMax, ticks))
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
        ASSERT_EQ(axisOf(tMin, tMax, ticks), axisByTheRule(tMin, tMax, ticks))
            << tMin << ", " << tMax << ", " << ticks;
    }
}

// ---- what any axis is like

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

// How many multiples of a step lie strictly between two times.
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
