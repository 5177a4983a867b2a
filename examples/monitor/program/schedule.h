#pragma once

#include <chrono>

namespace monitor {

// A steady clock: it does not change when the machine's date is set.
using Clock = std::chrono::steady_clock;

/// The next deadline. It is a whole number of intervals after the one before, so that delays do not
/// add up.
/// Takes    interval: above zero; now: not before `previous`.
/// Gives    the first such time after `now`. Deadlines that have passed are left out.
/// Fails    never.
Clock::time_point deadlineAfter(Clock::time_point previous, std::chrono::nanoseconds interval,
                                Clock::time_point now) noexcept;

}  // namespace monitor
