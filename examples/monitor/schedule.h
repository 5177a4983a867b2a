#pragma once

#include <chrono>

namespace monitor {

// Steady: what happens to the machine's date does not touch it.
using Clock = std::chrono::steady_clock;

/// The next deadline, a whole number of intervals after the previous one, so that delays do not add
/// up.
/// Takes    interval: above zero; now: not before previous.
/// Gives    the first such time after now: readings that were slept through are left out, not made
///          up for.
Clock::time_point deadlineAfter(Clock::time_point previous, std::chrono::nanoseconds interval,
                                Clock::time_point now) noexcept;

}  // namespace monitor
