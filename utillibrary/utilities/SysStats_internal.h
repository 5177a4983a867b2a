#pragma once

#include <charconv>
#include <string_view>

#include <utillibrary/export.h>

// What SysStats computes from the numbers and the text that the system gives it.
namespace com::halvorin::internal {

/// Processor time since boot in clock ticks.
struct CpuTotals {
    unsigned long user = 0;
    unsigned long nice = 0;
    unsigned long system = 0;
    unsigned long idle = 0;
};

/// Reads the first four counters of "/proc/stat".
/// Takes    text: the start of the file: a word, which is skipped, then numbers. Whitespace is
///          between them.
/// Gives    0 for the first counter that is not a decimal number of 64 bits, and for all after it.
inline CpuTotals parseCpuTotals(std::string_view text) noexcept {
    constexpr std::string_view WHITESPACE = " \t\n\v\f\r";
    auto const skipTo = [&text](std::size_t position) {
        text.remove_prefix(position < text.size() ? position : text.size());
    };
    skipTo(text.find_first_not_of(WHITESPACE));
    skipTo(text.find_first_of(WHITESPACE));

    CpuTotals totals;
    for (unsigned long* counter : {&totals.user, &totals.nice, &totals.system, &totals.idle}) {
        skipTo(text.find_first_not_of(WHITESPACE));
        auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), *counter);
        if (error != std::errc()) break;
        skipTo(static_cast<std::size_t>(end - text.data()));
    }
    return totals;
}

/// A share in percent. Each count is converted to float first; product and quotient are double.
/// Takes    total: not 0.
inline float percentOf(unsigned long part, unsigned long total) noexcept {
    return static_cast<float>(static_cast<double>(static_cast<float>(part)) * 100.0 /
                              static_cast<double>(static_cast<float>(total)));
}

/// The used share in percent; 100 if the total is 0.
inline float percentInUse(unsigned long used, unsigned long total) noexcept {
    return total == 0 ? 100.0F : percentOf(used, total);
}

/// The fields of statvfs(3) that count.
struct DiskBlocks {
    unsigned long fragments;      // f_blocks
    unsigned long fragmentBytes;  // f_frsize
    unsigned long available;      // f_bavail, in blocks
    unsigned long blockBytes;     // f_bsize
};

struct DiskUse {
    float percent;
    unsigned long free;  // bytes
};

/// The share in use and the free bytes of a file system. All products and differences wrap at 64
/// bits.
UTILLIBRARY_WRAPS inline DiskUse diskUse(DiskBlocks const& blocks) noexcept {
    // KEPT(two-block-sizes): the total is in fragments, the free space in blocks.
    unsigned long const total = blocks.fragments * blocks.fragmentBytes;
    unsigned long const free = blocks.available * blocks.blockBytes;
    return {percentInUse(total - free, total), free};
}

/// The load in percent between two readings; `previousLoad` if no tick has passed between them or a
/// counter went backwards.
UTILLIBRARY_WRAPS inline float cpuLoad(CpuTotals const& previous, CpuTotals const& now,
                                       float previousLoad) noexcept {
    // KEPT(no-tick-repeats-the-load): here, and below where no tick has passed.
    bool const backwards = previous.user > now.user || previous.nice > now.nice ||
                           previous.system > now.system || previous.idle > now.idle;
    if (backwards) return previousLoad;
    // KEPT(first-four-counters): time spent waiting for a disk (iowait) is neither busy nor idle.
    unsigned long const busy =
        now.user + now.nice + now.system - (previous.user + previous.nice + previous.system);
    unsigned long const total = busy + (now.idle - previous.idle);
    return total == 0 ? previousLoad : percentOf(busy, total);
}

}  // namespace com::halvorin::internal
