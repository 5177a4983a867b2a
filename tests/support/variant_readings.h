#pragma once

#include <ostream>

#include <utillibrary/datatypes/Variant.h>

namespace testing_support {

/// What a Variant reads as each kind of integer.
struct Integers {
    unsigned char ubyte;
    signed char byte;  // char is unsigned on aarch64
    short int16;
    unsigned short uint16;
    int int32;
    unsigned int uint32;
    long int64;
    unsigned long uint64;

    bool operator==(Integers const&) const = default;
};

std::ostream& operator<<(std::ostream& out, Integers const& integers);

/// The low bits that each target keeps of one 64-bit number.
Integers lowBitsOf(long number);

/// Every conversion exists twice, as a named member and as an operator; both must say the same.
void expectIntegers(com::halvorin::datatypes::Variant const& variant, Integers const& expected);

/// The same for floating values, by their bits: zeros are told apart, and NaN equals itself.
void expectFloating(com::halvorin::datatypes::Variant const& variant, double asDouble,
                    float asFloat);

/// The same for the Boolean.
void expectBoolean(com::halvorin::datatypes::Variant const& variant, bool expected);

}  // namespace testing_support
