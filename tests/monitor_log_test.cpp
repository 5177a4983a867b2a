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
using namespace monitor;
using namespace std::chrono_literals;

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
    {"a whole number",               45.0F,            "45"                                             },
    {"a fraction",                   12.34F,           "12.34"                                          },
    {"nothing",                      0.0F,             "0"                                              },
    {"as many digits as it takes",   14.198908F,       "14.198908"                                      },
    {"never an exponent",            1e-6F,            "0.000001"                                       },
    {"be it small or large",         9'000'000.0F,     "9000000"                                        },
    {"the smallest float",           1.4e-45F,         "0.000000000000000000000000000000000000000000001"},
    {"the largest float",            3.4028235e38F,    "340282346638528859811704183484516925440"        },
    {"bytes",                        85'899'345'921UL, "85899345921"                                    },
    {"more of them than in a float", 16'777'217UL,     "16777217"                                       },
    {"as many as there are",         ~0UL,             "18446744073709551615"                           },
    {"Null",                         null(),           ""                                               },
    {"no value",                     Variant(),        ""                                               },
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
    {"a time alone",                 TIME_TEXT,                              TIME_TEXT                      },
    {"any order",                    "free=7 cpu=1.5 " TIME_TEXT,            TIME_TEXT " cpu=1.5 free=7"    },
    {"blanks at the ends",           " \t" TIME_TEXT " cpu=1 \t",            TIME_TEXT " cpu=1"             },
    {"a carriage return at the end", TIME_TEXT " cpu=1\r",                   TIME_TEXT " cpu=1"             },
    {"several spaces",               TIME_TEXT "   cpu=1",                   TIME_TEXT " cpu=1"             },
    {"other names are ignored",      TIME_TEXT " gpu=x cpu=1",               TIME_TEXT " cpu=1"             },
    {"the first of a name counts",   TIME_TEXT " cpu=1 cpu=x",               TIME_TEXT " cpu=1"             },
    {"a value may be escaped",       TIME_TEXT " cpu=\\u0031.5",             TIME_TEXT " cpu=1.5"           },
    {"an exponent",                  TIME_TEXT " cpu=1.5e1",                 TIME_TEXT " cpu=15"            },
    {"digits that a float drops",    TIME_TEXT " cpu=1.00000000001",         TIME_TEXT " cpu=1"             },

    {"an empty line",                "",                                     NOT_PAIRS                      },
    {"blanks alone",                 " \t\r",                                NOT_PAIRS                      },
    {"no pair at all",               "junk",                                 NOT_PAIRS                      },
    {"a field that is no pair",      TIME_TEXT " cpu",                       NOT_PAIRS                      },
    {"a field without a name",       TIME_TEXT " =1",                        NOT_PAIRS                      },
    {"control bytes are not quoted", "\x1b[31m",                             NOT_PAIRS                      },

    {"no time",                      "cpu=1",                                "time is missing"              },
    {"an empty time",                "time=",                                NO_TIME                        },
    {"no time of day",               "time=2024-03-05",                      NO_TIME                        },
    {"no milliseconds",              "time=2024-03-05T06:08:09Z",            NO_TIME                        },
    {"too few of them",              "time=2024-03-05T06:08:09.25Z",         NO_TIME                        },
    {"too many of them",             "time=2024-03-05T06:08:09.2500Z",       NO_TIME                        },
    {"no digits",                    "time=2024-03-05T06:08:09.2x0Z",        NO_TIME                        },
    {"a sign",                       "time=2024-03-05T06:08:09.-25Z",        NO_TIME                        },
    {"no point",                     "time=2024-03-05T06:08:09,250Z",        NO_TIME                        },
    {"no zone",                      "time=2024-03-05T06:08:09.250 ",        NO_TIME                        },
    {"another zone",                 "time=2024-03-05T06:08:09.250+0100",    NO_TIME                        },
    {"another letter",               "time=2024-03-05T06:08:09.250z",        NO_TIME                        },
    {"something behind the zone",    "time=2024-03-05T06:08:09.250Zx",       NO_TIME                        },
    {"a day that is not there",      "time=2023-02-29T06:08:09.250Z",        NO_TIME                        },
    {"a leap day",                   "time=2024-02-29T06:08:09.250Z",        "time=2024-02-29T06:08:09.250Z"},
    {"hour 24",                      "time=2024-03-05T24:08:09.250Z",        NO_TIME                        },
    {"second 60",                    "time=2024-03-05T06:08:60.250Z",        NO_TIME                        },
    {"before 1970",                  "time=1969-12-31T23:59:59.999Z",        NO_TIME                        },
    {"the first time",               "time=1970-01-01T00:00:00.000Z",        "time=1970-01-01T00:00:00.000Z"},
    {"the last time",                "time=2038-01-19T03:14:07.999Z",        "time=2038-01-19T03:14:07.999Z"},
    {"and one more",                 "time=2038-01-19T03:14:08.000Z",        NO_TIME                        },

    {"an empty value",               TIME_TEXT " cpu=",                      NO_CPU                         },
    {"a word",                       TIME_TEXT " cpu=null",                  NO_CPU                         },
    {"a number and more",            TIME_TEXT " cpu=12%",                   NO_CPU                         },
    {"two numbers",                  TIME_TEXT " cpu=1,5",                   NO_CPU                         },
    {"a zero byte behind it",        TIME_TEXT " cpu=1\\u0000",              NO_CPU                         },
    {"a blank before it",            TIME_TEXT " cpu=\\u00201",              NO_CPU                         },
    {"a sign",                       TIME_TEXT " cpu=-1",                    NO_CPU                         },
    {"another sign",                 TIME_TEXT " cpu=+1",                    NO_CPU                         },
    {"no number",                    TIME_TEXT " cpu=nan",                   NO_CPU                         },
    {"infinity",                     TIME_TEXT " cpu=inf",                   NO_CPU                         },
    {"more than a float holds",      TIME_TEXT " cpu=1e39",                  NO_CPU                         },
    {"a point alone",                TIME_TEXT " cpu=.",                     NO_CPU                         },
    {"every value is looked at",     TIME_TEXT " memory=x",                  "memory is not a number"       },
    {"the disk's too",               TIME_TEXT " disk=x",                    "disk is not a number"         },
    {"and the last",                 TIME_TEXT " uptime=x",                  "uptime is not a number"       },
    {"the largest count of bytes",   TIME_TEXT " free=18446744073709551615",
     TIME_TEXT " free=18446744073709551615"                                                                 },
    {"and one more",                 TIME_TEXT " free=18446744073709551616", NO_FREE                        },
    {"a part of a byte",             TIME_TEXT " free=1.5",                  NO_FREE                        },
    {"bytes with an exponent",       TIME_TEXT " free=1e9",                  NO_FREE                        },
    {"bytes with a sign",            TIME_TEXT " free=-1",                   NO_FREE                        },
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

struct Sample {
    Averages::Seconds span;
    Variant processor;
    Variant disk;
};

Sample covers(Averages::Seconds span, Variant const& processor, Variant const& disk) {
    return {span, processor, disk};
}

struct AverageFact {
    char const* fact;
    std::vector<Sample> samples;
    Averages::Seconds span;
    Variant processor;
    Variant disk;
};

AverageFact const AVERAGE_FACTS[] = {
    {"one reading",                     {covers(1s, 10.0F, 5.0F)},                            1s,  10.0,    5.0},
    {"equal spans",                     {covers(1s, 10.0F, 5.0F), covers(1s, 20.0F, 5.0F)},   2s,  15.0,    5.0},
    {"a span counts by its length",
     {covers(3s, 10.0F, 1.0F), covers(1s, 20.0F, 5.0F)},
     4s,                                                                                           12.5,
     2.0                                                                                                       },
    {"so does the combined one",
     {covers(1s, 10.0F, 1.0F), covers(1s, 20.0F, 1.0F), covers(2s, 45.0F, 1.0F)},
     4s,                                                                                           30.0,
     1.0                                                                                                       },
    {"be it short",                     {covers(3ns, 10.0F, 1.0F), covers(1ns, 20.0F, 5.0F)}, 4ns, 12.5,    2.0},
    {"without a span, alone",           {covers(0s, 10.0F, 5.0F)},                            0s,  10.0,    5.0},
    {"it gives way to one with a span",
     {covers(0s, 10.0F, 5.0F), covers(1s, 20.0F, 7.0F)},
     1s,                                                                                           20.0,
     7.0                                                                                                       },
    {"and not to one without",          {covers(0s, 10.0F, 5.0F), covers(0s, 20.0F, 7.0F)},   0s,  10.0,    5.0},
    {"later it does not count",
     {covers(1s, 10.0F, 5.0F), covers(0s, 90.0F, 9.0F), covers(1s, 20.0F, 7.0F)},
     2s,                                                                                           15.0,
     6.0                                                                                                       },
    {"nor does one that goes back",
     {covers(1s, 10.0F, 5.0F), covers(-9s, 90.0F, 9.0F), covers(1s, 20.0F, 7.0F)},
     2s,                                                                                           15.0,
     6.0                                                                                                       },
    {"never known is Null",
     {covers(1s, 10.0F, null()), covers(1s, 20.0F, null())},
     2s,                                                                                           15.0,
     null()                                                                                                    },
    {"known later",                     {covers(3s, 10.0F, null()), covers(1s, 20.0F, 7.0F)}, 4s,  12.5,    7.0},
    {"it counts from then on",
     {covers(8s, 10.0F, null()), covers(1s, 10.0F, 7.0F), covers(1s, 10.0F, 9.0F)},
     10s,                                                                                          10.0,
     8.0                                                                                                       },
    {"a gap covers nothing",
     {covers(1s, 10.0F, 7.0F), covers(8s, 10.0F, null()), covers(1s, 10.0F, 9.0F)},
     10s,                                                                                          10.0,
     8.0                                                                                                       },
    {"six digits are kept",
     {covers(1s, 10.12345678F, 5.0F), covers(1s, 10.12345678F, 5.0F)},
     2s,                                                                                           10.1235,
     5.0                                                                                                       },
};

void expectSame(Variant const& value, Variant const& expected) {
    ASSERT_EQ(value.type(), expected.type());
    if (expected.isNull()) return;
    EXPECT_EQ(value.toDouble(), expected.toDouble());
}

TEST_F(MonitorAverages, WeighReadingsByTheirTime) {
    for (AverageFact const& row : AVERAGE_FACTS) {
        SCOPED_TRACE(row.fact);
        testing::internal::CaptureStderr();
        Averages averages({"disk", "cpu"});
        for (Sample const& sample : row.samples) {
            Reading reading = usualReading();
            reading.processor = sample.processor;
            reading.disk = sample.disk;
            averages.add(reading, sample.span);
        }
        // The library has no reason to report a duration.
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_FALSE(averages.empty());
        EXPECT_DOUBLE_EQ(averages.span().count(), row.span.count());
        expectSame(averages.mean().processor, row.processor);
        expectSame(averages.mean().disk, row.disk);
    }
}

TEST_F(MonitorAverages, AreOfTheNamesGiven) {
    Averages averages({"free", "uptime"});
    averages.add(usualReading(), 1s);
    averages.add(usualReading(), 1s);
    Reading const mean = averages.mean();
    expectSame(mean.free, 85'899'300'000.0);  // six digits
    expectSame(mean.uptime, 93784.0);
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
    std::string text;
    std::string lines;  // "number:line;" for each
};

LinesFact const LINES_FACTS[] = {
    {"nothing has no line",               "",                          ""                                 },
    {                                                  "a newline ends a line",                                                                                                        "a\nb\n",                                                    "1:a;2:b;"              },
    {                          "the last may lack it",                                                                                                 "a\nb",                    "1:a;2:b;"},
    { "a newline alone",                                                                       "\n",                                                  "1:;"                                                 },
    {                                     "empty lines count",                                                                                        "\n\na",                     "1:;2:;3:a;"                       },
    {                                "at the end too", "a\n\n",                                   "1:a;2:;"                                                                  },
    {                                                                                      "a carriage return is no end",                                                                                                                                                                                                                "a\r\nb",                     "1:a\r;2:b;"                                         },
    {                                                    "nor is a zero byte",                                                                                                                                                             std::string("a\0b\nc", 5),                               std::string("1:a\0b;2:c;", 10)},
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
