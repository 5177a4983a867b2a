#pragma once

#include <cstddef>
#include <optional>

#include "utillibrary/internal/byte_block.h"
#include "utillibrary/internal/byte_class.h"

// How iequals compares.
namespace com::halvorin::internal {

/// General path: compares the lower case of `size` bytes under the C locale.
inline bool equalByTable(LowerCase lower, char const* left, char const* right,
                         std::size_t size) noexcept {
    for (std::size_t i = 0; i < size; ++i) {
        if (lower(left[i]) != lower(right[i])) return false;
    }
    return true;
}

/// True if the lower case of each letter from A to Z is its small letter. In Turkish locales the
/// lower case of I is another letter, which has no dot.
inline bool pairsLetters(LowerCase lower) noexcept {
    int differences = 0;
    for (int i = 0; i < 26; ++i) {
        differences |= lower(static_cast<char>('A' + i)) ^ lower(static_cast<char>('a' + i));
    }
    return differences == 0;
}

/// The bytes with ASCII's capital letters as small ones.
inline Bytes withoutCase(Bytes bytes) noexcept { return bytes | (between(bytes, 'A', 'Z') & 0x20); }

/// Fast path: answers if each of sixteen bytes is the same on both sides, or the same letter of
/// ASCII in the other case. Then they are equal under every locale for which `pairsLetters` is
/// true. Declines all others, which may be equal as well.
inline std::optional<bool> equalByLetters(char const* left, char const* right) noexcept {
    if (any(withoutCase(loadBytes(left)) ^ withoutCase(loadBytes(right)))) return std::nullopt;
    return true;
}

}  // namespace com::halvorin::internal
