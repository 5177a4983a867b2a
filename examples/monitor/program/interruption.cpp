#include "program/interruption.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <poll.h>
#include <sys/signalfd.h>
#include <system_error>
#include <unistd.h>

namespace monitor {

namespace {

timespec toTimespec(std::chrono::nanoseconds duration) noexcept {
    auto const seconds = std::chrono::duration_cast<std::chrono::seconds>(duration);
    return {seconds.count(), (duration - seconds).count()};
}

}  // namespace

Interruption::Interruption() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    signals_ = signalfd(-1, &set, SFD_CLOEXEC);
    if (signals_ < 0) {
        throw std::system_error(errno, std::generic_category(), "cannot wait for signals");
    }
}

Interruption::~Interruption() { close(signals_); }

bool Interruption::waitUntil(Clock::time_point deadline) const noexcept {
    std::chrono::nanoseconds left;
    do {
        left = std::max<std::chrono::nanoseconds>(deadline - Clock::now(), Clock::duration::zero());
        timespec const timeout = toTimespec(left);
        pollfd signals{signals_, POLLIN, 0};
        if (ppoll(&signals, 1, &timeout, nullptr) > 0) return true;
    } while (left > Clock::duration::zero());  // looks once more at the deadline itself
    return false;
}

bool Interruption::waitForRoom(int descriptor) const noexcept {
    pollfd both[] = {{signals_, POLLIN, 0}, {descriptor, POLLOUT, 0}};
    while (poll(both, 2, -1) < 0 && errno == EINTR) {
    }
    return both[1].revents == 0;
}

}  // namespace monitor
