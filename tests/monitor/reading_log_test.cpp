// A log that cannot take back a partial line. What the program does with its log is in log.bats.
#include "readings/reading_log.h"

#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include "monitor/files_support.h"
#include "support/locales.h"

using namespace monitor;
using monitor_test::ScopedFileSize;
using monitor_test::UnshrinkableFile;

namespace {

TEST(ReadingLog, SaysThatAPartOfALineRemains) {
    testing_support::ScopedCLocale const english("C");
    UnshrinkableFile const file("first\n");
    ReadingLog log(file.path());
    std::string message;
    {
        ScopedFileSize const limited(10);
        try {
            log.append("second");
        } catch (std::system_error const& failure) {
            message = failure.what();
        }
    }
    EXPECT_EQ(message, "cannot append to " + file.path() +
                           ", where a part of a line remains: File too large");
    log.append("third");  // ends the partial line first
    std::ifstream stream(file.path());
    std::string const bytes{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_EQ(bytes, "first\nseco\nthird\n");
}

}  // namespace
