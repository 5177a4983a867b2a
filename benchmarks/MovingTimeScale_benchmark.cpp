#include <cmath>
#include <ostream>
#include <vector>

#include <utillibrary/utilities/MovingTimeScale.h>

#include "support/operation.h"
#include "support/pool.h"

// Steps and ticks of a time axis. No other library offers them. The plain way follows the contract
// literally: it tries one step, one start and one tick after the other, with lists that grow.
namespace {

using namespace benchmarks;
using com::halvorin::utilities::MovingTimeAxis;
using com::halvorin::utilities::MovingTimeScale;

struct Range {
    long from;
    long to;
    unsigned int ticks;
};

struct Scale {
    long start;
    long end;
    unsigned long step;
    unsigned int minor;

    bool operator==(Scale const&) const = default;
};

struct Axis {
    unsigned long step = 0;
    unsigned int minor = 0;
    std::vector<long> majors;
    std::vector<long> minors;

    bool operator==(Axis const&) const = default;
};

struct TimeStep {
    unsigned long step;
    unsigned int minor;
    unsigned long granularity;
};

constexpr TimeStep TIME_TABLE[] = {
    {1, 0, 0},        {2, 1, 0},        {5, 4, 0},        {10, 4, 5},       {15, 2, 5},
    {30, 2, 5},       {60, 3, 10},      {120, 3, 15},     {300, 4, 60},     {600, 4, 300},
    {900, 2, 300},    {1200, 3, 300},   {1800, 2, 300},   {3600, 3, 300},   {7200, 3, 900},
    {14400, 3, 1800}, {21600, 3, 3600}, {28800, 3, 3600}, {43200, 3, 3600}, {86400, 3, 3600},
};

// ---- the pools: from some ticks of a second to some of a day, after 1970

Range rangeOf(Random& random, unsigned int ticks) {
    double const exponent = std::uniform_real_distribution<double>(0, 4.9)(random);
    auto const seconds = static_cast<long>(std::pow(10.0, exponent) * (ticks - 1));
    long const from = between(random, 86400, 2'000'000'000);
    return {from, from + seconds, ticks};
}

auto rangesOf(unsigned int ticks) {
    return pool([ticks](Random& random) { return rangeOf(random, ticks); });
}

// ---- the plain way

Scale scaleByTrial(Range const& range) {
    for (TimeStep const& row : TIME_TABLE) {
        auto const step = static_cast<long>(row.step);
        auto const granularity = static_cast<long>(row.granularity);
        long shift = granularity == 0 ? 0 : step - granularity;
        for (;; shift -= granularity) {
            long const start = range.from - range.from % step + shift;
            long const end = start + step * (range.ticks - 1);
            if (start <= range.from && end >= range.to) return {start, end, row.step, row.minor};
            if (shift == 0) break;
        }
    }
    long const start = range.from - range.from % 86400;
    unsigned long const days = ((range.to - start) / (range.ticks - 1) + 86399) / 86400;
    return {start, start + static_cast<long>(86400 * days * (range.ticks - 1)), 86400 * days, 3};
}

TimeStep axisStep(float x) {
    for (TimeStep const& row : TIME_TABLE) {
        if (static_cast<float>(row.step) >= x) return row;
    }
    return {(static_cast<unsigned long>(std::ceil(x)) + 86399) / 86400 * 86400, 3, 0};
}

Axis axisByTicks(Range const& range) {
    Axis axis;
    TimeStep const row =
        axisStep(static_cast<float>(range.to - range.from) / static_cast<float>(range.ticks - 1));
    axis.step = row.step;
    axis.minor = row.minor;
    auto const step = static_cast<long>(row.step);
    long const first = (range.from + step - 1) / step * step;
    for (long major = first; major <= range.to; major += step)
        axis.majors.push_back(major);
    if (axis.majors.empty()) return axis;

    float const spacing = static_cast<float>(row.step) / static_cast<float>(row.minor + 1);
    auto const offset = [spacing](unsigned int k) {
        return std::lroundf(static_cast<float>(k) * spacing);
    };
    for (unsigned int k = 1; k <= row.minor; ++k) {
        long const time = first - step + offset(k);
        if (time > range.from && time < range.to) axis.minors.push_back(time);
    }
    for (long const major : axis.majors) {
        for (unsigned int k = 1; k <= row.minor; ++k) {
            long const time = major + offset(k);
            if (time < range.to) axis.minors.push_back(time);
        }
    }
    return axis;
}

// ---- the operations

void addScale() {
    Operation const operation("scale of 6 ticks", rangesOf(6), scaleByTrial);
    operation.plain("row by row", scaleByTrial);
    operation.ours([](Range const& range) {
        Scale scale;
        MovingTimeScale(range.from, range.to, range.ticks, 0, scale.start, scale.end, scale.step,
                        scale.minor);
        return scale;
    });
}

void writeAxis(Axis& axis, Range const& range) {
    MovingTimeAxis(range.from, range.to, range.ticks, axis.step, axis.minor, axis.majors,
                   axis.minors);
}

void addAxis(unsigned int ticks) {
    std::string const name = "axis of about " + std::to_string(ticks) + " ticks";
    Operation const operation(name, rangesOf(ticks), axisByTicks);
    operation.plain("tick by tick", axisByTicks);
    operation.ours([](Range const& range) {
        Axis axis;
        writeAxis(axis, range);
        return axis;
    });

    Operation const kept(name + ", lists used again", rangesOf(ticks), axisByTicks);
    kept.ours([axis = Axis()](Range const& range) mutable -> Axis const& {
        writeAxis(axis, range);
        return axis;
    });
}

}  // namespace

void benchmarks::addRows() {
    addScale();
    for (unsigned int const ticks : {6U, 100U, 10'000U})
        addAxis(ticks);
}
