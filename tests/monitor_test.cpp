// The parts of examples/monitor that need no machine to watch. What the program does as a whole is
// in monitor.bats.
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <iostream>
#include <optional>
#include <poll.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/application/ORUsyslog.h>
#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime.h>

#include "option_values.h"
#include "output.h"
#include "reading.h"
#include "reading_line.h"
#include "schedule.h"
#include "support/locales.h"
#include "table.h"

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;
using namespace monitor;
using namespace std::chrono_literals;

namespace {

// ---- the texts of options

struct IntervalFact {
    char const* text;
    std::optional<std::chrono::nanoseconds> interval;
};

IntervalFact const INTERVAL_FACTS[] = {
    {"1", 1'000'000'000ns},
    {"0.1", 100'000'000ns},
    {".5", 500'000'000ns},
    {"2.", 2'000'000'000ns},
    {"0.0010000004", 1'000'000ns},  // rounded to whole nanoseconds
    {"0.0010000006", 1'000'001ns},
    {"0.00099999", std::nullopt},
    {"0.001", 1'000'000ns},
    {"86400", 86'400'000'000'000ns},
    {"86400.001", std::nullopt},
    {"0", std::nullopt},
    {"-1", std::nullopt},
    {"-0.5", std::nullopt},
    {"+1", std::nullopt},
    {" 1", std::nullopt},
    {"1 ", std::nullopt},
    {"1s", std::nullopt},
    {"1e0", std::nullopt},
    {"0x1", std::nullopt},
    {"1,5", std::nullopt},
    {"1.5.0", std::nullopt},
    {"nan", std::nullopt},
    {"inf", std::nullopt},
    {"", std::nullopt},
    {".", std::nullopt},
    {"ten", std::nullopt},
    {"99999999999999999999", std::nullopt},
};

TEST(Monitor, ReadsAnInterval) {
    for (IntervalFact const& row : INTERVAL_FACTS) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(parseInterval(row.text), row.interval);
    }
}

TEST(Monitor, RefusesAnIntervalOfAThousandDigits) {
    EXPECT_EQ(parseInterval(std::string(1000, '9')), std::nullopt);
}

struct CountFact {
    char const* text;
    std::optional<unsigned long> count;
};

CountFact const COUNT_FACTS[] = {
    {"0", 0},
    {"1", 1},
    {"007", 7},
    {"999999999", 999'999'999},
    {"1000000000", 1'000'000'000},
    {"1000000001", std::nullopt},
    {"18446744073709551616", std::nullopt},
    {"18446744073709551617", std::nullopt},
    {"-1", std::nullopt},
    {"+1", std::nullopt},
    {" 1", std::nullopt},
    {"1 ", std::nullopt},
    {"1.5", std::nullopt},
    {"1e3", std::nullopt},
    {"", std::nullopt},
    {"three", std::nullopt},
};

TEST(Monitor, ReadsACount) {
    for (CountFact const& row : COUNT_FACTS) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(parseCount(row.text), row.count);
    }
}

struct OffsetFact {
    char const* text;
    std::optional<int> seconds;
};

OffsetFact const OFFSET_FACTS[] = {
    {"Z", 0},
    {"+00:00", 0},
    {"-00:00", 0},
    {"+01:00", 3600},
    {"-05:30", -19800},
    {"+00:59", 3540},
    {"+00:60", std::nullopt},
    {"+23:59", 86340},
    {"-23:59", -86340},
    {"+24:00", std::nullopt},
    {"+09:19", 33540},
    {"+1:00", std::nullopt},
    {"+01:0", std::nullopt},
    {"+0100", std::nullopt},
    {"+01:000", std::nullopt},
    {"01:00", std::nullopt},
    {" 01:00", std::nullopt},
    {"+01-00", std::nullopt},
    {"+01.00", std::nullopt},
    {"+/1:00", std::nullopt},
    {"+0::00", std::nullopt},
    {"+01:/0", std::nullopt},
    {"+01:0:", std::nullopt},
    {"+-1:00", std::nullopt},
    {"z", std::nullopt},
    {"ZZ", std::nullopt},
    {"3600", std::nullopt},
    {"CET", std::nullopt},
    {"", std::nullopt},
};

TEST(Monitor, ReadsAnOffset) {
    for (OffsetFact const& row : OFFSET_FACTS) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(parseOffset(row.text), row.seconds);
    }
}

using Names = std::vector<std::string>;

struct NamesFact {
    char const* text;
    std::optional<Names> names;
};

NamesFact const NAMES_FACTS[] = {
    {"cpu", Names{"cpu"}},
    {"uptime", Names{"uptime"}},
    {"disk,cpu", Names{"disk", "cpu"}},
    {"cpu,memory,disk,free,uptime", Names{"cpu", "memory", "disk", "free", "uptime"}},
    {"", std::nullopt},
    {",", std::nullopt},
    {"cpu,", std::nullopt},
    {",cpu", std::nullopt},
    {"cpu,,disk", std::nullopt},
    {"cpu, disk", std::nullopt},
    {"cpu disk", std::nullopt},
    {"cpu,disk,cpu", std::nullopt},
    {"cp", std::nullopt},
    {"cpus", std::nullopt},
    {"CPU", std::nullopt},
    {"time", std::nullopt},
};

TEST(Monitor, ReadsNamesOfValues) {
    for (NamesFact const& row : NAMES_FACTS) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(parseNames(row.text), row.names);
    }
}

// ---- deadlines

struct DeadlineFact {
    char const* fact;
    long previous;
    long interval;
    long now;
    long next;
};

DeadlineFact const DEADLINE_FACTS[] = {
    {"one interval later", 1000, 100, 1000, 1100},
    {"a delay does not shift it", 1000, 100, 1099, 1100},
    {"a deadline reached is past", 1000, 100, 1100, 1200},
    {"what was slept through is left", 1000, 100, 1734, 1800},
    {"by one nanosecond", 0, 3, 5, 6},
    {"for a day", 0, 1'000'000, 86'400'000'000'001, 86'400'001'000'000},
};

TEST(Monitor, KeepsDeadlinesOnAGrid) {
    auto const at = [](long nanoseconds) {
        return Clock::time_point(std::chrono::nanoseconds(nanoseconds));
    };
    for (DeadlineFact const& row : DEADLINE_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(
            deadlineAfter(at(row.previous), std::chrono::nanoseconds(row.interval), at(row.now)),
            at(row.next));
    }
}

TEST(Monitor, MeasuresTimeOnASteadyClock) { EXPECT_TRUE(Clock::is_steady); }

// ---- the table

Variant null() {
    Variant value;
    value.makeNull();
    return value;
}

constexpr double GIB = 1024.0 * 1024 * 1024;

struct UnitFact {
    char const* fact;
    Variant bytes;
    char const* name;
    double size;
};

UnitFact const UNIT_FACTS[] = {
    {"nothing at all", 0UL, "MiB", GIB / 1024},
    {"below a GiB", 1'073'741'823UL, "MiB", GIB / 1024},
    {"a GiB", 1'073'741'824UL, "GiB", GIB},
    {"below a TiB", 1'099'511'627'775UL, "GiB", GIB},
    {"a TiB", 1'099'511'627'776UL, "TiB", GIB * 1024},
    {"below a PiB", 1'125'899'906'842'623UL, "TiB", GIB * 1024},
    {"a PiB", 1'125'899'906'842'624UL, "PiB", GIB * 1024 * 1024},
    {"the largest number", ~0UL, "PiB", GIB * 1024 * 1024},
    {"no number: what is usual", null(), "GiB", GIB},
    {"nor any value", Variant(), "GiB", GIB},
};

TEST(Monitor, ChoosesAUnitForFreeSpace) {
    for (UnitFact const& row : UNIT_FACTS) {
        SCOPED_TRACE(row.fact);
        ByteUnit const unit = byteUnitFor(row.bytes);
        EXPECT_STREQ(unit.name, row.name);
        EXPECT_EQ(unit.bytes, row.size);
    }
}

// The program leaves the locale at C; a test may run under another.
class MonitorTable : public testing::Test {
    testing_support::ScopedLocale locale_{"C"};
};

Reading usualReading() {
    return {xtime_t(1709618889, 250000000), 12.34F, 45.0F, 100.0F, 85'899'345'920UL, 93784.0F, 0};
}

ByteUnit gib() { return byteUnitFor(null()); }

TEST_F(MonitorTable, StandsInColumns) {
    Table const table(0, gib());
    EXPECT_EQ(table.header() + table.row(usualReading()),
              "time                      cpu %  memory %  disk %  free GiB  uptime d+hh:mm:ss\n"
              "2024-03-05T06:08:09.250Z   12.3      45.0   100.0      80.0         1+02:03:04\n");
}

TEST_F(MonitorTable, StandsInColumnsWithAnOffset) {
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

TEST_F(MonitorTable, ShowsNullForWhatCouldNotBeRead) {
    Reading reading = usualReading();
    reading.disk.makeNull();
    reading.free.makeNull();
    EXPECT_EQ(Table(0, gib()).row(reading),
              "2024-03-05T06:08:09.250Z   12.3      45.0    null      null         1+02:03:04\n");
}

TEST_F(MonitorTable, HasTheUnitOfFreeSpaceInItsHeading) {
    Table const table(0, byteUnitFor(1'048'576UL));
    Reading reading = usualReading();
    reading.free = 1'572'864UL;
    EXPECT_EQ(table.header() + table.row(reading),
              "time                      cpu %  memory %  disk %  free MiB  uptime d+hh:mm:ss\n"
              "2024-03-05T06:08:09.250Z   12.3      45.0   100.0       1.5         1+02:03:04\n");
}

TEST_F(MonitorTable, ShowsNullForAnyValue) {
    Reading reading;
    reading.time = xtime_t(1709618889, 250000000);
    for (Field const& field : FIELDS)
        reading.*field.value = null();
    EXPECT_EQ(Table(0, gib()).row(reading),
              "2024-03-05T06:08:09.250Z   null      null    null      null               null\n");
}

struct AverageRowFact {
    char const* fact;
    int offsetSeconds;
    std::chrono::duration<double> span;
    Reading mean;
    char const* row;
};

Reading unknown() { return {}; }

Reading onlyProcessorAndFree() {
    Reading reading;
    reading.processor = 12.34;
    reading.free = GIB * 80;
    return reading;
}

AverageRowFact const AVERAGE_ROW_FACTS[] = {
    {"all values", 0, 5s, usualReading(),
     "average over 5.000 s       12.3      45.0   100.0      80.0         1+02:03:04\n"},
    {"some of them", 0, 250ms, onlyProcessorAndFree(),
     "average over 0.250 s       12.3                        80.0\n"},
    {"none of them", 0, 0s, unknown(), "average over 0.000 s\n"},
    {"times with a zone", 3600, 5s, onlyProcessorAndFree(),
     "average over 5.000 s           12.3                        80.0\n"},
    {"before a day", 0, 86399999ms, onlyProcessorAndFree(),
     "average over 86399.999 s   12.3                        80.0\n"},
    {"a day", 0, 86400s, onlyProcessorAndFree(),
     "average over 86400 s       12.3                        80.0\n"},
    {"30 years", 0, 999999999s, onlyProcessorAndFree(),
     "average over 999999999 s   12.3                        80.0\n"},
    {"what is wider than times", 0, 9999999999s, onlyProcessorAndFree(),
     "average over 9999999999 s   12.3                        80.0\n"},
};

TEST_F(MonitorTable, EndsWithAverages) {
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
    {"a whole number has its decimal", GIB * 7, "       7.0"},
    {"none is shown as 0.0", 0.0, "       0.0"},
    {"half a tenth goes up", GIB * 0.25, "       0.3"},
    {"less goes down", GIB * 0.2499, "       0.2"},
    {"the last with its decimal", GIB * 99999.9, "   99999.9"},
    {"a whole number there", GIB * 99999, "   99999.0"},
    {"six digits leave none", GIB * 100000, "    100000"},
    {"and rounding comes first", GIB * 99999.96, "    100000"},
    {"what is wider than its column", GIB * 123456789, "  1.23457e+08"},
};

TEST_F(MonitorTable, ShowsOneDecimal) {
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
    {"just started", 0.0F, "         0+00:00:00"},
    {"before midnight", 86399.0F, "         0+23:59:59"},
    {"a day", 86400.0F, "         1+00:00:00"},
    {"a year of 365 days", 31536000.0F, "       365+00:00:00"},
};

TEST_F(MonitorTable, ShowsUptimeAsDaysAndTime) {
    for (CellFact const& row : UPTIME_FACTS) {
        SCOPED_TRACE(row.fact);
        Reading reading = usualReading();
        reading.uptime = row.value;
        EXPECT_EQ(Table(0, gib()).row(reading),
                  "2024-03-05T06:08:09.250Z   12.3      45.0   100.0      80.0" +
                      std::string(row.cell) + "\n");
    }
}

// ---- readings

TEST(Monitor, KeepsReadingsAsVariants) {
    Reading const reading = Sampler("/").read();
    EXPECT_TRUE(reading.time.isSet());
    EXPECT_EQ(reading.diskError, 0);
    std::vector<Variant const*> const floats = {&reading.processor, &reading.memory, &reading.disk,
                                                &reading.uptime};
    for (Variant const* const value : floats) {
        EXPECT_STREQ(Variant::typeNumber2Name(value->type()), L"Float");
    }
    EXPECT_STREQ(Variant::typeNumber2Name(reading.free.type()), L"Uint64");
}

TEST(Monitor, KeepsNullForADiskThatIsNotThere) {
    Reading const reading = Sampler("/nowhere/at/all").read();
    EXPECT_EQ(reading.diskError, ENOENT);
    EXPECT_TRUE(reading.disk.isNull());
    EXPECT_TRUE(reading.free.isNull());
    EXPECT_FALSE(reading.memory.isNull());
}

struct NewsFact {
    int before;
    int now;
    char const* news;
};

NewsFact const NEWS_FACTS[] = {
    {0, 0, ""},
    {0, ENOENT, "/data: No such file or directory"},
    {ENOENT, ENOENT, ""},
    {ENOENT, EACCES, "/data: Permission denied"},
    {EACCES, 0, "/data: readable again"},
};

TEST(Monitor, TellsOfAnErrorWhenItChanges) {
    testing_support::ScopedCLocale const english("C");
    for (NewsFact const& row : NEWS_FACTS) {
        SCOPED_TRACE(row.news);
        EXPECT_EQ(errorNews("/data", row.before, row.now), row.news);
    }
}

TEST(Monitor, KnowsWhichValuesAreThere) {
    EXPECT_TRUE(isKnown(Variant(0.0F)));
    EXPECT_TRUE(isKnown(Variant(0UL)));
    EXPECT_FALSE(isKnown(null()));
    EXPECT_FALSE(isKnown(Variant()));
}

// ---- output

// Takes the place of standard output for a scope.
class ScopedStandardOutput {
public:
    explicit ScopedStandardOutput(int descriptor) : previous_(dup(STDOUT_FILENO)) {
        dup2(descriptor, STDOUT_FILENO);
    }
    ~ScopedStandardOutput() {
        dup2(previous_, STDOUT_FILENO);
        close(previous_);
    }
    ScopedStandardOutput(ScopedStandardOutput const&) = delete;
    ScopedStandardOutput& operator=(ScopedStandardOutput const&) = delete;

private:
    int previous_;
};

TEST(Monitor, PrintsAWholeTextWhereOnlyPiecesAreTaken) {
    std::string text(1'000'003, '.');
    for (std::size_t i = 0; i < text.size(); i += 7)
        text[i] = static_cast<char>('a' + i % 26);
    int pipe[2];
    ASSERT_EQ(pipe2(pipe, O_NONBLOCK), 0);
    std::cout.flush();
    std::thread writer([&] {
        ScopedStandardOutput const replaced(pipe[1]);
        print(text);
        close(pipe[1]);
    });
    std::string received;
    char buffer[5000];
    for (ssize_t count = -1; count != 0; count = read(pipe[0], buffer, sizeof buffer)) {
        if (count > 0) received.append(buffer, static_cast<std::size_t>(count));
        pollfd ready{pipe[0], POLLIN, 0};
        poll(&ready, 1, -1);
    }
    writer.join();
    close(pipe[0]);
    EXPECT_TRUE(received == text);
}

// ---- the log hook

TEST(Monitor, ShowsTheReportsOfTheLibrary) {
    Variant broken;
    broken.dataType = 99;
    testing::internal::CaptureStderr();
    EXPECT_EQ(broken.toString(), "");
    com::halvorin::application::oru::writelog("Library::close", 7, "Library is not open", 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "monitor: Variant::convertToString: Cannot convert unknown type"
              " (level 3, code 0x80004005)\n"
              "monitor: Library::close: Library is not open (level 7, code 0x00000000)\n");
}

}  // namespace
