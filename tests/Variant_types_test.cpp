#include <climits>
#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/Variant.h>

using com::halvorin::datatypes::Variant;

// The names and numbers of Variant's types, and its constants.
namespace {

struct TypeFact {
    wchar_t const* name;
    int number;
};

TypeFact const TYPE_FACTS[] = {
    {L"UnsignedByte", 1}, {L"Uint16", 2},   {L"Uint32", 3},    {L"Byte", 4},   {L"Int16", 5},
    {L"Int32", 6},        {L"Float", 7},    {L"Double", 8},    {L"String", 9}, {L"Int64", 10},
    {L"Uint64", 11},      {L"Boolean", 12}, {L"DateTime", 13}, {L"Null", 14},  {L"Unknown", 0},
};

TEST(Variant, ListsNamesAndNumbersSideBySide) {
    std::size_t entry = 0;
    for (TypeFact const& row : TYPE_FACTS) {
        SCOPED_TRACE(row.number);
        EXPECT_STREQ(Variant::typeNames[entry], row.name);
        EXPECT_EQ(Variant::typeNumbers[entry], row.number);
        ++entry;
    }
    EXPECT_EQ(entry, 15U);
    EXPECT_EQ(Variant::typeNames[15], nullptr);
    EXPECT_EQ(Variant::typeNumbers[15], -1);
}

TEST(Variant, TurnsNamesIntoNumbersAndBack) {
    for (TypeFact const& row : TYPE_FACTS) {
        SCOPED_TRACE(row.number);
        std::wstring const copy(row.name);  // compared by characters, not by address
        EXPECT_EQ(Variant::typeName2Number(copy.c_str()), row.number);
        EXPECT_STREQ(Variant::typeNumber2Name(row.number), row.name);
    }
    EXPECT_EQ(Variant::typeNumber2Name(3), Variant::typeNames[2]);
    EXPECT_EQ(Variant::typeNumber2Name(0), Variant::typeNames[14]);
}

TEST(Variant, KnowsNoOtherNames) {
    for (wchar_t const* const name :
         {L"", L"null", L"unknown", L"int32", L"double", L"DOUBLE", L"Int", L"Int3", L"Int320",
          L"Int32 ", L" Int32", L"Uint8", L"Int8", L"UnsignedByte\u0301", L"0", L"8"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(Variant::typeName2Number(name), -1);
    }
}

TEST(Variant, KnowsNoOtherNumbers) {
    for (int const number : {INT_MIN, INT_MIN + 1, -2, -1, 15, 16, 256, INT_MAX - 1, INT_MAX}) {
        SCOPED_TRACE(number);
        EXPECT_EQ(Variant::typeNumber2Name(number), nullptr);
    }
}

TEST(Variant, HasTheTolerancesOfItsComparisons) {
    EXPECT_EQ(Variant::FLT_THRESHOLD, 1e-06);
    EXPECT_EQ(Variant::DBL_THRESHOLD, 1e-12);
}

}  // namespace
