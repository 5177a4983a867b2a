// Lines of a file that is read in pieces.
#include "readings/line_reader.h"

#include <fcntl.h>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "monitor/files_support.h"
#include "readings/descriptor.h"
#include "support/locales.h"

using namespace monitor;
using namespace std::string_view_literals;
using monitor_test::UnshrinkableFile;

namespace {

constexpr std::size_t LONGEST = LineReader::LONGEST_LINE;

// "NUMBER:LINE;" for each line, and "NUMBER:too long;" for one that is.
std::string linesOf(std::string const& path) {
    LineReader lines(path);
    std::string found;
    while (lines.next()) {
        found += std::to_string(lines.number()) + ":";
        found += lines.isTooLong() ? "too long" : std::string(lines.line());
        EXPECT_TRUE(!lines.isTooLong() || lines.line().empty());
        found += ";";
    }
    EXPECT_FALSE(lines.next());
    return found;
}

struct LinesFact {
    char const* fact;
    std::string_view bytes;
    std::string_view lines;
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

TEST(LineReader, NumbersLines) {
    for (LinesFact const& row : LINES_FACTS) {
        SCOPED_TRACE(row.fact);
        UnshrinkableFile const file{std::string(row.bytes)};
        EXPECT_EQ(linesOf(file.path()), row.lines);
    }
}

// Sizes around those of the longest line and of the buffer, which is twice as large.
TEST(LineReader, DoesNotKeepALineThatIsTooLong) {
    for (std::size_t const size : {LONGEST - 1, LONGEST, LONGEST + 1, 2 * LONGEST - 1, 2 * LONGEST,
                                   2 * LONGEST + 1, 3 * LONGEST, 4 * LONGEST + 1, 10 * LONGEST}) {
        SCOPED_TRACE(size);
        std::string const line(size, '.');
        std::string const shown = size <= LONGEST ? line : "too long";
        UnshrinkableFile const between("a\n" + line + "\nb\n");
        EXPECT_TRUE(linesOf(between.path()) == "1:a;2:" + shown + ";3:b;");
        UnshrinkableFile const last("a\n" + line);
        EXPECT_TRUE(linesOf(last.path()) == "1:a;2:" + shown + ";");
        UnshrinkableFile const twice(line + "\n" + line + "\n\n");
        EXPECT_TRUE(linesOf(twice.path()) == "1:" + shown + ";2:" + shown + ";3:;");
    }
}

// Lines of all lengths to 300, so that the ends of the pieces fall on any byte of a line.
TEST(LineReader, PutsPiecesTogether) {
    std::string text;
    std::string lines;
    unsigned long number = 0;
    for (std::size_t round = 0; round < 5; ++round) {
        for (std::size_t size = 0; size < 300; ++size) {
            std::string const line(size, static_cast<char>('a' + size % 26));
            text += line + "\n";
            lines += std::to_string(++number) + ":" + line + ";";
        }
    }
    UnshrinkableFile const file(text);
    EXPECT_TRUE(linesOf(file.path()) == lines);
}

TEST(LineReader, ReadsAPipeByteByByte) {
    int pipe[2];
    ASSERT_EQ(pipe2(pipe, O_CLOEXEC), 0);
    std::thread writer([&] {
        for (char const c : "one\ntwo\n\nthree"sv) {
            writeWhole(pipe[1], std::string_view(&c, 1));
            std::this_thread::yield();
        }
        close(pipe[1]);
    });
    EXPECT_EQ(linesOf("/proc/self/fd/" + std::to_string(pipe[0])), "1:one;2:two;3:;4:three;");
    writer.join();
    close(pipe[0]);
}

TEST(LineReader, ReadsAFileThatHasNoSize) {
    EXPECT_EQ(linesOf("/proc/version").find("1:Linux version "), 0U);
}

std::string failureOf(std::string const& path) {
    try {
        linesOf(path);
    } catch (std::system_error const& failure) {
        return failure.what();
    }
    return "none";
}

TEST(LineReader, SaysWhyItCannotRead) {
    testing_support::ScopedCLocale const english("C");
    EXPECT_EQ(failureOf("/nowhere"), "cannot read /nowhere: No such file or directory");
    EXPECT_EQ(failureOf("/"), "cannot read /: Is a directory");
}

}  // namespace
