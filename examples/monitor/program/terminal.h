#pragma once

namespace monitor {

// The size of a terminal in characters. A number is 0 if there is no terminal, or if it does not
// say.
struct TerminalSize {
    unsigned int rows = 0;
    unsigned int columns = 0;
};

/// The size of the terminal that a descriptor writes to, at this moment.
/// Fails    never.
TerminalSize terminalSize(int descriptor) noexcept;

}  // namespace monitor
