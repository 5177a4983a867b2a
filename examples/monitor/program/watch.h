#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "program/interruption.h"
#include "program/options.h"
#include "readings/reading.h"

namespace monitor {

// What the main loop calls. `begin` and `add` return false to end the loop.
struct Watcher {
    /// Receives the reading at the start. Its processor load covers no interval.
    std::function<bool(Reading const&)> begin;
    /// Receives each further reading, and the time since the one before.
    std::function<bool(Reading const&, std::chrono::nanoseconds)> add;
    /// Receives a message for the user.
    std::function<void(std::string const&)> report;
};

/// The main loop: takes readings of this machine until it has taken all that `options` asks for, a
/// signal comes, or the watcher ends it.
/// Fails    as `Sampler` and the watcher's functions do.
void watch(Options const& options, Interruption const& interruption, Watcher const& watcher);

}  // namespace monitor
