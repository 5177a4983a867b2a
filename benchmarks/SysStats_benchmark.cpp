#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/statvfs.h>
#include <sys/sysinfo.h>
#include <unistd.h>

#include <utillibrary/utilities/SysStats.h>

#include "support/operation.h"
#include "support/pool.h"

#ifdef UTILLIBRARY_PEER_GLIB
#include <gio/gio.h>
#endif
#ifdef UTILLIBRARY_PEER_GTOP
#include <glibtop/cpu.h>
#include <glibtop/fsusage.h>
#include <glibtop/mem.h>
#include <glibtop/uptime.h>
#endif
#ifdef UTILLIBRARY_PEER_POCO
#include <Poco/File.h>
#endif
#ifdef UTILLIBRARY_PEER_QT
#include <QStorageInfo>
#endif

// Readings of the machine. They change while they are read, so two readings count as equal if they
// are near each other.
namespace {

using namespace benchmarks;
using com::halvorin::utilities::SysStats;

struct Reading {
    double value;
    double margin = 0;

    bool operator==(Reading const& wanted) const {
        return std::abs(value - wanted.value) <= wanted.margin;
    }
};

std::vector<int> nothingToAsk() { return std::vector<int>(POOL_SIZE); }

// ---- memory

double memoryInUse(int /*unused*/) {
    struct sysinfo info {};
    sysinfo(&info);
    return 100.0 * static_cast<double>(info.totalram - info.freeram) /
           static_cast<double>(info.totalram);
}

void addMemory() {
    auto const percent = [](double value) { return Reading{value}; };
    Operation const memory("memory in use", nothingToAsk(), [](int unused) {
        return Reading{memoryInUse(unused), 2};
    });
    memory.plain("sysinfo", memoryInUse, percent);
    memory.ours([machine = SysStats()](int /*unused*/) { return machine.systemMemory(); }, percent);
    memory.floor("getppid", [](int /*unused*/) { return getppid(); });
#ifdef UTILLIBRARY_PEER_GTOP
    memory.peer(
        "libgtop",
        [](int /*unused*/) {
            glibtop_mem status;
            glibtop_get_mem(&status);
            return 100.0 * static_cast<double>(status.total - status.free) /
                   static_cast<double>(status.total);
        },
        percent);
#endif
}

// ---- disk space

std::string anyDirectory(Random& random) {
    constexpr char const* DIRECTORIES[] = {"/", "/usr", "/usr/lib", "/etc", "/var", "/tmp"};
    return DIRECTORIES[random() % std::size(DIRECTORIES)];
}

double freeBytes(std::string const& path) {
    struct statvfs status {};
    statvfs(path.c_str(), &status);
    return static_cast<double>(status.f_bavail) * static_cast<double>(status.f_bsize);
}

void addDisk() {
    auto const bytes = [](auto value) { return Reading{static_cast<double>(value)}; };
    Operation const disk("disk space", pool(anyDirectory), [](std::string const& path) {
        return Reading{freeBytes(path), 1e9};
    });
    disk.plain("statvfs", freeBytes, bytes);
    disk.ours(
        [machine = SysStats()](std::string const& path) {
            float percent = 0;
            unsigned long free = 0;
            machine.diskSpace(path, percent, free);
            benchmark::DoNotOptimize(percent);
            return free;
        },
        bytes);
    disk.peer(
        "std::filesystem",
        [](std::string const& path) { return std::filesystem::space(path).available; }, bytes);
#ifdef UTILLIBRARY_PEER_GLIB
    disk.peer(
        "GIO",
        [](std::string const& path) {
            GFile* const file = g_file_new_for_path(path.c_str());
            GFileInfo* const info = g_file_query_filesystem_info(
                file, G_FILE_ATTRIBUTE_FILESYSTEM_FREE, nullptr, nullptr);
            guint64 const free =
                g_file_info_get_attribute_uint64(info, G_FILE_ATTRIBUTE_FILESYSTEM_FREE);
            g_object_unref(info);
            g_object_unref(file);
            return free;
        },
        bytes);
#endif
#ifdef UTILLIBRARY_PEER_GTOP
    disk.peer(
        "libgtop",
        [](std::string const& path) {
            glibtop_fsusage status;
            glibtop_get_fsusage(&status, path.c_str());
            return status.bavail * status.block_size;
        },
        bytes);
#endif
#ifdef UTILLIBRARY_PEER_POCO
    disk.peer(
        "Poco", [](std::string const& path) { return Poco::File(path).usableSpace(); }, bytes);
#endif
#ifdef UTILLIBRARY_PEER_QT
    disk.peer("Qt",
              prepared([](std::string const& path) { return QString::fromStdString(path); },
                       [](QString const& path) { return QStorageInfo(path).bytesAvailable(); }),
              bytes);
#endif
}

// ---- processors

using Totals = std::array<unsigned long, 4>;

Totals streamedTotals() {
    Totals totals{};
    std::ifstream file("/proc/stat");
    std::string label;
    file >> label >> totals[0] >> totals[1] >> totals[2] >> totals[3];
    return totals;
}

double sumOf(Totals const& totals) {
    return static_cast<double>(totals[0] + totals[1] + totals[2] + totals[3]);
}

void addProcessors() {
    auto const ticks = [](Totals const& totals) { return Reading{sumOf(totals)}; };
    Operation const processors("processor totals", nothingToAsk(), [](int /*unused*/) {
        return Reading{sumOf(streamedTotals()), 10'000};
    });
    processors.plain(
        "std::ifstream", [](int /*unused*/) { return streamedTotals(); }, ticks);
    processors.ours(
        [machine = SysStats()](int /*unused*/) {
            Totals totals{};
            machine.getCPUTotals(totals[0], totals[1], totals[2], totals[3]);
            return totals;
        },
        ticks);
    processors.floor("open, read, close", [](int /*unused*/) {
        std::array<char, 256> buffer;
        int const file = open("/proc/stat", O_RDONLY | O_CLOEXEC);
        ssize_t const size = read(file, buffer.data(), buffer.size());
        close(file);
        benchmark::DoNotOptimize(buffer);
        return size;
    });
    processors.peer(
        "fscanf",
        [](int /*unused*/) {
            Totals totals{};
            std::FILE* const file = std::fopen("/proc/stat", "re");
            if (std::fscanf(file, "%*s %lu %lu %lu %lu", &totals[0], &totals[1], &totals[2],
                            &totals[3]) != 4) {
                totals = {};
            }
            std::fclose(file);
            return totals;
        },
        ticks);
#ifdef UTILLIBRARY_PEER_GTOP
    processors.peer(
        "libgtop",
        [](int /*unused*/) {
            glibtop_cpu status;
            glibtop_get_cpu(&status);
            return Totals{status.user, status.nice, status.sys, status.idle};
        },
        ticks);
#endif

    Operation const load("processor load", nothingToAsk(), [](int /*unused*/) {
        return Reading{50, 50};
    });
    load.ours([machine = SysStats()](int /*unused*/) { return machine.systemCPU(); },
              [](float percent) { return Reading{percent}; });
}

// ---- uptime

double secondsUp(int /*unused*/) {
    struct sysinfo info {};
    sysinfo(&info);
    return static_cast<double>(info.uptime);
}

void addUptime() {
    auto const seconds = [](double value) { return Reading{value}; };
    Operation const uptime("uptime", nothingToAsk(), [](int unused) {
        return Reading{secondsUp(unused), 60};
    });
    uptime.plain("sysinfo", secondsUp, seconds);
    uptime.ours([machine = SysStats()](int /*unused*/) { return machine.uptime(); }, seconds);
    uptime.floor("getppid", [](int /*unused*/) { return getppid(); });
    uptime.otherJob("clock_gettime", "not rounded up", [](int /*unused*/) {
        timespec now{};
        clock_gettime(CLOCK_BOOTTIME, &now);
        return now;
    });
#ifdef UTILLIBRARY_PEER_GTOP
    uptime.peer(
        "libgtop",
        [](int /*unused*/) {
            glibtop_uptime status;
            glibtop_get_uptime(&status);
            return status.uptime;
        },
        seconds);
#endif
}

}  // namespace

void benchmarks::addRows() {
    addMemory();
    addDisk();
    addProcessors();
    addUptime();
}
