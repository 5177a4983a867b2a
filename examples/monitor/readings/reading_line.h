#pragma once

#include <string>
#include <variant>

#include "readings/reading.h"

// A reading as a line of name-value pairs, in this order:
//     time=2024-03-05T06:08:09.250Z cpu=12.5 memory=40.25 disk=68.5 free=85899345920 uptime=93784
namespace monitor {

/// A value in decimal digits: the fewest that give the same Float or Uint64 when they are read
/// again. Variant::toString gives six significant digits, which is not always enough.
/// Gives    an empty string for a value that is Null or Unknown.
/// Fails    with std::bad_alloc only.
std::string valueText(com::halvorin::datatypes::Variant const& value);

/// A reading as a line without a newline. A value that is Null or Unknown has no pair.
/// Gives    the time in UTC with milliseconds, as the table shows it.
/// Fails    with std::bad_alloc only.
std::string toLine(Reading const& reading);

// Why a line is malformed, in half a sentence. It quotes no byte of the line.
struct Malformed {
    std::string reason;
};

/// Reads a line.
/// Takes    line: pairs in any order, with spaces between them and whitespace at the ends. Of two
///          pairs with one name the first counts. Other names are ignored: a later version of this
///          program may add some.
/// Gives    the reading. A value without a pair is Null; `diskError` is 0.
/// Fails    with Malformed if a field is not a pair; if there is no time, or a time in another form
///          than `toLine` writes, or one outside 1970 to 2038-01-19T03:14:07.999Z; and if a value
///          is not an unsigned decimal number.
std::variant<Reading, Malformed> readLine(std::string const& line);

}  // namespace monitor
