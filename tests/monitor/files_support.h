#pragma once

#include <csignal>
#include <fcntl.h>
#include <string>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "readings/descriptor.h"

// Files that tests of the monitor write and read.
namespace monitor_test {

// A file in memory that has some bytes at first and cannot become shorter.
class UnshrinkableFile {
public:
    explicit UnshrinkableFile(std::string const& bytes)
        : descriptor_(memfd_create("log", MFD_ALLOW_SEALING)) {
        EXPECT_EQ(monitor::writeWhole(descriptor_, bytes), 0);
        EXPECT_EQ(fcntl(descriptor_, F_ADD_SEALS, F_SEAL_SHRINK), 0);
    }
    ~UnshrinkableFile() { close(descriptor_); }
    UnshrinkableFile(UnshrinkableFile const&) = delete;
    UnshrinkableFile& operator=(UnshrinkableFile const&) = delete;

    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

private:
    int descriptor_;
};

// Limits the size of files for a scope.
class ScopedFileSize {
public:
    explicit ScopedFileSize(rlim_t size) : previousAction_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &previous_);
        rlimit const limit{size, previous_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~ScopedFileSize() {
        setrlimit(RLIMIT_FSIZE, &previous_);
        std::signal(SIGXFSZ, previousAction_);
    }
    ScopedFileSize(ScopedFileSize const&) = delete;
    ScopedFileSize& operator=(ScopedFileSize const&) = delete;

private:
    rlimit previous_{};
    sighandler_t previousAction_;
};

}  // namespace monitor_test
