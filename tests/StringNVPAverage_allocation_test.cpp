#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/utilities/StringNVP.h>

#include "support/failing_allocations.h"
#include "support/locales.h"
#include "support/recorded_reports.h"

using namespace com::halvorin::utilities;
using namespace testing_support;

namespace {

using Strings = std::vector<std::string>;

std::string const LONG_FIELD(100, 'l');

TEST(AverageNVP, KeepsItsAverageWhereMemoryRunsOut) {
    std::string few = "temperature=10.00000000000000000001 pressure=1013.25 place=" + LONG_FIELD;
    std::string many = few;
    for (int i = 0; i < 50; ++i)
        many += " other" + std::to_string(i) + "=o";
    std::string const sample = "temperature=20.00000000000000000001 pressure=1000";
    for (std::string const& text : {few, many, few + " path=\\\\dir"}) {
        for (float const duration : {1.0F, 0.0F}) {
            Strings const names = {"temperature", "pressure"};
            std::string average = text;
            long failing = 0;
            while (
                failsWithout(failing, [&] { averageNVP(names, average, 1, sample, duration); })) {
                ASSERT_EQ(average, text);
                ++failing;
            }
            EXPECT_NE(average, text);
            EXPECT_GT(failing, 0);
        }
    }
    takeReports();
}

// The pairs of both strings are stored on the stack.
TEST(AverageNVP, AllocatesOnlyTheResultForUpTo32Names) {
    ScopedCLocale const scope("C");
    struct {
        int names;
        bool onlyTheResult;
    } const facts[] = {{1, true}, {8, true}, {9, true}, {31, true}, {32, true}, {33, false}};
    for (auto const& row : facts) {
        SCOPED_TRACE(row.names);
        Strings names;
        std::string average;
        std::string sample;
        for (int i = 0; i < row.names; ++i) {
            names.push_back("value" + std::to_string(i));
            addToNVPString(average, names.back(), "10.125");
            addToNVPString(sample, names.back(), "20.5");
        }
        long const allocations = allocationsOf([&] { averageNVP(names, average, 3, sample, 1); });
        EXPECT_EQ(average.substr(0, 14), "value0=12.7188");
        if (row.onlyTheResult) {
            // The result of one pair fits into the std::string itself.
            EXPECT_EQ(allocations, row.names == 1 ? 0 : 1);
        } else {
            EXPECT_GT(allocations, 1);
        }
    }
}

TEST(AverageNVP, AllocatesNothingForAMalformedString) {
    for (char const* const average : {"", "t=1 junk"}) {
        std::string unchanged = average;
        EXPECT_EQ(allocationsOf([&] { averageNVP({}, unchanged, 1, "t=2", 1); }), 0);
        EXPECT_EQ(unchanged, average);
    }
}

}  // namespace
