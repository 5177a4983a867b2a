#include <array>
#include <chrono>
#include <fstream>
#include <pthread.h>
#include <string>
#include <sys/statvfs.h>
#include <type_traits>

#include <gmock/gmock.h>

#include "utillibrary/utilities/SysStats_internal.h"
#include <utillibrary/utilities/SysStats.h>

#include "support/cancellation.h"

using com::halvorin::internal::cpuLoad;
using com::halvorin::internal::CpuTotals;
using com::halvorin::internal::DiskBlocks;
using com::halvorin::internal::DiskUse;
using com::halvorin::internal::diskUse;
using com::halvorin::internal::parseCpuTotals;
using com::halvorin::internal::percentInUse;
using com::halvorin::internal::percentOf;
using com::halvorin::utilities::SysStats;

namespace {

using Counters = std::array<unsigned long, 4>;

constexpr unsigned long MOST = 18446744073709551615UL;  // 64 bits

Counters countersOf(CpuTotals const& totals) {
    return {totals.user, totals.nice, totals.system, totals.idle};
}

// ---- the text of "/proc/stat"

struct TotalsFact {
    char const* fact;
    char const* text;
    Counters counters;
};

TotalsFact const TOTALS_FACTS[] = {
    {"a label and four numbers", "cpu  1 2 3 4\n", {1, 2, 3, 4}},
    {"columns after the fourth are ignored",
     "cpu  1 2 3 4 5 6 7 8 9 9\n",
     {1, 2, 3, 4}},  // KEPT(first-four-counters)
    {"lines after the first are ignored", "cpu 1 2 3 4\ncpu0 5 6 7 8\n", {1, 2, 3, 4}},
    {"the label may be any word", "cpu17 1 2 3 4", {1, 2, 3, 4}},
    {"the label may be a number", "9 1 2 3 4", {1, 2, 3, 4}},
    {"the label may be one byte", "- 1 2 3 4", {1, 2, 3, 4}},
    {"whitespace may precede the label", " \n cpu 1 2 3 4", {1, 2, 3, 4}},
    {"the line may end without a line feed", "cpu 1 2 3 4", {1, 2, 3, 4}},
    {"all six kinds of whitespace separate numbers, one or more at a time",
     "cpu\t1\n2\v\v3\f\r4 ",
     {1, 2, 3, 4}},
    {"leading zeros do not change a number", "cpu 00 01 002 0003", {0, 1, 2, 3}},
    {"without a fourth number it is 0", "cpu 1 2 3\n", {1, 2, 3, 0}},
    {"without a third number the last two are 0", "cpu 1 2", {1, 2, 0, 0}},
    {"without a second number the last three are 0", "cpu 1 ", {1, 0, 0, 0}},
    {"a label alone gives zeros", "cpu", {0, 0, 0, 0}},
    {"a label and a space give zeros", "cpu ", {0, 0, 0, 0}},
    {"an empty string gives zeros", "", {0, 0, 0, 0}},
    {"whitespace alone gives zeros", " \t\n", {0, 0, 0, 0}},
    {"the label of the next line is no number", "cpu 1 2 3\ncpu0 5 6 7 8\n", {1, 2, 3, 0}},
    {"a word in place of a number makes this and all later ones 0", "cpu x 2 3 4", {0, 0, 0, 0}},
    {"a word in place of the third number makes the last two 0", "cpu 1 2 x 4", {1, 2, 0, 0}},
    {"a letter right after a number makes the later ones 0", "cpu 1 2x 3 4", {1, 2, 0, 0}},
    {"a decimal point ends a number and makes the later ones 0", "cpu 1.5 2 3 4", {1, 0, 0, 0}},
    {"the x of 0x10 ends a number and makes the later ones 0", "cpu 0x10 2 3 4", {0, 0, 0, 0}},
    {"a minus sign is no part of a number", "cpu 1 -2 3 4", {1, 0, 0, 0}},
    {"a plus sign is no part of a number", "cpu 1 +2 3 4", {1, 0, 0, 0}},
    {"one below the largest number is read", "cpu 18446744073709551614 2 3 4", {MOST - 1, 2, 3, 4}},
    {"the largest number, of 20 digits, is read as the second",
     "cpu 1 18446744073709551615 3 4",
     {1, MOST, 3, 4}},
    {"the largest number, of 20 digits, is read as the fourth",
     "cpu 1 2 3 18446744073709551615",
     {1, 2, 3, MOST}},
    {"one above the largest number makes this and all later ones 0",
     "cpu 1 18446744073709551616 3 4",
     {1, 0, 0, 0}},
    {"a number of 21 digits makes this and all later ones 0",
     "cpu 100000000000000000000 2 3 4",
     {0, 0, 0, 0}},
};

TEST(CpuTotals, AreTheFirstFourNumbersOfAText) {
    for (TotalsFact const& row : TOTALS_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(countersOf(parseCpuTotals(row.text)), row.counters);
    }
}

TEST(CpuTotals, EndWhereTheTextEnds) {
    std::string_view const text = "cpu 1 2 3 456789";
    EXPECT_EQ(countersOf(parseCpuTotals(text.substr(0, 11))), (Counters{1, 2, 3, 4}));
    EXPECT_EQ(countersOf(parseCpuTotals(text.substr(0, 10))), (Counters{1, 2, 3, 0}));
    EXPECT_EQ(countersOf(parseCpuTotals(text.substr(0, 5))), (Counters{1, 0, 0, 0}));
    EXPECT_EQ(countersOf(parseCpuTotals({})), (Counters{0, 0, 0, 0}));
    EXPECT_EQ(countersOf(parseCpuTotals({"cpu 1\0 2 3 4", 12})), (Counters{1, 0, 0, 0}));
}

// ---- shares and loads

struct ShareFact {
    char const* fact;
    unsigned long part;
    unsigned long total;
    float percent;
};

// A result of the last rows is wrong by one bit if the counts become doubles, if the product or the
// quotient is a float, or if the division comes first in floats.
ShareFact const SHARE_FACTS[] = {
    {"none of seven is 0 percent", 0, 7, 0.0F},
    {"one of a hundred is 1 percent", 1, 100, 1.0F},
    {"nine of nine is 100 percent", 9, 9, 100.0F},
    {"one of three is the nearest float to a third", 1, 3, 0x1.0aaaaap+5F},
    {"two of three is the nearest float to two thirds", 2, 3, 0x1.0aaaaap+6F},
    {"three of two is 150 percent", 3, 2, 150.0F},
    {"the largest count of one is divided in 64 bits", MOST, 1, 0x1.9p+70F},
    {"counts above 2^24 become floats first", 45987975, 574995807, 0x1.ffdeb4p+2F},
    {"two floats are divided as doubles", 905717840, 32561554776, 0x1.640a04p+1F},
    {"the result is rounded once, at the end", 26055219, 27203377, 0x1.7f1e12p+6F},
    {"large counts are rounded once as well", 4543030103, 53501526646, 0x1.0fb994p+3F},
};

TEST(PercentOf, RoundsCountsToFloatsAndDividesThemAsDoubles) {
    for (ShareFact const& row : SHARE_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(percentOf(row.part, row.total), row.percent);
    }
}

TEST(PercentInUse, IsAllOfItWithoutAnyTotal) {
    EXPECT_EQ(percentInUse(0, 0), 100.0F);
    EXPECT_EQ(percentInUse(5, 0), 100.0F);
    EXPECT_EQ(percentInUse(0, 1), 0.0F);
    EXPECT_EQ(percentInUse(1, 1), 100.0F);
    EXPECT_EQ(percentInUse(1, 4), 25.0F);
}

struct DiskFact {
    char const* fact;
    DiskBlocks blocks;
    float percent;
    unsigned long free;
};

DiskFact const DISK_FACTS[] = {
    {"with one size for both, used is total minus free", {1000, 4096, 250, 4096}, 75.0F, 1024000},
    {"the total is counted in fragments",
     {1000, 1024, 10, 4096},
     96.0F,
     40960},  // KEPT(two-block-sizes)
    {"the free space is counted in blocks", {1000, 4096, 100, 1024}, 97.5F, 102400},
    {"a disk that is all free is 0 percent used", {1000, 512, 1000, 512}, 0.0F, 512000},
    {"a disk without free blocks is 100 percent used", {1000, 512, 0, 512}, 100.0F, 0},
    {"a disk of no blocks is 100 percent used", {0, 4096, 0, 4096}, 100.0F, 0},
    {"a disk of no blocks may have free bytes", {0, 4096, 7, 4096}, 100.0F, 28672},
    {"a disk of fragments of 0 bytes is 100 percent used", {1000, 0, 7, 4096}, 100.0F, 28672},
    {"used wraps at 64 bits where free is above the total",
     {100, 1, 101, 1},
     0x1p+64F,
     101},  // KEPT(two-block-sizes)
    {"the total wraps at 64 bits", {1UL << 63, 2, 7, 1}, 100.0F, 7},
    {"the free space wraps at 64 bits", {1000, 1, 1UL << 63, 2}, 100.0F, 0},
    {"counts become floats and are divided as doubles",
     {27203377, 1, 1148158, 1},
     0x1.7f1e12p+6F,
     1148158},
};

TEST(DiskUse, CountsTheTotalInFragmentsAndTheFreeSpaceInBlocks) {
    for (DiskFact const& row : DISK_FACTS) {
        SCOPED_TRACE(row.fact);
        DiskUse const use = diskUse(row.blocks);
        EXPECT_EQ(use.percent, row.percent);
        EXPECT_EQ(use.free, row.free);
    }
}

struct LoadFact {
    char const* fact;
    CpuTotals previous;
    CpuTotals now;
    float load;
};

constexpr float PREVIOUS_LOAD = 12.5F;

LoadFact const LOAD_FACTS[] = {
    {"user time counts as busy", {10, 20, 30, 40}, {11, 20, 30, 43}, 25.0F},
    {"nice time counts as busy", {10, 20, 30, 40}, {10, 21, 30, 43}, 25.0F},
    {"system time counts as busy", {10, 20, 30, 40}, {10, 20, 31, 43}, 25.0F},
    {"user, nice and system time are added up", {10, 20, 30, 40}, {11, 22, 33, 44}, 60.0F},
    {"idle time alone is a load of 0", {10, 20, 30, 40}, {10, 20, 30, 41}, 0.0F},
    {"no idle time is a load of 100 percent", {10, 20, 30, 40}, {11, 20, 30, 40}, 100.0F},
    {"the previous counters may be 0", {0, 0, 0, 0}, {1, 1, 0, 2}, 50.0F},
    {"no tick keeps the previous load",
     {10, 20, 30, 40},
     {10, 20, 30, 40},
     PREVIOUS_LOAD},  // KEPT(no-tick-repeats-the-load)
    {"user time that goes backwards keeps the previous load",
     {10, 20, 30, 40},
     {9, 99, 99, 99},
     PREVIOUS_LOAD},  // KEPT(no-tick-repeats-the-load)
    {"nice time that goes backwards keeps the previous load",
     {10, 20, 30, 40},
     {99, 19, 99, 99},
     PREVIOUS_LOAD},
    {"system time that goes backwards keeps the previous load",
     {10, 20, 30, 40},
     {99, 99, 29, 99},
     PREVIOUS_LOAD},
    {"idle time that goes backwards keeps the previous load",
     {10, 20, 30, 40},
     {99, 99, 99, 39},
     PREVIOUS_LOAD},
    {"four counters that go backwards keep the previous load",
     {10, 20, 30, 40},
     {0, 0, 0, 0},
     PREVIOUS_LOAD},
    {"the busy sum of the second reading wraps at 64 bits",
     {MOST, 0, 0, 0},
     {MOST, 3, 0, 9},
     25.0F},
    {"the busy sums of both readings wrap at 64 bits", {MOST, 2, 0, 0}, {MOST, 3, 1, 6}, 25.0F},
    {"the total wraps at 64 bits", {0, 0, 0, 0}, {MOST, 0, 0, 2}, 0x1.9p+70F},
    {"a total that wraps to 0 keeps the previous load",
     {0, 0, 0, 0},
     {MOST, 0, 0, 1},
     PREVIOUS_LOAD},
    {"ticks become floats, which are divided as doubles",
     {0, 0, 0, 0},
     {26055219, 0, 0, 1148158},
     0x1.7f1e12p+6F},
};

TEST(CpuLoad, IsTheBusyShareOfTheTicksBetweenTwoReadings) {
    for (LoadFact const& row : LOAD_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(cpuLoad(row.previous, row.now, PREVIOUS_LOAD), row.load);
    }
}

// ---- the class

static_assert(std::is_trivially_copyable_v<SysStats> && std::is_standard_layout_v<SysStats>);
static_assert(sizeof(SysStats) == 40 && !std::is_polymorphic_v<SysStats>);
static_assert(std::is_nothrow_default_constructible_v<SysStats>);
static_assert(
    std::is_same_v<decltype(&SysStats::systemMemory), float (SysStats::*)() const noexcept>);
static_assert(std::is_same_v<decltype(&SysStats::systemCPU), float (SysStats::*)() const noexcept>);
static_assert(std::is_same_v<decltype(&SysStats::uptime), float (SysStats::*)() const noexcept>);
static_assert(
    std::is_same_v<decltype(&SysStats::diskSpace),
                   int (SysStats::*)(std::string const&, float&, unsigned long&) const noexcept>);
static_assert(std::is_same_v<decltype(&SysStats::getCPUTotals),
                             void (SysStats::*)(unsigned long&, unsigned long&, unsigned long&,
                                                unsigned long&) const noexcept>);

// ---- the machine that the tests run on

Counters countersOfThisMachine() {
    Counters counters{};
    SysStats().getCPUTotals(counters[0], counters[1], counters[2], counters[3]);
    return counters;
}

Counters countersByStream() {
    std::ifstream stream("/proc/stat");
    stream.imbue(std::locale::classic());
    std::string label;
    Counters counters{};
    stream >> label >> counters[0] >> counters[1] >> counters[2] >> counters[3];
    return counters;
}

TEST(ThisMachine, HasMemoryInUse) {
    float const percent = SysStats().systemMemory();
    EXPECT_GT(percent, 0.0F);
    EXPECT_LE(percent, 100.0F);
}

TEST(ThisMachine, HasADisk) {
    float percent = -1;
    unsigned long free = 1;
    ASSERT_EQ(SysStats().diskSpace("/", percent, free), 0);
    EXPECT_GE(percent, 0.0F);
    EXPECT_LE(percent, 100.0F);

    struct statvfs status {};
    ASSERT_EQ(statvfs("/", &status), 0);
    EXPECT_LE(free, status.f_blocks * status.f_bsize);
}

TEST(ThisMachine, HasNoSuchFile) {
    float percent = -1.5F;
    unsigned long free = 77;
    EXPECT_EQ(SysStats().diskSpace("/no/such/file/anywhere", percent, free), ENOENT);
    EXPECT_EQ(SysStats().diskSpace("", percent, free), ENOENT);
    EXPECT_EQ(SysStats().diskSpace("/proc/self/status/below-a-file", percent, free), ENOTDIR);
    EXPECT_EQ(SysStats().diskSpace(std::string(5000, 'x'), percent, free), ENAMETOOLONG);
    EXPECT_EQ(percent, -1.5F);
    EXPECT_EQ(free, 77UL);
}

TEST(ThisMachine, CountsTheTicksThatItsFileSays) {
    Counters const before = countersByStream();
    Counters const between = countersOfThisMachine();
    Counters const after = countersByStream();
    // The kernel may take back a tick or two of idle time; the other three only grow.
    for (std::size_t i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        EXPECT_LE(before[i], between[i]);
        EXPECT_LE(between[i], after[i]);
    }
    EXPECT_NEAR(static_cast<double>(between[3]), static_cast<double>(before[3]), 1000.0);
    EXPECT_THAT(between, testing::Contains(testing::Gt(0UL)));
}

TEST(ThisMachine, IsBusyWhileItWorks) {
    SysStats const machine;
    auto const end = std::chrono::steady_clock::now() + std::chrono::milliseconds(200);
    while (std::chrono::steady_clock::now() < end) {
    }
    float const load = machine.systemCPU();
    EXPECT_GT(load, 0.0F);
    EXPECT_LE(load, 100.0F);
}

TEST(ThisMachine, HasBeenUpSinceItsFileSays) {
    auto const secondsByStream = [] {
        std::ifstream stream("/proc/uptime");
        stream.imbue(std::locale::classic());
        double seconds = 0;
        stream >> seconds;
        return seconds;
    };
    double const before = secondsByStream();
    double const uptime = static_cast<double>(SysStats().uptime());
    double const after = secondsByStream();
    // Whole seconds, rounded up; a float of years of seconds is off by a few.
    EXPECT_GE(uptime, before - 16.0);
    EXPECT_LE(uptime, after + 16.0);
    EXPECT_GT(uptime, 0.0);
}

// What a thread has done between a request to cancel it and its end.
struct Cancelled {
    bool readEverything = false;
    bool wentOn = false;
    Counters counters{};
    float memory = 0;
    float uptime = 0;
    float percent = -1;
    int diskResult = -1;
};

void readWhileCancelled(Cancelled& done) {
    pthread_cancel(pthread_self());  // takes effect in the next call that is a cancellation point
    {
        SysStats const machine;
        auto& counters = done.counters;
        machine.getCPUTotals(counters[0], counters[1], counters[2], counters[3]);
        done.memory = machine.systemMemory();
        done.uptime = machine.uptime();
        unsigned long free = 0;
        done.diskResult = machine.diskSpace("/", done.percent, free);
        machine.systemCPU();
        done.readEverything = true;
    }
    pthread_testcancel();
    done.wentOn = true;
}

TEST(ThisMachine, IsReadToTheEndByAThreadThatIsBeingCancelled) {
    Cancelled done;
    // The request is still in force after the readings.
    EXPECT_TRUE(testing_support::endsByCancellation([&done] { readWhileCancelled(done); }));
    EXPECT_FALSE(done.wentOn);
    EXPECT_TRUE(done.readEverything);
    EXPECT_THAT(done.counters, testing::Contains(testing::Gt(0UL)));
    EXPECT_GT(done.memory, 0.0F);
    EXPECT_GT(done.uptime, 0.0F);
    EXPECT_GE(done.percent, 0.0F);
    EXPECT_EQ(done.diskResult, 0);
}

}  // namespace
