#pragma once

#include <utillibrary/export.h>

// Signed arithmetic that wraps at 64 bits. The overflow of a signed sum is undefined, so sums that
// may overflow are computed in unsigned numbers. All sources use these functions. Only the inline
// members of xtime.h write the conversions out, because a public header cannot include this one.
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

/// left - right, in the same way. If `left` is not below `right`, the result as an unsigned number
/// is their exact distance.
UTILLIBRARY_WRAPS constexpr long wrappingDifference(long left, long right) noexcept {
    return asSigned(asUnsigned(left) - asUnsigned(right));
}

/// left * right, in the same way.
UTILLIBRARY_WRAPS constexpr long wrappingProduct(long left, long right) noexcept {
    return asSigned(asUnsigned(left) * asUnsigned(right));
}

}  // namespace com::halvorin::internal
