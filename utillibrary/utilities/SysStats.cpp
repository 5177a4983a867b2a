#include "utillibrary/utilities/SysStats.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/statvfs.h>
#include <sys/sysinfo.h>
#include <unistd.h>

#include "utillibrary/utilities/SysStats_internal.h"

namespace com::halvorin::utilities {

namespace {

using namespace com::halvorin::internal;

// A label and four numbers of 20 digits end before this.
using ProcStatStart = std::array<char, 256>;

// The beginning of a file, through the system's own calls: a stream would allocate.
std::string_view readStart(char const* path, ProcStatStart& buffer) noexcept {
    int const file = open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0) return {};
    std::size_t size = 0;
    while (size < buffer.size()) {
        ssize_t const count = read(file, buffer.data() + size, buffer.size() - size);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        size += static_cast<std::size_t>(count);
    }
    close(file);
    return {buffer.data(), size};
}

CpuTotals readCpuTotals() noexcept {
    ProcStatStart buffer;
    return parseCpuTotals(readStart("/proc/stat", buffer));
}

// All zero should the call fail, which is not asked.
struct sysinfo readSysinfo() noexcept {
    struct sysinfo info {};
    sysinfo(&info);
    return info;
}

// Where there is nothing to use, all of it is in use.
float percentInUse(unsigned long used, unsigned long total) noexcept {
    return total == 0 ? 100.0F : percentOf(used, total);
}

}  // namespace

SysStats::SysStats() noexcept { getCPUTotals(user_, nice_, system_, idle_); }

// NOLINTBEGIN(readability-convert-member-functions-to-static): hosts ask an object, whatever it reads.

float SysStats::systemMemory() const noexcept {
    struct sysinfo const info = readSysinfo();
    // KEPT(cache-counts-as-used): freeram alone; the unit of both cancels.
    return percentInUse(info.totalram - info.freeram, info.totalram);
}

int SysStats::diskSpace(std::string const& path, float& percent,
                        unsigned long& free) const noexcept {
    struct statvfs status {};
    if (statvfs(path.c_str(), &status) != 0) return errno;
    // KEPT(two-block-sizes): f_frsize for the one, f_bsize for the other.
    unsigned long const total = status.f_blocks * status.f_frsize;
    free = status.f_bavail * status.f_bsize;
    percent = percentInUse(total - free, total);
    return 0;
}

void SysStats::getCPUTotals(unsigned long& user, unsigned long& nice, unsigned long& system,
                            unsigned long& idle) const noexcept {
    CpuTotals const totals = readCpuTotals();
    user = totals.user;
    nice = totals.nice;
    system = totals.system;
    idle = totals.idle;
}

float SysStats::systemCPU() const noexcept {
    CpuTotals const now = readCpuTotals();
    cpu_ = cpuLoad({user_, nice_, system_, idle_}, now, cpu_);
    user_ = now.user;
    nice_ = now.nice;
    system_ = now.system;
    idle_ = now.idle;
    return cpu_;
}

float SysStats::uptime() const noexcept { return static_cast<float>(readSysinfo().uptime); }

// NOLINTEND(readability-convert-member-functions-to-static)

}  // namespace com::halvorin::utilities
