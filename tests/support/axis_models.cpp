#include "support/axis_models.h"

#include <cmath>

namespace testing_support {

namespace {

__extension__ typedef __int128 Wide;

// The number of which the starts of a row are multiples.
long gridOf(Step const& row) { return row.granularity == 0 ? row.seconds : row.granularity; }

}  // namespace

Scale modelOfScale(long tMin, long tMax, unsigned int ticks, unsigned long minStep) {
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

Axis modelOfAxis(long tMin, long tMax, unsigned int ticks) {
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

}  // namespace testing_support
