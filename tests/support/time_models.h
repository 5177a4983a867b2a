#pragma once

#include <ctime>
#include <optional>
#include <string>

#include <utillibrary/datatypes/xtime.h>

// Strings of times, written and read by libc's own functions. These count leap seconds in some time
// zones: set "UTC0" first (support/time_zone.h).
namespace testing_support {

/// `toString`, with or without option "I".
std::string modelOfToString(com::halvorin::datatypes::xtime_t const& time, bool applyOffset,
                            int offsetSeconds, bool fraction);

/// What `fromString` gives, and the time that it leaves.
struct IsoReading {
    bool read = false;
    com::halvorin::datatypes::xtime_t time;
};
IsoReading modelOfFromString(std::string const& text);

/// `timeToYYYYString`.
std::string modelOfFourteenDigits(long seconds);

/// `YYYYStringTotime` of a text of fourteen bytes; nothing where a field has no digits.
std::optional<long> modelOfFourteenDigitsRead(std::string const& text);

/// `mktimeEx`, and the record that it leaves, by loops over years and months. A year beyond an int
/// wraps.
long modelOfMktimeEx(std::tm& record, int adjustment);

}  // namespace testing_support
