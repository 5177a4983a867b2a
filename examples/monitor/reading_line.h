#pragma once

#include <string>
#include <variant>

#include "reading.h"

// A reading as a line of name-value pairs, in this order:
//     time=2024-03-05T06:08:09.250Z cpu=12.5 memory=40.25 disk=68.5 free=85899345920 uptime=93784
namespace monitor {

// A value of a reading, and its name in a line and on the command line.
struct Field {
    char const* name;
    com::halvorin::datatypes::Variant Reading::*value;
};

// In the order of a line, which is that of a table's columns.
inline constexpr Field FIELDS[] = {
    {"cpu", &Reading::processor}, {"memory", &Reading::memory}, {"disk", &Reading::disk},
    {"free", &Reading::free},     {"uptime", &Reading::uptime},
};

/// A value in decimal digits: as few as give the same Float or Uint64 when they are read again,
/// where Variant::toString would give six.
/// Gives    the empty text for a value that is Null or unknown.
std::string valueText(com::halvorin::datatypes::Variant const& value);

/// A reading as a line without a newline. A value that is Null or unknown is left out.
/// Gives    the time in UTC and to a millisecond, as it stands in a table.
std::string toLine(Reading const& reading);

// What is wrong with a line: half a sentence that quotes nothing of it.
struct Malformed {
    std::string reason;
};

/// The reading of a line.
/// Takes    the pairs in any order, with blanks at the ends and between them; of two pairs of one
///          name the first. Other names are ignored: a later version may add some.
/// Gives    Null for a value whose name is missing; `diskError` is 0.
/// Fails    with Malformed where a field is no pair, where there is no time or not one that `toLine`
///          writes, from 1970 to 2038-01-19T03:14:07Z, and where a value is not a decimal number
///          from zero on and nothing else.
std::variant<Reading, Malformed> readLine(std::string const& line);

}  // namespace monitor
