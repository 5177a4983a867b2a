#pragma once

#include <functional>
#include <string>

#include "readings/reading.h"
#include "readings/reading_line.h"

namespace monitor {

/// Reads a log, and calls a function for each line.
/// Takes    use: is called for each reading; refuse: is called for each malformed line, with the
///          line's number. A line above 64 KiB is malformed.
/// Fails    as `LineReader`, `use` and `refuse` do.
void replay(std::string const& path, std::function<void(Reading const&)> const& use,
            std::function<void(unsigned long, Malformed const&)> const& refuse);

}  // namespace monitor
