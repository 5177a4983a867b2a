#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <utillibrary/export.h>

// Sixteen bytes at once, by the vector types that gcc and clang have for every processor.
namespace com::halvorin::internal {

/// Sixteen bytes. Operators work on each of them; a comparison gives 0xFF for true and 0 for false.
using Bytes = unsigned char __attribute__((vector_size(16)));
using Halves = std::uint64_t __attribute__((vector_size(16)));

inline Bytes loadBytes(void const* from) noexcept {
    Bytes bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    return bytes;
}

/// Compares each byte with one.
inline Bytes equal(Bytes bytes, char wanted) noexcept {
    return std::bit_cast<Bytes>(bytes == static_cast<unsigned char>(wanted));
}

/// The same for a single byte, so that one template serves blocks and single bytes.
constexpr unsigned char equal(unsigned char byte, char wanted) noexcept {
    return byte == static_cast<unsigned char>(wanted) ? 0xFF : 0;
}

/// Compares each byte, as a character code, with a range that includes both ends.
inline Bytes between(Bytes bytes, char first, char last) noexcept {
    auto const offset = static_cast<unsigned char>(first);
    auto const width = static_cast<unsigned char>(last - first);
    return std::bit_cast<Bytes>(bytes - offset <= width);
}

/// The same for a single byte.
constexpr unsigned char between(unsigned char byte, char first, char last) noexcept {
    auto const offset = static_cast<unsigned char>(first);
    auto const width = static_cast<unsigned char>(last - first);
    return static_cast<unsigned char>(byte - offset) <= width ? 0xFF : 0;
}

/// Every second byte of two blocks: the first, the third and so on.
inline Bytes evenBytes(Bytes left, Bytes right) noexcept {
    return __builtin_shufflevector(left, right, 0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26,
                                   28, 30);
}

/// True if any bit is set.
inline bool any(Bytes bytes) noexcept {
    auto const halves = std::bit_cast<Halves>(bytes);
    return (halves[0] | halves[1]) != 0;
}

/// The sum of the sixteen bytes.
UTILLIBRARY_WRAPS inline std::size_t sum(Bytes bytes) noexcept {
    constexpr std::uint64_t EVERY_SECOND_BYTE = 0x00FF00FF00FF00FF;
    auto const halves = std::bit_cast<Halves>(bytes);
    auto const even = halves & EVERY_SECOND_BYTE;
    auto const odd = halves >> 8 & EVERY_SECOND_BYTE;
    auto const pairs = even + odd;  // each at most 510
    return (pairs[0] + pairs[1]) * 0x0001000100010001 >> 48;
}

/// The result of a comparison as one bit for each byte; the first byte has the lowest bit.
inline std::uint64_t bitsOf(Bytes compared) noexcept {
#ifdef __SSE2__
    using Chars = char __attribute__((vector_size(16)));
    return static_cast<unsigned>(__builtin_ia32_pmovmskb128(std::bit_cast<Chars>(compared)));
#else
    // The factor moves the bit of byte i to bit 56 + i. No two partial products have a bit in the
    // same place, so nothing is carried.
    static_assert(std::endian::native == std::endian::little);
    constexpr std::uint64_t LOWEST_BITS = 0x0101010101010101;
    constexpr std::uint64_t GATHER = 0x0102040810204080;
    auto const halves = std::bit_cast<Halves>(compared) & LOWEST_BITS;
    return (halves[0] * GATHER >> 56) | (halves[1] * GATHER >> 56 << 8);
#endif
}

}  // namespace com::halvorin::internal
