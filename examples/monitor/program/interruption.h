#pragma once

#include "program/schedule.h"

namespace monitor {

// SIGINT and SIGTERM as events that end a wait.
//
// The constructor blocks the two signals, so that they do not kill the program. Once one of them
// has come, each wait ends at once. This also works if the parent ignores the signals, as a shell
// does for its background jobs.
class Interruption {
public:
    /// Blocks the signals.
    /// Fails    with std::system_error "cannot wait for signals: REASON".
    Interruption();
    /// Stops waiting. The signals remain blocked.
    ~Interruption();
    /// Cannot be copied: it owns a descriptor.
    Interruption(Interruption const&) = delete;
    /// Cannot be assigned: it owns a descriptor.
    Interruption& operator=(Interruption const&) = delete;

    /// Waits until a point in time.
    /// Gives    true if a signal came first.
    /// Fails    never.
    bool waitUntil(Clock::time_point deadline) const noexcept;

    /// Waits until a descriptor accepts output or reports an error.
    /// Gives    true if a signal has come and the descriptor is still full. So a reader that has
    ///          stopped reading cannot keep an interrupted program running.
    /// Fails    never.
    bool waitForRoom(int descriptor) const noexcept;

private:
    int signals_;  // readable once a signal has come
};

}  // namespace monitor
