#pragma once

#include <cstring>
#include <string>
#include <string_view>

#include "utillibrary/datatypes/Variant.h"

// What the sources of Variant share: the list of the types, the one way to read a value, and the
// one way to widen a string.
namespace com::halvorin::internal {

// The types, in the order of `Variant::typeNames`: the constant of this library, the number, the
// name that hosts see. The enumeration, both public tables and both lookups are made from this
// list.
//
// Adding a type:
// 1. Add a line to this list. The compiler then rejects the array sizes and `visitValue`.
// 2. Raise the two array sizes in Variant.h; add the constructor, `assign` and `operator=` there.
// 3. Add a case to `visitValue`. A new class of value is then missing in TextWriter and `readAs`.
// 4. Add rows to the tables of tests/Variant*_test.cpp, and to the tables in Variant.h.
// NOLINTNEXTLINE(cppcoreguidelines-macro-usage): one list that declares constants and fills arrays.
#define UTILLIBRARY_VARIANT_TYPES(TYPE)     \
    TYPE(UNSIGNED_BYTE, 1, L"UnsignedByte") \
    TYPE(UINT16, 2, L"Uint16")              \
    TYPE(UINT32, 3, L"Uint32")              \
    TYPE(BYTE, 4, L"Byte")                  \
    TYPE(INT16, 5, L"Int16")                \
    TYPE(INT32, 6, L"Int32")                \
    TYPE(FLOAT, 7, L"Float")                \
    TYPE(DOUBLE, 8, L"Double")              \
    TYPE(STRING, 9, L"String")              \
    TYPE(INT64, 10, L"Int64")               \
    TYPE(UINT64, 11, L"Uint64")             \
    TYPE(BOOLEAN, 12, L"Boolean")           \
    TYPE(DATE_TIME, 13, L"DateTime")        \
    TYPE(NULL_VALUE, 14, L"Null")           \
    TYPE(UNKNOWN, 0, L"Unknown")

// NOLINTNEXTLINE(cppcoreguidelines-macro-usage): a column of that list.
#define UTILLIBRARY_CONSTANT(constant, number, name) constant = (number),
enum TypeNumber : datatypes::VariantType { UTILLIBRARY_VARIANT_TYPES(UTILLIBRARY_CONSTANT) };
#undef UTILLIBRARY_CONSTANT

// `char` is a signed number here, also on platforms where the compiler's own is not.
using Byte = signed char;

// The low bytes of the slot as a value. They are copied, because a host may set the type without
// the slot: any bytes give a value. `storedBoolean` reads a byte, because not every byte is a bool.
template <typename T>
T stored(datatypes::Variant const& variant) noexcept {
    T value;
    std::memcpy(&value, &variant.uVal, sizeof value);
    return value;
}

inline bool storedBoolean(datatypes::Variant const& variant) noexcept {
    return stored<unsigned char>(variant) != 0;
}

// What a visitor gets if the value is neither a number nor a string.
struct NoValue {};          // type 0
struct NullValue {};        // type 14
struct UnsupportedType {};  // a number outside 0 to 14
struct DateTime {
    datatypes::Variant const& variant;

    double vmsSeconds() const noexcept { return stored<double>(variant); }
};

// Calls the visitor with the value in its own type: an integer, a bool, a float, a double, a
// std::wstring, or one of the structures above. The switch has no default, so that the compiler
// warns of a type in the list that has no case here.
template <typename Visitor>
auto visitValue(datatypes::Variant const& variant, Visitor const& visit) {
    switch (static_cast<TypeNumber>(variant.dataType)) {
        case UNKNOWN:
            return visit(NoValue());
        case UNSIGNED_BYTE:
            return visit(stored<unsigned char>(variant));
        case UINT16:
            return visit(stored<unsigned short>(variant));
        case UINT32:
            return visit(stored<unsigned int>(variant));
        case BYTE:
            return visit(stored<Byte>(variant));
        case INT16:
            return visit(stored<short>(variant));
        case INT32:
            return visit(stored<int>(variant));
        case FLOAT:
            return visit(stored<float>(variant));
        case DOUBLE:
            return visit(stored<double>(variant));
        case STRING:
            return visit(variant.wText);
        case INT64:
            return visit(stored<long>(variant));
        case UINT64:
            return visit(stored<unsigned long>(variant));
        case BOOLEAN:
            return visit(storedBoolean(variant));
        case DATE_TIME:
            return visit(DateTime{variant});
        case NULL_VALUE:
            return visit(NullValue());
    }
    return visit(UnsupportedType());
}

// Each byte widened by its sign. KEPT(bytes-widen-by-sign): no decoding; every byte becomes one
// character. A string that is made from a range is not filled with zeros first.
inline std::wstring widened(std::string_view bytes) {
    void const* const start = bytes.data();
    auto const* const first = static_cast<Byte const*>(start);
    return {first, first + bytes.size()};
}

}  // namespace com::halvorin::internal
