#pragma once

#include <string>
#include <vector>

#include <utillibrary/export.h>

// Small functions on strings of bytes: search, compare, numbers, escape and unescape.
//
//   StringUtilities.cpp                        searchVector, iequals; endsWith is inline
//   StringNumbers.cpp                          to_string, strtodEx, convertToHex
//   StringEscape.cpp and StringUnescape.cpp    escapeString, unescapeString
//
// No function decodes characters: a byte is a byte, and a zero byte is like any other unless the
// function says otherwise. "The C locale" is libc's locale that is in force when the function is
// called: `setlocale` or `uselocale` sets it, and the library never changes it. No function keeps
// state, so several threads may call them at the same time. No function reports through the log
// hook.
//     std::string const escaped = escapeString("a b\n", false);    // "a\\u0020b\\n"
//     unescapeString(escaped);                                     // "a b\n"
//     std::vector<std::string> names = {"cpu", "memory"};
//     *searchVector(names, "mem", true) = "swap";
//     names;                                                       // {"cpu", "swap"}
//
// A name after "Kept" is a deliberate surprise; share/doc/utillibrary/kept.md explains each.
namespace com::halvorin::utilities {

// ---- searching and comparing

/// The position of the first element that equals `text`, or that contains it.
/// Takes    partial: if true, an element matches when it contains `text`, so that an empty `text`
///          matches the first element; if false, it matches when it equals `text`.
/// Gives    the position of the element; list.end() if no element matches.
/// Fails    never.
/// Cost     for a `text` of 64 bytes or more: at most the sum of the two lengths for each element.
/// Example  std::vector<std::string> const list = {"a", "abcd"};
///          searchVector(list, "bc", true) - list.begin()     // 1
///          searchVector(list, "bc", false) == list.end()     // true
UTILLIBRARY_EXPORT std::vector<std::string>::const_iterator searchVector(
    std::vector<std::string> const& list, std::string const& text, bool partial) noexcept;

/// As the overload for a constant list, but the element at the position may be changed.
/// Takes    partial: as in the overload for a constant list.
/// Gives    the position of the first element that matches; list.end() if no element matches.
/// Fails    never.
/// Example  std::vector<std::string> list = {"a", "b"};
///          *searchVector(list, "b", false) = "c";
///          list                                              // {"a", "c"}
UTILLIBRARY_EXPORT std::vector<std::string>::iterator searchVector(std::vector<std::string>& list,
                                                                   std::string const& text,
                                                                   bool partial) noexcept;

/// True if `text` ends with `suffix`, byte for byte.
/// Gives    true for every empty `suffix`; false for a `suffix` that is longer than `text`.
/// Fails    never.
/// Example  endsWith("abc", "bc")     // true
///          endsWith("abc", "")       // true
///          endsWith("bc", "abc")     // false
UTILLIBRARY_INLINE bool endsWith(std::string const& text, std::string const& suffix) noexcept {
    return text.size() >= suffix.size() &&
           __builtin_memcmp(text.data() + (text.size() - suffix.size()), suffix.data(),
                            suffix.size()) == 0;
}

/// True if `other` begins with `text`, ignoring case.
/// Gives    true if `tolower` under the C locale gives the same for each byte of `text` and for the
///          byte at the same position of `other`. The bytes of `other` after that do not count.
///          true for every empty `text`; false if `other` is shorter than `text`.
/// Fails    never.
/// Like     strcasecmp(3), except: (1) true means equal; (2) `other` may be longer than `text`;
///          (3) a zero byte does not end a string; (4) the byte 0xFF equals only itself, whatever
///          letter it is in the locale.
/// Example  iequals("Ab", "aB")             // true
///          iequals("abc", "ABCdef")        // true
///          iequals("ABCdef", "abc")        // false
///          iequals("", "anything")         // true
/// Kept     iequals-looks-one-way, byte-ff-is-eof
UTILLIBRARY_EXPORT bool iequals(std::string const& text, std::string const& other) noexcept;

// ---- numbers and strings
//
// `to_string` for a time is in datatypes/xtime_conversions.h.

/// An int in decimal, with a minus sign if it is negative.
/// Fails    with std::bad_alloc only.
/// Like     snprintf(3) with "%d".
/// Example  to_string(-12)     // "-12"
UTILLIBRARY_EXPORT std::string to_string(int const& value);

/// An unsigned int in decimal.
/// Fails    with std::bad_alloc only.
/// Like     snprintf(3) with "%u".
/// Example  to_string(4294967295U)     // "4294967295"
UTILLIBRARY_EXPORT std::string to_string(unsigned int const& value);

/// A long in decimal, with a minus sign if it is negative.
/// Fails    with std::bad_alloc only.
/// Like     snprintf(3) with "%ld".
/// Example  to_string(-9223372036854775807L)     // "-9223372036854775807"
UTILLIBRARY_EXPORT std::string to_string(long const& value);

/// "true" or "false".
/// Fails    with std::bad_alloc only.
/// Example  to_string(true)     // "true"
UTILLIBRARY_EXPORT std::string to_string(bool const& value);

/// A copy of `value`, so that a template can call `to_string` for strings too.
/// Fails    with std::bad_alloc only.
/// Example  to_string(std::string("a b"))     // "a b"
UTILLIBRARY_EXPORT std::string to_string(std::string const& value);

/// Does not compile: a string literal would be converted to bool, and not to std::string.
/// Fails    never, since it cannot be called.
std::string to_string(char const* value) = delete;

/// A float as `snprintf` writes it; the float is converted to double first.
/// Takes    format: as in the overload for double.
/// Gives    at most 31 bytes, as in the overload for double.
/// Fails    with std::bad_alloc only.
/// Example  to_string(1.5f, "%g")       // "1.5"
///          to_string(0.1f, "%.9g")     // "0.100000001"
/// Kept     numbers-cut-at-31
UTILLIBRARY_EXPORT std::string to_string(float const& value, std::string const& format);

/// A double as `snprintf` writes it under the C locale.
/// Takes    format: a format with exactly one conversion of a double, such as "%g" or "%.3f", or
///          with none. It is not checked: any other conversion has undefined behaviour. A zero byte
///          ends it.
/// Gives    at most 31 bytes; the bytes after them are dropped. Empty if the format is empty.
/// Fails    with std::bad_alloc only.
/// Like     snprintf(3) into 32 bytes, except: (1) if libc finds no memory, this throws.
/// Source   POSIX fprintf
/// Example  to_string(1.5, "%.3f")        // "1.500"
///          to_string(1e300, "%.0f")      // "1000000000000000052504760255204"
///          to_string(1.5, "")            // ""
/// Kept     numbers-cut-at-31
UTILLIBRARY_EXPORT std::string to_string(double const& value, std::string const& format);

/// Reads the number at the front of a string; what follows the number is ignored.
/// Takes    text: whitespace, a sign, then a decimal or hexadecimal number, "inf" or "nan", as
///          `strtod` reads them under the C locale. A zero byte ends it.
/// Gives    true, and the number in `value`. A number too large for a double gives an infinity; one
///          too small gives 0 or a subnormal number.
/// Fails    with false if the string does not begin with a number; `value` is unchanged then.
/// Like     strtod(3), except: (1) the number is written to `value`, and false means that nothing
///          was read; (2) the position after the number is not returned; (3) a range error is not
///          reported.
/// Source   POSIX strtod
/// Example  double value = 0;
///          strtodEx("12abc", value)      // true
///          value                         // 12
///          strtodEx("abc", value)        // false
///          value                         // 12
///          strtodEx(" -1e400", value)    // true
///          value                         // -inf
/// Kept     number-at-the-front, range-error-is-silent
UTILLIBRARY_EXPORT bool strtodEx(std::string const& text, double& value) noexcept;

/// A number as "0x" and eight lowercase hexadecimal digits, under every locale.
/// Fails    with std::bad_alloc only.
/// Like     snprintf(3) with "0x%08x".
/// Example  convertToHex(255)     // "0x000000ff"
UTILLIBRARY_EXPORT std::string convertToHex(unsigned int value);

// ---- escaping
//
// escapeString writes a byte in one of three ways, and unescapeString reads more than these:
//
//   byte                                          escapeString           unescapeString reads
//   graphic: isgraph is true under the C locale   itself                 itself
//   space                                         itself or \u0020       both
//   form feed, line feed, carriage return         \f \n \r               the same
//   tab, backspace, double quote                  \t \b \"               the same
//   backslash                                     \\, but see there      \\ and a \ at the end
//   bell, vertical tab                            \u0007 \u000b          these, and \a \v
//   single quote, question mark                   themselves             themselves, and \' \?
//   all others, such as 0x01 and 0xC3             \u0001 \uffc3          these; up to four digits
//
// unescapeString also reads \x and digits.

/// A string in printable form: graphic bytes stay as they are, all others become escapes.
/// Takes    keepSpace: true if a space stays as it is; false if it becomes an escape.
/// Gives    unchanged: the bytes that `isgraph` accepts under the C locale, except the double quote
///          and the backslash; and a space if `keepSpace` is true. All others become the escapes of
///          the table above. The four digits after "u" are lowercase; they are the signed byte
///          widened to 16 bits: 0x20 gives "0020" and 0xC3 gives "ffc3". The byte 0xFF is never
///          graphic. A backslash drops all that was written before it, and is written as two
///          backslashes. So the result is these two, then the escaped form of what follows the last
///          backslash.
/// Fails    with std::bad_alloc only; every string has a result.
/// Cost     one allocation for the result.
/// Example  escapeString("a b", false)             // "a\\u0020b"
///          escapeString("a b", true)              // "a b"
///          escapeString("\t\"\xC3", false)        // "\\t\\\"\\uffc3"
///          escapeString("C:\\dir\\file", false)   // "\\\\file"
/// Kept     backslash-starts-over, escape-widens-by-sign, byte-ff-is-eof
UTILLIBRARY_EXPORT std::string escapeString(std::string const& text, bool keepSpace);

/// Reads the escapes in a string: a backslash and what follows it become one or two bytes.
/// Takes    text: each byte that does not belong to an escape is copied. After a backslash:
///          one of the letters and marks of the table above gives its byte;
///          "u" gives the low eight bits of the number in up to four hexadecimal digits;
///          "x" drops up to two hexadecimal digits, then reads up to four as after "u";
///          any other byte is dropped, and the result has two backslashes in place of the escape.
///          Hexadecimal digits are the bytes that `isxdigit` accepts under the C locale; `strtoul`
///          reads the number. Without a digit it is 0, which gives a zero byte.
/// Gives    for a result of `escapeString`, the string that was escaped, if that contained no
///          backslash. A backslash at the end stays.
/// Fails    with std::bad_alloc only; every string has a result.
/// Cost     one allocation, of at most twice the size of the result. If more than 8192 bytes become
///          less than half of them, a block of their own size is allocated first, and freed.
/// Example  unescapeString("\\u00412\\n")     // "A2\n"
///          unescapeString("\\u20ac")         // "\xac"
///          unescapeString("\\ug")            // "\x00g"
///          unescapeString("\\x4142")         // "B"
///          unescapeString("\\q")             // "\\\\"
///          unescapeString("abc\\")           // "abc\\"
/// Kept     escape-is-one-byte, no-digits-give-zero, x-drops-two-digits,
///          unknown-escape-is-two-backslashes, last-backslash-stays
UTILLIBRARY_EXPORT std::string unescapeString(std::string const& text);

}  // namespace com::halvorin::utilities
