#pragma once

#include <climits>

// Floating values to integers. In C++ a value that does not fit is undefined behaviour, and
// processors differ. Here such a value, and NaN, becomes the most negative number of the width on
// every processor. A value fits if its whole part fits.
namespace com::halvorin::internal {

constexpr int truncateToInt32(double value) noexcept {
    bool const fits = value > -2147483649.0 && value < 2147483648.0;
    return fits ? static_cast<int>(value) : INT_MIN;
}

constexpr long truncateToInt64(double value) noexcept {
    bool const fits = value >= -0x1p63 && value < 0x1p63;
    return fits ? static_cast<long>(value) : LONG_MIN;
}

/// KEPT(uint64-from-floating): not clamped. Values from -2^63 to below 2^64 give the low 64 bits of
/// the whole part, so -1.0 gives 2^64 - 1. All others, NaN included, give 2^63.
constexpr unsigned long truncateToUint64(double value) noexcept {
    constexpr unsigned long TOP_BIT = 1UL << 63;
    if (value < 0x1p63) return static_cast<unsigned long>(truncateToInt64(value));
    return static_cast<unsigned long>(truncateToInt64(value - 0x1p63)) | TOP_BIT;
}

/// The low 32 bits of the signed 64-bit result, so 3e9 gives 3000000000.
constexpr unsigned int truncateToUint32(double value) noexcept {
    return static_cast<unsigned int>(truncateToInt64(value));
}

}  // namespace com::halvorin::internal
