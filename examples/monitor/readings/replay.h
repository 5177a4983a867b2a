#pragma once

#include <functional>
#include <string>

#include "readings/reading.h"
#include "readings/reading_line.h"

namespace monitor {

// What a replay calls.
struct Replayer {
    /// Receives each reading.
    std::function<void(Reading const&)> use;
    /// Receives each malformed line, with its number.
    std::function<void(unsigned long, Malformed const&)> refuse;
    /// Is called before each piece of the file is read. It receives the number of bytes that were
    /// read so far, and the size of the file, or 0 if it has none.
    std::function<void(unsigned long, unsigned long)> beforeReading;
};

/// Reads a log, and calls a function for each line. A line above 64 KiB is malformed.
/// Fails    as `LineReader` and the replayer's functions do.
void replay(std::string const& path, Replayer const& replayer);

}  // namespace monitor
