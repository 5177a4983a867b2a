#include "utillibrary/internal/wrapping.h"

#include <climits>

#include <gtest/gtest.h>

using namespace com::halvorin::internal;

namespace {

struct WrappingFact {
    char const* fact;
    long left;
    long right;
    long sum;
    long difference;
    long product;
};

WrappingFact const WRAPPING_FACTS[] = {
    {"two small numbers", 7, 3, 10, 4, 21},
    {"a positive and a negative number", 7, -3, 4, 10, -21},
    {"two negative numbers", -7, -3, -10, -4, 21},
    {"the sum reaches LONG_MAX", LONG_MAX - 1, 1, LONG_MAX, LONG_MAX - 2, LONG_MAX - 1},
    {"the sum goes beyond LONG_MAX", LONG_MAX, 1, LONG_MIN, LONG_MAX - 1, LONG_MAX},
    {"the difference reaches LONG_MIN", LONG_MIN + 1, 1, LONG_MIN + 2, LONG_MIN, LONG_MIN + 1},
    {"the difference goes beyond LONG_MIN", LONG_MIN, 1, LONG_MIN + 1, LONG_MAX, LONG_MIN},
    {"the distance from end to end is 2^64 - 1", LONG_MAX, LONG_MIN, -1, -1, LONG_MIN},
    {"the product goes beyond 64 bits", 1L << 62, 6, (1L << 62) + 6, (1L << 62) - 6, LONG_MIN},
};

TEST(Wrapping, GoesOnFromTheOtherEnd) {
    for (WrappingFact const& row : WRAPPING_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(wrappingSum(row.left, row.right), row.sum);
        EXPECT_EQ(wrappingDifference(row.left, row.right), row.difference);
        EXPECT_EQ(wrappingProduct(row.left, row.right), row.product);
    }
}

TEST(Wrapping, KeepsTheBitsOfANumber) {
    EXPECT_EQ(asUnsigned(-1), 4294967295U);
    EXPECT_EQ(asUnsigned(-1L), ULONG_MAX);
    EXPECT_EQ(asSigned(ULONG_MAX), -1);
    EXPECT_EQ(asSigned(1UL << 63), LONG_MIN);
}

}  // namespace
