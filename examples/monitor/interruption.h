#pragma once

#include "schedule.h"

namespace monitor {

// SIGINT and SIGTERM as something to wait for, not something that strikes.
//
// From construction on the two signals are held back, and every wait ends with them; once one has
// come, every further wait ends at once. A parent that had them ignored, as a shell does for its
// background jobs, makes no difference.
class Interruption {
public:
    /// Fails    with std::system_error.
    Interruption();
    ~Interruption();
    Interruption(Interruption const&) = delete;
    Interruption& operator=(Interruption const&) = delete;

    /// Waits for a point in time. True when a signal came first.
    bool waitUntil(Clock::time_point deadline) const noexcept;

    /// Waits until a descriptor takes output, or would refuse it. True when a signal has come and
    /// there is still no room, so that a reader who has stopped reading cannot hold the program.
    bool waitForRoom(int descriptor) const noexcept;

private:
    int signals_;  // readable once a signal has come
};

}  // namespace monitor
