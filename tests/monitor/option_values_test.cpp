// The values of options. What the program says of wrong ones is in options.bats.
#include "program/option_values.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace monitor;
using namespace std::chrono_literals;

namespace {

struct IntervalFact {
    char const* fact;
    char const* text;
    std::optional<std::chrono::nanoseconds> interval;
};

IntervalFact const INTERVAL_FACTS[] = {
    {"a whole number is seconds", "1", 1'000'000'000ns},
    {"a fraction is allowed", "0.1", 100'000'000ns},
    {"the whole part may be missing", ".5", 500'000'000ns},
    {"the fraction may be missing", "2.", 2'000'000'000ns},
    {"0.4 ns are rounded down", "0.0010000004", 1'000'000ns},
    {"0.6 ns are rounded up", "0.0010000006", 1'000'001ns},
    {"less than a millisecond is refused", "0.00099999", std::nullopt},
    {"a millisecond is the shortest interval", "0.001", 1'000'000ns},
    {"a day is the longest interval", "86400", 86'400'000'000'000ns},
    {"more than a day is refused", "86400.001", std::nullopt},
    {"zero is refused", "0", std::nullopt},
    {"a negative whole number is refused", "-1", std::nullopt},
    {"a negative fraction is refused", "-0.5", std::nullopt},
    {"a plus sign is refused", "+1", std::nullopt},
    {"a space before the number is refused", " 1", std::nullopt},
    {"a space after the number is refused", "1 ", std::nullopt},
    {"a unit after the number is refused", "1s", std::nullopt},
    {"an exponent is refused", "1e0", std::nullopt},
    {"a hexadecimal number is refused", "0x1", std::nullopt},
    {"a decimal comma is refused", "1,5", std::nullopt},
    {"a second point is refused", "1.5.0", std::nullopt},
    {"nan is refused", "nan", std::nullopt},
    {"inf is refused", "inf", std::nullopt},
    {"an empty string is refused", "", std::nullopt},
    {"a point alone is refused", ".", std::nullopt},
    {"a word is refused", "ten", std::nullopt},
    {"a number of 20 digits is refused", "99999999999999999999", std::nullopt},
};

TEST(OptionValues, ReadsAnInterval) {
    for (IntervalFact const& row : INTERVAL_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(parseInterval(row.text), row.interval);
    }
}

TEST(OptionValues, RefusesAnIntervalOfAThousandDigits) {
    EXPECT_EQ(parseInterval(std::string(1000, '9')), std::nullopt);
}

struct CountFact {
    char const* fact;
    char const* text;
    std::optional<unsigned long> count;
};

CountFact const COUNT_FACTS[] = {
    {"zero is a count", "0", 0},
    {"one is a count", "1", 1},
    {"leading zeros are allowed", "007", 7},
    {"a number below the limit is a count", "999999999", 999'999'999},
    {"1000000000 is the largest count", "1000000000", 1'000'000'000},
    {"a number above the limit is refused", "1000000001", std::nullopt},
    {"2^64 is refused", "18446744073709551616", std::nullopt},
    {"2^64 + 1, which is 1 in 64 bits, is refused", "18446744073709551617", std::nullopt},
    {"a negative number is refused", "-1", std::nullopt},
    {"a plus sign is refused", "+1", std::nullopt},
    {"a space before the number is refused", " 1", std::nullopt},
    {"a space after the number is refused", "1 ", std::nullopt},
    {"a fraction is refused", "1.5", std::nullopt},
    {"an exponent is refused", "1e3", std::nullopt},
    {"an empty string is refused", "", std::nullopt},
    {"a word is refused", "three", std::nullopt},
};

TEST(OptionValues, ReadsACount) {
    for (CountFact const& row : COUNT_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(parseCount(row.text), row.count);
    }
}

struct OffsetFact {
    char const* fact;
    char const* text;
    std::optional<int> seconds;
};

OffsetFact const OFFSET_FACTS[] = {
    {"Z is UTC", "Z", 0},
    {"+00:00 is UTC", "+00:00", 0},
    {"-00:00 is UTC", "-00:00", 0},
    {"an hour to the east is positive", "+01:00", 3600},
    {"the sign applies to hours and minutes", "-05:30", -19800},
    {"59 minutes are allowed", "+00:59", 3540},
    {"60 minutes are refused", "+00:60", std::nullopt},
    {"23 hours to the east are allowed", "+23:59", 86340},
    {"23 hours to the west are allowed", "-23:59", -86340},
    {"24 hours are refused", "+24:00", std::nullopt},
    {"any minute is allowed", "+09:19", 33540},
    {"an hour of one digit is refused", "+1:00", std::nullopt},
    {"a minute of one digit is refused", "+01:0", std::nullopt},
    {"a zone without a colon is refused", "+0100", std::nullopt},
    {"a minute of three digits is refused", "+01:000", std::nullopt},
    {"a zone without a sign is refused", "01:00", std::nullopt},
    {"a space in place of the sign is refused", " 01:00", std::nullopt},
    {"a minus in place of the colon is refused", "+01-00", std::nullopt},
    {"a point in place of the colon is refused", "+01.00", std::nullopt},
    {"the byte before '0' is no first digit of an hour", "+/1:00", std::nullopt},
    {"the byte after '9' is no second digit of an hour", "+0::00", std::nullopt},
    {"the byte before '0' is no first digit of a minute", "+01:/0", std::nullopt},
    {"the byte after '9' is no second digit of a minute", "+01:0:", std::nullopt},
    {"a second sign is refused", "+-1:00", std::nullopt},
    {"a small z is refused", "z", std::nullopt},
    {"two letters Z are refused", "ZZ", std::nullopt},
    {"seconds are refused", "3600", std::nullopt},
    {"a zone's name is refused", "CET", std::nullopt},
    {"an empty string is refused", "", std::nullopt},
};

TEST(OptionValues, ReadsAnOffset) {
    for (OffsetFact const& row : OFFSET_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(parseOffset(row.text), row.seconds);
    }
}

struct NamesFact {
    char const* fact;
    char const* text;
    std::vector<std::string> names;
    char const* wrong;
};

#define ALL_NAMES "cpu,memory,disk,free,uptime"

NamesFact const NAMES_FACTS[] = {
    {"one name is read", "cpu", {"cpu"}, ""},
    {"the last name of all is read", "uptime", {"uptime"}, ""},
    {"names are read in the order given", "disk,cpu", {"disk", "cpu"}, ""},
    {"all names are read", ALL_NAMES, {"cpu", "memory", "disk", "free", "uptime"}, ""},
    {"an empty string lacks a name", "", {}, "a name is missing"},
    {"a comma alone lacks a name", ",", {}, "a name is missing"},
    {"a comma at the end lacks a name", "cpu,", {}, "a name is missing"},
    {"a comma at the start lacks a name", ",cpu", {}, "a name is missing"},
    {"two commas together lack a name", "cpu,,disk", {}, "a name is missing"},
    {"a space is part of a name", "cpu, disk", {}, "\" disk\" is not one of " ALL_NAMES},
    {"a space does not part names", "cpu disk", {}, "\"cpu disk\" is not one of " ALL_NAMES},
    {"a name that comes twice is wrong", "cpu,disk,cpu", {}, "\"cpu\" is named twice"},
    {"the first wrong name is quoted", "cpu,foo,bar", {}, "\"foo\" is not one of " ALL_NAMES},
    {"a part of a name is wrong", "cp", {}, "\"cp\" is not one of " ALL_NAMES},
    {"a name with one letter more is wrong", "cpus", {}, "\"cpus\" is not one of " ALL_NAMES},
    {"a name in capitals is wrong", "CPU", {}, "\"CPU\" is not one of " ALL_NAMES},
    {"the name of the time is wrong", "time", {}, "\"time\" is not one of " ALL_NAMES},
};

TEST(OptionValues, ReadsNamesOfValues) {
    for (NamesFact const& row : NAMES_FACTS) {
        SCOPED_TRACE(row.fact);
        Names const read = parseNames(row.text);
        EXPECT_EQ(read.names, row.names);
        EXPECT_EQ(read.wrong, row.wrong);
    }
}

struct TitleFact {
    char const* fact;
    std::string text;
    bool isTitle;
};

std::string repeated(std::string const& text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

TitleFact const TITLE_FACTS[] = {
    {"an empty string is no title", "", false},
    {"one character is a title", "a", true},
    {"99 characters are a title", repeated("a", 99), true},
    {"100 characters are a title", repeated("a", 100), true},
    {"101 characters are no title", repeated("a", 101), false},
    {"100 characters of three bytes are a title", repeated("\xe2\x82\xac", 100), true},
    {"101 characters of three bytes are no title", repeated("\xe2\x82\xac", 101), false},
    {"a control character is not allowed", "a\tb", false},
    {"invalid UTF-8 is not allowed", "a\xff", false},
};

TEST(OptionValues, ReadsATitle) {
    for (TitleFact const& row : TITLE_FACTS) {
        SCOPED_TRACE(row.fact);
        std::optional<std::string> const title = parseTitle(row.text);
        EXPECT_EQ(title.has_value(), row.isTitle);
        EXPECT_EQ(title.value_or(row.text), row.text);
    }
}

struct WindowFact {
    char const* fact;
    char const* text;
    std::optional<std::chrono::seconds> window;
};

WindowFact const WINDOW_FACTS[] = {
    {"less than 5 seconds are refused", "4", std::nullopt},
    {"5 seconds are the shortest window", "5", 5s},
    {"6 seconds are a window", "6", 6s},
    {"a minute is a window", "60", 60s},
    {"a second less than 30 days is a window", "2591999", 2591999s},
    {"30 days are the longest window", "2592000", 2592000s},
    {"more than 30 days are refused", "2592001", std::nullopt},
    {"a fraction is refused", "5.5", std::nullopt},
    {"a negative number is refused", "-5", std::nullopt},
    {"an empty string is refused", "", std::nullopt},
    {"a unit is refused", "1 hour", std::nullopt},
};

TEST(OptionValues, ReadsAWindow) {
    for (WindowFact const& row : WINDOW_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(parseWindow(row.text), row.window);
    }
}

TEST(OptionValues, ReadsTheNameOfAChartsFile) {
    EXPECT_EQ(parseChartFile("charts/Load.SVG"), "charts/Load.SVG");
    EXPECT_EQ(parseChartFile("charts/load"), std::nullopt);
    EXPECT_EQ(parseChartFile(""), std::nullopt);
}

TEST(OptionValues, ReadsATheme) {
    EXPECT_EQ(parseTheme("light"), Theme::LIGHT);
    EXPECT_EQ(parseTheme("dark"), Theme::DARK);
    for (char const* const text : {"", "Light", "either", "dark "})
        EXPECT_EQ(parseTheme(text), std::nullopt) << text;
}

}  // namespace
