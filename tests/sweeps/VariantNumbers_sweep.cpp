#include <bit>
#include <cstdint>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/Variant.h>

#include "support/bit_truncation.h"
#include "support/random.h"

using com::halvorin::datatypes::Variant;
using testing_support::signedNumber;
using testing_support::sweepStride;
using testing_support::unsignedNumber;
using testing_support::WholePart;
using testing_support::wholePartOf;

// Every float through every conversion to an integer. Each half of the 2^32 takes a minute or so,
// and runs by itself.
namespace {

bool readsByItsBits(Variant const& variant, float value) {
    WholePart const whole = wholePartOf(value);
    auto const int32 = static_cast<int>(signedNumber(whole, 32));
    long const int64 = signedNumber(whole, 64);
    return variant.toUbyte() == static_cast<unsigned char>(int32) &&
           variant.toByte() == static_cast<char>(int32) &&
           variant.toInt16() == static_cast<short>(int32) &&
           variant.toUint16() == static_cast<unsigned short>(int32) && variant.toInt32() == int32 &&
           variant.toUint32() == static_cast<unsigned int>(int64) && variant.toInt64() == int64 &&
           variant.toUint64() == unsignedNumber(whole);
}

// From first to last, both included; the last one is tested with every stride.
void expectEachToBeReadByItsBits(std::uint64_t first, std::uint64_t last) {
    Variant variant;
    std::uint64_t const stride = sweepStride();
    for (std::uint64_t bits = first;; bits = bits + stride < last ? bits + stride : last) {
        auto const value = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
        variant.assign(value);
        ASSERT_TRUE(readsByItsBits(variant, value)) << value << " of bits " << bits;
        if (bits == last) break;
    }
}

TEST(VariantNumbersSweep, Positive) { expectEachToBeReadByItsBits(0, 0x7FFFFFFF); }

TEST(VariantNumbersSweep, Negative) { expectEachToBeReadByItsBits(0x80000000, 0xFFFFFFFF); }

}  // namespace
