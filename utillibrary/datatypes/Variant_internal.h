#pragma once

#include <cstring>
#include <string>
#include <string_view>

#include "utillibrary/datatypes/Variant.h"

// What the sources of Variant share: the type numbers by name, and the one way to read the slot and
// to widen a text.
namespace com::halvorin::internal {

enum TypeNumber : datatypes::VariantType {
    UNKNOWN = 0,
    UNSIGNED_BYTE = 1,
    UINT16 = 2,
    UINT32 = 3,
    BYTE = 4,
    INT16 = 5,
    INT32 = 6,
    FLOAT = 7,
    DOUBLE = 8,
    STRING = 9,
    INT64 = 10,
    UINT64 = 11,
    BOOLEAN = 12,
    DATE_TIME = 13,
    NULL_VALUE = 14,
};

// `char` is a signed number here, on platforms whose own is not too.
using Byte = signed char;

// The low bytes of the slot as a value. Copied, since type and slot are both public and need not
// fit each other: any bytes give a value. A bool, which not every byte is, is read as a byte.
template <typename T>
T stored(datatypes::Variant const& variant) noexcept {
    T value;
    std::memcpy(&value, &variant.uVal, sizeof value);
    return value;
}

inline bool storedBoolean(datatypes::Variant const& variant) noexcept {
    return stored<unsigned char>(variant) != 0;
}

// Each byte widened by its sign. KEPT(bytes-widen-by-sign): no decoding; every byte is a character
// of its own. Made from a range, a text is not zeroed first.
inline std::wstring widened(std::string_view bytes) {
    void const* const start = bytes.data();
    auto const* const first = static_cast<Byte const*>(start);
    return {first, first + bytes.size()};
}

}  // namespace com::halvorin::internal
