// The progress of a replay in words. What a terminal shows of it is in progress.bats.
#include "program/log_progress.h"

#include <gtest/gtest.h>

using namespace monitor;

namespace {

constexpr unsigned long MIB = 1024UL * 1024;

struct ProgressFact {
    char const* fact;
    unsigned long bytesRead;
    unsigned long size;
    char const* text;
};

ProgressFact const PROGRESS_FACTS[] = {
    {"nothing of a file is read", 0, 200 * MIB, "read: 0 % of 200 MiB"},
    {"a percentage is cut", 200 * MIB - 1, 200 * MIB, "read: 99 % of 200 MiB"},
    {"all of a file is read", 200 * MIB, 200 * MIB, "read: 100 % of 200 MiB"},
    {"a file that has grown is read to 100 %", 300 * MIB, 200 * MIB, "read: 100 % of 200 MiB"},
    {"a size is cut to MiB", 1, 2 * MIB - 1, "read: 0 % of 1 MiB"},
    {"a pipe has no percentage", 90 * MIB + 1, 0, "read: 90 MiB"},
    {"a pipe begins with 0 MiB", MIB - 1, 0, "read: 0 MiB"},
};

TEST(LogProgress, SaysHowMuchIsRead) {
    for (ProgressFact const& row : PROGRESS_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(logProgressText(row.bytesRead, row.size), row.text);
    }
}

}  // namespace
