#pragma once

#include <climits>

// Floating values as integers, written out once: the language leaves a value that does not fit
// undefined, and processors differ in what they make of it. Here it becomes the most negative
// number of the width, on every processor. A value fits when its whole part does.
namespace com::halvorin::internal {

constexpr int truncateToInt32(double value) noexcept {
    bool const fits = value > -2147483649.0 && value < 2147483648.0;
    return fits ? static_cast<int>(value) : INT_MIN;
}

constexpr long truncateToInt64(double value) noexcept {
    bool const fits = value >= -0x1p63 && value < 0x1p63;
    return fits ? static_cast<long>(value) : LONG_MIN;
}

/// From 2^63 on, the value less 2^63 with the top bit set; so 2^64 and all above give 2^63. Below,
/// negative values and NaN included, the bits of the signed result. KEPT(uint64-from-floating)
constexpr unsigned long truncateToUint64(double value) noexcept {
    constexpr unsigned long TOP_BIT = 1UL << 63;
    if (value < 0x1p63) return static_cast<unsigned long>(truncateToInt64(value));
    return static_cast<unsigned long>(truncateToInt64(value - 0x1p63)) | TOP_BIT;
}

/// The low half of the signed 64-bit result, so that 3e9 is itself.
constexpr unsigned int truncateToUint32(double value) noexcept {
    return static_cast<unsigned int>(truncateToInt64(value));
}

}  // namespace com::halvorin::internal
