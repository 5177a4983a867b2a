#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/xtime_conversions.h>

#include "support/random.h"

using com::halvorin::datatypes::xtime_t;
using com::halvorin::utilities::timeToYYYYString;
using com::halvorin::utilities::YYYYStringTotime;

namespace {

constexpr std::string_view EPOCH = "1970-01-01T00:00:00";

// Every seventh nanosecond. Its fraction is bytes 1 to 4 of what printf writes for the float.
// Several neighbours have the same float, so printf is called once for them.
TEST(XtimeConversionsSweep, ShowsTheFractionThatPrintfPrints) {
    std::string const options;
    std::string expected(EPOCH);
    expected += ".xxx";
    float last = -1;
    unsigned int const step = 7 * static_cast<unsigned int>(testing_support::sweepStride());
    for (unsigned int nanoseconds = 0; nanoseconds < 1'000'000'000; nanoseconds += step) {
        auto const fraction =
            static_cast<float>(static_cast<double>(static_cast<float>(nanoseconds)) / 1000000000.0);
        if (fraction != last) {
            char printed[64];
            std::snprintf(printed, sizeof printed, "%f1.3", static_cast<double>(fraction));
            expected.replace(EPOCH.size(), 4, printed + 1, 4);
            last = fraction;
        }
        std::string const text = xtime_t(0, nanoseconds).toString(false, 0, options);
        if (text != expected) {
            FAIL() << nanoseconds << " ns gives " << text << ", not " << expected;
        }
    }
}

// Microseconds of a minute, and nanoseconds beside them, are what strtof makes of the same digits.
TEST(XtimeConversionsSweep, ReadsTheFractionThatStrtofReads) {
    std::string text;
    unsigned int const step = 37 * static_cast<unsigned int>(testing_support::sweepStride());
    for (unsigned int microseconds = 0; microseconds < 60'000'000; microseconds += step) {
        for (unsigned int const more : {0U, 1U, 499U, 998U, 999U}) {
            char seconds[64];
            int const length =
                std::snprintf(seconds, sizeof seconds, "%02u.%06u%03u", microseconds / 1'000'000,
                              microseconds % 1'000'000, more);
            text = "1970-01-01T00:00:";
            text.append(seconds, static_cast<std::size_t>(length));
            float const value = std::strtof(seconds, nullptr);
            int const whole = static_cast<int>(value);
            double const fraction = static_cast<double>(value - static_cast<float>(whole));
            bool const below60 = value < 60;

            xtime_t time;
            ASSERT_EQ(time.fromString(text), below60) << text;
            ASSERT_EQ(time.getDateTime(), below60 ? whole : 0) << text;
            ASSERT_EQ(time.getNanoseconds(),
                      below60 ? static_cast<unsigned int>(fraction * 1000000000) : 0)
                << text;
        }
    }
}

// Every 127th second that has fourteen digits and comes back from them.
TEST(XtimeConversionsSweep, ComesBackFromFourteenDigits) {
    long const step = 127 * static_cast<long>(testing_support::sweepStride());
    for (long seconds = 0; seconds <= INT_MAX; seconds += step) {
        ASSERT_EQ(YYYYStringTotime(timeToYYYYString(seconds)), seconds);
    }
}

}  // namespace
