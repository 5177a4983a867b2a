#pragma once

#include <ostream>

#include <utillibrary/datatypes/xtime.h>

namespace com::halvorin::datatypes {

/// Shows a time in a failed comparison.
inline void PrintTo(xtime_t const& time, std::ostream* out) {
    *out << '(' << time.getDateTime() << " s, " << time.getNanoseconds() << " ns)";
}

}  // namespace com::halvorin::datatypes
