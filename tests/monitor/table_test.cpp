// Readings as rows of text.
#include "table.h"

#include <chrono>
#include <string>

#include <gtest/gtest.h>

#include "monitor/readings_support.h"
#include "support/locales.h"

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;
using namespace monitor;
using namespace std::chrono_literals;
using monitor_test::null;
using monitor_test::usualReading;

namespace {

constexpr double GIB = 1024.0 * 1024 * 1024;

struct UnitFact {
    char const* fact;
    Variant bytes;
    char const* name;
    double size;
};

UnitFact const UNIT_FACTS[] = {
    {"0 bytes are shown in MiB", 0UL, "MiB", GIB / 1024},
    {"a byte less than a GiB is shown in MiB", 1'073'741'823UL, "MiB", GIB / 1024},
    {"a GiB is shown in GiB", 1'073'741'824UL, "GiB", GIB},
    {"a byte less than a TiB is shown in GiB", 1'099'511'627'775UL, "GiB", GIB},
    {"a TiB is shown in TiB", 1'099'511'627'776UL, "TiB", GIB * 1024},
    {"a byte less than a PiB is shown in TiB", 1'125'899'906'842'623UL, "TiB", GIB * 1024},
    {"a PiB is shown in PiB", 1'125'899'906'842'624UL, "PiB", GIB * 1024 * 1024},
    {"the largest number is shown in PiB", ~0UL, "PiB", GIB * 1024 * 1024},
    {"Null gives GiB", null(), "GiB", GIB},
    {"Unknown gives GiB", Variant(), "GiB", GIB},
};

TEST(ByteUnit, IsTheLargestThatTheAmountFills) {
    for (UnitFact const& row : UNIT_FACTS) {
        SCOPED_TRACE(row.fact);
        ByteUnit const unit = byteUnitFor(row.bytes);
        EXPECT_STREQ(unit.name, row.name);
        EXPECT_EQ(unit.bytes, row.size);
    }
}

// The program leaves the locale at "C". The suite also runs under others.
class TableRows : public testing::Test {
    testing_support::ScopedLocale locale_{"C"};
};

ByteUnit gib() { return byteUnitFor(null()); }

TEST_F(TableRows, AreInColumns) {
    Table const table(0, gib());
    EXPECT_EQ(table.header() + table.row(usualReading()),
              "time                      cpu %  memory %  disk %  free GiB  uptime d+hh:mm:ss\n"
              "2024-03-05T06:08:09.250Z   12.3      45.0   100.0      80.0         1+02:03:04\n");
}

TEST_F(TableRows, AreInColumnsWithAnOffset) {
    Table const east(3600, gib());
    EXPECT_EQ(
        east.header() + east.row(usualReading()),
        "time                          cpu %  memory %  disk %  free GiB  uptime d+hh:mm:ss\n"
        "2024-03-05T07:08:09.250+0100   12.3      45.0   100.0      80.0         1+02:03:04\n");
    Table const west(-19800, gib());
    EXPECT_EQ(
        west.row(usualReading()),
        "2024-03-05T00:38:09.250-0530   12.3      45.0   100.0      80.0         1+02:03:04\n");
}

TEST_F(TableRows, ShowNullForValuesThatCouldNotBeRead) {
    Reading reading = usualReading();
    reading.disk.makeNull();
    reading.free.makeNull();
    EXPECT_EQ(Table(0, gib()).row(reading),
              "2024-03-05T06:08:09.250Z   12.3      45.0    null      null         1+02:03:04\n");
}

TEST_F(TableRows, ShowNullForEachValue) {
    Reading reading;
    reading.time = xtime_t(1709618889, 250000000);
    for (Field const& field : FIELDS)
        reading.*field.value = null();
    EXPECT_EQ(Table(0, gib()).row(reading),
              "2024-03-05T06:08:09.250Z   null      null    null      null               null\n");
}

TEST_F(TableRows, HaveTheUnitOfFreeSpaceInTheHeader) {
    Table const table(0, byteUnitFor(1'048'576UL));
    Reading reading = usualReading();
    reading.free = 1'572'864UL;
    EXPECT_EQ(table.header() + table.row(reading),
              "time                      cpu %  memory %  disk %  free MiB  uptime d+hh:mm:ss\n"
              "2024-03-05T06:08:09.250Z   12.3      45.0   100.0       1.5         1+02:03:04\n");
}

struct AverageRowFact {
    char const* fact;
    int offsetSeconds;
    std::chrono::duration<double> span;
    Reading mean;
    char const* row;
};

Reading onlyProcessorAndFree() {
    Reading reading;
    reading.processor = 12.34;
    reading.free = GIB * 80;
    return reading;
}

AverageRowFact const AVERAGE_ROW_FACTS[] = {
    {"all values are in their columns", 0, 5s, usualReading(),
     "average over 5.000 s       12.3      45.0   100.0      80.0         1+02:03:04\n"},
    {"an unknown value has an empty cell", 0, 250ms, onlyProcessorAndFree(),
     "average over 0.250 s       12.3                        80.0\n"},
    {"a row without a value has no spaces at its end", 0, 0s, {}, "average over 0.000 s\n"},
    {"times with an offset widen the first column", 3600, 5s, onlyProcessorAndFree(),
     "average over 5.000 s           12.3                        80.0\n"},
    {"less than a day has milliseconds", 0, 86399999ms, onlyProcessorAndFree(),
     "average over 86399.999 s   12.3                        80.0\n"},
    {"a day has no fraction", 0, 86400s, onlyProcessorAndFree(),
     "average over 86400 s       12.3                        80.0\n"},
    {"30 years fit in the first column", 0, 999999999s, onlyProcessorAndFree(),
     "average over 999999999 s   12.3                        80.0\n"},
    {"a longer time moves the cells to the right", 0, 9999999999s, onlyProcessorAndFree(),
     "average over 9999999999 s   12.3                        80.0\n"},
};

TEST_F(TableRows, EndWithAverages) {
    for (AverageRowFact const& row : AVERAGE_ROW_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(Table(row.offsetSeconds, gib()).averageRow(row.mean, row.span), row.row);
    }
}

struct CellFact {
    char const* fact;
    Variant value;
    char const* cell;
};

CellFact const FREE_FACTS[] = {
    {"a number is right-aligned", GIB * 7, "       7.0"},
    {"a number fills its column", GIB * 99999.96, "    100000"},
    {"a number that is wider than its column is not cut", GIB * 123456789, "  1.23457e+08"},
};

TEST_F(TableRows, ShowFreeSpaceInItsUnit) {
    for (CellFact const& row : FREE_FACTS) {
        SCOPED_TRACE(row.fact);
        Reading reading = usualReading();
        reading.free = row.value;
        EXPECT_EQ(Table(0, gib()).row(reading),
                  "2024-03-05T06:08:09.250Z   12.3      45.0   100.0" + std::string(row.cell) +
                      "         1+02:03:04\n");
    }
}

CellFact const UPTIME_FACTS[] = {
    {"0 seconds are 0 days", 0.0F, "         0+00:00:00"},
    {"a second less than a day is 0 days", 86399.0F, "         0+23:59:59"},
    {"86400 seconds are a day", 86400.0F, "         1+00:00:00"},
    {"365 days are not a year", 31536000.0F, "       365+00:00:00"},
};

TEST_F(TableRows, ShowUptimeAsDaysAndTime) {
    for (CellFact const& row : UPTIME_FACTS) {
        SCOPED_TRACE(row.fact);
        Reading reading = usualReading();
        reading.uptime = row.value;
        EXPECT_EQ(Table(0, gib()).row(reading),
                  "2024-03-05T06:08:09.250Z   12.3      45.0   100.0      80.0" +
                      std::string(row.cell) + "\n");
    }
}

}  // namespace
