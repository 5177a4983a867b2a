#include "readings/reading_log.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <stdexcept>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

#include "readings/descriptor.h"

namespace monitor {

namespace {

constexpr mode_t PERMISSIONS = 0666;  // minus the bits of the umask

// A monitor keeps the lock only while it writes one line, so one second of tries is ample.
constexpr int LOCK_TRIES = 100;
constexpr std::chrono::milliseconds LOCK_PAUSE{10};

// Locks a file for a scope.
class ScopedLock {
public:
    /// Gives    in `error` 0, or the errno of the call that failed.
    /// Fails    never.
    ScopedLock(int descriptor, int& error) : descriptor_(descriptor) {
        error = 0;
        for (int tries = 1; flock(descriptor, LOCK_EX | LOCK_NB) != 0; ++tries) {
            error = errno;
            if (error != EWOULDBLOCK || tries == LOCK_TRIES) return;
            error = 0;
            std::this_thread::sleep_for(LOCK_PAUSE);
        }
    }
    ~ScopedLock() { flock(descriptor_, LOCK_UN); }
    ScopedLock(ScopedLock const&) = delete;
    ScopedLock& operator=(ScopedLock const&) = delete;

private:
    int descriptor_;
};

bool endsInPartialLine(int descriptor, off_t size) noexcept {
    char last = '\n';
    return size > 0 && pread(descriptor, &last, 1, size - 1) == 1 && last != '\n';
}

}  // namespace

ReadingLog::ReadingLog(std::string path) : path_(std::move(path)) {
    // A file is also read, for its last byte. A pipe that is opened for reading too would never be
    // closed for its writer.
    struct stat status {};
    bool const isOther = stat(path_.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
    int const access = isOther ? O_WRONLY : O_RDWR | O_CREAT;
    descriptor_ = open(path_.c_str(), access | O_APPEND | O_CLOEXEC | O_NOCTTY, PERMISSIONS);
    if (descriptor_ < 0) {
        throw std::system_error(errno, std::generic_category(), "cannot open " + path_);
    }
    isFile_ = fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
}

ReadingLog::~ReadingLog() { close(descriptor_); }

int ReadingLog::descriptor() const noexcept { return descriptor_; }

void ReadingLog::fail(int error, std::string const& more) const {
    throw std::system_error(error, std::generic_category(), "cannot append to " + path_ + more);
}

void ReadingLog::append(std::string const& line) {
    if (isFile_) {
        appendToFile(line + "\n");
    } else if (int const error = writeWhole(descriptor_, line + "\n")) {
        fail(error, "");
    }
}

void ReadingLog::appendToFile(std::string const& line) {
    int lockError = 0;
    ScopedLock const lock(descriptor_, lockError);
    if (lockError == EWOULDBLOCK) {
        throw std::runtime_error("cannot append to " + path_ + ": another program locks it");
    }
    if (lockError != 0) fail(lockError, "");

    struct stat before {};
    struct stat named {};
    if (fstat(descriptor_, &before) != 0) fail(errno, "");
    if (stat(path_.c_str(), &named) != 0 || named.st_ino != before.st_ino ||
        named.st_dev != before.st_dev) {
        throw std::runtime_error("cannot append to " + path_ +
                                 ": the file was removed, renamed or replaced");
    }
    bool const needsNewline = endsInPartialLine(descriptor_, before.st_size);
    int const error = writeWhole(descriptor_, needsNewline ? "\n" + line : line);
    if (error == 0) return;
    bool const isWhole = ftruncate(descriptor_, before.st_size) == 0;
    fail(error, isWhole ? "" : ", where a part of a line remains");
}

}  // namespace monitor
