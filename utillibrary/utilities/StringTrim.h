#pragma once

#include <string>

#include <utillibrary/export.h>

// Whitespace at the ends of a string.
//
// A name after "Kept" is a deliberate surprise; share/doc/utillibrary/kept.md explains each.
namespace com::halvorin::utilities {

/// A copy of a string without the whitespace at its two ends; whitespace inside stays.
/// Takes    text: whitespace is what `isspace` accepts under the C locale, which `setlocale` sets.
///          In "C" it is space, tab, line feed, vertical tab, form feed and carriage return. The
///          byte 0xFF is not whitespace under any locale. A zero byte is like any other.
/// Gives    a new string; an empty one if all bytes are whitespace.
/// Fails    with std::bad_alloc only.
/// Source   POSIX isspace
/// Example  trim("  a b \n")     // "a b"
///          trim(" \t\r\n")      // ""
/// Kept     byte-ff-is-eof
UTILLIBRARY_EXPORT std::string trim(std::string const& text);

}  // namespace com::halvorin::utilities
