#pragma once

#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime.h>

#include "readings/reading.h"

// Readings that several tests of the monitor use.
namespace monitor_test {

/// A Variant that is Null.
inline com::halvorin::datatypes::Variant null() {
    com::halvorin::datatypes::Variant value;
    value.makeNull();
    return value;
}

/// A reading in which every value is a number.
inline monitor::Reading usualReading() {
    return {com::halvorin::datatypes::xtime_t(1709618889, 250000000),
            12.34F,
            45.0F,
            100.0F,
            85'899'345'920UL,
            93784.0F,
            0};
}

}  // namespace monitor_test
