#pragma once

#include <string>

#include <utillibrary/datatypes/xtime.h>
#include <utillibrary/export.h>

// A name after "Kept" is a deliberate surprise; share/doc/utillibrary/kept.md explains each.
namespace com::halvorin::datatypes {

/// The number of a type: 0 to 14 in the first table at class Variant.
using VariantType = int;

/* The conversion of a Variant without a value to a number or bool writes this line to std::cout:
com::halvorin::utility::Variant::convert::Failed to convert data type because type is not supported
*/

/// A dynamically typed scalar: one value of one of fourteen types, and the number of its type.
///     Variant v(3.7);
///     v.toInt32()                     // 3
///     v.toString()                    // "3.7"
///     v = "42";
///     v.toInt32()                     // 42
/// An object belongs to one thread at a time. It owns its strings: copies are deep, and a move is a
/// copy. A string is stored and never parsed: Variant("42") is a String. Conversions check no
/// range.
///
/// Two types carry no data and differ: 0 (never set, or cleared) and 14 (an explicit null). A
/// DateTime also keeps `timeVal.toVMSTime()`, its OpenVMS seconds, in `uVal.asDouble`.
///
/// | number, name     | made from         | member        | as a string                        |
/// |------------------|-------------------|---------------|------------------------------------|
/// | 0 "Unknown"      | nothing           | none          | "unknown"                          |
/// | 1 "UnsignedByte" | unsigned char     | uVal.asUbyte  | decimal: 200 gives "200"           |
/// | 2 "Uint16"       | unsigned short    | uVal.asUint16 | decimal                            |
/// | 3 "Uint32"       | unsigned int      | uVal.asUint32 | as an int: 4294967295 gives "-1"   |
/// | 4 "Byte"         | char, signed      | uVal.asByte   | decimal: 'A' gives "65"            |
/// | 5 "Int16"        | short             | uVal.asInt16  | decimal                            |
/// | 6 "Int32"        | int               | uVal.asInt32  | decimal                            |
/// | 7 "Float"        | float             | uVal.asFloat  | as a double                        |
/// | 8 "Double"       | double            | uVal.asDouble | as printf("%g"), six digits        |
/// | 9 "String"       | a string          | wText         | the string itself                  |
/// | 10 "Int64"       | long              | uVal.asInt64  | as a double: 1000000 gives "1e+06" |
/// | 11 "Uint64"      | unsigned long     | uVal.asUint64 | as a double                        |
/// | 12 "Boolean"     | bool              | uVal.asBool   | "1" or "0"                         |
/// | 13 "DateTime"    | xtime_t           | timeVal       | timeVal.toString(true, 0, "")      |
/// | 14 "Null"        | makeNull()        | none          | "null"                             |
/// | any other        | a write by a host | none          | "", and a report to writelog       |
///
/// A number or Boolean is written as a new std::wostringstream writes it. This uses all facets of
/// the global C++ locale, those of a host included, which may group digits or use another decimal
/// point. If a facet throws or fails, the result is the characters that were written before.
/// The string of a DateTime follows the C locale instead; each byte is widened by its sign. A
/// narrow string consists of the low 8 bits of each wide character.
///
/// | the type         | the integer of N bits                                      |
/// |------------------|------------------------------------------------------------|
/// | integers         | the low N bits: toInt16() of 40000 gives -25536            |
/// | Boolean          | 0 or 1; a stored byte other than 0 counts as 1             |
/// | Float, Double    | cut toward zero, by the next table                         |
/// | DateTime         | its OpenVMS seconds, a double, by the next table           |
/// | String           | the number at its front, by the table after the next one   |
/// | Null             | 0                                                          |
/// | 0 and all others | 0, after the line above the class was written to std::cout |
///
/// | floating value to | in range, cut toward zero                 | NaN and out of range |
/// |-------------------|-------------------------------------------|----------------------|
/// | 8 and 16 bits     | -2147483648 to 2147483647: the low N bits | 0                    |
/// | int               | -2147483648 to 2147483647: itself         | -2147483648          |
/// | unsigned int      | the range of long: the low 32 bits        | 0                    |
/// | long              | the range of long: itself                 | -9223372036854775808 |
/// | unsigned long     | -2^63 to 2^64 - 1: the low 64 bits        | 9223372036854775808  |
///
/// An integer is read from a String as a std::wistringstream reads a long in base ten, under the
/// global C++ locale. If a facet throws or fails, the result is the value that the stream then has,
/// or 0.
///
/// | part of a String | read as an integer                                                 |
/// |------------------|--------------------------------------------------------------------|
/// | whitespace       | skipped at the front                                               |
/// | sign             | "+" or "-", or none                                                |
/// | digits           | to the first other character; separators too, if the locale groups |
/// | the rest         | ignored: "0x1F" gives 0, "3.9" gives 3, " 42abc" gives 42          |
/// | no digits        | 0                                                                  |
/// | too many digits  | LONG_MAX or LONG_MIN, for unsigned long too                        |
/// | then             | the low N bits: "70000" gives 4464 by toUint16()                   |
///
/// | the type      | toDouble(), toFloat()       | toBool()                            |
/// |---------------|-----------------------------|-------------------------------------|
/// | integers      | the nearest double or float | whether it is not 0                 |
/// | Boolean       | 0 or 1                      | whether the stored byte is not 0    |
/// | Float, Double | the nearest double or float | whether it is not 0; NaN gives true |
/// | DateTime      | its OpenVMS seconds         | whether these are not 0             |
/// | String        | what wcstod reads; else 0   | by its first letter, see toBool()   |
/// | Null          | 0                           | false                               |
/// | 0, all others | 0, after that line          | false, after that line              |
///
/// `char` and `wchar_t` are signed on x86-64 and unsigned on aarch64. So on aarch64
/// Variant(200).toByte() is 200 instead of -56, Variant(L'a') is a Uint32 instead of an Int32, and
/// the widened character -23 is 4294967273. The bits are the same. A Byte is a signed number on
/// every processor.
///
/// The line on standard output ends in a newline and is flushed. It takes no lock: if several
/// threads may write it, std::cout must be synchronised with stdio, as it is by default.
/// Fails    A conversion throws std::bad_alloc when it makes a string, or when it reads a String as
///          an integer under a C++ locale other than the classic one. It throws nothing else.
/// Kept     uint32-prints-signed, int64-prints-as-double, low-eight-bits,
///          small-integers-through-int32, uint64-from-floating, text-is-read-as-int64,
///          first-letter-decides, message-says-utility
// NOLINTNEXTLINE(cppcoreguidelines-special-member-functions): a move is a copy that normalises.
class UTILLIBRARY_EXPORT Variant {
public:
    // ---- construction: all members empty, then the `assign` of the argument

    /// A Variant without a value: type 0, every member empty.
    /// Fails    never.
    Variant() noexcept;

    /// A copy of all members but `sbcText`; `timeVal` is normalised, as `assign(Variant const&)`
    /// says.
    /// Fails    with std::bad_alloc.
    /// Kept     copy-normalises-time
    Variant(Variant const& other);

    // NOLINTBEGIN(google-explicit-constructor): hosts pass a value where a Variant is expected.

    /// An UnsignedByte, type 1.
    /// Fails    never.
    Variant(unsigned char value) noexcept;
    /// A Uint16, type 2.
    /// Fails    never.
    Variant(unsigned short value) noexcept;
    /// A Uint32, type 3.
    /// Fails    never.
    Variant(unsigned int value) noexcept;
    /// A Uint64, type 11.
    /// Fails    never.
    Variant(unsigned long value) noexcept;
    /// A Byte, type 4: a signed number of 8 bits, and no character.
    /// Fails    never.
    Variant(char value) noexcept;
    /// An Int16, type 5.
    /// Fails    never.
    Variant(short value) noexcept;
    /// An Int32, type 6.
    /// Fails    never.
    Variant(int value) noexcept;
    /// An Int64, type 10.
    /// Fails    never.
    Variant(long value) noexcept;
    /// A Float, type 7.
    /// Fails    never.
    Variant(float value) noexcept;
    /// A Double, type 8.
    /// Fails    never.
    Variant(double value) noexcept;
    /// A Boolean, type 12.
    /// Fails    never.
    Variant(bool value) noexcept;
    /// A String, type 9: the characters before the terminating zero.
    /// Takes    text: not null; null is undefined behaviour.
    /// Fails    with std::bad_alloc.
    Variant(wchar_t const* text);
    /// A String, type 9: the whole string, zero characters included.
    /// Fails    with std::bad_alloc.
    Variant(std::wstring const& text);
    /// A String, type 9: each byte before the terminating zero, widened by its sign: 0xE9 becomes
    /// the character -23. Nothing is decoded.
    /// Fails    with std::logic_error "basic_string::_M_construct null not valid" if `text` is
    ///          null; with std::bad_alloc.
    /// Kept     bytes-widen-by-sign
    Variant(char const* text);
    /// A String, type 9, like `Variant(text.c_str())`: the first zero byte ends the string.
    /// Fails    with std::bad_alloc.
    /// Kept     bytes-widen-by-sign, text-ends-at-zero-byte
    Variant(std::string const& text);
    /// A DateTime, type 13: `time` unchanged in `timeVal`, and `time.toVMSTime()`, OpenVMS seconds,
    /// in `uVal.asDouble`.
    /// Fails    never.
    Variant(xtime_t const& time) noexcept;

    // NOLINTEND(google-explicit-constructor)

    // Written out, because clang++ does not export a defaulted destructor.
    // NOLINTBEGIN(modernize-use-equals-default)
    /// Frees the three strings.
    /// Fails    never.
    UTILLIBRARY_INLINE ~Variant() {}
    // NOLINTEND(modernize-use-equals-default)

    // ---- questions

    /// The type number, as in the table at the class.
    /// Fails    never.
    VariantType type() const noexcept;

    /// True if the type is 14, "Null".
    /// Fails    never.
    bool isNull() const noexcept;

    /// True if the type is not 0. So it is true for Null, which is a value.
    /// Fails    never.
    /// Kept     null-has-value
    bool hasValue() const noexcept;

    /// The number of the type with this name.
    /// Takes    name: compared whole and with its case; not null.
    /// Gives    0 to 14; -1 if no type has this name.
    /// Fails    never.
    /// Example  Variant::typeName2Number(L"Double")     // 8
    ///          Variant::typeName2Number(L"double")     // -1
    static VariantType typeName2Number(wchar_t const* name) noexcept;

    /// The name of the type with this number.
    /// Gives    a pointer to static storage; a null pointer for a number outside 0 to 14, so the
    ///          caller must check.
    /// Fails    never.
    static wchar_t const* typeNumber2Name(int number) noexcept;

    // ---- changes

    /// Sets the type to 0, all bytes of `uVal` to zero, and `wText` to the empty string.
    /// The other members are unchanged, so `toXtime_t` still returns an earlier time.
    /// Fails    never.
    /// Cost     keeps the memory of `wText` for the next string.
    /// Kept     clear-keeps-time
    void clear() noexcept;

    /// Clears this object and sets the type to 14, "Null".
    /// Fails    never.
    void makeNull() noexcept;

    // Each `assign` begins with `clear()`. A number is stored in the low bytes of `uVal`, and the
    // bytes above its width are zero.

    /// Replaces the value by an UnsignedByte, type 1.
    /// Fails    never.
    void assign(unsigned char value) noexcept;
    /// Replaces the value by a Uint16, type 2.
    /// Fails    never.
    void assign(unsigned short value) noexcept;
    /// Replaces the value by a Uint32, type 3.
    /// Fails    never.
    void assign(unsigned int value) noexcept;
    /// Replaces the value by a Uint64, type 11.
    /// Fails    never.
    void assign(unsigned long value) noexcept;
    /// Replaces the value by a Byte, type 4: a signed number of 8 bits, and no character.
    /// Fails    never.
    void assign(char value) noexcept;
    /// Replaces the value by an Int16, type 5.
    /// Fails    never.
    void assign(short value) noexcept;
    /// Replaces the value by an Int32, type 6.
    /// Fails    never.
    void assign(int value) noexcept;
    /// Replaces the value by an Int64, type 10.
    /// Fails    never.
    void assign(long value) noexcept;
    /// Replaces the value by a Float, type 7.
    /// Fails    never.
    void assign(float value) noexcept;
    /// Replaces the value by a Double, type 8.
    /// Fails    never.
    void assign(double value) noexcept;
    /// Replaces the value by a Boolean, type 12, stored as one byte 0 or 1.
    /// Fails    never.
    void assign(bool value) noexcept;

    /// Replaces the value by a String, type 9: the characters before the terminating zero.
    /// Takes    text: not null; null is undefined behaviour. A pointer into the memory of this
    ///          object's own `wText` gives an empty String, because `wText` is cleared first.
    /// Fails    with std::bad_alloc; this object is then cleared.
    void assign(wchar_t const* text);

    /// Replaces the value by a String, type 9: the whole string, zero characters included.
    /// Takes    text: this object's own `wText` gives an empty String, because it is cleared first.
    /// Fails    with std::bad_alloc; this object is then cleared.
    void assign(std::wstring const& text);

    /// Replaces the value by a String, type 9: each byte before the terminating zero, widened by
    /// its sign: 0xE9 becomes the character -23. Nothing is decoded.
    /// Takes    text: may be the result of this object's `operator char const*`. A pointer into the
    ///          memory of this object's own `wText` gives a String of unspecified characters.
    /// Fails    with std::logic_error "basic_string::_M_construct null not valid" if `text` is
    ///          null; with std::bad_alloc. In both cases this object is then cleared.
    /// Kept     bytes-widen-by-sign
    void assign(char const* text);

    /// Replaces the value as `assign(text.c_str())` does: the first zero byte ends the string.
    /// Fails    with std::bad_alloc; this object is then cleared.
    /// Kept     bytes-widen-by-sign, text-ends-at-zero-byte
    void assign(std::string const& text);

    /// Replaces the value by a DateTime, type 13: `time` unchanged in `timeVal`, and
    /// `time.toVMSTime()`, OpenVMS seconds, in `uVal.asDouble`.
    /// Fails    never.
    void assign(xtime_t const& time) noexcept;

    /// Clears this object, then copies type, `uVal`, `wText`, `wTextAux` and `timeVal`, in this
    /// order. `sbcText` is not copied. The time is copied by `putDateTime` and `putNanoseconds`:
    /// whole seconds in the nanoseconds are carried. An object that is assigned to itself ends with
    /// type 0 and an empty string, because it is cleared before it is read.
    /// Fails    with std::bad_alloc; type and `uVal` are then the source's, `wText` is empty or
    ///          complete, and the members after the one that failed are unchanged.
    /// Kept     copy-normalises-time, self-assignment-empties
    void assign(Variant const& other);

    /// Copies the whole 8-byte slot and nothing else. The type is unchanged; it decides how many of
    /// the 8 bytes are read.
    /// Fails    never.
    void copyUVal(Variant const& other) noexcept;

    // No operator= takes std::string or std::wstring. They convert to a temporary Variant, and all
    // its members are copied: `timeVal` becomes "not set" and `wTextAux` empty. Prefer `assign`.

    /// Calls `assign(text)` and returns this object.
    /// Takes    text: not null.
    /// Fails    with std::bad_alloc; this object is then cleared.
    Variant& operator=(wchar_t const* text);
    /// Calls `assign(text)` and returns this object.
    /// Fails    with std::logic_error if `text` is null; with std::bad_alloc. This object is then
    ///          cleared.
    /// Kept     bytes-widen-by-sign
    Variant& operator=(char const* text);
    /// Replaces the value by a Float, type 7, and returns this object.
    /// Fails    never.
    Variant& operator=(float value) noexcept;
    /// Replaces the value by a Double, type 8, and returns this object.
    /// Fails    never.
    Variant& operator=(double value) noexcept;
    /// Replaces the value by a Byte, type 4, and returns this object.
    /// Fails    never.
    Variant& operator=(char value) noexcept;
    /// Replaces the value by an Int16, type 5, and returns this object.
    /// Fails    never.
    Variant& operator=(short value) noexcept;
    /// Replaces the value by an Int32, type 6, and returns this object.
    /// Fails    never.
    Variant& operator=(int value) noexcept;
    /// Replaces the value by an Int64, type 10, and returns this object.
    /// Fails    never.
    Variant& operator=(long const& value) noexcept;
    /// Calls `assign(other)` and returns this object; `v = v` leaves it empty, with type 0.
    /// Fails    with std::bad_alloc, as `assign(Variant const&)` says.
    /// Kept     copy-normalises-time, self-assignment-empties
    Variant& operator=(Variant const& other);
    /// Replaces the value by a Boolean, type 12, and returns this object.
    /// Fails    never.
    Variant& operator=(bool value) noexcept;
    /// Replaces the value by an UnsignedByte, type 1, and returns this object.
    /// Fails    never.
    Variant& operator=(unsigned char value) noexcept;
    /// Replaces the value by a Uint16, type 2, and returns this object.
    /// Fails    never.
    Variant& operator=(unsigned short value) noexcept;
    /// Replaces the value by a Uint32, type 3, and returns this object.
    /// Fails    never.
    Variant& operator=(unsigned int value) noexcept;
    /// Replaces the value by a Uint64, type 11, and returns this object.
    /// Fails    never.
    Variant& operator=(unsigned long const& value) noexcept;
    /// Replaces the value by a DateTime, type 13, and returns this object.
    /// Fails    never.
    Variant& operator=(xtime_t const& time) noexcept;

    // ---- numbers: the tables at the class say what each type gives

    /// The value as an unsigned 8-bit integer, by the class's table of integers.
    /// Gives    a floating value: cut toward zero to an int, then its low 8 bits; 0 for NaN and
    ///          outside the range of int. Type 0: 0, after a line on standard output.
    /// Fails    with std::bad_alloc, for a String if the C++ locale is not the classic one.
    /// Example  Variant(300.7).toUbyte()              // 44
    ///          Variant(-1).toUbyte()                 // 255
    /// Kept     small-integers-through-int32
    unsigned char toUbyte() const;

    /// The value as a signed 8-bit integer, by the class's table of integers.
    /// Gives    a floating value: cut toward zero to an int, then its low 8 bits; 0 for NaN and
    ///          outside the range of int. Type 0: 0, after a line on standard output.
    /// Fails    with std::bad_alloc, for a String if the C++ locale is not the classic one.
    /// Example  Variant(200).toByte()                 // -56
    /// Kept     small-integers-through-int32
    char toByte() const;

    /// The value as a signed 16-bit integer, by the class's table of integers.
    /// Gives    a floating value: cut toward zero to an int, then its low 16 bits; 0 for NaN and
    ///          outside the range of int. Type 0: 0, after a line on standard output.
    /// Fails    with std::bad_alloc, for a String if the C++ locale is not the classic one.
    /// Example  Variant(40000).toInt16()              // -25536
    /// Kept     small-integers-through-int32
    short toInt16() const;

    /// The value as an unsigned 16-bit integer, by the class's table of integers.
    /// Gives    a floating value: cut toward zero to an int, then its low 16 bits; 0 for NaN and
    ///          outside the range of int. Type 0: 0, after a line on standard output.
    /// Fails    with std::bad_alloc, for a String if the C++ locale is not the classic one.
    /// Example  Variant("70000").toUint16()           // 4464
    /// Kept     small-integers-through-int32
    unsigned short toUint16() const;

    /// The value as a signed 32-bit integer, by the class's table of integers.
    /// Gives    a floating value: cut toward zero; -2147483648 for NaN and outside the range of
    ///          int. Type 0: 0, after a line on standard output.
    /// Fails    with std::bad_alloc, for a String if the C++ locale is not the classic one.
    /// Example  Variant(-1.5).toInt32()               // -1
    ///          Variant(3e9).toInt32()                // -2147483648
    ///          Variant(" 42abc").toInt32()           // 42
    ///          Variant(4294967296UL).toInt32()       // 0
    int toInt32() const;

    /// The value as an unsigned 32-bit integer, by the class's table of integers.
    /// Gives    a floating value: cut toward zero to a long, then its low 32 bits; 0 for NaN and
    ///          outside the range of long. Type 0: 0, after a line on standard output.
    /// Fails    with std::bad_alloc, for a String if the C++ locale is not the classic one.
    /// Example  Variant(3e9).toUint32()               // 3000000000
    ///          Variant(-1.5).toUint32()              // 4294967295
    unsigned int toUint32() const;

    /// The value as a signed 64-bit integer, by the class's table of integers.
    /// Gives    a floating value: cut toward zero; -9223372036854775808 for NaN and outside the
    ///          range of long. Type 0: 0, after a line on standard output.
    /// Fails    with std::bad_alloc, for a String if the C++ locale is not the classic one.
    /// Example  Variant(18446744073709551615UL).toInt64()     // -1
    ///          Variant("1e3").toInt64()                      // 1
    long toInt64() const;

    /// The value as an unsigned 64-bit integer, by the class's table of integers.
    /// Gives    a floating value: cut toward zero, its low 64 bits; 9223372036854775808 for NaN,
    ///          below -2^63 and from 2^64 on. Type 0: 0, after a line on standard output.
    /// Fails    with std::bad_alloc, for a String if the C++ locale is not the classic one.
    /// Example  Variant(-1.0).toUint64()                          // 18446744073709551615
    ///          Variant("18446744073709551615").toUint64()        // 9223372036854775807
    /// Kept     uint64-from-floating, text-is-read-as-int64
    unsigned long toUint64() const;

    /// The value as a double, by the class's last table.
    /// Gives    a DateTime: its OpenVMS seconds. A String: what `wcstod` reads under the C locale;
    ///          0 without a number. Type 0: 0, after a line on standard output.
    /// Fails    never.
    /// Example  Variant("1e3").toDouble()             // 1000
    double toDouble() const;

    /// The value as a float, by the class's last table.
    /// Gives    an integer: rounded once, straight to float. A String: its double, rounded to
    ///          float. A Double beyond the range of float: infinity. Type 0: 0, after a line on
    ///          standard output.
    /// Fails    never.
    float toFloat() const;

    /// The value as a bool, by the class's last table.
    /// Gives    a number: true if it is not 0; NaN gives true. A String: true if it begins with Y,
    ///          y, T or t; false if it begins with F, f, N or n; else whether `wcstol` gives a
    ///          number other than 0. Type 0: false, after a line on standard output.
    /// Fails    never.
    /// Example  Variant("Yellow").toBool()            // true
    ///          Variant(" true").toBool()             // false
    ///          Variant("0.5").toBool()               // false
    ///          Variant(0.5).toBool()                 // true
    /// Kept     first-letter-decides
    bool toBool() const;

    /// The time in `timeVal`, whatever the type is. An object that was cleared, or that was given
    /// another value, still returns its earlier time; without one the time is not set.
    /// Fails    never.
    /// Kept     time-whatever-the-type
    xtime_t toXtime_t() const noexcept;

    // NOLINTBEGIN(google-explicit-constructor): hosts write `int n = variant;`.

    /// The same as `toUbyte()`.
    /// Fails    as `toUbyte()` does.
    operator unsigned char() const;
    /// The same as `toByte()`.
    /// Fails    as `toByte()` does.
    operator char() const;
    /// The same as `toInt16()`.
    /// Fails    as `toInt16()` does.
    operator short() const;
    /// The same as `toUint16()`.
    /// Fails    as `toUint16()` does.
    operator unsigned short() const;
    /// The same as `toInt32()`.
    /// Fails    as `toInt32()` does.
    operator int() const;
    /// The same as `toUint32()`.
    /// Fails    as `toUint32()` does.
    operator unsigned int() const;
    /// The same as `toInt64()`.
    /// Fails    as `toInt64()` does.
    operator long() const;
    /// The same as `toUint64()`.
    /// Fails    as `toUint64()` does.
    operator unsigned long() const;
    /// The same as `toFloat()`.
    /// Fails    never.
    operator float() const;
    /// The same as `toDouble()`.
    /// Fails    never.
    operator double() const;
    /// The same as `toBool()`.
    /// Fails    never.
    operator bool() const;
    /// The same as `toXtime_t()`.
    /// Fails    never.
    operator xtime_t() const noexcept;

    // NOLINTEND(google-explicit-constructor)

    // ---- comparison

    /// Compares two numbers with a tolerance that is relative to `b`.
    /// Gives    -1, 0 or 1 as `a` counts as below, equal to or above `b`:
    ///          both are zero                 d = a - b
    ///          only `a` is zero              -1, for a negative `b` and for NaN too
    ///          only `b` is zero              1, for a negative `a` and for NaN too
    ///          neither is zero               d = a / b - 1, whatever the signs
    ///          if there is a d               -1 if d < -threshold, 1 if d > threshold, else 0
    ///          Two negative numbers compare in reverse, and numbers of opposite signs give -1. A
    ///          NaN gives 0 unless the other number is zero.
    /// Fails    never.
    /// Example  Variant::compareDoublesHelper(0, -5, 0.1)     // -1
    ///          Variant::compareDoublesHelper(-2, -1, 0.1)    // 1
    ///          Variant::compareDoublesHelper(1, -1, 0.1)     // -1
    /// Kept     zero-is-below-all, comparison-follows-the-ratio
    static int compareDoublesHelper(double a, double b, double threshold) noexcept;

    /// Compares as `compareDoublesHelper` does, with the threshold DBL_THRESHOLD, 1e-12.
    /// Gives    -1, 0 or 1 as `a` counts as below, equal to or above `b`. Zero counts as below
    ///          every other number, and two negative numbers compare in reverse.
    /// Fails    never.
    /// Example  Variant::compareDoubles(1.0, 1.0 + 1e-13)     // 0
    ///          Variant::compareDoubles(1.0, 1.0 + 1e-11)     // -1
    ///          Variant::compareDoubles(0, -5)                // -1
    /// Kept     zero-is-below-all, comparison-follows-the-ratio
    static int compareDoubles(double a, double b) noexcept;

    /// Compares both as doubles, as `compareDoublesHelper` does, with FLT_THRESHOLD, 1e-06.
    /// Gives    -1, 0 or 1 as `a` counts as below, equal to or above `b`. Zero counts as below
    ///          every other number, and two negative numbers compare in reverse.
    /// Fails    never.
    /// Example  Variant::compareFloats(1.0f, 1.000001f)       // 0
    /// Kept     zero-is-below-all, comparison-follows-the-ratio
    static int compareFloats(float a, float b) noexcept;

    // ---- strings: the last column of the class's first table says what each type gives
    //
    // If the type is outside 0 to 14, each of these returns an empty string and reports
    // "Variant::convertToString", 3, "Cannot convert unknown type", 0x80004005 to `writelog`.

    /// The value as a wide string, by the last column of the class's first table.
    /// Takes    localeId: ignored.
    /// Fails    with std::bad_alloc, and never a part of a string. A type outside 0 to 14: an empty
    ///          string and a report.
    /// Example  Variant(1234567.0).convertToString(1033)      // L"1.23457e+06"
    /// Kept     locale-id-is-ignored
    std::wstring convertToString(unsigned int localeId) const;

    /// The value as a string: the low 8 bits of each character of `convertToString`.
    /// Takes    localeId: ignored.
    /// Fails    as `convertToString(localeId)` does.
    /// Example  Variant(L"\u20AC").convertToStringSBC(1033)   // "\xac"
    /// Kept     low-eight-bits, locale-id-is-ignored
    std::string convertToStringSBC(unsigned int localeId) const;

    /// The same as `convertToString(localeId)`.
    /// Takes    localeId: ignored.
    /// Fails    as `convertToString(localeId)` does.
    /// Kept     locale-id-is-ignored
    std::wstring toString(unsigned int localeId) const;

    /// The same as `convertToStringSBC(localeId)`.
    /// Takes    localeId: ignored.
    /// Fails    as `convertToString(localeId)` does.
    /// Kept     low-eight-bits, locale-id-is-ignored
    std::string toStringSBC(unsigned int localeId) const;

    /// The value as a string, by the last column of the class's first table: the low 8 bits of each
    /// character. The same as `convertToStringSBC(1033)`.
    /// Fails    as `convertToString(localeId)` does.
    /// Example  Variant(2.5).toString()                       // "2.5"
    ///          Variant(123456789L).toString()                // "1.23457e+08"
    ///          Variant(3000000000U).toString()               // "-1294967296"
    ///          Variant('A').toString()                       // "65"
    ///          Variant(true).toString()                      // "1"
    ///          Variant().toString()                          // "unknown"
    /// Kept     uint32-prints-signed, int64-prints-as-double, low-eight-bits
    std::string toString() const;

    /// Stores `toString()` in `sbcText` and returns a pointer to its characters.
    /// Gives    a pointer that is valid until the next call of this operator on this object, or
    ///          until the object ends. A change of the value does not change these characters.
    /// Fails    as `convertToString` does; on std::bad_alloc `sbcText` is unchanged.
    // NOLINTNEXTLINE(google-explicit-constructor)
    operator char const*() const UTILLIBRARY_LIFETIMEBOUND;

    // ---- constants

    /// The names of the types 1 to 14 in this order, then that of type 0, then a null pointer.
    static wchar_t const* const typeNames[16];

    /// The number of each entry of `typeNames`; -1 for the null pointer.
    static int const typeNumbers[16];

    /// The threshold of `compareFloats`: 1e-06.
    static double const FLT_THRESHOLD;

    /// The threshold of `compareDoubles`: 1e-12.
    static double const DBL_THRESHOLD;

    // ---- the value

    /// Eight bytes. A value is stored in the low bytes at its own width; the bytes above are zero.
    union Slot {
        unsigned long asUint64;   ///< Type 11.
        unsigned char asUbyte;    ///< Type 1.
        unsigned short asUint16;  ///< Type 2.
        unsigned int asUint32;    ///< Type 3.
        char asByte;              ///< Type 4.
        short asInt16;            ///< Type 5.
        int asInt32;              ///< Type 6.
        long asInt64;             ///< Type 10.
        float asFloat;            ///< Type 7.
        double asDouble;          ///< Type 8; the OpenVMS seconds of type 13.
        bool asBool;              ///< Type 12.
    };

    /// The type number.
    VariantType dataType;
    /// The value of a number or a Boolean; the OpenVMS seconds of a DateTime.
    Slot uVal;
    /// The latest DateTime that was assigned or copied. No other assignment changes it.
    xtime_t timeVal;
    /// The value of a String.
    std::wstring wText;
    /// Copied by `assign(Variant const&)`; nothing else reads or writes it.
    std::wstring wTextAux;
    /// The string into which `operator char const*` points.
    mutable std::string sbcText;
};

}  // namespace com::halvorin::datatypes
