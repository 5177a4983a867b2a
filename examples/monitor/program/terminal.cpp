#include "program/terminal.h"

#include <sys/ioctl.h>

namespace monitor {

TerminalSize terminalSize(int descriptor) noexcept {
    winsize size{};
    if (ioctl(descriptor, TIOCGWINSZ, &size) != 0) return {};
    return {size.ws_row, size.ws_col};
}

}  // namespace monitor
