// A log as readings. What the program does with them is in replay.bats.
#include "readings/replay.h"

#include <string>

#include <gtest/gtest.h>

#include "monitor/files_support.h"
#include "readings/line_reader.h"
#include "support/locales.h"

using namespace monitor;
using monitor_test::UnshrinkableFile;

namespace {

TEST(Replay, CallsOneFunctionForEachLine) {
    // The program never changes its C locale, from which a time takes its decimal point.
    testing_support::ScopedCLocale const locale("C");
    UnshrinkableFile const file("time=2024-03-05T06:08:09.250Z cpu=1\n\n" +
                                std::string(LineReader::LONGEST_LINE + 1, 'x') +
                                "\ntime=2024-03-05T06:08:10.250Z cpu=2");
    std::string calls;
    replay(file.path(), {[&](Reading const& reading) { calls += toLine(reading) + "\n"; },
                         [&](unsigned long line, Malformed const& malformed) {
                             calls += std::to_string(line) + " is " + malformed.reason + "\n";
                         },
                         [&](unsigned long bytes, unsigned long size) {
                             // The first call comes before anything is known of the file.
                             if (bytes == 0) return;
                             calls += std::to_string(bytes) + " of " + std::to_string(size) + "\n";
                         }});
    EXPECT_EQ(calls,
              "time=2024-03-05T06:08:09.250Z cpu=1\n"
              "2 is not a line of name=value pairs\n"
              "3 is longer than 65536 bytes\n"
              "65610 of 65610\n"
              "time=2024-03-05T06:08:10.250Z cpu=2\n"
              "65610 of 65610\n");
}

}  // namespace
