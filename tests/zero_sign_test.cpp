#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime.h>
#include <utillibrary/utilities/StringUtilities.h>

#include "support/rounding_words.h"

// A zero that is made of an unsigned integer has no sign in any rounding mode. clang++ without
// -frounding-math converts 64-bit unsigned integers to double by a subtraction, which gives -0 when
// the mode is FE_DOWNWARD. So these tests fail if the library is built without that flag.

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;
using com::halvorin::utilities::strtodEx;

namespace {

double readByStrtodEx(char const* text) {
    double value = std::numeric_limits<double>::quiet_NaN();
    strtodEx(text, value);
    return value;
}

constexpr long VMS_EPOCH = -3506716800;  // 1858-11-17T00:00:00 in seconds since 1970

struct ZeroFact {
    char const* fact;
    double (*value)();
};

ZeroFact const ZERO_FACTS[] = {
    {"strtodEx reads \"0.0\" as 0", [] { return readByStrtodEx("0.0"); }},
    {"strtodEx reads \"0\" as 0", [] { return readByStrtodEx("0"); }},
    {"strtodEx reads \"0e5\" as 0", [] { return readByStrtodEx("0e5"); }},
    {"the string \"0\" in a Variant is the double 0", [] { return Variant("0").toDouble(); }},
    {"the string \"0.0\" in a Variant is the double 0", [] { return Variant("0.0").toDouble(); }},
    {"the Uint64 0 is the double 0", [] { return Variant(0UL).toDouble(); }},
    {"the Uint64 0 is the float 0", [] { return double{Variant(0UL).toFloat()}; }},
    {"the Uint32 0 is the double 0", [] { return Variant(0U).toDouble(); }},
    {"the Int64 0 is the double 0", [] { return Variant(0L).toDouble(); }},
    {"day zero of OpenVMS is 0 seconds", [] { return xtime_t(VMS_EPOCH, 0).toVMSTime(); }},
};

TEST(Zero, OfAnUnsignedIntegerHasNoSignInAnyRoundingMode) {
    for (auto const& words : testing_support::allRoundingWords()) {
        testing_support::ScopedRoundingWords const scope(words);
        for (ZeroFact const& row : ZERO_FACTS) {
            SCOPED_TRACE(row.fact);
            SCOPED_TRACE(words);
            double const value = row.value();
            EXPECT_EQ(value, 0.0);
            EXPECT_FALSE(std::signbit(value));
        }
    }
}

TEST(Zero, OfAnUnsignedIntegerPrintsWithoutASignInAnyRoundingMode) {
    for (auto const& words : testing_support::allRoundingWords()) {
        std::string text;
        {
            testing_support::ScopedRoundingWords const scope(words);
            text = Variant(0UL).toString();
        }
        SCOPED_TRACE(words);
        EXPECT_EQ(text, "0");
    }
}

struct LargeFact {
    char const* fact;
    unsigned long integer;
    double below;  // toward zero and downward
    double above;  // upward
};

LargeFact const LARGE_FACTS[] = {
    {"2^53 is exact", 9007199254740992, 0x1p+53, 0x1p+53},
    {"2^53 + 1 is between two doubles", 9007199254740993, 0x1p+53, 0x1.0000000000001p+53},
    {"2^63 - 1 is between two doubles", 9223372036854775807, 0x1.fffffffffffffp+62, 0x1p+63},
    {"2^63 is exact", 9223372036854775808U, 0x1p+63, 0x1p+63},
    {"2^63 + 1 is between two doubles", 9223372036854775809U, 0x1p+63, 0x1.0000000000001p+63},
    {"2^64 - 1 is between two doubles", 18446744073709551615U, 0x1.fffffffffffffp+63, 0x1p+64},
};

TEST(UnsignedInteger, IsRoundedOnceToADouble) {
    for (LargeFact const& row : LARGE_FACTS) {
        SCOPED_TRACE(row.fact);
        double upward = 0;
        double downward = 0;
        double towardZero = 0;
        {
            testing_support::ScopedRoundingWords const scope({FE_UPWARD, FE_UPWARD});
            upward = Variant(row.integer).toDouble();
        }
        {
            testing_support::ScopedRoundingWords const scope({FE_DOWNWARD, FE_DOWNWARD});
            downward = Variant(row.integer).toDouble();
        }
        {
            testing_support::ScopedRoundingWords const scope({FE_TOWARDZERO, FE_TOWARDZERO});
            towardZero = Variant(row.integer).toDouble();
        }
        EXPECT_EQ(upward, row.above);
        EXPECT_EQ(downward, row.below);
        EXPECT_EQ(towardZero, row.below);
    }
}

}  // namespace
