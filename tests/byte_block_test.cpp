#include "utillibrary/internal/byte_block.h"

#include <array>
#include <bit>
#include <cstring>

#include <gtest/gtest.h>

using namespace com::halvorin::internal;

namespace {

using Array = std::array<unsigned char, sizeof(Bytes)>;

// The sixteen bytes from `first` on.
Array bytesFrom(unsigned first) {
    Array bytes;
    for (unsigned i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(first + i);
    return bytes;
}

Array asArray(Bytes bytes) { return std::bit_cast<Array>(bytes); }

TEST(ByteBlock, ComparesABlockAsItComparesEachByte) {
    for (unsigned first = 0; first < 256; first += 16) {
        Array const bytes = bytesFrom(first);
        Bytes const block = loadBytes(bytes.data());
        for (unsigned wanted = 0; wanted < 256; ++wanted) {
            auto const other = static_cast<char>(wanted);
            Array const equalBytes = asArray(equal(block, other));
            Array const low = asArray(between(block, '\0', other));
            Array const high = asArray(between(block, other, '\xFF'));
            for (unsigned i = 0; i < bytes.size(); ++i) {
                EXPECT_EQ(equalBytes[i], bytes[i] == wanted ? 0xFF : 0);
                EXPECT_EQ(low[i], bytes[i] <= wanted ? 0xFF : 0);
                EXPECT_EQ(high[i], bytes[i] >= wanted ? 0xFF : 0);
                EXPECT_EQ(equal(bytes[i], other), equalBytes[i]);
                EXPECT_EQ(between(bytes[i], '\0', other), low[i]);
                EXPECT_EQ(between(bytes[i], other, '\xFF'), high[i]);
            }
        }
    }
}

TEST(ByteBlock, TakesEverySecondByte) {
    Array const left = bytesFrom(0);
    Array const right = bytesFrom(16);
    EXPECT_EQ(asArray(evenBytes(loadBytes(left.data()), loadBytes(right.data()))),
              (Array{0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30}));
}

TEST(ByteBlock, KnowsOfEachByteWhetherAnyBitIsSet) {
    EXPECT_FALSE(any(Bytes{}));
    for (unsigned i = 0; i < sizeof(Bytes); ++i) {
        for (unsigned const bit : {0U, 7U}) {
            Array bytes{};
            bytes[i] = static_cast<unsigned char>(1U << bit);
            EXPECT_TRUE(any(loadBytes(bytes.data()))) << i;
        }
    }
}

TEST(ByteBlock, AddsAllBytes) {
    EXPECT_EQ(sum(Bytes{}), 0U);
    EXPECT_EQ(sum(~Bytes{}), 16U * 255U);
    Array const bytes = bytesFrom(240);
    EXPECT_EQ(sum(loadBytes(bytes.data())), 16U * 240U + 120U);
    for (unsigned i = 0; i < sizeof(Bytes); ++i) {
        Array one{};
        one[i] = 255;
        EXPECT_EQ(sum(loadBytes(one.data())), 255U) << i;
    }
}

TEST(ByteBlock, GivesOneBitForEachByteOfAComparison) {
    for (unsigned bits = 0; bits < 65536; ++bits) {
        Array compared{};
        for (unsigned i = 0; i < compared.size(); ++i)
            compared[i] = static_cast<unsigned char>((bits >> i & 1U) != 0 ? 0xFF : 0);
        ASSERT_EQ(bitsOf(loadBytes(compared.data())), bits);
    }
}

}  // namespace
