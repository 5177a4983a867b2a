#include <cfloat>
#include <cmath>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/Variant.h>

using com::halvorin::datatypes::Variant;

// How floating values compare with a relative tolerance.
namespace {

constexpr float INFINITE_FLOAT = INFINITY;
constexpr float NAN_FLOAT = NAN;

struct ComparisonFact {
    char const* fact;
    double a;
    double b;
    double threshold;
    int result;
};

constexpr double BELOW_HALF = 0x1.fffffffffffffp-2;
constexpr double ABOVE_HALF = 0x1.0000000000001p-1;
constexpr double BELOW_ONE = 0x1.fffffffffffffp-1;
constexpr double ABOVE_ONE = 0x1.0000000000001p0;

// KEPT(zero-is-below-all): also below what is negative, and below NaN.
// KEPT(comparison-follows-the-ratio): two negative numbers, and opposite signs.
ComparisonFact const COMPARISON_FACTS[] = {
    {"zeros are equal", 0.0, 0.0, 1e-12, 0},
    {"of either sign", -0.0, 0.0, 1e-12, 0},
    {"zero is below a positive number", 0.0, 5.0, 1e-12, -1},
    {"and below a negative one", 0.0, -5.0, 1e-12, -1},
    {"even when that is below the threshold", 0.0, 1e-300, 1.0, -1},
    {"negative zero as well", -0.0, -5.0, 1e-12, -1},
    {"and below no number", 0.0, NAN, 1e-12, -1},
    {"a positive number is above zero", 5.0, 0.0, 1e-12, 1},
    {"a negative one as well", -5.0, 0.0, 1e-12, 1},
    {"the least number too", 5e-324, -0.0, 1.0, 1},
    {"no number is above zero", NAN, 0.0, 1e-12, 1},
    {"whatever the threshold", 0.0, 5.0, NAN, -1},
    {"for both", 5.0, 0.0, NAN, 1},
    {"no number beside a number", NAN, 1.0, 1e-12, 0},
    {"on the other side", 1.0, NAN, 1e-12, 0},
    {"on both", NAN, NAN, 1e-12, 0},
    {"no number as the threshold", 5.0, 1.0, NAN, 0},
    {"for zeros as well", 0.0, 0.0, NAN, 0},
    {"above by the threshold exactly", 1.5, 1.0, 0.5, 0},
    {"above by a little more", 1.5, 1.0, BELOW_HALF, 1},
    {"above by a little less", 1.5, 1.0, ABOVE_HALF, 0},
    {"below by the threshold exactly", 0.5, 1.0, 0.5, 0},
    {"below by a little more", 0.5, 1.0, BELOW_HALF, -1},
    {"below by a little less", 0.5, 1.0, ABOVE_HALF, 0},
    {"relative to the second", 1.0, 2.0, 0.5, 0},
    {"and not to the first", 2.0, 1.0, 0.5, 1},
    {"not to the larger one", 2.0, 1.0, 1.0, 0},
    {"large numbers as small ones", 1.5e300, 1e300, 0.25, 1},
    {"and the smallest", 5e-324, 1e-323, 0.25, -1},
    {"two negative numbers reversed", -2.0, -1.0, 1e-12, 1},
    {"the other way round", -1.0, -2.0, 1e-12, -1},
    {"opposite signs, the first one larger", 1.0, -1.0, 1e-12, -1},
    {"and smaller", -1.0, 1.0, 1e-12, -1},
    {"no threshold, equal", 1.0, 1.0, 0.0, 0},
    {"no threshold, the next number", ABOVE_ONE, 1.0, 0.0, 1},
    {"no threshold, the one before", BELOW_ONE, 1.0, 0.0, -1},
    {"a negative threshold, zeros", 0.0, 0.0, -1.0, -1},
    {"a negative threshold, equal numbers", 1.0, 1.0, -1.0, -1},
    {"a negative threshold, far above", 3.0, 1.0, -1.0, 1},
    {"infinity is above", INFINITY, 1.0, 1e-12, 1},
    {"a number is below infinity", 1.0, INFINITY, 1e-12, -1},
    {"infinity below zero", -INFINITY, 1.0, 1e-12, -1},
    {"a number beside it", 1.0, -INFINITY, 1e-12, -1},
    {"infinities cannot be told apart", INFINITY, INFINITY, 1e-12, 0},
    {"of either sign", INFINITY, -INFINITY, 1e-12, 0},
    {"a ratio beyond all numbers", 1e308, 1e-308, 1e-12, 1},
    {"a ratio too small for one", 1e-308, 1e308, 1e-12, -1},
    {"an infinite threshold", 5.0, 1.0, INFINITY, 0},
};

TEST(VariantComparison, ComparesByTheRatioWithAThreshold) {
    for (ComparisonFact const& row : COMPARISON_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(Variant::compareDoublesHelper(row.a, row.b, row.threshold), row.result);
    }
}

struct ComparedDoublesFact {
    char const* fact;
    double a;
    double b;
    int result;
};

// The numbers beside 1e-12 from 1 on are 4503 and 4504 steps of 2^-52 away.
ComparedDoublesFact const COMPARED_DOUBLES_FACTS[] = {
    {"equal", 1.0, 1.0, 0},
    {"closer than 1e-12", 1.0, 1.0 + 1e-13, 0},
    {"farther", 1.0, 1.0 + 1e-11, -1},
    {"just below the threshold", 1.0 + 4503 * 0x1p-52, 1.0, 0},
    {"just above", 1.0 + 4504 * 0x1p-52, 1.0, 1},
    {"just below it, on this side", 1.0 - 9007 * 0x1p-53, 1.0, 0},
    {"just above", 1.0 - 9008 * 0x1p-53, 1.0, -1},
    {"zeros", 0.0, 0.0, 0},
    {"zero and less", 0.0, -5.0, -1},
    {"more and zero", 5.0, 0.0, 1},
    {"two negative ones", -2.0, -1.0, 1},
    {"opposite signs", 1.0, -1.0, -1},
    {"no number", NAN, NAN, 0},
};

TEST(VariantComparison, ComparesDoublesToOnePartInATrillion) {
    for (ComparedDoublesFact const& row : COMPARED_DOUBLES_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(Variant::compareDoubles(row.a, row.b), row.result);
    }
}

struct ComparedFloatsFact {
    char const* fact;
    float a;
    float b;
    int result;
};

// 1e-06 lies between 8 and 9 steps of 2^-23 from 1. Of the pair at 1.93, the ratio as a float would
// be 17 steps of 2^-24 from 1, and so beyond the threshold.
ComparedFloatsFact const COMPARED_FLOATS_FACTS[] = {
    {"equal", 0.1F, 0.1F, 0},
    {"closer than 1e-06", 1.0F, 1.000001F, 0},
    {"just below the threshold", 1.0F + 8 * 0x1p-23F, 1.0F, 0},
    {"just above", 1.0F + 9 * 0x1p-23F, 1.0F, 1},
    {"just below it, reversed", 1.0F, 1.0F + 8 * 0x1p-23F, 0},
    {"just above", 1.0F, 1.0F + 9 * 0x1p-23F, -1},
    {"the ratio is that of doubles", 1.93F, 1.93F + 16 * 0x1p-23F, 0},
    {"the least number and zero", 0x1p-149F, 0.0F, 1},
    {"zero and less", 0.0F, -1.0F, -1},
    {"two negative ones", -2.0F, -1.0F, 1},
    {"a ratio beyond a float", FLT_MAX, 0x1p-149F, 1},
    {"no number", NAN_FLOAT, 1.0F, 0},
    {"infinities", INFINITE_FLOAT, INFINITE_FLOAT, 0},
};

TEST(VariantComparison, ComparesFloatsToOnePartInAMillion) {
    for (ComparedFloatsFact const& row : COMPARED_FLOATS_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(Variant::compareFloats(row.a, row.b), row.result);
    }
}

}  // namespace
