#include <cerrno>
#include <climits>
#include <cstring>
#include <ctime>
#include <stdexcept>
#include <string>
#include <sys/syscall.h>
#include <typeinfo>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/xtime.h>

#include "support/locales.h"
#include "support/recorded_reports.h"

// This program defines clock_gettime, in place of libc's, so that `now` gets every answer that a
// system can give. All other callers get the real time.

using com::halvorin::datatypes::xtime_t;
using com::halvorin::datatypes::xtimeNow;

namespace {

struct Answer {
    int error = 0;
    std::timespec time = {};
};

Answer const* answer = nullptr;  // none: the real clock answers
std::vector<clockid_t> asked;

// Gives an answer for a scope.
class ScopedAnswer {
public:
    explicit ScopedAnswer(Answer const& given) {
        asked.clear();
        answer = &given;
    }
    ~ScopedAnswer() { answer = nullptr; }
    ScopedAnswer(ScopedAnswer const&) = delete;
    ScopedAnswer& operator=(ScopedAnswer const&) = delete;
};

}  // namespace

extern "C" int clock_gettime(clockid_t clock, std::timespec* time) noexcept {
    if (answer == nullptr) return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    asked.push_back(clock);
    if (answer->error != 0) {
        *time = {99, 99};
        errno = answer->error;
        return -1;
    }
    *time = answer->time;
    return 0;
}

namespace {

struct TimeFact {
    char const* fact;
    Answer answer;
    long seconds;
    unsigned int nanoseconds;
};

TimeFact const TIME_FACTS[] = {
    {"the epoch", {0, {0, 0}}, 0, 0},
    {"a present-day time", {0, {1709618889, 250000000}}, 1709618889, 250000000},
    {"the last nanosecond of a second", {0, {1709618889, 999999999}}, 1709618889, 999999999},
    {"beyond 32 bits", {0, {4294967296, 1}}, 4294967296, 1},
    {"a clock before the epoch", {0, {-2, 999999999}}, -2, 999999999},
    {"the last second", {0, {LONG_MAX, 999999999}}, LONG_MAX, 999999999},
};

TEST(XtimeClock, GivesSecondsAndNanoseconds) {
    for (TimeFact const& row : TIME_FACTS) {
        SCOPED_TRACE(row.fact);
        xtime_t member(77, 4294967295);
        xtime_t free(77, 4294967295);
        {
            ScopedAnswer const scope(row.answer);
            member.now();
            free = xtimeNow();
        }
        EXPECT_EQ(member.getDateTime(), row.seconds);
        EXPECT_EQ(member.getNanoseconds(), row.nanoseconds);
        EXPECT_EQ(free, member);
        EXPECT_EQ(asked, (std::vector<clockid_t>{CLOCK_REALTIME, CLOCK_REALTIME}));
    }
}

struct ErrorFact {
    char const* fact;
    Answer answer;
    char const* text;
};

// KEPT(clock-error-spelling)
ErrorFact const ERROR_FACTS[] = {
    {"no such clock",
     {EINVAL},
     "xtime_t::now - Error returned from clock_getttime: Invalid argument"},
    {"no permission",
     {EPERM},
     "xtime_t::now - Error returned from clock_getttime: Operation not permitted"},
    {"no such call",
     {ENOSYS},
     "xtime_t::now - Error returned from clock_getttime: Function not implemented"},
    {"a number without a name",
     {9999},
     "xtime_t::now - Error returned from clock_getttime: Unknown error 9999"},
};

template <typename Call>
void expectThrown(Call const& call, Answer const& given, std::string const& text) {
    try {
        ScopedAnswer const scope(given);
        call();
        FAIL() << "nothing was thrown";
    } catch (std::exception const& error) {
        EXPECT_EQ(typeid(error), typeid(std::runtime_error));
        EXPECT_EQ(error.what(), text);
    }
    EXPECT_EQ(asked, std::vector<clockid_t>{CLOCK_REALTIME});
}

TEST(XtimeClock, ThrowsTheTextOfErrno) {
    testing_support::ScopedCLocale const english("C");
    for (ErrorFact const& row : ERROR_FACTS) {
        SCOPED_TRACE(row.fact);
        xtime_t time(77, 4294967295);
        expectThrown([&time] { time.now(); }, row.answer, row.text);
        EXPECT_EQ(time.getDateTime(), 77);
        EXPECT_EQ(time.getNanoseconds(), 4294967295);
        expectThrown([] { xtimeNow(); }, row.answer, row.text);
    }
    EXPECT_TRUE(testing_support::takeReports().empty());
}

// The text is that of the host's locale.
TEST(XtimeClock, ThrowsTheTextOfErrnoUnderEveryLocale) {
    for (std::string const& name : testing_support::allLocales()) {
        SCOPED_TRACE(name);
        testing_support::ScopedCLocale const locale(name);
        std::string const text = "xtime_t::now - Error returned from clock_getttime: ";
        Answer const given = {EINVAL};
        expectThrown([] { xtimeNow(); }, given, text + std::strerror(EINVAL));
    }
}

TEST(XtimeClock, WorksAgainAfterAFailure) {
    Answer const failure = {EINVAL};
    expectThrown(
        [] { xtimeNow(); }, failure,
        std::string("xtime_t::now - Error returned from clock_getttime: ") + std::strerror(EINVAL));
    Answer const success = {0, {5, 6}};
    ScopedAnswer const scope(success);
    EXPECT_EQ(xtimeNow(), xtime_t(5, 6));
}

}  // namespace
