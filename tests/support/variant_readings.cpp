#include "support/variant_readings.h"

#include <bit>

#include <gtest/gtest.h>

using com::halvorin::datatypes::Variant;

namespace testing_support {

std::ostream& operator<<(std::ostream& out, Integers const& integers) {
    return out << int{integers.ubyte} << ' ' << int{integers.byte} << ' ' << integers.int16 << ' '
               << integers.uint16 << ' ' << integers.int32 << ' ' << integers.uint32 << ' '
               << integers.int64 << ' ' << integers.uint64;
}

Integers lowBitsOf(long number) {
    return {static_cast<unsigned char>(number),
            static_cast<signed char>(number),
            static_cast<short>(number),
            static_cast<unsigned short>(number),
            static_cast<int>(number),
            static_cast<unsigned int>(number),
            number,
            static_cast<unsigned long>(number)};
}

void expectIntegers(Variant const& variant, Integers const& expected) {
    auto const namedByte = static_cast<signed char>(variant.toByte());
    Integers const named = {variant.toUbyte(),  namedByte,         variant.toInt16(),
                            variant.toUint16(), variant.toInt32(), variant.toUint32(),
                            variant.toInt64(),  variant.toUint64()};
    auto const convertedByte = static_cast<signed char>(static_cast<char>(variant));
    Integers const converted = {variant, convertedByte, variant, variant,
                                variant, variant,       variant, variant};
    EXPECT_EQ(named, expected);
    EXPECT_EQ(converted, expected);
}

void expectFloating(Variant const& variant, double asDouble, float asFloat) {
    auto const bits = [](double value) { return std::bit_cast<unsigned long>(value); };
    auto const singleBits = [](float value) { return std::bit_cast<unsigned int>(value); };
    EXPECT_EQ(bits(variant.toDouble()), bits(asDouble)) << variant.toDouble();
    EXPECT_EQ(bits(static_cast<double>(variant)), bits(asDouble)) << variant.toDouble();
    EXPECT_EQ(singleBits(variant.toFloat()), singleBits(asFloat)) << variant.toFloat();
    EXPECT_EQ(singleBits(static_cast<float>(variant)), singleBits(asFloat)) << variant.toFloat();
}

void expectBoolean(Variant const& variant, bool expected) {
    EXPECT_EQ(variant.toBool(), expected);
    EXPECT_EQ(static_cast<bool>(variant), expected);
}

}  // namespace testing_support
