#pragma once

#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime.h>

#include "readings/reading.h"

// What several tests of charts use.
namespace monitor_test {

constexpr long NOON = 1709640000;  // 2024-03-05T12:00:00Z

// No character of a usual font is wider than this part of the font's size.
constexpr double WIDEST_CHARACTER = 0.62;

/// A reading at a time.
inline monitor::Reading readingAt(com::halvorin::datatypes::xtime_t time,
                                  com::halvorin::datatypes::Variant const& processor,
                                  com::halvorin::datatypes::Variant const& memory = 40.0F,
                                  com::halvorin::datatypes::Variant const& disk = 70.0F) {
    return {time, processor, memory, disk, 1UL, 1.0F, 0};
}

}  // namespace monitor_test
