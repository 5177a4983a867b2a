#pragma once

#include <array>
#include <chrono>
#include <deque>

#include "readings/reading.h"

namespace monitor {

// The values that a chart has lines for, and their number.
enum Series : unsigned char { PROCESSOR, MEMORY, DISK, SERIES_COUNT };

// A summary of one value over some readings. If the count is 0, the other members mean nothing.
struct Values {
    unsigned long count = 0;
    double low = 0;
    double high = 0;
    double sum = 0;
    double last = 0;
};

// One reading, or several that are so close together that a chart cannot tell them apart.
struct Moment {
    double time = 0;  // of the latest of them, in seconds since 1970
    unsigned long readings = 0;
    std::array<Values, SERIES_COUNT> values;
};

// The readings of a window of time. The window ends with the latest reading.
//
// There are at most MOMENTS + 1 moments, however many readings there are: the window has MOMENTS
// equal parts, and readings in the same part share one moment.
class History {
public:
    static constexpr int MOMENTS = 360;

    /// Takes    window: above zero.
    /// Fails    with std::bad_alloc only.
    explicit History(std::chrono::seconds window);

    /// Adds the latest reading, and removes those that are now before the window. It also removes
    /// those that are later than this one: the machine's clock was set back.
    /// Range    a time before 1970 or after the year 9999 is replaced by that limit.
    /// Fails    with std::bad_alloc only.
    void add(Reading const& reading);

    /// The length of the window.
    /// Fails    never.
    std::chrono::seconds window() const noexcept { return window_; }
    /// The moments in order of time.
    /// Fails    never.
    std::deque<Moment> const& moments() const noexcept { return moments_; }
    /// The reading that was added last. Its time is not set if there is none.
    /// Fails    never.
    Reading const& latest() const noexcept { return latest_; }

private:
    std::chrono::seconds window_;
    std::deque<Moment> moments_;
    Reading latest_;
};

}  // namespace monitor
