#pragma once

#include <ostream>
#include <vector>

#include <utillibrary/utilities/MovingTimeScale.h>

// The results of the time-axis helpers as values that can be compared and printed.
namespace testing_support {

/// What MovingTimeScale gives.
struct Scale {
    long start;
    long end;
    unsigned long step;
    unsigned int minor;

    bool operator==(Scale const&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, Scale const& scale) {
    return out << "from " << scale.start << " to " << scale.end << ", step " << scale.step
               << ", minor " << scale.minor;
}

inline Scale scaleOf(long tMin, long tMax, unsigned int ticks, unsigned long minStep) {
    Scale scale{-1, -2, 3, 4};  // no scale has these values, so a missing one shows
    com::halvorin::utilities::MovingTimeScale(tMin, tMax, ticks, minStep, scale.start, scale.end,
                                              scale.step, scale.minor);
    return scale;
}

/// What MovingTimeAxis gives.
struct Axis {
    unsigned long step;
    unsigned int minor;
    std::vector<long> majors;
    std::vector<long> minors;

    bool operator==(Axis const&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, Axis const& axis) {
    out << "step " << axis.step << ", minor " << axis.minor << ", majors";
    for (long const time : axis.majors)
        out << ' ' << time;
    out << ", minors";
    for (long const time : axis.minors)
        out << ' ' << time;
    return out;
}

inline Axis axisOf(long tMin, long tMax, unsigned int ticks) {
    // No axis has these values, so a missing one shows.
    Axis axis{99, 98, std::vector<long>(3, 97), std::vector<long>(2, 96)};
    com::halvorin::utilities::MovingTimeAxis(tMin, tMax, ticks, axis.step, axis.minor, axis.majors,
                                             axis.minors);
    return axis;
}

}  // namespace testing_support
