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
    {"two zeros are equal", 0.0, 0.0, 1e-12, 0},
    {"two zeros of different signs are equal", -0.0, 0.0, 1e-12, 0},
    {"zero is below a positive number", 0.0, 5.0, 1e-12, -1},
    {"zero is below a negative number", 0.0, -5.0, 1e-12, -1},
    {"zero is below a number that is smaller than the threshold", 0.0, 1e-300, 1.0, -1},
    {"negative zero is below a negative number", -0.0, -5.0, 1e-12, -1},
    {"zero is below NaN", 0.0, NAN, 1e-12, -1},
    {"a positive number is above zero", 5.0, 0.0, 1e-12, 1},
    {"a negative number is above zero", -5.0, 0.0, 1e-12, 1},
    {"the least positive number is above zero", 5e-324, -0.0, 1.0, 1},
    {"NaN is above zero", NAN, 0.0, 1e-12, 1},
    {"zero is below a number whose threshold is NaN", 0.0, 5.0, NAN, -1},
    {"a number is above zero with a threshold of NaN", 5.0, 0.0, NAN, 1},
    {"NaN equals a number", NAN, 1.0, 1e-12, 0},
    {"a number equals NaN", 1.0, NAN, 1e-12, 0},
    {"NaN equals NaN", NAN, NAN, 1e-12, 0},
    {"with a threshold of NaN all numbers but zero are equal", 5.0, 1.0, NAN, 0},
    {"with a threshold of NaN two zeros are equal", 0.0, 0.0, NAN, 0},
    {"a number above by the threshold exactly is equal", 1.5, 1.0, 0.5, 0},
    {"a number above by a little more than the threshold is above", 1.5, 1.0, BELOW_HALF, 1},
    {"a number above by a little less than the threshold is equal", 1.5, 1.0, ABOVE_HALF, 0},
    {"a number below by the threshold exactly is equal", 0.5, 1.0, 0.5, 0},
    {"a number below by a little more than the threshold is below", 0.5, 1.0, BELOW_HALF, -1},
    {"a number below by a little less than the threshold is equal", 0.5, 1.0, ABOVE_HALF, 0},
    {"the tolerance is relative to the second number", 1.0, 2.0, 0.5, 0},
    {"the tolerance is not relative to the first number", 2.0, 1.0, 0.5, 1},
    {"the tolerance is not relative to the larger number", 2.0, 1.0, 1.0, 0},
    {"large numbers compare by their ratio", 1.5e300, 1e300, 0.25, 1},
    {"the smallest numbers compare by their ratio", 5e-324, 1e-323, 0.25, -1},
    {"of two negative numbers the lower one is above", -2.0, -1.0, 1e-12, 1},
    {"of two negative numbers the higher one is below", -1.0, -2.0, 1e-12, -1},
    {"of opposite signs a larger first number is below", 1.0, -1.0, 1e-12, -1},
    {"of opposite signs a smaller first number is below", -1.0, 1.0, 1e-12, -1},
    {"without a threshold equal numbers are equal", 1.0, 1.0, 0.0, 0},
    {"without a threshold the next number is above", ABOVE_ONE, 1.0, 0.0, 1},
    {"without a threshold the previous number is below", BELOW_ONE, 1.0, 0.0, -1},
    {"with a negative threshold zero is below zero", 0.0, 0.0, -1.0, -1},
    {"with a negative threshold a number is below itself", 1.0, 1.0, -1.0, -1},
    {"with a negative threshold a number far above is above", 3.0, 1.0, -1.0, 1},
    {"infinity is above a number", INFINITY, 1.0, 1e-12, 1},
    {"a number is below infinity", 1.0, INFINITY, 1e-12, -1},
    {"negative infinity is below a number", -INFINITY, 1.0, 1e-12, -1},
    {"a number is below negative infinity", 1.0, -INFINITY, 1e-12, -1},
    {"infinity equals infinity", INFINITY, INFINITY, 1e-12, 0},
    {"infinity equals negative infinity", INFINITY, -INFINITY, 1e-12, 0},
    {"a ratio that overflows is above", 1e308, 1e-308, 1e-12, 1},
    {"a ratio that underflows is below", 1e-308, 1e308, 1e-12, -1},
    {"with an infinite threshold numbers are equal", 5.0, 1.0, INFINITY, 0},
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

// 1 + 1e-12 is between the doubles that are 4503 and 4504 steps of 2^-52 above 1.
ComparedDoublesFact const COMPARED_DOUBLES_FACTS[] = {
    {"a number equals itself", 1.0, 1.0, 0},
    {"numbers closer than 1e-12 are equal", 1.0, 1.0 + 1e-13, 0},
    {"numbers farther than 1e-12 differ", 1.0, 1.0 + 1e-11, -1},
    {"above by just less than the threshold is equal", 1.0 + 4503 * 0x1p-52, 1.0, 0},
    {"above by just more than the threshold is above", 1.0 + 4504 * 0x1p-52, 1.0, 1},
    {"below by just less than the threshold is equal", 1.0 - 9007 * 0x1p-53, 1.0, 0},
    {"below by just more than the threshold is below", 1.0 - 9008 * 0x1p-53, 1.0, -1},
    {"two zeros are equal", 0.0, 0.0, 0},
    {"zero is below a negative number", 0.0, -5.0, -1},
    {"a positive number is above zero", 5.0, 0.0, 1},
    {"of two negative numbers the lower one is above", -2.0, -1.0, 1},
    {"of opposite signs the first is below", 1.0, -1.0, -1},
    {"NaN equals NaN", NAN, NAN, 0},
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
    {"a number equals itself", 0.1F, 0.1F, 0},
    {"numbers closer than 1e-06 are equal", 1.0F, 1.000001F, 0},
    {"above by just less than the threshold is equal", 1.0F + 8 * 0x1p-23F, 1.0F, 0},
    {"above by just more than the threshold is above", 1.0F + 9 * 0x1p-23F, 1.0F, 1},
    {"below by just less than the threshold is equal", 1.0F, 1.0F + 8 * 0x1p-23F, 0},
    {"below by just more than the threshold is below", 1.0F, 1.0F + 9 * 0x1p-23F, -1},
    {"the ratio is computed in double", 1.93F, 1.93F + 16 * 0x1p-23F, 0},
    {"the least positive number is above zero", 0x1p-149F, 0.0F, 1},
    {"zero is below a negative number", 0.0F, -1.0F, -1},
    {"of two negative numbers the lower one is above", -2.0F, -1.0F, 1},
    {"a ratio beyond the range of float is above", FLT_MAX, 0x1p-149F, 1},
    {"NaN equals a number", NAN_FLOAT, 1.0F, 0},
    {"infinity equals infinity", INFINITE_FLOAT, INFINITE_FLOAT, 0},
};

TEST(VariantComparison, ComparesFloatsToOnePartInAMillion) {
    for (ComparedFloatsFact const& row : COMPARED_FLOATS_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(Variant::compareFloats(row.a, row.b), row.result);
    }
}

}  // namespace
