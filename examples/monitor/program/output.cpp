#include "program/output.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <system_error>
#include <unistd.h>

#include "program/printable.h"
#include "readings/descriptor.h"

namespace monitor {

namespace {

constexpr std::string_view ERASE_LINE = "\r\033[K";
// Only one line of the terminal can be erased, so a wider line must be cut and not wrapped.
constexpr std::string_view WRAP_OFF = "\033[?7l";
constexpr std::string_view WRAP_ON = "\033[?7h";

bool progressIsShown() noexcept {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): there is one thread, and it sets nothing.
    char const* const terminal = std::getenv("TERM");
    return isatty(STDERR_FILENO) != 0 && terminal != nullptr &&
           std::string_view(terminal) != "dumb";
}

}  // namespace

void prepareOutput() noexcept {
    int descriptor = 0;
    do {
        // Open for reading only: a write to it fails, as on a closed descriptor.
        descriptor = open("/dev/null", O_RDONLY);
    } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    if (descriptor > STDERR_FILENO) close(descriptor);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

void print(std::string const& text) {
    int const error = writeWhole(STDOUT_FILENO, text);
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), "cannot write to standard output");
    }
}

void say(std::string const& message) {
    eraseProgress();
    writeWhole(STDERR_FILENO, "monitor: " + printable(message) + "\n");
}

void sayWithUsage(std::string const& message) {
    say(message);
    writeWhole(STDERR_FILENO, "Usage: monitor [OPTIONS]. See monitor --help.\n");
}

void showProgress(std::string const& text) {
    if (!progressIsShown()) return;
    std::string line(ERASE_LINE);
    line.append(WRAP_OFF).append(text).append(WRAP_ON);
    writeWhole(STDERR_FILENO, line);
}

void eraseProgress() noexcept {
    if (progressIsShown()) writeWhole(STDERR_FILENO, ERASE_LINE);
}

}  // namespace monitor
