#include "program/schedule.h"

namespace monitor {

Clock::time_point deadlineAfter(Clock::time_point previous, std::chrono::nanoseconds interval,
                                Clock::time_point now) noexcept {
    return previous + ((now - previous) / interval + 1) * interval;
}

}  // namespace monitor
