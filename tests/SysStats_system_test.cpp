#include <array>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <new>
#include <pthread.h>
#include <string>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <sys/sysinfo.h>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>

#include <utillibrary/utilities/SysStats.h>

// This program defines the calls that SysStats makes, in place of libc's, so that the members meet
// every answer that a system can give. SysStats_test.cpp has what they make of "/proc/stat" as a
// string. Long because each call is replaced here.

using com::halvorin::utilities::SysStats;
using namespace std::string_literals;

namespace {

// One answer of read: bytes, or an errno. After the last one the file is at its end.
struct Read {
    std::string bytes;
    int error = 0;
};

struct Kernel {
    int statvfsError = 0;
    struct statvfs disk {};
    std::string statvfsPath;

    int openError = 0;
    std::vector<Read> reads;
    std::size_t nextRead = 0;
    int file = -1;  // the descriptor that the tested code gets for "/proc/stat"
    int openFlags = 0;
    int timesOpened = 0;

    int sysinfoError = 0;

    // The calls made while their thread could be cancelled, and the number of the others.
    std::vector<char const*> cancellable;
    int uncancellable = 0;
};

Kernel kernel;
// The answer of sysinfo. It is no member of `Kernel`, because it ends in an array of size 0.
struct sysinfo memory;

std::size_t allocations = 0;

int cancelState() {
    int state = 0;
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &state);
    pthread_setcancelstate(state, nullptr);
    return state;
}

void recordCall(char const* name) {
    if (cancelState() == PTHREAD_CANCEL_DISABLE) {
        ++kernel.uncancellable;
    } else {
        kernel.cancellable.push_back(name);
    }
}

}  // namespace

extern "C" int sysinfo(struct sysinfo* info) noexcept {
    recordCall("sysinfo");
    if (kernel.sysinfoError != 0) {
        errno = kernel.sysinfoError;
        return -1;
    }
    *info = memory;
    return 0;
}

extern "C" int statvfs(char const* path, struct statvfs* status) noexcept {
    recordCall("statvfs");
    kernel.statvfsPath = path;
    if (kernel.statvfsError != 0) {
        errno = kernel.statvfsError;
        return -1;
    }
    *status = kernel.disk;
    return 0;
}

extern "C" int open(char const* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    mode_t const mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    if (std::strcmp(path, "/proc/stat") != 0) {
        return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
    }
    recordCall("open");
    ++kernel.timesOpened;
    kernel.openFlags = flags;
    if (kernel.openError != 0) {
        errno = kernel.openError;
        return -1;
    }
    kernel.nextRead = 0;
    kernel.file = static_cast<int>(syscall(SYS_openat, AT_FDCWD, "/dev/null", O_RDONLY));
    return kernel.file;
}

extern "C" ssize_t read(int file, void* buffer, std::size_t size) {
    if (file != kernel.file) return syscall(SYS_read, file, buffer, size);
    recordCall("read");
    if (kernel.nextRead == kernel.reads.size()) return 0;
    Read const& answer = kernel.reads[kernel.nextRead++];
    if (answer.error != 0) {
        errno = answer.error;
        return -1;
    }
    return static_cast<ssize_t>(answer.bytes.copy(static_cast<char*>(buffer), size));
}

extern "C" int close(int file) {
    if (file == kernel.file) {
        recordCall("close");
        kernel.file = -1;
    }
    return static_cast<int>(syscall(SYS_close, file));
}

// Not inlined, so that the compiler sees pairs of new and delete, and no free of what new gave.
__attribute__((noinline)) void* operator new(std::size_t size) {
    ++allocations;
    if (void* const block = std::malloc(size == 0 ? 1 : size)) return block;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
__attribute__((noinline)) void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { operator delete(block); }
void operator delete(void* block, std::size_t /*size*/) noexcept { operator delete(block); }
void operator delete[](void* block, std::size_t /*size*/) noexcept { operator delete(block); }

namespace {

using Counters = std::array<unsigned long, 4>;

void statSays(std::string const& text) {
    kernel.reads = {{text}};
    kernel.nextRead = 0;
}

std::ptrdiff_t openDescriptors() {
    std::filesystem::directory_iterator const files("/proc/self/fd");
    return std::distance(begin(files), end(files));
}

Counters countersOf(SysStats const& machine) {
    Counters counters = {91, 92, 93, 94};
    machine.getCPUTotals(counters[0], counters[1], counters[2], counters[3]);
    return counters;
}

struct SystemTest : testing::Test {
    SystemTest() {
        kernel = Kernel();
        memory = {};
    }
};

// ---- memory

struct MemoryFact {
    char const* fact;
    unsigned long total;
    unsigned long free;
    unsigned int unit;
    float percent;
};

MemoryFact const MEMORY_FACTS[] = {
    {"what is not free is used", 1000, 250, 1, 75.0F},
    {"memory that is all free is 0 percent used", 1000, 1000, 1, 0.0F},
    {"memory without a free byte is 100 percent used", 1000, 0, 1, 100.0F},
    {"a unit of 4096 bytes does not change the percentage", 1000, 250, 4096, 75.0F},
    {"a unit of 0 bytes does not change the percentage", 1000, 250, 0, 75.0F},
    {"no memory at all is 100 percent used", 0, 0, 1, 100.0F},
    {"no memory with free bytes is 100 percent used", 0, 5, 1, 100.0F},
    {"more free memory than there is wraps at 64 bits", 100, 101, 1, 0x1p+64F},
    {"counts become floats, which are divided as doubles", 27203377, 1148158, 1, 0x1.7f1e12p+6F},
};

TEST_F(SystemTest, MemoryInUseIsAllThatIsNotFree) {
    for (MemoryFact const& row : MEMORY_FACTS) {
        SCOPED_TRACE(row.fact);
        memory.totalram = row.total;
        memory.freeram = row.free;
        memory.mem_unit = row.unit;
        EXPECT_EQ(SysStats().systemMemory(), row.percent);
    }
}

TEST_F(SystemTest, MemoryOfBuffersAndSwapCountsAsUsed) {
    memory.totalram = 1000;
    memory.freeram = 250;
    memory.bufferram = 300;  // KEPT(cache-counts-as-used)
    memory.sharedram = 100;
    memory.totalswap = 5000;
    memory.freeswap = 4000;
    memory.totalhigh = 7;
    memory.freehigh = 3;
    EXPECT_EQ(SysStats().systemMemory(), 75.0F);
}

TEST_F(SystemTest, MemoryOfAKernelThatDoesNotAnswerIsAllInUse) {
    memory.totalram = 1000;
    memory.freeram = 250;
    kernel.sysinfoError = EFAULT;
    EXPECT_EQ(SysStats().systemMemory(), 100.0F);
}

// ---- uptime

TEST_F(SystemTest, UptimeIsTheKernelsWholeSecondsAsAFloat) {
    struct {
        long seconds;
        float uptime;
    } const facts[] = {
        {0, 0.0F},         {1, 1.0F},
        {86401, 86401.0F}, {16777217, 16777216.0F},  // rounded to a float
        {-5, -5.0F},       {LONG_MAX, 0x1p+63F},
    };
    for (auto const& row : facts) {
        SCOPED_TRACE(row.seconds);
        memory.uptime = row.seconds;
        EXPECT_EQ(SysStats().uptime(), row.uptime);
    }
    kernel.sysinfoError = EFAULT;
    EXPECT_EQ(SysStats().uptime(), 0.0F);
}

// ---- disk

TEST_F(SystemTest, DiskSpaceTakesFourFieldsOfTheFileSystem) {
    kernel.disk.f_blocks = 1000;
    kernel.disk.f_frsize = 1024;
    kernel.disk.f_bavail = 10;
    kernel.disk.f_bfree = 60;  // includes the administrator's share, which does not count
    kernel.disk.f_bsize = 4096;
    float percent = -1;
    unsigned long free = 1;
    EXPECT_EQ(SysStats().diskSpace("/somewhere", percent, free), 0);
    EXPECT_EQ(percent, 96.0F);  // KEPT(two-block-sizes)
    EXPECT_EQ(free, 40960UL);
}

TEST_F(SystemTest, DiskSpaceAnswersWithTheErrorAndLeavesItsOutputs) {
    for (int const error : {ENOENT, EACCES, EIO, ENOTDIR, ELOOP, EINTR, EOVERFLOW}) {
        SCOPED_TRACE(error);
        kernel.statvfsError = error;
        float percent = -1.5F;
        unsigned long free = 77;
        EXPECT_EQ(SysStats().diskSpace("/somewhere", percent, free), error);
        EXPECT_EQ(percent, -1.5F);
        EXPECT_EQ(free, 77UL);
    }
}

TEST_F(SystemTest, DiskSpaceAsksForThePathUpToAZeroByte) {
    struct {
        std::string given;
        std::string asked;
    } const facts[] = {
        {"/tmp", "/tmp"},         {"", ""},        {"some where/else", "some where/else"},
        {"/tmp\0/else"s, "/tmp"}, {"\0/tmp"s, ""}, {"/\xE9\xFF", "/\xE9\xFF"},
    };
    for (auto const& row : facts) {
        SCOPED_TRACE(row.given);
        float percent = 0;
        unsigned long free = 0;
        SysStats().diskSpace(row.given, percent, free);
        EXPECT_EQ(kernel.statvfsPath, row.asked);
    }
}

// ---- counters

struct ReadingFact {
    char const* fact;
    std::vector<Read> reads;
    Counters counters;
};

std::string const FILLING(10000, 'x');

ReadingFact const READING_FACTS[] = {
    {"one read returns the whole line", {{"cpu  1 2 3 4 5\n"}}, {1, 2, 3, 4}},
    {"whitespace before the word is ignored", {{" cpu 1 2 3 4"}}, {1, 2, 3, 4}},
    {"several reads are joined", {{"cpu  1"}, {"2 3 "}, {"4"}, {"5 67 8\n"}}, {12, 3, 45, 67}},
    {"reads of one byte each are joined",
     {{"c"}, {" "}, {"1"}, {" "}, {"2"}, {" "}, {"3"}, {" "}, {"4"}},
     {1, 2, 3, 4}},
    {"a signal before the first byte is ignored", {{"", EINTR}, {"cpu 1 2 3 4"}}, {1, 2, 3, 4}},
    {"signals between two reads are ignored",
     {{"cpu 1 2"}, {"", EINTR}, {"", EINTR}, {"0 3 4"}},
     {1, 20, 3, 4}},
    {"an error in the first read gives zeros", {{"", EIO}, {"cpu 1 2 3 4"}}, {0, 0, 0, 0}},
    {"an error in the second read ends the reading",
     {{"cpu 1 2 "}, {"", EIO}, {"3 4"}},
     {1, 2, 0, 0}},
    {"an error other than a signal ends the reading",
     {{"cpu 1 2 "}, {"", EAGAIN}, {"3 4"}},
     {1, 2, 0, 0}},
    {"an empty file gives zeros", {}, {0, 0, 0, 0}},
    {"a read of no bytes ends the reading", {{"cpu 1 2 3"}, {""}, {" 4"}}, {1, 2, 3, 0}},
    {"the bytes of a long file after its first line are ignored",
     {{"cpu 1 2 3 4 " + FILLING}, {FILLING}, {FILLING}},
     {1, 2, 3, 4}},
    {"the longest first line is read whole",
     {{"cpu  18446744073709551615 18446744073709551615 18446744073709551615 "},
      {"18446744073709551615 18446744073709551615 18446744073709551615\n" + FILLING}},
     {ULONG_MAX, ULONG_MAX, ULONG_MAX, ULONG_MAX}},
};

// A host that closed its standard input gets descriptor 0 for the next file.
TEST_F(SystemTest, CountersAreReadFromDescriptorZeroToo) {
    int const input = dup(0);
    close(0);
    statSays("cpu 1 2 3 4\n");
    EXPECT_EQ(countersOf(SysStats()), (Counters{1, 2, 3, 4}));
    EXPECT_EQ(fcntl(0, F_GETFD), -1);  // closed again
    dup2(input, 0);
    close(input);
}

TEST_F(SystemTest, CountersAreReadToTheEndOfWhatTheyNeed) {
    SysStats const machine;
    for (ReadingFact const& row : READING_FACTS) {
        SCOPED_TRACE(row.fact);
        kernel.reads = row.reads;
        kernel.timesOpened = 0;
        EXPECT_EQ(countersOf(machine), row.counters);
        EXPECT_EQ(kernel.timesOpened, 1);
    }
}

TEST_F(SystemTest, CountersOfAFileThatCannotBeOpenedAreZero) {
    SysStats const machine;
    kernel.file = -1;  // so that a read of no file would find one
    for (int const error : {ENOENT, EACCES, EMFILE}) {
        SCOPED_TRACE(error);
        statSays("cpu 1 2 3 4");
        kernel.openError = error;
        EXPECT_EQ(countersOf(machine), (Counters{0, 0, 0, 0}));
    }
}

TEST_F(SystemTest, TheFileIsOpenedForThisProcessAloneAndClosedAgain) {
    statSays("cpu 1 2 3 4");
    std::ptrdiff_t const before = openDescriptors();
    SysStats const machine;
    EXPECT_EQ(kernel.openFlags & O_ACCMODE, O_RDONLY);
    EXPECT_NE(kernel.openFlags & O_CLOEXEC, 0);
    countersOf(machine);
    machine.systemCPU();
    kernel.reads = {{"", EIO}};
    machine.systemCPU();
    EXPECT_EQ(kernel.timesOpened, 4);
    EXPECT_EQ(openDescriptors(), before);
}

// ---- load

struct LoadStep {
    char const* fact;
    char const* stat;  // null: the file cannot be opened
    float load;
};

LoadStep const LOAD_STEPS[] = {
    {"the first call measures from construction", "cpu 11 20 30 43", 25.0F},
    {"no tick since the last call gives its load again", "cpu 11 20 30 43",
     25.0F},  // KEPT(no-tick-repeats-the-load)
    {"each call measures from the one before", "cpu 11 20 32 45", 50.0F},
    {"user time that goes backwards gives the last load again", "cpu 1 20 32 45", 50.0F},
    {"the user time that went backwards was stored", "cpu 2 20 32 48", 25.0F},
    {"nice time that goes backwards gives the last load again", "cpu 2 5 32 48", 25.0F},
    {"the nice time that went backwards was stored", "cpu 2 9 32 49", 80.0F},
    {"system time that goes backwards gives the last load again", "cpu 2 9 3 49", 80.0F},
    {"the system time that went backwards was stored", "cpu 2 9 4 50", 50.0F},
    {"idle time that goes backwards gives the last load again", "cpu 9 9 4 5", 50.0F},
    {"the idle time that went backwards was stored", "cpu 10 9 4 8", 25.0F},
    {"a missing file counts as zeros, which go backwards", nullptr, 25.0F},
    {"a second missing file gives the last load again", nullptr, 25.0F},
    {"after a missing file a call measures from boot", "cpu 10 5 5 20", 50.0F},
    {"a line of one number counts as zeros after it, which go backwards", "cpu 11", 50.0F},
    {"the numbers of the short line were stored", "cpu 12 0 0 3", 25.0F},
    {"idle ticks alone are a load of 0", "cpu 12 0 0 4", 0.0F},
    {"no tick gives the load of 0 again", "cpu 12 0 0 4", 0.0F},
};

void setStat(char const* stat) {
    kernel.openError = stat == nullptr ? ENOENT : 0;
    if (stat != nullptr) statSays(stat);
}

TEST_F(SystemTest, LoadIsMeasuredFromTheCallBefore) {
    statSays("cpu 10 20 30 40");
    SysStats const machine;
    for (LoadStep const& step : LOAD_STEPS) {
        SCOPED_TRACE(step.fact);
        setStat(step.stat);
        EXPECT_EQ(machine.systemCPU(), step.load);
    }
}

TEST_F(SystemTest, LoadIsZeroBeforeTheFirstTick) {
    statSays("cpu 10 20 30 40");
    EXPECT_EQ(SysStats().systemCPU(), 0.0F);
    EXPECT_EQ(kernel.timesOpened, 2);

    SysStats const machine;
    statSays("cpu 9 99 99 99");
    EXPECT_EQ(machine.systemCPU(), 0.0F);
}

TEST_F(SystemTest, LoadIsMeasuredFromBootWhereTheFirstReadingFailed) {
    setStat(nullptr);
    SysStats const machine;
    setStat("cpu 1 1 1 1");
    EXPECT_EQ(machine.systemCPU(), 75.0F);
}

TEST_F(SystemTest, LoadOfACopyGoesOnFromTheSameReading) {
    statSays("cpu 10 20 30 40");
    SysStats const machine;
    statSays("cpu 11 20 30 43");
    ASSERT_EQ(machine.systemCPU(), 25.0F);

    SysStats const copy(machine);
    SysStats assigned;
    assigned = machine;
    EXPECT_EQ(copy.systemCPU(), 25.0F);
    EXPECT_EQ(assigned.systemCPU(), 25.0F);

    statSays("cpu 12 20 30 44");
    EXPECT_EQ(machine.systemCPU(), 50.0F);
    EXPECT_EQ(machine.systemCPU(), 50.0F);
    EXPECT_EQ(copy.systemCPU(), 50.0F);
    statSays("cpu 12 20 30 46");
    EXPECT_EQ(assigned.systemCPU(), 25.0F);
}

TEST_F(SystemTest, OtherReadingsLeaveTheLoadAlone) {
    statSays("cpu 10 20 30 40");
    SysStats const machine;
    statSays("cpu 11 20 30 43");
    countersOf(machine);
    EXPECT_EQ(kernel.timesOpened, 2);
    machine.systemMemory();
    machine.uptime();
    float percent = 0;
    unsigned long free = 0;
    machine.diskSpace("/", percent, free);
    EXPECT_EQ(kernel.timesOpened, 2);
    EXPECT_EQ(machine.systemCPU(), 25.0F);
}

TEST_F(SystemTest, AnObjectIsItsFiveFieldsInOrder) {
    statSays("cpu 1 2 3 4");
    SysStats const machine;
    statSays("cpu 6 8 9 9");
    struct Image {
        Counters counters;
        float load;
    };
    auto const image = [&machine] {
        Image copy{};
        std::memcpy(&copy, &machine, sizeof copy.counters + sizeof copy.load);
        return copy;
    };
    EXPECT_EQ(image().counters, (Counters{1, 2, 3, 4}));
    EXPECT_EQ(image().load, 0.0F);
    machine.systemCPU();
    EXPECT_EQ(image().counters, (Counters{6, 8, 9, 9}));
    EXPECT_EQ(image().load, 77.27272727F);
}

// ---- cancellation

void readEverything() {
    float percent = 0;
    unsigned long counter = 0;
    SysStats const machine;
    machine.systemMemory();
    machine.diskSpace("/somewhere", percent, counter);
    machine.getCPUTotals(counter, counter, counter, counter);
    machine.systemCPU();
    machine.uptime();
}

TEST_F(SystemTest, NoCallIsMadeWhileTheThreadCanBeCancelled) {
    statSays("cpu 1 2 3 4");
    readEverything();
    kernel.reads = {{"", EIO}};
    readEverything();
    kernel.openError = kernel.statvfsError = kernel.sysinfoError = EMFILE;
    readEverything();
    EXPECT_THAT(kernel.cancellable, testing::IsEmpty());
    // Each round calls sysinfo twice, statvfs once and open three times. In the first round each
    // file is read twice (bytes, then the end) and closed; in the second once and closed.
    EXPECT_EQ(kernel.uncancellable, 3 * (2 + 1 + 3) + 3 * (2 + 1) + 3 * (1 + 1));
}

TEST_F(SystemTest, TheThreadsCancelStateIsRestored) {
    readEverything();
    EXPECT_EQ(cancelState(), PTHREAD_CANCEL_ENABLE);
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, nullptr);
    readEverything();
    EXPECT_EQ(cancelState(), PTHREAD_CANCEL_DISABLE);
    pthread_setcancelstate(PTHREAD_CANCEL_ENABLE, nullptr);
}

// ---- what a reading costs

TEST_F(SystemTest, NothingIsAllocatedOrPrinted) {
    statSays("cpu 1 2 3 4");
    std::string const path = "/a/path/that/is/too/long/for/a/small/string";
    kernel.statvfsPath.reserve(100);
    float percent = 0;
    unsigned long counter = 0;

    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    std::size_t const before = allocations;
    {
        SysStats const machine;
        machine.systemMemory();
        machine.diskSpace(path, percent, counter);
        machine.getCPUTotals(counter, counter, counter, counter);
        machine.systemCPU();
        machine.uptime();

        kernel.sysinfoError = EFAULT;
        kernel.statvfsError = ENOENT;
        kernel.openError = EMFILE;
        SysStats const other(machine);
        other.systemMemory();
        other.diskSpace(path, percent, counter);
        other.systemCPU();
        other.uptime();
    }
    std::size_t const after = allocations;
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(after, before);
}

}  // namespace
