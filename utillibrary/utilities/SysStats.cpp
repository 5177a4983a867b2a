#include "utillibrary/utilities/SysStats.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <pthread.h>
#include <sys/statvfs.h>
#include <sys/sysinfo.h>
#include <unistd.h>

#include "utillibrary/internal/attributes.h"
#include "utillibrary/utilities/SysStats_internal.h"
#include <utillibrary/export.h>

namespace com::halvorin::utilities {

namespace {

using namespace com::halvorin::internal;

// Enough for the label and four numbers of 20 digits.
constexpr std::size_t STAT_BYTES = 256;
using StatBuffer = std::array<char, STAT_BYTES>;

// While an object of this class exists, its thread cannot be cancelled: cancellation waits until
// the reading is complete. Without it, pthread_cancel would unwind the stack from `open`, `read` or
// `close` through functions that are noexcept, and would end the process.
class CancellationDelay {
public:
    CancellationDelay() noexcept { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &previous_); }
    ~CancellationDelay() { pthread_setcancelstate(previous_, nullptr); }
    CancellationDelay(CancellationDelay const&) = delete;
    CancellationDelay(CancellationDelay&&) = delete;
    CancellationDelay& operator=(CancellationDelay const&) = delete;
    CancellationDelay& operator=(CancellationDelay&&) = delete;

private:
    int previous_ = PTHREAD_CANCEL_ENABLE;
};

// The first bytes of a file. It uses system calls, because a stream would allocate.
std::string_view readStart(char const* path, StatBuffer& buffer) noexcept {
    CancellationDelay const delay;
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
    UTILLIBRARY_UNINITIALIZED StatBuffer buffer;
    return parseCpuTotals(readStart("/proc/stat", buffer));
}

// If the call fails, all fields are zero, so its result is not checked.
struct sysinfo readSysinfo() noexcept {
    CancellationDelay const delay;
    struct sysinfo info {};
    sysinfo(&info);
    return info;
}

// Returns 0, or the errno of the call.
int readDisk(char const* path, struct statvfs& status) noexcept {
    CancellationDelay const delay;
    return statvfs(path, &status) == 0 ? 0 : errno;
}

}  // namespace

SysStats::SysStats() noexcept { getCPUTotals(user_, nice_, system_, idle_); }

// NOLINTBEGIN(readability-convert-member-functions-to-static): members by contract.

UTILLIBRARY_WRAPS float SysStats::systemMemory() const noexcept {
    struct sysinfo const info = readSysinfo();
    // KEPT(cache-counts-as-used): only freeram is free. Both numbers have the same unit, mem_unit,
    // so the share does not depend on it.
    return percentInUse(info.totalram - info.freeram, info.totalram);
}

int SysStats::diskSpace(std::string const& path, float& percent,
                        unsigned long& free) const noexcept {
    struct statvfs status {};
    if (int const error = readDisk(path.c_str(), status); error != 0) return error;
    DiskUse const use =
        diskUse({status.f_blocks, status.f_frsize, status.f_bavail, status.f_bsize});
    free = use.free;
    percent = use.percent;
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
