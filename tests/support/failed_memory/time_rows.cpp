#include <cerrno>
#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

#include <utillibrary/datatypes/xtime.h>
#include <utillibrary/datatypes/xtime_conversions.h>

#include "support/failed_memory/rows.h"
#include "support/locales.h"

namespace testing_support {

namespace {

using com::halvorin::datatypes::xtime_t;
using com::halvorin::datatypes::xtimeNow;
using namespace com::halvorin::utilities;

constexpr long SECONDS = 1709618889;           // 2024-03-05T06:08:09
constexpr long YEAR_10000 = 253402300800;      // 10000-01-01T00:00:00
constexpr long YEAR_OF_SIX_DIGITS = 1L << 42;  // 141338-07-19T02:25:04

constinit bool clockFails = false;

template <typename Work>
Row plain(char const* symbol, Work const& work) {
    return {symbol, "needs no memory", Memory::NONE, [work](Trial& trial) {
                xtime_t time(SECONDS, 250000000);
                trial.run([&] { work(time); });
            }};
}

Row failingClock(char const* symbol, void (*read)(xtime_t&)) {
    return {symbol, "an error of the clock is thrown", Memory::NEEDED, [read](Trial& trial) {
                xtime_t time(SECONDS, 5);
                clockFails = true;
                trial.run([&] { read(time); }, End::RUNTIME_ERROR);
                clockFails = false;
                EXPECT_EQ(time, xtime_t(SECONDS, 5));
            }};
}

Rows members() {
    return {
        plain("xtime_t::xtime_t()", [](xtime_t&) { EXPECT_FALSE(xtime_t().isSet()); }),
        plain("xtime_t::xtime_t(long const&)",
              [](xtime_t&) { EXPECT_EQ(xtime_t(SECONDS).getDateTime(), SECONDS); }),
        plain("xtime_t::xtime_t(long, unsigned int)",
              [](xtime_t&) { EXPECT_EQ(xtime_t(SECONDS, 5).getNanoseconds(), 5U); }),
        plain("xtime_t::isSet() const", [](xtime_t& t) { EXPECT_TRUE(t.isSet()); }),
        plain("xtime_t::getDateTime() const",
              [](xtime_t& t) { EXPECT_EQ(t.getDateTime(), SECONDS); }),
        plain("xtime_t::getNanoseconds() const",
              [](xtime_t& t) { EXPECT_EQ(t.getNanoseconds(), 250000000U); }),
        plain("xtime_t::putDateTime(long)",
              [](xtime_t& t) {
                  t.putDateTime(7);
                  EXPECT_EQ(t.getDateTime(), 7);
              }),
        plain("xtime_t::putNanoseconds(unsigned int)",
              [](xtime_t& t) {
                  t.putNanoseconds(2000000000);
                  EXPECT_EQ(t.getDateTime(), SECONDS + 2);
              }),
        plain("xtime_t::add(float)",
              [](xtime_t& t) {
                  t.add(1.5F);
                  EXPECT_EQ(t.getDateTime(), SECONDS + 1);
              }),
        plain("xtime_t::clear()",
              [](xtime_t& t) {
                  t.clear();
                  EXPECT_FALSE(t.isSet());
              }),
        plain("xtime_t::difference(xtime_t const&) const",
              [](xtime_t& t) { EXPECT_EQ(t.difference(xtime_t(SECONDS, 0)), 0.25F); }),
        plain("xtime_t::decompose(int&, int&, int&, int&, int&, int&, unsigned int&) const",
              [](xtime_t& t) {
                  int fields[6];
                  unsigned int nanoseconds = 0;
                  t.decompose(fields[0], fields[1], fields[2], fields[3], fields[4], fields[5],
                              nanoseconds);
                  EXPECT_EQ(fields[0], 2024);
                  EXPECT_EQ(fields[5], 9);
              }),
        plain("xtime_t::fromTime_point(TimePoint const&)",
              [](xtime_t& t) {
                  t.fromTime_point(xtime_t(7, 8).toTime_point());
                  EXPECT_EQ(t.getNanoseconds(), 8U);
              }),
        plain("xtime_t::toTime_point() const",
              [](xtime_t& t) {
                  EXPECT_EQ(t.toTime_point().time_since_epoch().count(), 1709618889250000000);
              }),
        plain("xtime_t::toVMSTime(unsigned long&) const",
              [](xtime_t& t) {
                  unsigned long ticks = 0;
                  EXPECT_EQ(t.toVMSTime(ticks), 52163356892500000UL);
              }),
        plain("xtime_t::toVMSTime() const",
              [](xtime_t& t) { EXPECT_EQ(t.toVMSTime(), 5216335689.25); }),
        plain("xtime_t::fromVMSTime(unsigned long)",
              [](xtime_t& t) {
                  t.fromVMSTime(52163356892500000UL);
                  EXPECT_EQ(t.getDateTime(), SECONDS);
              }),
        plain("xtime_t::fromVMSTime(double)",
              [](xtime_t& t) {
                  t.fromVMSTime(5216335689.25);
                  EXPECT_EQ(t.getDateTime(), SECONDS);
              }),
        plain("xtime_t::operator long()",
              [](xtime_t& t) { EXPECT_EQ(t.operator long(), SECONDS); }),
        plain("xtime_t::now()",
              [](xtime_t& t) {
                  t.now();
                  EXPECT_GT(t.getDateTime(), SECONDS);
              }),
        failingClock("xtime_t::now()", [](xtime_t& time) { time.now(); }),
        failingClock("xtimeNow()", [](xtime_t& time) { time = xtimeNow(); }),
        plain("xtimeNow()", [](xtime_t&) { EXPECT_GT(xtimeNow().getDateTime(), SECONDS); }),
        plain("operator==(xtime_t const&, xtime_t const&)",
              [](xtime_t& t) { EXPECT_FALSE(t == xtime_t()); }),
        plain("operator!=(xtime_t const&, xtime_t const&)",
              [](xtime_t& t) { EXPECT_TRUE(t != xtime_t()); }),
        plain("operator<(xtime_t const&, xtime_t const&)",
              [](xtime_t& t) { EXPECT_FALSE(t < xtime_t()); }),
        plain("operator>(xtime_t const&, xtime_t const&)",
              [](xtime_t& t) { EXPECT_TRUE(t > xtime_t()); }),
        plain("operator<=(xtime_t const&, xtime_t const&)",
              [](xtime_t& t) { EXPECT_FALSE(t <= xtime_t()); }),
        plain("operator>=(xtime_t const&, xtime_t const&)",
              [](xtime_t& t) { EXPECT_TRUE(t >= xtime_t()); }),
    };
}

// Strings of times, each in the classic locale and in one whose decimal point has two bytes.
struct ReadFact {
    char const* text;
    long seconds;
};

ReadFact const READ_FACTS[] = {
    {"2024-03-05T06:08:09.25Z", SECONDS},
    {"2024-03-05T07:08:09.25+01:00", SECONDS},
    {" 2024-3-5 and T 6: 8:9.000000000000000000001", SECONDS},  // which sscanf reads
    {"2024-03-05T06:08:09.00000000000000000000000000000000000000000000000000000000000000", SECONDS},
};

Rows reading() {
    Rows rows;
    for (char const* const locale : {"C", "ps_AF.UTF-8"}) {
        for (ReadFact const& fact : READ_FACTS) {
            rows.push_back({"xtime_t::fromString(std::string const&)",
                            std::string(fact.text) + " needs no memory under " + locale,
                            Memory::NONE, [fact, locale](Trial& trial) {
                                ScopedCLocale const scope(locale);
                                std::string const text = fact.text;
                                xtime_t time;
                                bool read = false;
                                trial.run([&] { read = time.fromString(text); });
                                EXPECT_TRUE(read);
                                EXPECT_EQ(time.getDateTime(), fact.seconds);
                            }});
        }
    }
    return rows;
}

template <typename Work>
Row written(char const* symbol, char const* fact, Memory memory, std::string const& whole,
            Work const& work) {
    return {symbol, fact, memory, [=](Trial& trial) { trial.expectWholeOrNone(work, whole); }};
}

Rows writing() {
    char const* const toString = "xtime_t::toString(bool, int, std::string const&) const";
    char const* const toDigits = "xtime_t::toYYYYString() const";
    char const* const digitsOf = "timeToYYYYString(long)";
    char const* const secondsOf = "YYYYStringTotime(std::string const&)";
    xtime_t const time(SECONDS, 250000000);
    xtime_t const late(YEAR_10000, 250000000);
    xtime_t const latest(YEAR_OF_SIX_DIGITS, 0);
    return {
        written(toString, "a usual year", Memory::NEEDED, "2024-03-05T07:08:09.250+0100",
                [=] { return time.toString(true, 3600, ""); }),
        written(toString, "a year of five digits", Memory::NEEDED, "10000-01-01T01:00:00.250+0100",
                [=] { return late.toString(true, 3600, ""); }),
        {toString, "a decimal point of two bytes", Memory::NEEDED,
         [time](Trial& trial) {
             ScopedCLocale const scope("ps_AF.UTF-8");
             trial.expectWholeOrNone([&] { return time.toString(false, 0, ""); },
                                     std::string("2024-03-05T06:08:09\xD9\xAB") + "25");
         }},
        written("to_string(xtime_t const&)", "a usual year", Memory::NEEDED,
                "2024-03-05T06:08:09.250Z", [=] { return to_string(time); }),
        written(toDigits, "fourteen digits need no memory", Memory::NONE, "20240305060809",
                [=] { return time.toYYYYString(); }),
        written(toDigits, "fifteen characters need no memory", Memory::NONE, "100000101000000",
                [=] { return late.toYYYYString(); }),
        written(toDigits, "a year of six digits", Memory::NEEDED, "1413380719022504",
                [=] { return latest.toYYYYString(); }),
        written(digitsOf, "fourteen digits need no memory", Memory::NONE, "20240305060809",
                [] { return timeToYYYYString(SECONDS); }),
        written(digitsOf, "a year of six digits", Memory::NEEDED, "1413380719022504",
                [] { return timeToYYYYString(YEAR_OF_SIX_DIGITS); }),
        {secondsOf, "needs no memory", Memory::NONE,
         [](Trial& trial) {
             std::string const digits = "20240305060809";
             std::string const spaced = "2024 3 5 6 8 9";
             trial.run([&] { EXPECT_EQ(YYYYStringTotime(digits), SECONDS); });
             trial.run([&] { EXPECT_EQ(YYYYStringTotime(spaced), SECONDS); });
         }},
        {secondsOf, "a field without digits throws", Memory::NEEDED,
         [](Trial& trial) {
             std::string const letters = "2024ab05060809";
             trial.run([&] { static_cast<void>(YYYYStringTotime(letters)); },
                       End::INVALID_ARGUMENT);
         }},
    };
}

}  // namespace

bool clockIsFailing() noexcept { return clockFails; }

Rows timeRows() {
    Rows rows;
    for (Rows const& more : {members(), reading(), writing()}) {
        rows.insert(rows.end(), more.begin(), more.end());
    }
    return rows;
}

}  // namespace testing_support

// In place of libc's, so that the clock can fail.
extern "C" int clock_gettime(clockid_t clock, std::timespec* time) noexcept {
    if (!testing_support::clockIsFailing()) {
        return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    }
    errno = EINVAL;
    return -1;
}
