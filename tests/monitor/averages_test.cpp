// Running averages of readings.
#include "readings/averages.h"

#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/utilities/StringNVP.h>
#include <utillibrary/utilities/StringUtilities.h>

#include "monitor/readings_support.h"
#include "support/locales.h"

using com::halvorin::datatypes::Variant;
using com::halvorin::utilities::split;
using com::halvorin::utilities::to_string;
using namespace monitor;
using namespace std::chrono_literals;
using monitor_test::null;
using monitor_test::usualReading;

namespace {

// The program leaves the locale at "C". The suite also runs under others.
class AveragesOfReadings : public testing::Test {
    testing_support::ScopedLocale locale_{"C"};
};

struct AverageFact {
    char const* fact;
    char const* samples;  // "SPAN/CPU/DISK", with the span in seconds
    char const* average;  // the same
};

AverageFact const AVERAGE_FACTS[] = {
    {"one reading is its own average", "1/10/5", "1/10/5"},
    {"equal spans have equal weights", "1/10/5 1/20/5", "2/15/5"},
    {"a span of 3 s has three times the weight of 1 s", "3/10/1 1/20/5", "4/12.5/2"},
    {"two spans of 1 s together have the weight of 2 s", "1/10/1 1/20/1 2/45/1", "4/30/1"},
    {"spans of nanoseconds have weights", "3e-9/10/1 1e-9/20/5", "4e-09/12.5/2"},
    {"a reading without a span is the average if it is alone", "0/10/5", "0/10/5"},
    {"the first reading with a span replaces one without", "0/10/5 1/20/7", "1/20/7"},
    {"a second reading without a span is ignored", "0/10/5 0/20/7", "0/10/5"},
    {"a later reading without a span is ignored", "1/10/5 0/90/9 1/20/7", "2/15/6"},
    {"a reading with a negative span is ignored", "1/10/5 -9/90/9 1/20/7", "2/15/6"},
    {"a value that is always Null has the average Null", "1/10/null 1/20/null", "2/15/null"},
    {"a value that is Null at first has the average of the rest", "3/10/null 1/20/7", "4/12.5/7"},
    {"time before a value's first number has no weight", "8/10/null 1/10/7 1/10/9", "10/10/8"},
    {"time in which a value is Null has no weight", "1/10/7 8/10/null 1/10/9", "10/10/8"},
};

std::vector<std::string> fieldsOf(std::string const& text, std::string const& separators) {
    std::vector<std::string> fields;
    split(fields, text, separators);
    return fields;
}

Variant numberOrNull(std::string const& text) {
    return text == "null" ? null() : Variant(std::stof(text));
}

TEST_F(AveragesOfReadings, WeighReadingsByTheirTime) {
    for (AverageFact const& row : AVERAGE_FACTS) {
        SCOPED_TRACE(row.fact);
        Averages averages({"disk", "cpu"});
        testing::internal::CaptureStderr();
        for (std::string const& sample : fieldsOf(row.samples, " ")) {
            auto const fields = fieldsOf(sample, "/");
            Reading reading = usualReading();
            reading.processor = numberOrNull(fields[1]);
            reading.disk = numberOrNull(fields[2]);
            averages.add(reading, Averages::Seconds(std::stod(fields[0])));
        }
        // The library reports wrong durations, and gets none.
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_FALSE(averages.empty());
        Reading const mean = averages.mean();
        EXPECT_EQ(to_string(averages.span().count(), "%g") + "/" + mean.processor.toString() + "/" +
                      mean.disk.toString(),
                  row.average);
    }
}

TEST_F(AveragesOfReadings, AreOfTheNamesGiven) {
    Averages averages({"free", "uptime"});
    averages.add(usualReading(), 1s);
    averages.add(usualReading(), 1s);
    Reading const mean = averages.mean();
    EXPECT_EQ(mean.free.toDouble(), 85'899'300'000.0);  // six digits
    EXPECT_EQ(mean.uptime.toDouble(), 93784.0);
    for (Variant const* const other : {&mean.processor, &mean.memory, &mean.disk})
        EXPECT_FALSE(other->hasValue());
}

TEST_F(AveragesOfReadings, AreEmptyWithoutNamesOrReadings) {
    EXPECT_TRUE(Averages({"cpu"}).empty());
    Averages nameless({});
    nameless.add(usualReading(), 1s);
    EXPECT_TRUE(nameless.empty());
}

}  // namespace
