#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include <utillibrary/export.h>

// Powers of ten in 64 bits, and the product of a binary number and one of them. Conversions from
// binary to decimal and back both need this step.
namespace com::halvorin::internal {

__extension__ using Wide = unsigned __int128;

// The least power is the one that the least normal double is compared with. The largest power is
// the one that scales the least normal double to six digits.
inline constexpr int LEAST_POWER_OF_TEN = -307;
inline constexpr int LARGEST_POWER_OF_TEN = 313;

/// floor(log2(10^power)), for the powers above.
constexpr int binaryExponentOf(int power) noexcept { return (power * 217706) >> 16; }

/// The leading 64 bits of each power, rounded down; the highest bit is set. They are computed in
/// 128 bits by repeated * 5/4 or * 4/5. The rounding error never reaches the top 64 bits.
inline constexpr auto LEADING_BITS = [] {
    constexpr Wide TOP_BIT = static_cast<Wide>(1) << 127;
    std::array<std::uint64_t, LARGEST_POWER_OF_TEN - LEAST_POWER_OF_TEN + 1> table{};
    Wide bits = TOP_BIT;
    for (std::size_t i = -LEAST_POWER_OF_TEN; i < table.size(); ++i) {
        table[i] = static_cast<std::uint64_t>(bits >> 64);
        Wide const quarterMore = bits + bits / 4;
        bool const carried = quarterMore < bits;
        bits = carried ? quarterMore / 2 | TOP_BIT : quarterMore;
    }
    bits = TOP_BIT;
    for (std::size_t i = -LEAST_POWER_OF_TEN; i-- > 0;) {
        Wide const fifthLess = bits - bits / 5;
        bits = fifthLess < TOP_BIT ? fifthLess * 2 : fifthLess;
        table[i] = static_cast<std::uint64_t>(bits >> 64);
    }
    return table;
}();

constexpr std::uint64_t leadingBitsOf(int power) noexcept {
    return LEADING_BITS[static_cast<std::size_t>(power - LEAST_POWER_OF_TEN)];
}

static_assert(leadingBitsOf(0) == std::uint64_t{1} << 63);
static_assert(leadingBitsOf(-1) == 0xCCCCCCCCCCCCCCCC && binaryExponentOf(-1) == -4);
static_assert(leadingBitsOf(313) == 0xD94AD8B1C7380874 && binaryExponentOf(313) == 1039);
static_assert(leadingBitsOf(-307) == 0x8FD0C16206306BAB && binaryExponentOf(-307) == -1020);

/// The powers of ten that a double contains exactly, from 10^0 on: 5^22 is below 2^53. The first
/// eleven are exact in a float as well: 5^10 is below 2^24.
inline constexpr auto EXACT_POWERS_OF_TEN = [] {
    std::array<double, 23> table{};
    table[0] = 1;
    for (std::size_t i = 1; i < table.size(); ++i)
        table[i] = table[i - 1] * 10;
    return table;
}();
static_assert(EXACT_POWERS_OF_TEN.back() == 1e22);

/// bits * 2^exponent. The bits are rounded down, and too small by less than SCALED_ERROR.
struct Scaled {
    std::uint64_t bits;  // one of the two highest is set
    int exponent;
};

inline constexpr std::uint64_t SCALED_ERROR = 2;

/// mantissa * 2^exponent * 10^power.
/// Takes  mantissa: its highest bit is set; power: LEAST_POWER_OF_TEN to LARGEST_POWER_OF_TEN
constexpr Scaled scaled(std::uint64_t mantissa, int exponent, int power) noexcept {
    Wide const product = static_cast<Wide>(mantissa) * leadingBitsOf(power);
    return {static_cast<std::uint64_t>(product >> 64), exponent + binaryExponentOf(power) + 1};
}

/// True if the lowest `places` bits may be exactly half of the bit above them, or may be on the
/// other side of half than they seem.
/// Takes  bits: rounded down, and too small by less than `error`
UTILLIBRARY_WRAPS constexpr bool mayBeHalfway(std::uint64_t bits, int places,
                                              std::uint64_t error) noexcept {
    std::uint64_t const half = std::uint64_t{1} << (places - 1);
    std::uint64_t const cut = bits & (2 * half - 1);
    return half - cut < error;  // more than half gives a huge number
}

/// The number without its lowest `places` bits, rounded to the nearest. It is not halfway.
constexpr std::uint64_t rounded(std::uint64_t bits, int places) noexcept {
    return (bits >> places) + (bits >> (places - 1) & 1);
}

}  // namespace com::halvorin::internal
