#pragma once

#include <string>

#include <utillibrary/export.h>

namespace com::halvorin::utilities {

// Cheap readings of the Linux machine that the host runs on.
//
// Percentages are 0 to 100, but for `diskSpace` where its two block sizes differ. Nothing is
// logged, thrown or allocated; no locale takes part. An object remembers the previous processor
// reading, so one object belongs to one thread at a time; all else keeps no state. A copy goes on
// from the same previous reading. A thread that is being cancelled (pthread_cancel) completes its
// reading first; its cancellation must be deferred, as it is by default.
//     SysStats machine;
//     sleep(1);
//     float busy = machine.systemCPU();   // of that second
class UTILLIBRARY_EXPORT SysStats {
public:
    /// Takes the first processor reading, from which `systemCPU` measures.
    SysStats() noexcept;

    /// RAM in use.
    /// Gives    percent; memory that the kernel uses as buffer and cache counts as used.
    ///          KEPT(cache-counts-as-used) 100 where the kernel reports no memory at all.
    /// Fails    with 100 should the kernel not answer.
    /// Source   sysinfo(2)
    float systemMemory() const noexcept;

    /// Space on the file system that holds a path.
    /// Takes    path: any file or directory there; a zero byte ends it.
    /// Gives    0; percent in use, and free: the bytes open to an unprivileged user.
    ///          The total is counted in fragments and the free space in blocks of the file system's
    ///          preferred size, as the fields stand. KEPT(two-block-sizes) Should free come out
    ///          above the total, their difference wraps, and percent is far above 100. 100 percent
    ///          where the file system reports no blocks.
    /// Fails    with the errno of statvfs, such as ENOENT; percent and free are untouched then.
    /// Source   statvfs(3)
    int diskSpace(std::string const& path, float& percent, unsigned long& free) const noexcept;

    /// The machine's processor time since boot, in clock ticks, summed over its processors.
    /// Gives    the first four counters of "/proc/stat": user, nice, system, idle. What the line
    ///          says after them (iowait, irq ...) is left out. KEPT(first-four-counters)
    /// Fails    with 0 in every counter that could not be read, and in those after it.
    /// Source   proc(5)
    void getCPUTotals(unsigned long& user, unsigned long& nice, unsigned long& system,
                      unsigned long& idle) const noexcept;

    /// Processor load since the previous call, or since construction.
    /// Gives    percent of user, nice and system time in all four; the previous result again where
    ///          no tick has passed or a counter went backwards. KEPT(no-tick-no-news) The reading
    ///          becomes the previous one in every case.
    /// Fails    never; an unreadable "/proc/stat" is a reading of four zeros, so that the call
    ///          after it measures from boot.
    float systemCPU() const noexcept;

    /// Seconds since boot, suspended time included.
    /// Gives    whole seconds as a float, rounded up by the kernel.
    /// Fails    with 0 should the kernel not answer.
    /// Source   sysinfo(2)
    float uptime() const noexcept;

private:
    mutable unsigned long user_ = 0;  // the previous reading
    mutable unsigned long nice_ = 0;
    mutable unsigned long system_ = 0;
    mutable unsigned long idle_ = 0;
    mutable float cpu_ = 0;  // the previous result
};

}  // namespace com::halvorin::utilities
