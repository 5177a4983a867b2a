#pragma once

#include <bit>
#include <climits>

// Floating values as integers by the bits of their formats alone: a whole number is a mantissa
// shifted by an exponent, and nothing here computes with floating values.
namespace testing_support {

/// The whole part of a floating value without its sign, where that is below 2^64.
struct WholePart {
    bool negative;
    bool fits;  // false for infinities and NaN, too
    unsigned long magnitude;
};

/// Takes  mantissa: with its leading one; exponent: that of the mantissa's last bit
constexpr WholePart shifted(bool negative, unsigned long mantissa, int exponent) noexcept {
    if (exponent >= 0) {
        bool const fits = static_cast<int>(std::bit_width(mantissa)) + exponent <= 64;
        return {negative, fits, fits ? mantissa << exponent : 0};
    }
    return {negative, true, exponent > -64 ? mantissa >> -exponent : 0};
}

constexpr WholePart wholePartOf(float value) noexcept {
    auto const bits = std::bit_cast<unsigned int>(value);
    bool const negative = bits >> 31 != 0;
    auto const exponent = static_cast<int>(bits >> 23 & 0xFF);
    unsigned long const fraction = bits & 0x7FFFFF;
    if (exponent == 0xFF) return {negative, false, 0};
    if (exponent == 0) return {negative, true, 0};  // far below one
    return shifted(negative, fraction | 0x800000, exponent - 150);
}

constexpr WholePart wholePartOf(double value) noexcept {
    auto const bits = std::bit_cast<unsigned long>(value);
    bool const negative = bits >> 63 != 0;
    auto const exponent = static_cast<int>(bits >> 52 & 0x7FF);
    unsigned long const fraction = bits & 0xFFFFFFFFFFFFF;
    if (exponent == 0x7FF) return {negative, false, 0};
    if (exponent == 0) return {negative, true, 0};
    return shifted(negative, fraction | 0x10000000000000, exponent - 1075);
}

/// A whole part as a signed number of so many bits, the most negative one if it does not fit.
constexpr long signedNumber(WholePart whole, int bits) noexcept {
    unsigned long const end = 1UL << (bits - 1);
    bool const fits = whole.fits && whole.magnitude < (whole.negative ? end + 1 : end);
    // -2^63 has no positive counterpart.
    if (!fits || whole.magnitude == end) return bits == 64 ? LONG_MIN : -static_cast<long>(end);
    auto const magnitude = static_cast<long>(whole.magnitude);
    return whole.negative ? -magnitude : magnitude;
}

/// A whole part as an unsigned number of 64 bits: the bits of the signed one, and from 2^63 on the
/// number itself; 2^63 where it does not fit.
constexpr unsigned long unsignedNumber(WholePart whole) noexcept {
    if (whole.fits && !whole.negative) return whole.magnitude;
    return static_cast<unsigned long>(signedNumber(whole, 64));
}

}  // namespace testing_support
