#pragma once

#include <utillibrary/export.h>

// Arithmetic that wraps at 64 bits. The language leaves the overflow of a signed sum undefined, so
// sums that may overflow are computed in unsigned numbers, here and nowhere else.
// (The inline members of the public header xtime.h are the one exception: they cannot include
// this.)
namespace com::halvorin::internal {

/// The unsigned number with the same bits.
constexpr unsigned int asUnsigned(int value) noexcept { return static_cast<unsigned int>(value); }

/// The unsigned number with the same bits.
constexpr unsigned long asUnsigned(long value) noexcept {
    return static_cast<unsigned long>(value);
}

/// The signed number with the same bits.
constexpr long asSigned(unsigned long value) noexcept { return static_cast<long>(value); }

/// left + right; above LONG_MAX it goes on from LONG_MIN, and the other way round.
UTILLIBRARY_WRAPS constexpr long wrappingSum(long left, long right) noexcept {
    return asSigned(asUnsigned(left) + asUnsigned(right));
}

/// left - right, in the same way. As an unsigned number it is the exact distance from `right` up to
/// a `left` that is not below it.
UTILLIBRARY_WRAPS constexpr long wrappingDifference(long left, long right) noexcept {
    return asSigned(asUnsigned(left) - asUnsigned(right));
}

/// left * right, in the same way.
UTILLIBRARY_WRAPS constexpr long wrappingProduct(long left, long right) noexcept {
    return asSigned(asUnsigned(left) * asUnsigned(right));
}

}  // namespace com::halvorin::internal
