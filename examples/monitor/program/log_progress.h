#pragma once

#include <string>

#include "program/schedule.h"

namespace monitor {

/// How much of a log has been read, in words.
/// Takes    size: of the log, or 0 if it has none.
/// Gives    "read: 45 % of 200 MiB", or "read: 90 MiB" without a size.
/// Fails    with std::bad_alloc only.
std::string logProgressText(unsigned long bytesRead, unsigned long size);

// The progress line of a replay that takes long. It is shown on a terminal only.
class LogProgress {
public:
    /// Begins to measure time.
    /// Fails    never.
    LogProgress() noexcept;

    /// Shows how much of a log has been read. Does nothing in the first moments, which are enough
    /// for a short log.
    /// Fails    with std::bad_alloc only.
    void show(unsigned long bytesRead, unsigned long size);

    /// Erases the line, if it is shown.
    /// Fails    never.
    void erase() noexcept;

private:
    Clock::time_point first_;
    std::string shown_;  // empty if the line is not shown
};

}  // namespace monitor
