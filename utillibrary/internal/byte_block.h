#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

// Many bytes looked at together: sixteen by the vectors that gcc and clang have for every
// processor, eight in a word.
namespace com::halvorin::internal {

/// Sixteen bytes. Operators work on each of them; a comparison gives 0xFF for true and 0 for false.
using Bytes = unsigned char __attribute__((vector_size(16)));
using Halves = std::uint64_t __attribute__((vector_size(16)));

inline Bytes loadBytes(void const* from) noexcept {
    Bytes bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    return bytes;
}

/// Compares each byte with one; the result of a comparison is made bytes again.
inline Bytes equal(Bytes bytes, char wanted) noexcept {
    return std::bit_cast<Bytes>(bytes == static_cast<unsigned char>(wanted));
}

/// Whether each byte, as a character code, lies between two others or equals one of them.
inline Bytes between(Bytes bytes, char first, char last) noexcept {
    auto const offset = static_cast<unsigned char>(first);
    auto const width = static_cast<unsigned char>(last - first);
    return std::bit_cast<Bytes>(bytes - offset <= width);
}

/// Every second byte of two vectors, from the first on.
inline Bytes evenBytes(Bytes left, Bytes right) noexcept {
    return __builtin_shufflevector(left, right, 0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26,
                                   28, 30);
}

/// Whether any bit is set.
inline bool any(Bytes bytes) noexcept {
    auto const halves = std::bit_cast<Halves>(bytes);
    return (halves[0] | halves[1]) != 0;
}

constexpr std::uint64_t everyByte(unsigned char byte) noexcept {
    return std::uint64_t{0x0101010101010101} * byte;
}

/// The sum of the sixteen bytes.
inline std::size_t sum(Bytes bytes) noexcept {
    constexpr std::uint64_t EVERY_SECOND_BYTE = 0x00FF00FF00FF00FF;
    auto const halves = std::bit_cast<Halves>(bytes);
    auto const even = halves & EVERY_SECOND_BYTE;
    auto const odd = halves >> 8 & EVERY_SECOND_BYTE;
    auto const pairs = even + odd;  // each at most 510
    return (pairs[0] + pairs[1]) * 0x0001000100010001 >> 48;
}

/// One bit a byte of what a comparison gave, the first byte's lowest.
inline std::uint64_t bitsOf(Bytes compared) noexcept {
#ifdef __SSE2__
    using Chars = char __attribute__((vector_size(16)));
    return static_cast<unsigned>(__builtin_ia32_pmovmskb128(std::bit_cast<Chars>(compared)));
#else
    // The factor moves the bit of byte i to bit 56 + i; no two of its partial products meet, so
    // nothing is carried.
    constexpr std::uint64_t GATHER = 0x0102040810204080;
    auto const halves = std::bit_cast<Halves>(compared) & everyByte(1);
    return (halves[0] * GATHER >> 56) | (halves[1] * GATHER >> 56 << 8);
#endif
}

/// A bit in the top of the first byte that equals the wanted one; bytes above it may have one too,
/// and without such a byte there is none.
inline std::uint64_t firstEqual(std::uint64_t word, char wanted) noexcept {
    std::uint64_t const differences = word ^ everyByte(static_cast<unsigned char>(wanted));
    return (differences - everyByte(1)) & ~differences & everyByte(0x80);
}
static_assert(std::endian::native == std::endian::little);

}  // namespace com::halvorin::internal
