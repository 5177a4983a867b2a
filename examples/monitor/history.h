#pragma once

#include <array>
#include <chrono>
#include <deque>

#include "reading.h"

namespace monitor {

// The values that a chart has lines for, and their number.
enum Series : unsigned char { PROCESSOR, MEMORY, DISK, SERIES_COUNT };

// What one value has been. Without a count, the rest says nothing.
struct Values {
    unsigned long count = 0;
    double low = 0;
    double high = 0;
    double sum = 0;
    double last = 0;
};

// One reading, or as many as are too close together to be told apart in a chart.
struct Moment {
    double time = 0;  // seconds since 1970, of the latest of them
    unsigned long readings = 0;
    std::array<Values, SERIES_COUNT> values;
};

// The readings of a window of time that ends with the latest of them.
//
// However short the interval and long the window, there are at most MOMENTS + 1 moments: readings of
// the same part of the window share one, which keeps their least, greatest, sum and last values.
class History {
public:
    static constexpr int MOMENTS = 360;

    /// Takes    window: above zero.
    explicit History(std::chrono::seconds window);

    /// Adds the latest reading, and drops those that have left the window. A reading that is earlier
    /// than others drops these as well: the clock was put back.
    /// Range    a time before 1970, or after the year 9999, is moved to that limit.
    void add(Reading const& reading);

    std::chrono::seconds window() const noexcept { return window_; }
    /// In order of time.
    std::deque<Moment> const& moments() const noexcept { return moments_; }
    /// What was added last; not set before.
    Reading const& latest() const noexcept { return latest_; }

private:
    std::chrono::seconds window_;
    std::deque<Moment> moments_;
    Reading latest_;
};

}  // namespace monitor
