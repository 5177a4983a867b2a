#include "readings/descriptor.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace monitor {

int writeWhole(int descriptor, std::string_view bytes) noexcept {
    while (!bytes.empty()) {
        ssize_t const count = write(descriptor, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno == EAGAIN) {  // another process that shares it made it non-blocking
            pollfd room{descriptor, POLLOUT, 0};
            poll(&room, 1, -1);
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

}  // namespace monitor
