// What the program writes to its standard descriptors.
#include "program/output.h"

#include <fcntl.h>
#include <iostream>
#include <poll.h>
#include <string>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

#include <utillibrary/application/ORUsyslog.h>
#include <utillibrary/datatypes/Variant.h>

using com::halvorin::datatypes::Variant;
using namespace monitor;

namespace {

// Replaces standard output for a scope.
class ScopedStandardOutput {
public:
    explicit ScopedStandardOutput(int descriptor) : previous_(dup(STDOUT_FILENO)) {
        dup2(descriptor, STDOUT_FILENO);
    }
    ~ScopedStandardOutput() {
        dup2(previous_, STDOUT_FILENO);
        close(previous_);
    }
    ScopedStandardOutput(ScopedStandardOutput const&) = delete;
    ScopedStandardOutput& operator=(ScopedStandardOutput const&) = delete;

private:
    int previous_;
};

TEST(Output, PrintsAllBytesToAPipeThatTakesOnlyPieces) {
    std::string text(1'000'003, '.');
    for (std::size_t i = 0; i < text.size(); i += 7)
        text[i] = static_cast<char>('a' + i % 26);
    int pipe[2];
    ASSERT_EQ(pipe2(pipe, O_NONBLOCK), 0);
    std::cout.flush();
    std::thread writer([&] {
        ScopedStandardOutput const replaced(pipe[1]);
        print(text);
        close(pipe[1]);
    });
    std::string received;
    char buffer[5000];
    for (ssize_t count = -1; count != 0; count = read(pipe[0], buffer, sizeof buffer)) {
        if (count > 0) received.append(buffer, static_cast<std::size_t>(count));
        pollfd ready{pipe[0], POLLIN, 0};
        poll(&ready, 1, -1);
    }
    writer.join();
    close(pipe[0]);
    EXPECT_TRUE(received == text);
}

TEST(LogHook, ShowsTheReportsOfTheLibrary) {
    Variant broken;
    broken.dataType = 99;
    testing::internal::CaptureStderr();
    EXPECT_EQ(broken.toString(), "");
    com::halvorin::application::oru::writelog("Library::close", 7, "Library is not open", 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "monitor: Variant::convertToString: Cannot convert unknown type"
              " (level 3, code 0x80004005)\n"
              "monitor: Library::close: Library is not open (level 7, code 0x00000000)\n");
}

}  // namespace
