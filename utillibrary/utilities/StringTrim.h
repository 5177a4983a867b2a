#pragma once

#include <string>

#include <utillibrary/export.h>

namespace com::halvorin::utilities {

/// A text without the blanks at its two ends; those inside it stay.
/// Takes    text: blanks are the bytes that `isspace` accepts under the C locale; in "C" itself
///          space, tab, line feed, vertical tab, form feed and carriage return. The byte 0xFF is
///          never one, in any locale. KEPT(byte-ff-is-eof)
/// Gives    a new text; an empty one where all is blank.
/// Fails    never, but for std::bad_alloc.
/// Example  "  a b  " gives "a b"
UTILLIBRARY_EXPORT std::string trim(std::string const& text);

}  // namespace com::halvorin::utilities
