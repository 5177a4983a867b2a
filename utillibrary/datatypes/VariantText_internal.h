#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "utillibrary/internal/decimal.h"
#include "utillibrary/internal/locale.h"
#include "utillibrary/internal/rounding.h"

// How VariantText.cpp writes a number. A Variant inserts every number as one of these three types.
namespace com::halvorin::internal {

// The general path: inserts the value into a new wide stream, and returns the stream's string. If a
// facet of the host throws, sets badbit or fails its iterator, the result is the characters so far.
// Throws std::bad_alloc.
std::wstring insertIntoStream(int value);
std::wstring insertIntoStream(double value);
std::wstring insertIntoStream(bool value);

// The bytes that `writePlain` needs: as many as a double. An int takes up to 11.
inline constexpr std::size_t PLAIN_SIZE = GENERAL_SIZE;

// The fast path: writes the same characters without a stream, and returns their number. It answers
// for each value if the facets of the global locale are the standard library's own and write
// numbers as in the classic locale. A double also needs libc to round to the nearest, because the
// stream prints a double through libc.
inline std::optional<std::size_t> writePlain(char* out, int value) {
    if (!wideStreamsWritePlainNumbers()) return std::nullopt;
    return static_cast<std::size_t>(writeWhole(out, value) - out);
}

inline std::optional<std::size_t> writePlain(char* out, double value) {
    if (!wideStreamsWritePlainNumbers() || !decimalsRoundToNearest()) return std::nullopt;
    return static_cast<std::size_t>(writeGeneral(out, value) - out);
}

inline std::optional<std::size_t> writePlain(char* out, bool value) {
    if (!wideStreamsWritePlainNumbers()) return std::nullopt;
    *out = value ? '1' : '0';
    return 1;
}

}  // namespace com::halvorin::internal
