// A log as lines. What the program does with them is in replay.bats.
#include "readings/replay.h"

#include <fcntl.h>
#include <string>
#include <string_view>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/ByteStream.h>

#include "monitor/files_support.h"
#include "readings/descriptor.h"

using com::halvorin::datatypes::ByteStream;
using namespace monitor;
using namespace std::string_view_literals;
using monitor_test::UnshrinkableFile;

namespace {

struct LinesFact {
    char const* fact;
    std::string_view bytes;
    std::string_view lines;  // "NUMBER:LINE;" for each
};

LinesFact const LINES_FACTS[] = {
    {"no bytes have no line", ""sv, ""sv},
    {"a newline ends a line", "a\nb\n"sv, "1:a;2:b;"sv},
    {"the last line may lack its newline", "a\nb"sv, "1:a;2:b;"sv},
    {"a newline alone is an empty line", "\n"sv, "1:;"sv},
    {"empty lines at the start count", "\n\na"sv, "1:;2:;3:a;"sv},
    {"an empty line at the end counts", "a\n\n"sv, "1:a;2:;"sv},
    {"a carriage return does not end a line", "a\r\nb"sv, "1:a\r;2:b;"sv},
    {"a zero byte does not end a line", "a\0b\nc"sv, "1:a\0b;2:c;"sv},
};

TEST(Lines, AreNumbered) {
    for (LinesFact const& row : LINES_FACTS) {
        SCOPED_TRACE(row.fact);
        ByteStream bytes;
        if (!row.bytes.empty()) {
            bytes.copy(row.bytes.data(), static_cast<unsigned>(row.bytes.size()));
        }
        Lines lines(bytes);
        std::string found;
        for (std::string_view line; lines.next(line);)
            found.append(std::to_string(lines.number())).append(":").append(line).append(";");
        EXPECT_EQ(found, row.lines);
    }
}

TEST(ReadFile, ReadsAFileThatHasNoSize) {
    auto const bytes = readFile("/proc/version");
    EXPECT_EQ(std::string(bytes.data(), bytes.size()).find("Linux version "), 0U);
}

// A pipe has no size, so the block grows while it is read. These sizes are around those of the
// block, which doubles.
TEST(ReadFile, ReadsAFileOfAnySize) {
    for (std::size_t const size : {0U, 1U, 65535U, 65536U, 65537U, 131072U, 131073U, 300007U}) {
        SCOPED_TRACE(size);
        std::string text(size, '.');
        for (std::size_t i = 0; i < size; i += 7)
            text[i] = static_cast<char>('a' + i % 26);

        UnshrinkableFile const file(text);
        auto const fromFile = readFile(file.path());
        EXPECT_TRUE(std::string(fromFile.data(), fromFile.size()) == text);

        int pipe[2];
        ASSERT_EQ(pipe2(pipe, O_CLOEXEC), 0);
        std::thread writer([&] {
            writeWhole(pipe[1], text);
            close(pipe[1]);
        });
        auto const fromPipe = readFile("/proc/self/fd/" + std::to_string(pipe[0]));
        writer.join();
        close(pipe[0]);
        EXPECT_TRUE(std::string(fromPipe.data(), fromPipe.size()) == text);
    }
}

}  // namespace
