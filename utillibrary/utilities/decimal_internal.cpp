#include "utillibrary/utilities/decimal_internal.h"

#include <bit>
#include <charconv>
#include <cstdint>

namespace com::halvorin::internal {

namespace {

__extension__ using Wide = unsigned __int128;

constexpr int DIGITS = 6;
constexpr unsigned SMALLEST_COEFFICIENT = 100'000;  // six digits
constexpr unsigned LARGEST_COEFFICIENT = 999'999;

constexpr int MANTISSA_BITS = 52;
constexpr int EXPONENT_BIAS = 1023 + MANTISSA_BITS;

// value = coefficient * 10^(exponent - 5), the coefficient having six digits.
struct SixDigits {
    unsigned coefficient;
    int exponent;
};

template <std::size_t SIZE>
constexpr std::array<std::uint64_t, SIZE> powersOf(std::uint64_t base) noexcept {
    std::array<std::uint64_t, SIZE> table{};
    table[0] = 1;
    for (std::size_t i = 1; i < SIZE; ++i)
        table[i] = table[i - 1] * base;
    return table;
}

// As many as are asked for below.
constexpr auto POWERS_OF_FIVE = powersOf<23>(5);
constexpr auto POWERS_OF_TEN = powersOf<18>(10);

// Rounds a quotient of six digits by what was cut off, halves to even; 999999.5 has seven digits.
SixDigits roundedUpIf(bool up, std::uint64_t coefficient, int exponent) noexcept {
    auto const rounded = static_cast<unsigned>(coefficient) + (up ? 1U : 0U);
    if (rounded > LARGEST_COEFFICIENT) return {SMALLEST_COEFFICIENT, exponent + 1};
    return {rounded, exponent};
}

// m * 2^e below 10^6 and from 10^-16 on, from its binary form.
//
// With k = 5 - x, x being its decimal exponent, the coefficient is m * 5^k * 2^(k + e) rounded. The
// product has at most 53 + 52 bits, so it is exact, and the bits that the shift drops decide the
// rounding without error. x is estimated from the binary exponent: never too large, and at most one
// too small; then the quotient has a seventh digit, which joins what was dropped.
SixDigits scaledUp(std::uint64_t mantissa, int exponent) noexcept {
    int const binaryExponent = exponent + MANTISSA_BITS;    // floor(log2(value))
    int decimalExponent = (binaryExponent * 315653) >> 20;  // * log10(2), rounded down
    int const power = DIGITS - 1 - decimalExponent;         // [0, 22]
    Wide const product =
        static_cast<Wide>(mantissa) * POWERS_OF_FIVE[static_cast<std::size_t>(power)];
    int const shift = -(power + exponent);  // [33, 84]
    auto quotient = static_cast<std::uint64_t>(product >> shift);
    Wide const dropped = product & ((static_cast<Wide>(1) << shift) - 1);
    Wide const half = static_cast<Wide>(1) << (shift - 1);

    if (quotient <= LARGEST_COEFFICIENT) {
        bool const up = dropped > half || (dropped == half && quotient % 2 != 0);
        return roundedUpIf(up, quotient, decimalExponent);
    }
    ++decimalExponent;
    auto const last = static_cast<unsigned>(quotient % 10);
    quotient /= 10;
    bool const tie = last == 5 && dropped == 0;
    bool const up = tie ? quotient % 2 != 0 : last >= 5;
    return roundedUpIf(up, quotient, decimalExponent);
}

// 10^6 to below 10^17: the whole part divided once; the fraction can only break a tie upwards.
SixDigits scaledDown(double value) noexcept {
    auto const whole = static_cast<std::uint64_t>(value);
    bool const hasFraction = static_cast<double>(whole) != value;
    // The binary digits tell the decimal ones but for the last: 1233 / 4096 is log10(2), and the
    // error stays below one digit.
    auto const estimate = static_cast<std::size_t>(std::bit_width(whole)) * 1233 >> 12;  // [6, 17]
    std::size_t const exponent = whole < POWERS_OF_TEN[estimate] ? estimate - 1 : estimate;
    std::uint64_t const divisor = POWERS_OF_TEN[exponent - (DIGITS - 1)];
    std::uint64_t const quotient = whole / divisor;
    std::uint64_t const rest = whole % divisor;
    std::uint64_t const half = divisor / 2;
    bool const up = rest > half || (rest == half && (hasFraction || quotient % 2 != 0));
    return roundedUpIf(up, quotient, static_cast<int>(exponent));
}

// Up to eight characters, the first in the lowest byte: they are shifted and stored whole, so that
// no copy waits for the bytes before it.
using Characters = std::uint64_t;
static_assert(std::endian::native == std::endian::little);

constexpr Characters ZEROS = 0x303030303030;  // "000000"

Characters twoDigits(unsigned value) noexcept {
    std::uint16_t pair = 0;
    std::memcpy(&pair, &TWO_DIGITS[2 * static_cast<std::size_t>(value)], sizeof pair);
    return pair;
}

// Stores all eight, of which the first `count` are meant.
char* put(char* out, Characters characters, int count) noexcept {
    std::memcpy(out, &characters, sizeof characters);
    return out + count;
}

char* writeExponent(char* out, int exponent) noexcept {
    *out++ = 'e';
    *out++ = exponent < 0 ? '-' : '+';
    return writeTwoDigits(out, static_cast<unsigned>(exponent < 0 ? -exponent : exponent));
}

// As "%g" lays them out: fixed from 10^-4 to below 10^6, else with an exponent; no trailing zeros.
char* layOut(char* out, SixDigits value) noexcept {
    Characters const digits = twoDigits(value.coefficient / 10000) |
                              twoDigits(value.coefficient / 100 % 100) << 16 |
                              twoDigits(value.coefficient % 100) << 32;
    // Up to the last that is not "0", which the first one never is.
    int const count = (static_cast<int>(std::bit_width(digits ^ ZEROS)) + 7) / 8;

    bool const fixed = value.exponent >= -4 && value.exponent < DIGITS;
    if (fixed && value.exponent < 0) {
        constexpr Characters LEADING = 0x3030302E30;  // "0.000"
        return put(put(out, LEADING, 1 - value.exponent), digits, count);
    }
    int const wholeDigits = fixed ? value.exponent + 1 : 1;
    out = put(out, digits, wholeDigits);  // trailing zeros of the whole part stay
    if (count > wholeDigits) {
        *out++ = '.';
        out = put(out, digits >> (8 * wholeDigits), count - wholeDigits);
    }
    return fixed ? out : writeExponent(out, value.exponent);
}

}  // namespace

char* writeGeneral(char* out, double value) noexcept {
    auto const bits = std::bit_cast<std::uint64_t>(value);
    auto const magnitude = std::bit_cast<double>(bits & ~(1ULL << 63));
    if (magnitude == 0 || (magnitude >= 1e-16 && magnitude < 1e17)) {
        if (bits >> 63 != 0) *out++ = '-';
        if (magnitude == 0) {
            *out++ = '0';
            return out;
        }
        if (magnitude >= 1e6) return layOut(out, scaledDown(magnitude));
        auto const exponent = static_cast<int>(bits >> MANTISSA_BITS & 0x7FF) - EXPONENT_BIAS;
        std::uint64_t const mantissa =
            (bits & ((1ULL << MANTISSA_BITS) - 1)) | (1ULL << MANTISSA_BITS);
        return layOut(out, scaledUp(mantissa, exponent));
    }
    // The rest of the range, infinities and NaN: exact too, and three times as long.
    return std::to_chars(out, out + GENERAL_SIZE, value, std::chars_format::general, DIGITS).ptr;
}

}  // namespace com::halvorin::internal
