#include <ctime>
#include <dlfcn.h>

#include <utillibrary/application/ORUsyslog.h>
#include <utillibrary/utilities/MovingTimeScale.h>
#include <utillibrary/utilities/SysStats.h>
#include <utillibrary/utilities/mktimeEx.h>

#include "support/failed_memory/rows.h"

// The machine, the log hook, the time axis and the calendar.
namespace testing_support {

namespace {

using namespace com::halvorin::utilities;

using Times = std::vector<long>;

char const* const AXIS =
    "MovingTimeAxis(long, long, unsigned int, unsigned long&, unsigned int&, std::vector<long>&, "
    "std::vector<long>&)";
char const* const SCALE =
    "MovingTimeScale(long, long, unsigned int, unsigned long, long&, long&, unsigned long&, "
    "unsigned int&)";

struct AxisFact {
    char const* fact;
    long tMax;
    unsigned int ticks;
    std::size_t majors;
    std::size_t minors;
};

AxisFact const AXIS_FACTS[] = {
    {"a step of the table", 100'000, 1000, 834, 2500},
    {"a step of 0 lists every second", 1000, 2000, 2, 999},
    {"a step of several days", 86400L * 1000, 11, 11, 30},
};

Row axis(AxisFact const& fact) {
    return {AXIS, fact.fact, Memory::NEEDED, [fact](Trial& trial) {
                unsigned long step = 0;
                unsigned int minor = 0;
                Times majors(1, 97);
                Times minors(1, 96);
                End const end = trial.run(
                    [&] { MovingTimeAxis(0, fact.tMax, fact.ticks, step, minor, majors, minors); });
                EXPECT_EQ(majors.size(), end == End::DONE ? fact.majors : 0);
                EXPECT_EQ(minors.size(), end == End::DONE ? fact.minors : 0);
            }};
}

Row axisOfOneList(AxisFact const& fact) {
    return {AXIS, std::string("one list for both: ") + fact.fact, Memory::NEEDED,
            [fact](Trial& trial) {
                unsigned long step = 0;
                unsigned int minor = 0;
                Times both(1, 97);
                End const end = trial.run(
                    [&] { MovingTimeAxis(0, fact.tMax, fact.ticks, step, minor, both, both); });
                EXPECT_EQ(both.size(), end == End::DONE ? fact.majors + fact.minors : 0);
            }};
}

// The library's own definition, which this program's hook replaces.
using Hook = void (*)(std::string const&, int, std::string const&, unsigned int);

Hook libraryHook() {
    void* const library = dlopen(UTILLIBRARY_LIBRARY, RTLD_LAZY | RTLD_NOLOAD);
    EXPECT_NE(library, nullptr);
    void* const hook =
        dlsym(library,
              "_ZN3com8halvorin11application3oru8writelogERKNSt7__cxx1112basic_stringIcSt11char_"
              "traitsIcESaIcEEEiSA_j");
    dlclose(library);
    return reinterpret_cast<Hook>(hook);
}

}  // namespace

Rows systemRows() {
    Rows rows = {
        {SCALE, "needs no memory", Memory::NONE,
         [](Trial& trial) {
             long start = 0;
             long end = 0;
             unsigned long step = 0;
             unsigned int minor = 0;
             trial.run([&] { MovingTimeScale(7, 35, 5, 0, start, end, step, minor); });
             EXPECT_EQ(step, 10U);
         }},
        {SCALE, "invalid arguments throw, and nothing is written", Memory::NEEDED,
         [](Trial& trial) {
             long start = 1;
             long end = 2;
             unsigned long step = 3;
             unsigned int minor = 4;
             trial.run([&] { MovingTimeScale(7, 35, 2, 0, start, end, step, minor); },
                       End::INVALID_ARGUMENT);
             EXPECT_EQ(start, 1);
             EXPECT_EQ(end, 2);
             EXPECT_EQ(step, 3U);
             EXPECT_EQ(minor, 4U);
         }},
        {AXIS, "invalid arguments throw, and the lists are empty", Memory::NEEDED,
         [](Trial& trial) {
             unsigned long step = 3;
             unsigned int minor = 4;
             Times majors(1, 97);
             Times minors(1, 96);
             trial.run([&] { MovingTimeAxis(7, 35, 2, step, minor, majors, minors); },
                       End::INVALID_ARGUMENT);
             EXPECT_EQ(step, 0U);
             EXPECT_EQ(minor, 0U);
             EXPECT_EQ(majors, Times());
             EXPECT_EQ(minors, Times());
         }},
        {"mktimeEx(tm*, int)", "needs no memory", Memory::NONE,
         [](Trial& trial) {
             std::tm record{};
             record.tm_year = 124;
             record.tm_mon = 2;
             long seconds = 0;
             trial.run([&] { seconds = mktimeEx(&record, 0); });
             EXPECT_EQ(seconds, 1709164800);
         }},
        {"writelog(std::string const&, int, std::string const&, unsigned int)",
         "the library's own hook needs no memory", Memory::NONE,
         [](Trial& trial) {
             Hook const hook = libraryHook();
             ASSERT_NE(hook, nullptr);
             trial.run([&] { hook(LONG_TEXT, 3, LONG_TEXT, 0); });
             EXPECT_EQ(takeReportCount(), 0);
         }},
    };
    for (AxisFact const& fact : AXIS_FACTS) {
        rows.push_back(axis(fact));
        rows.push_back(axisOfOneList(fact));
    }
    for (char const* const symbol :
         {"SysStats::SysStats()", "SysStats::systemMemory() const", "SysStats::systemCPU() const",
          "SysStats::uptime() const",
          "SysStats::diskSpace(std::string const&, float&, unsigned long&) const",
          "SysStats::getCPUTotals(unsigned long&, unsigned long&, unsigned long&, unsigned long&) "
          "const"}) {
        rows.push_back({symbol, "needs no memory", Memory::NONE, [](Trial& trial) {
                            std::string const root = "/";
                            std::string const missing = "/no such folder";
                            float percent = -1;
                            unsigned long bytes = 0;
                            unsigned long user = 0;
                            unsigned long nice = 0;
                            unsigned long system = 0;
                            unsigned long idle = 0;
                            trial.run([&] {
                                SysStats const machine;
                                EXPECT_LE(machine.systemMemory(), 100);
                                EXPECT_LE(machine.systemCPU(), 100);
                                EXPECT_GT(machine.uptime(), 0);
                                EXPECT_EQ(machine.diskSpace(root, percent, bytes), 0);
                                EXPECT_GE(percent, 0);
                                EXPECT_NE(machine.diskSpace(missing, percent, bytes), 0);
                                machine.getCPUTotals(user, nice, system, idle);
                            });
                            EXPECT_GT(user + nice + system + idle, 0U);
                        }});
    }
    return rows;
}

}  // namespace testing_support
