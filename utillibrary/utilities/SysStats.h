#pragma once

#include <string>

#include <utillibrary/export.h>

// A name after "Kept" is a deliberate surprise; share/doc/utillibrary/kept.md explains each.
namespace com::halvorin::utilities {

/// Readings of the Linux machine that the program runs on: memory, disk space, processor load and
/// time since boot.
///
/// Nothing is reported, thrown or allocated, and no locale matters. Percentages are from 0 to 100;
/// `diskSpace` can exceed 100. An object remembers the last processor reading, and its copy starts
/// from the same reading. One object belongs to one thread at a time. A thread that is being
/// cancelled (pthread_cancel) completes its reading first; its cancellation must be deferred, as it
/// is by default.
///     SysStats machine;
///     float percent = 0;
///     unsigned long free = 0;
///     machine.diskSpace("/", percent, free)      // 0
///     machine.systemMemory() <= 100              // true
///     machine.systemCPU() <= 100                 // true
///     machine.uptime() > 0                       // true
class UTILLIBRARY_EXPORT SysStats {
public:
    /// Takes the first processor reading, from which `systemCPU` measures.
    /// Fails    never.
    SysStats() noexcept;

    /// The share of RAM in use.
    /// Gives    percent. Memory that the kernel uses for buffers and cache counts as used. 100 if
    ///          the kernel reports no memory.
    /// Fails    never; 100 if the kernel does not answer.
    /// Source   sysinfo(2)
    /// Kept     cache-counts-as-used
    float systemMemory() const noexcept;

    /// The space in use and the free space on a file system.
    /// Takes    path: any file or directory there; a zero byte ends it. percent and free: written.
    /// Gives    0. percent: the share in use, 100 if the file system reports no blocks. free: the
    ///          bytes that an unprivileged user may write.
    ///
    ///          | value   | computed in 64 bits, which wrap |
    ///          |---------|---------------------------------|
    ///          | total   | f_blocks * f_frsize             |
    ///          | free    | f_bavail * f_bsize              |
    ///          | percent | (total - free) / total * 100    |
    ///
    ///          If `f_bsize` is larger than `f_frsize`, free can exceed the total. Then total -
    ///          free wraps, and percent is far above 100.
    /// Fails    returns the errno of statvfs, such as ENOENT; percent and free are unchanged.
    /// Source   statvfs(3)
    /// Kept     two-block-sizes
    int diskSpace(std::string const& path, float& percent, unsigned long& free) const noexcept;

    /// The processor time since boot, summed over all processors.
    /// Gives    four counters in clock ticks: the first four of the line "cpu" in "/proc/stat". The
    ///          columns after them (iowait, irq and more) do not count.
    /// Fails    never; a counter that cannot be read is 0, and so are those after it.
    /// Source   proc(5)
    /// Kept     first-four-counters
    void getCPUTotals(unsigned long& user, unsigned long& nice, unsigned long& system,
                      unsigned long& idle) const noexcept;

    /// The processor load since the previous call, or since construction.
    /// Gives    percent: user, nice and system ticks as a share of these three and idle ticks. The
    ///          previous result if no tick has passed or a counter went backwards; 0 if there is
    ///          none. In every case the next call measures from this reading.
    /// Fails    never; if "/proc/stat" cannot be read, its counters are 0. The next call then
    ///          measures from boot.
    /// Kept     no-tick-repeats-the-load, first-four-counters
    float systemCPU() const noexcept;

    /// The seconds since boot, including suspended time.
    /// Gives    whole seconds, rounded up by the kernel, as a float.
    /// Fails    never; 0 if the kernel does not answer.
    /// Source   sysinfo(2)
    float uptime() const noexcept;

private:
    mutable unsigned long user_ = 0;    // clock ticks at the last processor reading
    mutable unsigned long nice_ = 0;    // clock ticks
    mutable unsigned long system_ = 0;  // clock ticks
    mutable unsigned long idle_ = 0;    // clock ticks
    mutable float cpu_ = 0;             // percent: the last result of systemCPU
};

}  // namespace com::halvorin::utilities
