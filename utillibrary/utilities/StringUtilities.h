#pragma once

#include <string>
#include <vector>

#include <utillibrary/export.h>

// Small functions on byte strings. Nothing here decodes: a byte is a byte, zero bytes are like any
// other unless said otherwise, and where a byte's class counts it is the C locale's.
namespace com::halvorin::utilities {

// ---- searching and comparing

/// The first element of a list that matches a text.
/// Takes    partial: with it, an element matches that holds the text somewhere inside, so that an
///          empty text matches the first element; without it, one that equals the text.
/// Gives    its position, or the list's end.
/// Fails    never.
/// Example  "bc" is found in "abcd" with partial, and not without
UTILLIBRARY_EXPORT std::vector<std::string>::const_iterator searchVector(
    std::vector<std::string> const& list, std::string const& text, bool partial) noexcept;

/// The same, with a position through which the element may be changed.
UTILLIBRARY_EXPORT std::vector<std::string>::iterator searchVector(std::vector<std::string>& list,
                                                                   std::string const& text,
                                                                   bool partial) noexcept;

/// Whether a text ends in another one, byte for byte; every text ends in the empty one.
/// Fails    never.
UTILLIBRARY_INLINE bool endsWith(std::string const& text, std::string const& suffix) noexcept {
    return text.size() >= suffix.size() &&
           __builtin_memcmp(text.data() + (text.size() - suffix.size()), suffix.data(),
                            suffix.size()) == 0;
}

/// Whether a text begins with another one, upper and lower case being the same: the second text is
/// the one that may go on. KEPT(iequals-looks-one-way)
/// Takes    case as `tolower` knows it under the C locale, byte by byte. The byte 0xFF equals
///          itself alone. KEPT(byte-ff-is-eof)
/// Gives    true when each byte of the first text has its equal at the same place of the second;
///          false when the second is shorter.
/// Fails    never.
/// Example  ("abc", "ABCdef") gives true, ("ABCdef", "abc") false, ("", "anything") true
UTILLIBRARY_EXPORT bool iequals(std::string const& text, std::string const& other) noexcept;

// ---- numbers and texts

/// A value as text: an integer in decimal, "true" or "false", a text as it is.
/// Fails    never, but for std::bad_alloc.
UTILLIBRARY_EXPORT std::string to_string(int const& value);
UTILLIBRARY_EXPORT std::string to_string(unsigned int const& value);
UTILLIBRARY_EXPORT std::string to_string(long const& value);
UTILLIBRARY_EXPORT std::string to_string(bool const& value);
UTILLIBRARY_EXPORT std::string to_string(std::string const& value);
/// A literal is no std::string, and would go to the Boolean's overload.
std::string to_string(char const* value) = delete;

/// A number as `snprintf` writes it under the C locale; a float is widened first.
/// Takes    format: one that consumes exactly one double, such as "%g" or "%.3f", or none at all;
///          it is not checked. A zero byte ends it.
/// Gives    at most 31 bytes: a longer text is cut. KEPT(numbers-cut-at-31) An empty format gives
///          an empty text.
/// Fails    never, but for std::bad_alloc.
/// Source   POSIX fprintf
/// Example  (1.5f, "%g") gives "1.5"
UTILLIBRARY_EXPORT std::string to_string(float const& value, std::string const& format);
UTILLIBRARY_EXPORT std::string to_string(double const& value, std::string const& format);

/// The number at the front of a text, as `strtod` reads it under the C locale: leading blanks,
/// decimal and hexadecimal forms, infinity and NaN. A zero byte ends the text.
/// Takes    what follows the number is ignored. KEPT(number-at-the-front)
/// Gives    true, and the number in `value`; beyond the range of a double the infinity or the tiny
///          number that `strtod` gives, without a word. KEPT(range-error-is-silent)
/// Fails    with false where the text does not begin with a number; `value` is untouched then.
/// Source   POSIX strtod
/// Example  "12abc" gives 12
UTILLIBRARY_EXPORT bool strtodEx(std::string const& text, double& value) noexcept;

/// A number as "0x" and eight lowercase hexadecimal digits, in every locale.
/// Fails    never.
/// Example  255 gives "0x000000ff"
UTILLIBRARY_EXPORT std::string convertToHex(unsigned int value);

// ---- escaping

/// A text in printable form: graphic bytes as they are, all others as escapes.
/// Takes    keepSpace: whether a space stays as it is.
/// Gives    "\f", "\n", "\r", "\t", "\b" and "\"" for form feed, line feed, carriage return, tab,
///          backspace and double quote; every other byte that `isgraph` does not accept under the C
///          locale as "\u" and four lowercase hexadecimal digits. These are of the signed byte
///          widened to 16 bits: "\u0020" for a space, but "\uffc3" for the byte 0xC3.
///          KEPT(escape-widens-by-sign) The byte 0xFF is never graphic. KEPT(byte-ff-is-eof)
///          A backslash drops all that was written before it and is written as two: what counts is
///          the text after the last backslash. KEPT(backslash-starts-over)
/// Fails    never, but for std::bad_alloc.
/// Cost     one allocation for the result, of its exact size.
/// Example  ('a b', false) gives 'a\u0020b'; ('C:\dir\file', false) gives '\\file'
UTILLIBRARY_EXPORT std::string escapeString(std::string const& text, bool keepSpace);

/// A text with its escapes read; it undoes `escapeString` for every text without a backslash.
/// Takes    a backslash and one byte after it: " ' ? and \ stand for themselves, a b f n r t v for
///          the control bytes that they name in C; u for one byte, the low eight bits of the number
///          that up to four hexadecimal digits make. KEPT(escape-is-one-byte) Without a digit the
///          number is 0. KEPT(no-digits-give-zero) x is read in two stages: up to two hexadecimal
///          digits are dropped, and up to four after them are read as after u.
///          KEPT(x-drops-two-digits) Hexadecimal digits are the bytes that `isxdigit` accepts.
/// Gives    two backslashes for a backslash and any other byte; the byte is dropped.
///          KEPT(unknown-escape-is-two-backslashes) A backslash that ends the text stays.
///          KEPT(last-backslash-stays)
/// Fails    never, but for std::bad_alloc.
/// Example  '\u00412' gives 'A2'; '\x4142' gives 'B'; '\q' gives '\\'
UTILLIBRARY_EXPORT std::string unescapeString(std::string const& text);

}  // namespace com::halvorin::utilities
