// A reading as a line of a log.
#include "readings/reading_line.h"

#include <string>
#include <variant>

#include <gtest/gtest.h>

#include "monitor/readings_support.h"
#include "support/locales.h"

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;
using namespace monitor;
using monitor_test::null;
using monitor_test::usualReading;

namespace {

// The program leaves the locale at "C". The suite also runs under others.
class ReadingLine : public testing::Test {
    testing_support::ScopedLocale locale_{"C"};
};

struct ValueFact {
    char const* fact;
    Variant value;
    char const* text;
};

ValueFact const VALUE_FACTS[] = {
    {"a whole number has no point", 45.0F, "45"},
    {"a fraction has a point", 12.34F, "12.34"},
    {"zero is one digit", 0.0F, "0"},
    {"a Float has as many digits as it needs", 14.198908F, "14.198908"},
    {"a small Float has no exponent", 1e-6F, "0.000001"},
    {"a large Float has no exponent", 9'000'000.0F, "9000000"},
    {"the smallest Float has no exponent", 1.4e-45F,
     "0.000000000000000000000000000000000000000000001"},
    {"the largest Float has no exponent", 3.4028235e38F, "340282346638528859811704183484516925440"},
    {"a Uint64 has all its digits", 85'899'345'921UL, "85899345921"},
    {"a Uint64 that no Float equals is exact", 16'777'217UL, "16777217"},
    {"the largest Uint64 is exact", ~0UL, "18446744073709551615"},
    {"Null is empty", null(), ""},
    {"Unknown is empty", Variant(), ""},
};

TEST_F(ReadingLine, ContainsValuesWithAllTheirDigits) {
    for (ValueFact const& row : VALUE_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(valueText(row.value), row.text);
    }
}

TEST_F(ReadingLine, ContainsAReading) {
    EXPECT_EQ(toLine(usualReading()),
              "time=2024-03-05T06:08:09.250Z cpu=12.34 memory=45 disk=100 free=85899345920 "
              "uptime=93784");
}

TEST_F(ReadingLine, HasNoPairForNullAndUnknown) {
    Reading reading = usualReading();
    reading.disk = null();
    reading.free = Variant();
    EXPECT_EQ(toLine(reading), "time=2024-03-05T06:08:09.250Z cpu=12.34 memory=45 uptime=93784");
}

TEST_F(ReadingLine, GivesTheSameReadingBack) {
    Reading const usual = usualReading();
    auto const read = std::get<Reading>(readLine(toLine(usual)));
    EXPECT_EQ(read.time, usual.time);
    EXPECT_EQ(read.diskError, 0);
    for (Field const& field : FIELDS) {
        SCOPED_TRACE(field.name);
        EXPECT_EQ((read.*field.value).type(), (usual.*field.value).type());
        EXPECT_EQ((read.*field.value).toDouble(), (usual.*field.value).toDouble());
    }
    EXPECT_EQ(read.free.toUint64(), 85'899'345'920UL);
}

// A float of seconds cannot represent each millisecond: 50.942 used to come back as 50.941.
TEST_F(ReadingLine, GivesEachMillisecondBack) {
    for (unsigned int millisecond = 0; millisecond < 1000; ++millisecond) {
        Reading reading;
        reading.time = xtime_t(1709618939, millisecond * 1'000'000);
        auto const read = std::get<Reading>(readLine(toLine(reading)));
        EXPECT_EQ(read.time, reading.time) << millisecond;
    }
}

// The line that the reading of a line makes, or the reason why the line is malformed.
std::string readBack(std::string const& line) {
    auto const read = readLine(line);
    if (auto const* const malformed = std::get_if<Malformed>(&read)) return malformed->reason;
    return toLine(std::get<Reading>(read));
}

struct LineFact {
    char const* fact;
    std::string line;
    char const* result;
};

#define TIME_TEXT "time=2024-03-05T06:08:09.250Z"
char const NOT_PAIRS[] = "not a line of name=value pairs";
char const NO_TIME[] = "time is not a time such as 2024-03-05T06:08:09.250Z";
char const TOO_EARLY[] = "time is before 1970-01-01T00:00:00.000Z";
char const TOO_LATE[] = "time is after 2038-01-19T03:14:07.999Z";
char const NO_CPU[] = "cpu is not a number";
char const NO_FREE[] = "free is not a whole number";

LineFact const LINE_FACTS[] = {
    {"a time alone is a reading", TIME_TEXT, TIME_TEXT},
    {"pairs may come in any order", "free=7 cpu=1.5 " TIME_TEXT, TIME_TEXT " cpu=1.5 free=7"},
    {"whitespace at the ends is ignored", " \t" TIME_TEXT " cpu=1 \t", TIME_TEXT " cpu=1"},
    {"a carriage return at the end is ignored", TIME_TEXT " cpu=1\r", TIME_TEXT " cpu=1"},
    {"several spaces may be between pairs", TIME_TEXT "   cpu=1", TIME_TEXT " cpu=1"},
    {"other names are ignored", TIME_TEXT " gpu=x cpu=1", TIME_TEXT " cpu=1"},
    {"the first pair of a name counts", TIME_TEXT " cpu=1 cpu=x", TIME_TEXT " cpu=1"},
    {"a value may be escaped", TIME_TEXT " cpu=\\u0031.5", TIME_TEXT " cpu=1.5"},
    {"a value may have an exponent", TIME_TEXT " cpu=1.5e1", TIME_TEXT " cpu=15"},
    {"more digits than a Float has are rounded", TIME_TEXT " cpu=1.00000000001",
     TIME_TEXT " cpu=1"},

    {"an empty line is malformed", "", NOT_PAIRS},
    {"a line of whitespace is malformed", " \t\r", NOT_PAIRS},
    {"a line without a pair is malformed", "junk", NOT_PAIRS},
    {"a field that is no pair makes a line malformed", TIME_TEXT " cpu", NOT_PAIRS},
    {"a field without a name makes a line malformed", TIME_TEXT " =1", NOT_PAIRS},
    {"a reason does not quote control bytes", "\x1b[31m", NOT_PAIRS},

    {"a line without a time is malformed", "cpu=1", "time is missing"},
    {"an empty time is refused", "time=", NO_TIME},
    {"a time without a time of day is refused", "time=2024-03-05", NO_TIME},
    {"a time without milliseconds is refused", "time=2024-03-05T06:08:09Z", NO_TIME},
    {"two digits of milliseconds are refused", "time=2024-03-05T06:08:09.25Z", NO_TIME},
    {"four digits of milliseconds are refused", "time=2024-03-05T06:08:09.2500Z", NO_TIME},
    {"a letter among the milliseconds is refused", "time=2024-03-05T06:08:09.2x0Z", NO_TIME},
    {"a sign before the milliseconds is refused", "time=2024-03-05T06:08:09.-25Z", NO_TIME},
    {"a comma before the milliseconds is refused", "time=2024-03-05T06:08:09,250Z", NO_TIME},
    {"a time without a zone is refused", "time=2024-03-05T06:08:09.250 ", NO_TIME},
    {"a zone other than Z is refused", "time=2024-03-05T06:08:09.250+0100", NO_TIME},
    {"a small z is refused", "time=2024-03-05T06:08:09.250z", NO_TIME},
    {"a letter after the zone is refused", "time=2024-03-05T06:08:09.250Zx", NO_TIME},
    {"29 February of a common year is refused", "time=2023-02-29T06:08:09.250Z", NO_TIME},
    {"29 February of a leap year is read", "time=2024-02-29T06:08:09.250Z",
     "time=2024-02-29T06:08:09.250Z"},
    {"hour 24 is refused", "time=2024-03-05T24:08:09.250Z", NO_TIME},
    {"second 60 is refused", "time=2024-03-05T06:08:60.250Z", NO_TIME},
    {"a time before 1970 is refused", "time=1969-12-31T23:59:59.999Z", TOO_EARLY},
    {"the first time of 1970 is read", "time=1970-01-01T00:00:00.000Z",
     "time=1970-01-01T00:00:00.000Z"},
    {"the last time before the limit is read", "time=2038-01-19T03:14:07.999Z",
     "time=2038-01-19T03:14:07.999Z"},
    {"a time after the limit is refused", "time=2038-01-19T03:14:08.000Z", TOO_LATE},
    {"a time far after the limit is refused", "time=9999-12-31T23:59:59.999Z", TOO_LATE},
    {"the byte before '0' is no digit of a year", "time=203/-01-19T03:14:08.000Z", NO_TIME},
    {"the byte after '9' is no digit of a year", "time=203:-01-19T03:14:08.000Z", NO_TIME},
    {"a late time with a wrong sign is no time", "time=2039+01-19T03:14:08.000Z", NO_TIME},

    {"an empty value is refused", TIME_TEXT " cpu=", NO_CPU},
    {"a word is refused", TIME_TEXT " cpu=null", NO_CPU},
    {"a number with a unit is refused", TIME_TEXT " cpu=12%", NO_CPU},
    {"a decimal comma is refused", TIME_TEXT " cpu=1,5", NO_CPU},
    {"a zero byte after a number is refused", TIME_TEXT " cpu=1\\u0000", NO_CPU},
    {"a space before a number is refused", TIME_TEXT " cpu=\\u00201", NO_CPU},
    {"a minus sign is refused", TIME_TEXT " cpu=-1", NO_CPU},
    {"a plus sign is refused", TIME_TEXT " cpu=+1", NO_CPU},
    {"nan is refused", TIME_TEXT " cpu=nan", NO_CPU},
    {"inf is refused", TIME_TEXT " cpu=inf", NO_CPU},
    {"a number beyond a Float is refused", TIME_TEXT " cpu=1e39", NO_CPU},
    {"a point alone is refused", TIME_TEXT " cpu=.", NO_CPU},
    {"a wrong memory is refused", TIME_TEXT " memory=x", "memory is not a number"},
    {"a wrong disk is refused", TIME_TEXT " disk=x", "disk is not a number"},
    {"a wrong uptime is refused", TIME_TEXT " uptime=x", "uptime is not a number"},
    {"the largest count of bytes is read", TIME_TEXT " free=18446744073709551615",
     TIME_TEXT " free=18446744073709551615"},
    {"a larger count of bytes is refused", TIME_TEXT " free=18446744073709551616", NO_FREE},
    {"a part of a byte is refused", TIME_TEXT " free=1.5", NO_FREE},
    {"bytes with an exponent are refused", TIME_TEXT " free=1e9", NO_FREE},
    {"bytes with a sign are refused", TIME_TEXT " free=-1", NO_FREE},
};

TEST_F(ReadingLine, IsReadOrSaysWhyItIsMalformed) {
    for (LineFact const& row : LINE_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(readBack(row.line), row.result);
    }
}

TEST_F(ReadingLine, GivesNullForAValueWithoutAPair) {
    auto const reading = std::get<Reading>(readLine(TIME_TEXT));
    for (Field const& field : FIELDS)
        EXPECT_TRUE((reading.*field.value).isNull()) << field.name;
}

}  // namespace
