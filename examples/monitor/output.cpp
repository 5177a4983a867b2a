#include "output.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <system_error>
#include <unistd.h>

namespace monitor {

namespace {

constexpr std::string_view ERASE_LINE = "\r\033[K";
// A line that is wider than the terminal is cut, since only one can be erased.
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
        // For reading, so that a write there still fails as on a closed descriptor.
        descriptor = open("/dev/null", O_RDONLY);
    } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    if (descriptor > STDERR_FILENO) close(descriptor);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

int writeWhole(int descriptor, std::string_view text) noexcept {
    while (!text.empty()) {
        ssize_t const count = write(descriptor, text.data(), text.size());
        if (count >= 0) {
            text.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno == EAGAIN) {  // someone who shares the descriptor made it non-blocking
            pollfd room{descriptor, POLLOUT, 0};
            poll(&room, 1, -1);
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

void print(std::string const& text) {
    int const error = writeWhole(STDOUT_FILENO, text);
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), "cannot write to standard output");
    }
}

void say(std::string const& text) {
    eraseProgress();
    writeWhole(STDERR_FILENO, "monitor: " + text + "\n");
}

void showProgress(std::string const& text) {
    if (!progressIsShown()) return;
    std::string line(ERASE_LINE);
    line.append(WRAP_OFF).append(text).append(WRAP_ON);
    writeWhole(STDERR_FILENO, line);
}

void eraseProgress() {
    if (progressIsShown()) writeWhole(STDERR_FILENO, ERASE_LINE);
}

}  // namespace monitor
