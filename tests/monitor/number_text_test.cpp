// Numbers as the table and the chart show them.
#include "readings/number_text.h"

#include <gtest/gtest.h>

#include "monitor/readings_support.h"
#include "support/locales.h"

using com::halvorin::datatypes::Variant;
using namespace monitor;
using monitor_test::null;

namespace {

// The program leaves the locale at "C". The suite also runs under others.
class NumberText : public testing::Test {
    testing_support::ScopedLocale locale_{"C"};
};

struct NumberFact {
    char const* fact;
    Variant number;
    double unit;
    char const* text;
};

NumberFact const NUMBER_FACTS[] = {
    {"a whole number gets a decimal", 7.0, 1, "7.0"},
    {"zero is 0.0", 0.0, 1, "0.0"},
    {"half a tenth is rounded up", 0.25, 1, "0.3"},
    {"less than half a tenth is rounded down", 0.2499, 1, "0.2"},
    {"a negative number is rounded away from zero", -0.25, 1, "-0.3"},
    {"99999.9 has a decimal", 99999.9, 1, "99999.9"},
    {"99999 gets a decimal", 99999.0, 1, "99999.0"},
    {"100000 has no decimal", 100000.0, 1, "100000"},
    {"-99999 gets a decimal", -99999.0, 1, "-99999.0"},
    {"-100000 has no decimal", -100000.0, 1, "-100000"},
    {"99999.96 is rounded to 100000", 99999.96, 1, "100000"},
    {"more than six digits give an exponent", 123456789.0, 1, "1.23457e+08"},
    {"a number is divided by its unit", 1536UL, 1024, "1.5"},
    {"Null is null", null(), 1, "null"},
    {"Unknown is empty", Variant(), 1, ""},
};

TEST_F(NumberText, HasOneDecimal) {
    for (NumberFact const& row : NUMBER_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(oneDecimal(row.number, row.unit), row.text);
    }
}

TEST_F(NumberText, SaysWhyThereIsNoNumber) {
    EXPECT_EQ(missingText(null()), "null");
    EXPECT_EQ(missingText(Variant()), "");
}

}  // namespace
