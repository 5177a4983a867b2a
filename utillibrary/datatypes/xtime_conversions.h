#pragma once

#include <string>

#include <utillibrary/datatypes/xtime.h>
#include <utillibrary/export.h>

// A name after "Kept" is a deliberate surprise; share/doc/utillibrary/kept.md explains each.

// Strings of times as free functions. `xtime_t` has members for the same forms, and more. All work
// in UTC and read no time zone. They keep no state: any thread may call any of them.
//     timeToYYYYString(1709618889)          // "20240305060809"
//     YYYYStringTotime("20240305060809")    // 1709618889
//     xtime_t t(1709618889, 250000000);
//     to_string(t)                          // "2024-03-05T06:08:09.250Z"
namespace com::halvorin::utilities {

/// Writes seconds since 1970 as fourteen digits in UTC: "20240305060809".
/// Gives    "%4d%02d%02d%02d%02d%02d" of year, month, day, hour, minute and second. A year of
///          fewer than four characters, its minus sign included, is padded with spaces to four;
///          `xtime_t::toString` pads it with zeros. A year of more than four characters makes the
///          string longer.
/// Fails    with std::bad_alloc only, and only for a year of six characters or more.
/// Example  timeToYYYYString(0)              // "19700101000000"
///          timeToYYYYString(-30610224001)   // " 9991231235959"
/// Kept     space-padded-year, year-wraps-at-32-bits
UTILLIBRARY_EXPORT std::string timeToYYYYString(long seconds);

/// Reads fourteen digits in UTC, YYYYMMDDhhmmss, as seconds since 1970.
/// Takes    a string of 14 bytes. Each field is read as std::stoi reads it: whitespace and a sign
///          may precede the digits, and what follows them in the field is ignored.
/// Gives    what `mktimeEx` gives for the fields, whose ranges are not checked. So 20240230000000
///          is 1 March 2024. The result is -1 before 1970 and after 2038-01-19T03:14:07 UTC.
/// Fails    with 0 if the string is not 14 bytes long. With std::invalid_argument "stoi" if a field
///          has no digits, or with std::bad_alloc if there is no memory for that exception. No
///          field is long enough for std::out_of_range.
/// Example  YYYYStringTotime("20240230000000")   // 1709251200
///          YYYYStringTotime("2024030506080")    // 0
///          YYYYStringTotime("2024ab05060809")   // throws std::invalid_argument "stoi"
/// Kept     fourteen-digits-unchecked
UTILLIBRARY_EXPORT long YYYYStringTotime(std::string const& text);

/// Writes a time in ISO form with milliseconds and "Z": `time.toString(true, 0, "")`.
/// Fails    with std::bad_alloc only.
/// Example  to_string(xtime_t(0, 0))           // "1970-01-01T00:00:00.000Z"
///          to_string(xtime_t(1, 999999999))   // "1970-01-01T00:00:01.000Z"
UTILLIBRARY_EXPORT std::string to_string(datatypes::xtime_t const& time);

}  // namespace com::halvorin::utilities
