#include "utillibrary/utilities/MovingTimeScale.h"

#include <array>
#include <cmath>
#include <optional>
#include <span>
#include <stdexcept>

namespace com::halvorin::utilities {

namespace {

struct TimeStep {
    unsigned long step;         // seconds from one major tick to the next
    unsigned int minor;         // minor ticks between the two
    unsigned long granularity;  // what a scale may be moved by, in seconds; 0: not at all
};

constexpr unsigned long DAY = 86400;

constexpr TimeStep TIME_TABLE[] = {
    {1, 0, 0},        {2, 1, 0},        {5, 4, 0},        {10, 4, 5},       {15, 2, 5},
    {30, 2, 5},       {60, 3, 10},      {120, 3, 15},     {300, 4, 60},     {600, 4, 300},
    {900, 2, 300},    {1200, 3, 300},   {1800, 2, 300},   {3600, 3, 300},   {7200, 3, 900},
    {14400, 3, 1800}, {21600, 3, 3600}, {28800, 3, 3600}, {43200, 3, 3600}, {DAY, 3, 3600},
};

// What goes with the two steps that are in no row: one second for an instant, and whole days.
constexpr unsigned int MINOR_OF_OTHERS = 3;

// Sums that may leave 64 bits are made of unsigned numbers, and compared as signed ones.
constexpr unsigned long asUnsigned(long value) noexcept {
    return static_cast<unsigned long>(value);
}
constexpr long asSigned(unsigned long value) noexcept { return static_cast<long>(value); }

void check(long tMin, long tMax, unsigned int ticks, char const* complaint) {
    if (ticks < 3 || tMax < tMin) throw std::invalid_argument(complaint);
}

// Takes  seconds: at most 2^63
constexpr unsigned long roundUpToDays(unsigned long seconds) noexcept {
    return (seconds + DAY - 1) / DAY * DAY;
}

// KEPT(scale-is-unsigned): the remainder is that of the unsigned number, unlike on the axis.
constexpr unsigned long multipleBefore(long time, unsigned long step) noexcept {
    return asUnsigned(time) - asUnsigned(time) % step;
}

// The latest start with which a scale of `length` seconds covers the range.
std::optional<unsigned long> startOf(TimeStep const& row, unsigned long length, long tMin,
                                     long tMax) noexcept {
    unsigned long const first = multipleBefore(tMin, row.step);
    unsigned long shift = row.granularity == 0 ? 0 : row.step - row.granularity;
    for (;; shift -= row.granularity) {
        unsigned long const start = first + shift;
        if (asSigned(start) <= tMin && asSigned(start + length) >= tMax) return start;
        if (shift == 0) return std::nullopt;
    }
}

// KEPT(axis-is-signed): the seconds up to the next multiple in mathematics, unlike on the scale.
constexpr unsigned long secondsToMultiple(long time, unsigned long step) noexcept {
    if (time < 0) return (0 - asUnsigned(time)) % step;
    unsigned long const rest = asUnsigned(time) % step;
    return rest == 0 ? 0 : step - rest;
}

// Takes  x: from 1 to 2^63
TimeStep stepOfAxis(float x) noexcept {
    for (TimeStep const& row : TIME_TABLE) {
        if (static_cast<float>(row.step) >= x) return row;
    }
    return {roundUpToDays(static_cast<unsigned long>(std::ceil(x))), MINOR_OF_OTHERS, 0};
}

// A range whose times are known by their distance from its start: that is 64 bits without a sign,
// so that nothing overflows on the way to the end or steps past it.
struct Window {
    unsigned long start;
    unsigned long length;

    constexpr long at(unsigned long distance) const noexcept { return asSigned(start + distance); }
};

// In both lists room for all ticks is made before the first: one allocation, and no list half full.

void listEverySecond(Window const& window, std::vector<long>& majors, std::vector<long>& minors) {
    majors.reserve(2);
    if (window.length > 1) minors.reserve(window.length - 1);
    majors.push_back(window.at(0));
    majors.push_back(window.at(window.length));
    for (unsigned long distance = 1; distance < window.length; ++distance) {
        minors.push_back(window.at(distance));
    }
}

void listMultiples(Window const& window, unsigned long step, unsigned int minor,
                   std::vector<long>& majors, std::vector<long>& minors) {
    unsigned long const first = secondsToMultiple(window.at(0), step);
    // KEPT(no-major-no-minor): not even those that follow a major before the range.
    if (first > window.length) return;
    unsigned long const count = (window.length - first) / step + 1;
    majors.reserve(count);
    minors.reserve((count + 1) * minor);

    for (unsigned long i = 0; i < count; ++i) {
        majors.push_back(window.at(first + i * step));
    }
    // From a major to the minor ticks that follow it. KEPT(axis-counts-in-floats): the spacing is a
    // float, and so is each multiple of it.
    std::array<unsigned long, 4> offsets;
    auto const spacing = static_cast<float>(step) / static_cast<float>(minor + 1);
    for (unsigned int k = 1; k <= minor; ++k) {
        offsets[k - 1] = static_cast<unsigned long>(std::lroundf(static_cast<float>(k) * spacing));
    }
    std::span const following(offsets.data(), minor);

    // Those before the first major lie below it, and so below the end.
    for (unsigned long const offset : following) {
        if (first + offset > step) minors.push_back(window.at(first + offset - step));
    }
    for (unsigned long i = 0; i < count; ++i) {
        unsigned long const major = first + i * step;
        for (unsigned long const offset : following) {
            if (offset < window.length - major) minors.push_back(window.at(major + offset));
        }
    }
}

}  // namespace

void MovingTimeScale(long tMin, long tMax, unsigned int ticks, unsigned long minStep, long& start,
                     long& end, unsigned long& step, unsigned int& minor) {
    check(tMin, tMax, ticks, "MovingTimeScale - invalid arguments");
    unsigned int const intervals = ticks - 1;
    auto const write = [&](unsigned long from, TimeStep const& chosen) {
        start = asSigned(from);
        end = asSigned(from + chosen.step * intervals);
        step = chosen.step;
        minor = chosen.minor;
    };
    // KEPT(instant-has-seconds): no row has both this step and these minor ticks.
    if (tMin == tMax) return write(asUnsigned(tMax), {1, MINOR_OF_OTHERS, 0});

    unsigned long const range = asUnsigned(tMax) - asUnsigned(tMin);
    for (TimeStep const& row : TIME_TABLE) {
        unsigned long const length = row.step * intervals;  // < 2^49
        // One that is shorter than the range covers it from nowhere.
        if (row.step < minStep || length < range) continue;
        auto const from = startOf(row, length, tMin, tMax);
        if (from) return write(*from, row);
    }
    // KEPT(days-in-32-bits): not the whole distance, and the cut before rounding may cost the end.
    unsigned long const from = multipleBefore(tMin, DAY);
    auto const distance = static_cast<unsigned int>(asUnsigned(tMax) - from);
    write(from, {roundUpToDays(distance / intervals), MINOR_OF_OTHERS, 0});
}

void MovingTimeAxis(long tMin, long tMax, unsigned int ticks, unsigned long& step,
                    unsigned int& minor, std::vector<long>& majors, std::vector<long>& minors) {
    // KEPT(axis-empties-before-it-checks): unlike the scale, which leaves all as it was.
    majors.clear();
    minors.clear();
    step = 0;
    minor = 0;
    check(tMin, tMax, ticks, "MovingTimeAxis - invalid arguments");

    Window const window{asUnsigned(tMin), asUnsigned(tMax) - asUnsigned(tMin)};
    // KEPT(axis-counts-in-floats): what a float cannot hold of the range is rounded.
    float const x = static_cast<float>(window.length) / static_cast<float>(ticks - 1);
    if (x < 1) {
        listEverySecond(window, majors, minors);
        // KEPT(step-0-fills-every-second): for an instant this wraps.
        minor = static_cast<unsigned int>(window.length - 1);
        return;
    }
    TimeStep const chosen = stepOfAxis(x);
    step = chosen.step;
    minor = chosen.minor;
    listMultiples(window, chosen.step, chosen.minor, majors, minors);
}

}  // namespace com::halvorin::utilities
