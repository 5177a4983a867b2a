#pragma once

#include <string>

#include <utillibrary/datatypes/xtime.h>
#include <utillibrary/export.h>

// Text forms of times as free functions; `xtime_t` has the same ones, and more, as members.
namespace com::halvorin::utilities {

/// Seconds since 1970 as fourteen digits in UTC, "20240305060809".
/// Gives    year, month, day, hour, minute, second. A year below 1000, a negative one too, is
///          padded with blanks, not zeros, to four characters; a longer one takes as many as it
///          needs. KEPT(blank-padded-year)
/// Fails    never, but for std::bad_alloc, which only a year of six characters or more can meet.
UTILLIBRARY_EXPORT std::string timeToYYYYString(long seconds);

/// Fourteen digits, read as UTC, as seconds since 1970.
/// Takes    YYYYMMDDhhmmss, each field as `std::stoi` reads it: blanks and a sign may precede its
///          digits, and what follows them in the field is ignored.
/// Gives    what `mktimeEx` makes of the fields, unchecked: 20240230000000 is 1 March.
///          KEPT(fourteen-digits-unchecked) So -1 before 1970 and after 2038-01-19T03:14:07.
/// Fails    with 0 for a text that is not 14 bytes long; with std::invalid_argument "stoi" for a
///          field without digits.
UTILLIBRARY_EXPORT long YYYYStringTotime(std::string const& text);

/// The time in ISO form with milliseconds and "Z": `time.toString(true, 0, "")`.
/// Fails    never, but for std::bad_alloc.
/// Example  (0 s, 0 ns) gives "1970-01-01T00:00:00.000Z"
UTILLIBRARY_EXPORT std::string to_string(datatypes::xtime_t const& time);

}  // namespace com::halvorin::utilities
