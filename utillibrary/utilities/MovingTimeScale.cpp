#include "utillibrary/utilities/MovingTimeScale.h"

#include <array>
#include <cmath>
#include <optional>
#include <span>
#include <stdexcept>

#include "utillibrary/internal/calendar.h"
#include "utillibrary/internal/wrapping.h"
#include <utillibrary/export.h>

namespace com::halvorin::utilities {

namespace {

using namespace com::halvorin::internal;

struct TimeStep {
    unsigned long step;         // seconds from one major tick to the next
    unsigned int minor;         // minor ticks between the two
    unsigned long granularity;  // seconds; a scale starts at a multiple of it; 0: of the step
};

constexpr unsigned long DAY = SECONDS_PER_DAY;

constexpr TimeStep TIME_TABLE[] = {
    {1, 0, 0},        {2, 1, 0},        {5, 4, 0},        {10, 4, 5},       {15, 2, 5},
    {30, 2, 5},       {60, 3, 10},      {120, 3, 15},     {300, 4, 60},     {600, 4, 300},
    {900, 2, 300},    {1200, 3, 300},   {1800, 2, 300},   {3600, 3, 300},   {7200, 3, 900},
    {14400, 3, 1800}, {21600, 3, 3600}, {28800, 3, 3600}, {43200, 3, 3600}, {DAY, 3, 3600},
};

// The minor ticks of the two steps that are in no row: one second for an instant, and whole days.
constexpr unsigned int MINOR_OF_OTHER_STEPS = 3;

constexpr char const* INVALID_SCALE = "MovingTimeScale - invalid arguments";
constexpr char const* INVALID_AXIS = "MovingTimeAxis - invalid arguments";

void check(long tMin, long tMax, unsigned int ticks, char const* message) {
    if (ticks < 3 || tMax < tMin) throw std::invalid_argument(message);
}

// Takes    seconds: at most 2^63
constexpr unsigned long roundUpToDays(unsigned long seconds) noexcept {
    return (seconds + DAY - 1) / DAY * DAY;
}

// The seconds from tMin to tMax: up to 2^64 - 1.
constexpr unsigned long distanceOf(long tMin, long tMax) noexcept {
    return asUnsigned(wrappingDifference(tMax, tMin));
}

// The time that is `seconds` after `time`.
constexpr long timeAfter(long time, unsigned long seconds) noexcept {
    return wrappingSum(time, asSigned(seconds));
}

// The multiple of the step at or before a time. KEPT(scale-is-unsigned): of the time as an unsigned
// number, unlike on the axis.
constexpr long multipleBefore(long time, unsigned long step) noexcept {
    return asSigned(asUnsigned(time) - asUnsigned(time) % step);
}

// The latest start with which a scale of `length` seconds covers the range, if there is one.
std::optional<long> startOf(TimeStep const& row, unsigned long length, long tMin,
                            long tMax) noexcept {
    long const first = multipleBefore(tMin, row.step);
    unsigned long shift = row.granularity == 0 ? 0 : row.step - row.granularity;
    for (;; shift -= row.granularity) {
        long const start = timeAfter(first, shift);
        if (start <= tMin && timeAfter(start, length) >= tMax) return start;
        if (shift == 0) return std::nullopt;
    }
}

// The seconds from a time to the multiple of the step at or after it. KEPT(axis-is-signed): of the
// time as a signed number, unlike on the scale.
constexpr unsigned long secondsToMultiple(long time, unsigned long step) noexcept {
    if (time < 0) return distanceOf(time, 0) % step;
    unsigned long const rest = asUnsigned(time) % step;
    return rest == 0 ? 0 : step - rest;
}

// Takes    x: from 1 to 2^63
TimeStep stepOfAxis(float x) noexcept {
    for (TimeStep const& row : TIME_TABLE) {
        if (static_cast<float>(row.step) >= x) return row;
    }
    return {roundUpToDays(static_cast<unsigned long>(std::ceil(x))), MINOR_OF_OTHER_STEPS, 0};
}

// A range. A time in it is given by its distance from the start, an unsigned number of 64 bits. So
// no sum overflows before the end of the range.
struct Window {
    long start;
    unsigned long length;

    constexpr long at(unsigned long distance) const noexcept { return timeAfter(start, distance); }
};

// Room for all ticks is made before the first is stored: a failed allocation leaves both lists
// empty. If one list is given for both, its room is the sum.
void makeRoom(std::vector<long>& majors, unsigned long majorCount, std::vector<long>& minors,
              unsigned long minorCount) {
    bool const oneList = &majors == &minors;
    minors.reserve(minorCount + (oneList ? majorCount : 0));
    majors.reserve(majorCount);
}

// Appends `count` ticks to a list that has the room, and returns a pointer to the first. The caller
// writes them there, which is faster than to append them one by one.
long* append(std::vector<long>& list, unsigned long count) {
    list.resize(list.size() + count);
    return list.data() + (list.size() - count);
}

// Takes    window.length: below 2^32
void listEverySecond(Window const& window, std::vector<long>& majors, std::vector<long>& minors) {
    unsigned long const minorCount = window.length > 1 ? window.length - 1 : 0;
    makeRoom(majors, 2, minors, minorCount);
    majors.push_back(window.at(0));
    majors.push_back(window.at(window.length));
    long* tick = append(minors, minorCount);
    for (unsigned long distance = 1; distance < window.length; ++distance) {
        *tick++ = window.at(distance);
    }
}

void listMultiples(Window const& window, unsigned long step, unsigned int minor,
                   std::vector<long>& majors, std::vector<long>& minors) {
    unsigned long const first = secondsToMultiple(window.start, step);
    // KEPT(no-major-no-minor): without a major there are no minor ticks either.
    if (first > window.length) return;
    unsigned long const count = (window.length - first) / step + 1;
    unsigned long const last = first + (count - 1) * step;
    makeRoom(majors, count, minors, (count + 1) * minor);

    long* tick = append(majors, count);
    for (unsigned long i = 0; i < count; ++i) {
        *tick++ = window.at(first + i * step);
    }
    // The seconds from a major to each minor tick after it. KEPT(axis-counts-in-floats): the
    // spacing is a float, and so is each multiple of it.
    std::array<unsigned long, 4> offsets;
    auto const spacing = static_cast<float>(step) / static_cast<float>(minor + 1);
    for (unsigned int k = 1; k <= minor; ++k) {
        offsets[k - 1] = static_cast<unsigned long>(std::lroundf(static_cast<float>(k) * spacing));
    }
    std::span const following(offsets.data(), minor);

    // Before the first major, and after the start.
    for (unsigned long const offset : following) {
        if (first + offset > step) minors.push_back(window.at(first + offset - step));
    }
    // Between two majors: an offset is at most about 4/5 of the step, so it never reaches the next.
    tick = append(minors, (count - 1) * minor);
    for (unsigned long major = first; major < last; major += step) {
        for (unsigned long const offset : following) {
            *tick++ = window.at(major + offset);
        }
    }
    // After the last major, and before the end.
    for (unsigned long const offset : following) {
        if (offset < window.length - last) minors.push_back(window.at(last + offset));
    }
}

}  // namespace

void MovingTimeScale(long tMin, long tMax, unsigned int ticks, unsigned long minStep, long& start,
                     long& end, unsigned long& step, unsigned int& minor) {
    check(tMin, tMax, ticks, INVALID_SCALE);
    unsigned int const intervals = ticks - 1;
    auto const write = [&](long from, TimeStep const& chosen) {
        start = from;
        end = timeAfter(from, chosen.step * intervals);  // < 2^49 seconds
        step = chosen.step;
        minor = chosen.minor;
    };
    // KEPT(instant-has-seconds): no row has both this step and these minor ticks.
    if (tMin == tMax) return write(tMax, {1, MINOR_OF_OTHER_STEPS, 0});

    unsigned long const distance = distanceOf(tMin, tMax);
    for (TimeStep const& row : TIME_TABLE) {
        unsigned long const length = row.step * intervals;  // < 2^49
        // A scale that is shorter than the range does not cover it, wherever it starts.
        if (row.step < minStep || length < distance) continue;
        if (auto const from = startOf(row, length, tMin, tMax)) return write(*from, row);
    }
    // KEPT(days-in-32-bits): the low 32 bits of the distance, not all of it. The quotient is cut
    // before it is rounded up to days, so the scale may end before tMax.
    long const from = multipleBefore(tMin, DAY);
    auto const low32Bits = static_cast<unsigned int>(distanceOf(from, tMax));
    write(from, {roundUpToDays(low32Bits / intervals), MINOR_OF_OTHER_STEPS, 0});
}

UTILLIBRARY_WRAPS void MovingTimeAxis(long tMin, long tMax, unsigned int ticks, unsigned long& step,
                                      unsigned int& minor, std::vector<long>& majors,
                                      std::vector<long>& minors) {
    // KEPT(axis-empties-before-it-checks): unlike the scale, which writes nothing when it throws.
    majors.clear();
    minors.clear();
    step = 0;
    minor = 0;
    check(tMin, tMax, ticks, INVALID_AXIS);

    Window const window{tMin, distanceOf(tMin, tMax)};
    // KEPT(axis-counts-in-floats): a range beyond 2^24 seconds is rounded.
    float const x = static_cast<float>(window.length) / static_cast<float>(ticks - 1);
    if (x < 1) {
        listEverySecond(window, majors, minors);
        // KEPT(step-0-fills-every-second): -1 for an instant, as an unsigned number.
        minor = static_cast<unsigned int>(window.length - 1);
        return;
    }
    TimeStep const chosen = stepOfAxis(x);
    step = chosen.step;
    minor = chosen.minor;
    listMultiples(window, chosen.step, chosen.minor, majors, minors);
}

}  // namespace com::halvorin::utilities
