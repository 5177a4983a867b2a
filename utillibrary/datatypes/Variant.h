#pragma once

#include <string>

#include <utillibrary/datatypes/xtime.h>
#include <utillibrary/export.h>

namespace com::halvorin::datatypes {

/// The number of a type: 0 "Unknown" (no value), 1 "UnsignedByte", 2 "Uint16", 3 "Uint32", 4
/// "Byte", 5 "Int16", 6 "Int32", 7 "Float", 8 "Double", 9 "String", 10 "Int64", 11 "Uint64", 12
/// "Boolean", 13 "DateTime", 14 "Null".
using VariantType = int;

// A dynamically typed scalar: at most one value of one of fourteen kinds, and which kind it is.
//
// Three emptinesses are distinct: type 0 means that no value was ever given, or that the object was
// cleared; type 14 is a value that says "null"; every other type carries data.
// An object belongs to one thread at a time. It owns its text; copies are deep, and there is no
// moving form. Text is stored, never parsed: Variant("42") is a String.
//     Variant v(3.7);
//     int whole = v.toInt32();            // 3
//     std::string text = v.toString();    // "3.7"
//
// Conversions exist twice, as a named member and as an operator that does the same. They never
// check a range and never throw, save std::bad_alloc where text is made, or where text is read as an
// integer under a global C++ locale that is not the classic one.
// NOLINTNEXTLINE(cppcoreguidelines-special-member-functions): a copy normalises, so moves are copies.
class UTILLIBRARY_EXPORT Variant {
public:
    // ---- construction: each like the `assign` of its argument, on an empty object

    Variant() noexcept;
    Variant(Variant const& other);
    // NOLINTBEGIN(google-explicit-constructor): a value may stand wherever a Variant is wanted.
    Variant(unsigned char value) noexcept;
    Variant(unsigned short value) noexcept;
    Variant(unsigned int value) noexcept;
    Variant(unsigned long value) noexcept;
    Variant(char value) noexcept;
    Variant(short value) noexcept;
    Variant(int value) noexcept;
    Variant(long value) noexcept;
    Variant(float value) noexcept;
    Variant(double value) noexcept;
    Variant(bool value) noexcept;
    Variant(wchar_t const* text);
    Variant(std::wstring const& text);
    Variant(char const* text);
    Variant(std::string const& text);
    Variant(xtime_t const& time) noexcept;
    // NOLINTEND(google-explicit-constructor)
    // Written out, for clang++ exports no defaulted one.
    // NOLINTNEXTLINE(modernize-use-equals-default)
    UTILLIBRARY_INLINE ~Variant() {}

    // ---- questions

    // Fails        never, where a line does not say otherwise.

    /// The type number, as above.
    VariantType type() const noexcept;
    /// Whether the type is 14.
    bool isNull() const noexcept;
    /// Whether the type is not 0; true for Null, which is a value. KEPT(null-has-value)
    bool hasValue() const noexcept;

    /// The type number of a name, compared whole and with its case.
    /// Takes    name: one of `typeNames`; it must not be null.
    /// Fails    with -1 for any other text.
    static VariantType typeName2Number(wchar_t const* name) noexcept;

    /// The name of a type number, in static storage.
    /// Fails    with a null pointer for a number outside 0 to 14.
    static wchar_t const* typeNumber2Name(int number) noexcept;

    // ---- changes

    /// Back to type 0, `uVal` all zero, `wText` empty. `timeVal`, `wTextAux` and `sbcText` are
    /// left, so that `toXtime_t` still gives an earlier time. KEPT(clear-keeps-time)
    /// Fails    never.
    /// Cost     keeps the text's memory for the next text.
    void clear() noexcept;

    /// Type 14, after `clear`.
    /// Fails    never.
    void makeNull() noexcept;

    /// Clears this object, stores the value in the low bytes of `uVal` at its own width, and sets
    /// the type that stands beside it. Bytes above that width are zero.
    /// Fails    never.
    void assign(unsigned char value) noexcept;   // 1
    void assign(unsigned short value) noexcept;  // 2
    void assign(unsigned int value) noexcept;    // 3
    void assign(unsigned long value) noexcept;   // 11
    void assign(char value) noexcept;            // 4, a signed number of 8 bits
    void assign(short value) noexcept;           // 5
    void assign(int value) noexcept;             // 6
    void assign(long value) noexcept;            // 10
    void assign(float value) noexcept;           // 7
    void assign(double value) noexcept;          // 8
    void assign(bool value) noexcept;            // 12, as one byte 0 or 1

    /// Clears this object, stores the characters up to the terminating zero, and sets type 9.
    /// Takes    text: not null; a pointer into this object's own `wText`, or into what is left of
    ///          an earlier text there, finds it emptied already.
    /// Fails    with std::bad_alloc; this object is cleared then.
    void assign(wchar_t const* text);
    /// The same for the whole text, zero characters included.
    void assign(std::wstring const& text);

    /// Clears this object, widens each byte up to the terminating zero, and sets type 9. A byte is
    /// widened by its sign, 0xE9 to the character -23, without any decoding.
    /// KEPT(bytes-widen-by-sign)
    /// Fails    with std::logic_error "basic_string::_M_construct null not valid" for null, or with
    ///          std::bad_alloc; this object is cleared then.
    void assign(char const* text);
    /// The same for `text.c_str()`, so that the first zero byte ends the text.
    /// KEPT(text-ends-at-zero-byte)
    void assign(std::string const& text);

    /// Clears this object, stores the time in `timeVal` as it is and its OpenVMS time, in seconds,
    /// as a double in `uVal`, and sets type 13.
    /// Fails    never.
    void assign(xtime_t const& time) noexcept;

    /// Clears this object, then copies type, `uVal`, `wText`, `wTextAux` and `timeVal`, in this
    /// order; not `sbcText`. The time goes through `putNanoseconds`, so a copy normalises it.
    /// KEPT(copy-normalises-time) Assigned to itself, an object ends empty, with type 0: it was
    /// cleared before it was read. KEPT(self-assignment-empties)
    /// Fails    with std::bad_alloc, beside the source's type and `uVal` and an empty or full text.
    void assign(Variant const& other);

    /// Copies the source's whole 8-byte slot; this object's type stays, and reads its width of it.
    /// Fails    never.
    void copyUVal(Variant const& other) noexcept;

    /// Each like the `assign` of its argument. There is none for text objects: they come in through
    /// a temporary Variant, whose unset time and empty `wTextAux` come along; `assign` is better.
    Variant& operator=(wchar_t const* text);
    Variant& operator=(char const* text);
    Variant& operator=(float value) noexcept;
    Variant& operator=(double value) noexcept;
    Variant& operator=(char value) noexcept;
    Variant& operator=(short value) noexcept;
    Variant& operator=(int value) noexcept;
    Variant& operator=(long const& value) noexcept;
    Variant& operator=(Variant const& other);
    Variant& operator=(bool value) noexcept;
    Variant& operator=(unsigned char value) noexcept;
    Variant& operator=(unsigned short value) noexcept;
    Variant& operator=(unsigned int value) noexcept;
    Variant& operator=(unsigned long const& value) noexcept;
    Variant& operator=(xtime_t const& time) noexcept;

    // ---- numbers
    //
    // What an integer of N bits reads, by type:
    //   integers   the value, its low N bits: toInt16 of 40000 is -25536
    //   Boolean    0 or 1; a stored byte other than 0 counts as 1
    //   Float, Double, DateTime (OpenVMS seconds)
    //              cut toward zero. To 8 and 16 bits and to int: as a 32-bit integer, its low N
    //              bits KEPT(small-integers-through-int32); to unsigned int: as a 64-bit integer,
    //              its low 32 bits; to long: as a 64-bit integer; to unsigned long: the same, but
    //              from 2^63 on the value less 2^63 with the top bit set.
    //              KEPT(uint64-from-floating) NaN and what does not fit is the most negative number
    //              of the 32 or 64 bits.
    //   String     formatted extraction of a long under the global C++ locale, in base ten: blanks
    //              and a sign first, then digits; the rest is ignored. No digits give 0; beyond 64
    //              bits the nearer end counts, for unsigned long too. KEPT(text-is-read-as-int64)
    //              Then its low N bits.
    //   Null       0
    //   no value (type 0, or a number outside 0 to 14)
    //              0, after one line on standard output:
    //              "com::halvorin::utility::Variant::convert:: Failed to convert data type because
    //              type is not supported", without the break that it has here, and flushed. The
    //              namespace in it is spelled so. KEPT(message-says-utility) It goes to std::cout
    //              without a lock: threads that may meet it need that stream synchronised with
    //              stdio, as it is unless a host says otherwise.
    // Fails        as the class says.

    unsigned char toUbyte() const;
    char toByte() const;
    short toInt16() const;
    unsigned short toUint16() const;
    int toInt32() const;
    unsigned int toUint32() const;
    long toInt64() const;
    unsigned long toUint64() const;

    /// Integers, Boolean and floating values as the nearest double; a DateTime as OpenVMS seconds;
    /// a String as `wcstod` reads it under the C locale. Null and no value as the integers have it.
    double toDouble() const;
    /// The same as the nearest float: straight from an integer, by way of double from a String.
    float toFloat() const;

    /// Whether a number or a DateTime's OpenVMS seconds are not zero (NaN is not). A String is
    /// judged by its first character, Y y T t for true and F f N n for false, and any other text by
    /// whether `wcstol` in base ten finds a number other than 0 under the C locale.
    /// KEPT(first-letter-decides) Null and no value as the integers have it.
    bool toBool() const;

    /// The time in `timeVal`, whatever the type: one that was cleared, or given another value,
    /// still gives its earlier time. KEPT(time-whatever-the-type)
    xtime_t toXtime_t() const noexcept;

    // NOLINTBEGIN(google-explicit-constructor): hosts write `int n = variant;`.
    operator unsigned char() const;
    operator char() const;
    operator short() const;
    operator unsigned short() const;
    operator int() const;
    operator unsigned int() const;
    operator long() const;
    operator unsigned long() const;
    operator float() const;
    operator double() const;
    operator bool() const;
    operator xtime_t() const noexcept;
    // NOLINTEND(google-explicit-constructor)

    // ---- comparison: -1, 0 or 1 for the first below, equal to or above the second

    /// Compares with a tolerance relative to b: by a / b - 1 against the threshold.
    /// Gives    0 for two zeros. Zero is below every other number, negative ones and NaN included.
    ///          KEPT(zero-is-below-all) Otherwise the ratio decides, not the sign: two negative
    ///          numbers compare reversed, and opposite signs give -1 either way.
    ///          KEPT(comparison-follows-the-ratio) A NaN beside anything but zero gives 0.
    /// Fails    never.
    static int compareDoublesHelper(double a, double b, double threshold) noexcept;
    /// With DBL_THRESHOLD.
    static int compareDoubles(double a, double b) noexcept;
    /// Both as doubles, with FLT_THRESHOLD.
    static int compareFloats(float a, float b) noexcept;

    // ---- text
    //
    // By type: "unknown" and "null"; UnsignedByte, Byte, Int16, Uint16 and Int32 in decimal; Uint32
    // as if it were signed, so 3000000000 reads "-1294967296" KEPT(uint32-prints-signed); Boolean
    // "1" or "0"; Float, Double, Int64 and Uint64 as a double of six significant digits, so the
    // Int64 123456789 reads "1.23457e+08" KEPT(int64-prints-as-double); a DateTime as
    // `timeVal.toString(true, 0, "")` widened by sign; a String itself. Numbers follow the global
    // C++ locale, as they do in a wide stream.
    //
    // A type outside 0 to 14 gives the empty text, and a report: "Variant::convertToString", level
    // 3, "Cannot convert unknown type", 0x80004005.
    //
    // localeId is accepted and ignored; the entries without one are as with 1033.
    // KEPT(locale-id-is-ignored)
    //
    // Fails        with std::bad_alloc, never with a text cut short; `sbcText` stays then.

    std::wstring convertToString(unsigned int localeId) const;
    /// Narrowed: each character's low 8 bits, so U+20AC becomes 0xAC. KEPT(low-eight-bits)
    std::string convertToStringSBC(unsigned int localeId) const;
    std::wstring toString(unsigned int localeId) const;
    std::string toStringSBC(unsigned int localeId) const;
    std::string toString() const;

    /// `toString()` kept in `sbcText`. The pointer is good until the next call of this operator on
    /// this object, or the object's end; a change of value leaves the text as it was.
    // NOLINTNEXTLINE(google-explicit-constructor)
    operator char const*() const;

    // ---- constants

    /// The names of the types 1 to 14, then that of 0, then a null pointer.
    static wchar_t const* const typeNames[16];
    /// The numbers of those names, entry by entry; -1 beside the null pointer.
    static int const typeNumbers[16];
    /// The tolerances of `compareFloats`, 1e-06, and of `compareDoubles`, 1e-12.
    static double const FLT_THRESHOLD;
    static double const DBL_THRESHOLD;

    // ---- the value

    // Eight bytes; the value stands in the low ones at its own width, and the others are zero.
    union Slot {
        unsigned long asUint64;
        unsigned char asUbyte;
        unsigned short asUint16;
        unsigned int asUint32;
        char asByte;
        short asInt16;
        int asInt32;
        long asInt64;
        float asFloat;
        double asDouble;
        bool asBool;
    };

    VariantType dataType;         // 0..14
    Slot uVal;                    // numbers, Boolean; a DateTime's OpenVMS seconds
    xtime_t timeVal;              // a DateTime as it was given
    std::wstring wText;           // a String
    std::wstring wTextAux;        // copied by `assign(Variant const&)`, otherwise unused
    mutable std::string sbcText;  // what `operator char const*` points into
};

}  // namespace com::halvorin::datatypes
