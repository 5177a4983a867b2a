// The log of examples/monitor: a reading as a line, a file of lines, and averages of what they hold.
// What the program does with them is in monitor.bats.
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/resource.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/ByteStream.h>
#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime.h>
#include <utillibrary/utilities/StringNVP.h>
#include <utillibrary/utilities/StringUtilities.h>

#include "averages.h"
#include "output.h"
#include "reading.h"
#include "reading_line.h"
#include "reading_log.h"
#include "replay.h"
#include "support/locales.h"

using com::halvorin::datatypes::ByteStream;
using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;
using com::halvorin::utilities::split;
using com::halvorin::utilities::to_string;
using namespace monitor;
using namespace std::chrono_literals;
using namespace std::string_view_literals;

namespace {

Variant null() {
    Variant value;
    value.makeNull();
    return value;
}

Reading usualReading() {
    return {xtime_t(1709618889, 250000000), 12.34F, 45.0F, 100.0F, 85'899'345'920UL, 93784.0F, 0};
}

// ---- a reading as a line

class MonitorLine : public testing::Test {
    testing_support::ScopedLocale locale_{"C"};
};

struct ValueFact {
    char const* fact;
    Variant value;
    char const* text;
};

ValueFact const VALUE_FACTS[] = {
    {"a whole number", 45.0F, "45"},
    {"a fraction", 12.34F, "12.34"},
    {"nothing", 0.0F, "0"},
    {"as many digits as it takes", 14.198908F, "14.198908"},
    {"never an exponent", 1e-6F, "0.000001"},
    {"be it small or large", 9'000'000.0F, "9000000"},
    {"the smallest float", 1.4e-45F, "0.000000000000000000000000000000000000000000001"},
    {"the largest float", 3.4028235e38F, "340282346638528859811704183484516925440"},
    {"bytes", 85'899'345'921UL, "85899345921"},
    {"more of them than in a float", 16'777'217UL, "16777217"},
    {"as many as there are", ~0UL, "18446744073709551615"},
    {"Null", null(), ""},
    {"no value", Variant(), ""},
};

TEST_F(MonitorLine, HoldsValuesInAllTheirDigits) {
    for (ValueFact const& row : VALUE_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(valueText(row.value), row.text);
    }
}

TEST_F(MonitorLine, HoldsAReading) {
    EXPECT_EQ(toLine(usualReading()),
              "time=2024-03-05T06:08:09.250Z cpu=12.34 memory=45 disk=100 free=85899345920 "
              "uptime=93784");
}

TEST_F(MonitorLine, LeavesOutWhatIsNotThere) {
    Reading reading = usualReading();
    reading.disk = null();
    reading.free = Variant();
    EXPECT_EQ(toLine(reading), "time=2024-03-05T06:08:09.250Z cpu=12.34 memory=45 uptime=93784");
}

// What came back of a line, as the line that it would make.
std::string readBack(std::string const& line) {
    auto const read = readLine(line);
    if (auto const* const malformed = std::get_if<Malformed>(&read)) return malformed->reason;
    return toLine(std::get<Reading>(read));
}

TEST_F(MonitorLine, GivesTheReadingBack) {
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

// A float of seconds does not hold each of them: 50.942 would come back as 50.941.
TEST_F(MonitorLine, GivesEachMillisecondBack) {
    for (unsigned int millisecond = 0; millisecond < 1000; ++millisecond) {
        Reading reading;
        reading.time = xtime_t(1709618939, millisecond * 1'000'000);
        auto const read = std::get<Reading>(readLine(toLine(reading)));
        EXPECT_EQ(read.time, reading.time) << millisecond;
    }
}

struct LineFact {
    char const* fact;
    std::string line;
    char const* result;  // the line that the reading makes, or what is malformed
};

#define TIME_TEXT "time=2024-03-05T06:08:09.250Z"
char const NOT_PAIRS[] = "not a line of name=value pairs";
char const NO_TIME[] = "time is not a time such as 2024-03-05T06:08:09.250Z";
char const NO_CPU[] = "cpu is not a number";
char const NO_FREE[] = "free is not a whole number";

LineFact const LINE_FACTS[] = {
    {"a time alone", TIME_TEXT, TIME_TEXT},
    {"any order", "free=7 cpu=1.5 " TIME_TEXT, TIME_TEXT " cpu=1.5 free=7"},
    {"blanks at the ends", " \t" TIME_TEXT " cpu=1 \t", TIME_TEXT " cpu=1"},
    {"a carriage return at the end", TIME_TEXT " cpu=1\r", TIME_TEXT " cpu=1"},
    {"several spaces", TIME_TEXT "   cpu=1", TIME_TEXT " cpu=1"},
    {"other names are ignored", TIME_TEXT " gpu=x cpu=1", TIME_TEXT " cpu=1"},
    {"the first of a name counts", TIME_TEXT " cpu=1 cpu=x", TIME_TEXT " cpu=1"},
    {"a value may be escaped", TIME_TEXT " cpu=\\u0031.5", TIME_TEXT " cpu=1.5"},
    {"an exponent", TIME_TEXT " cpu=1.5e1", TIME_TEXT " cpu=15"},
    {"digits that a float drops", TIME_TEXT " cpu=1.00000000001", TIME_TEXT " cpu=1"},

    {"an empty line", "", NOT_PAIRS},
    {"blanks alone", " \t\r", NOT_PAIRS},
    {"no pair at all", "junk", NOT_PAIRS},
    {"a field that is no pair", TIME_TEXT " cpu", NOT_PAIRS},
    {"a field without a name", TIME_TEXT " =1", NOT_PAIRS},
    {"control bytes are not quoted", "\x1b[31m", NOT_PAIRS},

    {"no time", "cpu=1", "time is missing"},
    {"an empty time", "time=", NO_TIME},
    {"no time of day", "time=2024-03-05", NO_TIME},
    {"no milliseconds", "time=2024-03-05T06:08:09Z", NO_TIME},
    {"too few of them", "time=2024-03-05T06:08:09.25Z", NO_TIME},
    {"too many of them", "time=2024-03-05T06:08:09.2500Z", NO_TIME},
    {"no digits", "time=2024-03-05T06:08:09.2x0Z", NO_TIME},
    {"a sign", "time=2024-03-05T06:08:09.-25Z", NO_TIME},
    {"no point", "time=2024-03-05T06:08:09,250Z", NO_TIME},
    {"no zone", "time=2024-03-05T06:08:09.250 ", NO_TIME},
    {"another zone", "time=2024-03-05T06:08:09.250+0100", NO_TIME},
    {"another letter", "time=2024-03-05T06:08:09.250z", NO_TIME},
    {"something behind the zone", "time=2024-03-05T06:08:09.250Zx", NO_TIME},
    {"a day that is not there", "time=2023-02-29T06:08:09.250Z", NO_TIME},
    {"a leap day", "time=2024-02-29T06:08:09.250Z", "time=2024-02-29T06:08:09.250Z"},
    {"hour 24", "time=2024-03-05T24:08:09.250Z", NO_TIME},
    {"second 60", "time=2024-03-05T06:08:60.250Z", NO_TIME},
    {"before 1970", "time=1969-12-31T23:59:59.999Z", NO_TIME},
    {"the first time", "time=1970-01-01T00:00:00.000Z", "time=1970-01-01T00:00:00.000Z"},
    {"the last time", "time=2038-01-19T03:14:07.999Z", "time=2038-01-19T03:14:07.999Z"},
    {"and one more", "time=2038-01-19T03:14:08.000Z", NO_TIME},

    {"an empty value", TIME_TEXT " cpu=", NO_CPU},
    {"a word", TIME_TEXT " cpu=null", NO_CPU},
    {"a number and more", TIME_TEXT " cpu=12%", NO_CPU},
    {"two numbers", TIME_TEXT " cpu=1,5", NO_CPU},
    {"a zero byte behind it", TIME_TEXT " cpu=1\\u0000", NO_CPU},
    {"a blank before it", TIME_TEXT " cpu=\\u00201", NO_CPU},
    {"a sign", TIME_TEXT " cpu=-1", NO_CPU},
    {"another sign", TIME_TEXT " cpu=+1", NO_CPU},
    {"no number", TIME_TEXT " cpu=nan", NO_CPU},
    {"infinity", TIME_TEXT " cpu=inf", NO_CPU},
    {"more than a float holds", TIME_TEXT " cpu=1e39", NO_CPU},
    {"a point alone", TIME_TEXT " cpu=.", NO_CPU},
    {"every value is looked at", TIME_TEXT " memory=x", "memory is not a number"},
    {"the disk's too", TIME_TEXT " disk=x", "disk is not a number"},
    {"and the last", TIME_TEXT " uptime=x", "uptime is not a number"},
    {"the largest count of bytes", TIME_TEXT " free=18446744073709551615",
     TIME_TEXT " free=18446744073709551615"},
    {"and one more", TIME_TEXT " free=18446744073709551616", NO_FREE},
    {"a part of a byte", TIME_TEXT " free=1.5", NO_FREE},
    {"bytes with an exponent", TIME_TEXT " free=1e9", NO_FREE},
    {"bytes with a sign", TIME_TEXT " free=-1", NO_FREE},
};

TEST_F(MonitorLine, IsReadOrTellsWhyNot) {
    for (LineFact const& row : LINE_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(readBack(row.line), row.result);
    }
}

TEST_F(MonitorLine, MakesAMissingValueNull) {
    auto const reading = std::get<Reading>(readLine(TIME_TEXT));
    for (Field const& field : FIELDS)
        EXPECT_TRUE((reading.*field.value).isNull()) << field.name;
}

// ---- averages

class MonitorAverages : public testing::Test {
    testing_support::ScopedLocale locale_{"C"};
};

struct AverageFact {
    char const* fact;
    char const* samples;  // "SPAN/CPU/DISK", the span in seconds
    char const* average;  // the same
};

AverageFact const AVERAGE_FACTS[] = {
    {"one reading", "1/10/5", "1/10/5"},
    {"equal spans", "1/10/5 1/20/5", "2/15/5"},
    {"a span counts by its length", "3/10/1 1/20/5", "4/12.5/2"},
    {"so does the combined one", "1/10/1 1/20/1 2/45/1", "4/30/1"},
    {"be it short", "3e-9/10/1 1e-9/20/5", "4e-09/12.5/2"},
    {"without a span, alone", "0/10/5", "0/10/5"},
    {"it gives way to one with a span", "0/10/5 1/20/7", "1/20/7"},
    {"and not to one without", "0/10/5 0/20/7", "0/10/5"},
    {"later it does not count", "1/10/5 0/90/9 1/20/7", "2/15/6"},
    {"nor does one that goes back", "1/10/5 -9/90/9 1/20/7", "2/15/6"},
    {"never known is Null", "1/10/null 1/20/null", "2/15/null"},
    {"known later", "3/10/null 1/20/7", "4/12.5/7"},
    {"it counts from then on", "8/10/null 1/10/7 1/10/9", "10/10/8"},
    {"a gap covers nothing", "1/10/7 8/10/null 1/10/9", "10/10/8"},
};

std::vector<std::string> fieldsOf(std::string const& text, std::string const& separators) {
    std::vector<std::string> fields;
    split(fields, text, separators);
    return fields;
}

Variant numberOrNull(std::string const& text) {
    return text == "null" ? null() : Variant(std::stof(text));
}

TEST_F(MonitorAverages, WeighReadingsByTheirTime) {
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
        // The library has no reason to report a duration.
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_FALSE(averages.empty());
        Reading const mean = averages.mean();
        EXPECT_EQ(to_string(averages.span().count(), "%g") + "/" + mean.processor.toString() + "/" +
                      mean.disk.toString(),
                  row.average);
    }
}

TEST_F(MonitorAverages, AreOfTheNamesGiven) {
    Averages averages({"free", "uptime"});
    averages.add(usualReading(), 1s);
    averages.add(usualReading(), 1s);
    Reading const mean = averages.mean();
    EXPECT_EQ(mean.free.toDouble(), 85'899'300'000.0);  // six digits
    EXPECT_EQ(mean.uptime.toDouble(), 93784.0);
    for (Variant const* const other : {&mean.processor, &mean.memory, &mean.disk})
        EXPECT_FALSE(other->hasValue());
}

TEST_F(MonitorAverages, AreNothingWithoutNamesOrReadings) {
    EXPECT_TRUE(Averages({"cpu"}).empty());
    Averages nameless({});
    nameless.add(usualReading(), 1s);
    EXPECT_TRUE(nameless.empty());
}

// ---- the log, and its lines

// A file in memory that may not shrink, and holds the bytes of a text.
class UnshrinkableFile {
public:
    explicit UnshrinkableFile(std::string const& text)
        : descriptor_(memfd_create("log", MFD_ALLOW_SEALING)) {
        EXPECT_EQ(writeWhole(descriptor_, text), 0);
        EXPECT_EQ(fcntl(descriptor_, F_ADD_SEALS, F_SEAL_SHRINK), 0);
    }
    ~UnshrinkableFile() { close(descriptor_); }
    UnshrinkableFile(UnshrinkableFile const&) = delete;
    UnshrinkableFile& operator=(UnshrinkableFile const&) = delete;

    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

private:
    int descriptor_;
};

// The largest size that a file may have, for a scope.
class ScopedFileSize {
public:
    explicit ScopedFileSize(rlim_t size) {
        previousAction_ = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &previous_);
        rlimit const limit{size, previous_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~ScopedFileSize() {
        setrlimit(RLIMIT_FSIZE, &previous_);
        std::signal(SIGXFSZ, previousAction_);
    }
    ScopedFileSize(ScopedFileSize const&) = delete;
    ScopedFileSize& operator=(ScopedFileSize const&) = delete;

private:
    rlimit previous_{};
    sighandler_t previousAction_;
};

TEST(Monitor, TellsWhenAPartOfALineRemains) {
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
    log.append("third");  // begins a line of its own
    auto const text = readFile(file.path());
    EXPECT_EQ(std::string(text.data(), text.size()), "first\nseco\nthird\n");
}

struct LinesFact {
    char const* fact;
    std::string_view text;
    std::string_view lines;  // "NUMBER:LINE;" for each
};

LinesFact const LINES_FACTS[] = {
    {"nothing has no line", ""sv, ""sv},
    {"a newline ends a line", "a\nb\n"sv, "1:a;2:b;"sv},
    {"the last may lack it", "a\nb"sv, "1:a;2:b;"sv},
    {"a newline alone", "\n"sv, "1:;"sv},
    {"empty lines count", "\n\na"sv, "1:;2:;3:a;"sv},
    {"at the end too", "a\n\n"sv, "1:a;2:;"sv},
    {"a carriage return is no end", "a\r\nb"sv, "1:a\r;2:b;"sv},
    {"nor is a zero byte", "a\0b\nc"sv, "1:a\0b;2:c;"sv},
};

TEST(Monitor, WalksLines) {
    for (LinesFact const& row : LINES_FACTS) {
        SCOPED_TRACE(row.fact);
        ByteStream text;
        if (!row.text.empty()) text.copy(row.text.data(), static_cast<unsigned>(row.text.size()));
        Lines lines(text);
        std::string found;
        for (std::string_view line; lines.next(line);)
            found.append(std::to_string(lines.number())).append(":").append(line).append(";");
        EXPECT_EQ(found, row.lines);
    }
}

TEST(Monitor, ReadsAFileThatTellsNoSize) {
    auto const text = readFile("/proc/version");
    EXPECT_EQ(std::string(text.data(), text.size()).find("Linux version "), 0U);
}

// A pipe tells no size: what is read grows with it, past each size that the reader makes room for.
TEST(Monitor, ReadsAFileOfAnySize) {
    for (std::size_t const size : {0U, 1U, 65535U, 65536U, 65537U, 131072U, 131073U, 300007U}) {
        SCOPED_TRACE(size);
        std::string text(size, '.');
        for (std::size_t i = 0; i < size; i += 7)
            text[i] = static_cast<char>('a' + i % 26);

        UnshrinkableFile const file(text);
        auto const fromFile = readFile(file.path());
        EXPECT_TRUE(std::string(fromFile.data(), fromFile.size()) == text);

        int pipe[2];
        ASSERT_EQ(pipe2(pipe, O_CLOEXEC), 0);
        std::thread writer([&] {
            writeWhole(pipe[1], text);
            close(pipe[1]);
        });
        auto const fromPipe = readFile("/proc/self/fd/" + std::to_string(pipe[0]));
        writer.join();
        close(pipe[0]);
        EXPECT_TRUE(std::string(fromPipe.data(), fromPipe.size()) == text);
    }
}

}  // namespace
