#include <bit>
#include <cfenv>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/Variant.h>

#include "support/locales.h"
#include "support/random.h"
#include "support/rounding_words.h"

using com::halvorin::datatypes::Variant;
using testing_support::allRoundingWords;
using testing_support::flagsRaisedBy;
using testing_support::randomEngine;
using testing_support::RoundingWords;
using testing_support::ScopedCLocale;
using testing_support::ScopedCppLocale;
using testing_support::ScopedRoundingWords;

// What a Variant writes in every state of the rounding words, and which floating-point flags this
// raises: as a plain wide stream does.
namespace {

// A volatile value: the conversion to double happens at run time, under the words in force.
template <typename Inserted, typename Value>
std::wstring streamed(Value value) {
    Value const volatile now = value;
    std::wostringstream stream;
    stream << static_cast<Inserted>(now);
    return stream.str();
}

template <typename Inserted, typename Value>
void expectAsStreamed(Value value) {
    Variant const variant(value);
    std::wstring expected;
    int const flags = flagsRaisedBy([&] { expected = streamed<Inserted>(value); });
    std::wstring text;
    EXPECT_EQ(flagsRaisedBy([&] { text = variant.toString(1033); }), flags) << value;
    EXPECT_EQ(text, expected);
    std::string narrow;
    EXPECT_EQ(flagsRaisedBy([&] { narrow = variant.toString(); }), flags) << value;
    EXPECT_EQ(narrow, std::string(expected.begin(), expected.end()));
}

// Values whose last digit depends on the rounding, and values that do not fit six digits or a
// double.
std::vector<double> doubles() {
    std::vector<double> values = {0.0,      -0.0,    2.5,      0.1,       -0.1,       1.0 / 3,
                                  999999.5, 1000005, 1000015,  -1000005,  1e23,       5e-324,
                                  DBL_MIN,  DBL_MAX, -DBL_MAX, INFINITY,  NAN,        1e-5,
                                  123456,   1234567, 99999.95, 0x1p-1022, 0x0.8p-1022};
    std::mt19937_64 engine = randomEngine();
    for (int i = 0; i < 300; ++i)
        values.push_back(std::bit_cast<double>(engine()));
    for (int i = 0; i < 300; ++i)
        values.push_back(static_cast<double>(engine() % 100'000'000) / 8);
    return values;
}

std::vector<long> integers() {
    std::vector<long> values = {
        0,        1,       -1,      1000005,          999999500000000001, LONG_MIN,
        LONG_MAX, INT_MIN, INT_MAX, 9007199254740993, -9007199254740993};
    std::mt19937_64 engine = randomEngine();
    for (int i = 0; i < 300; ++i)
        values.push_back(static_cast<long>(engine()) >> engine() % 63);
    return values;
}

void expectEveryTypeAsStreamed() {
    for (double const value : doubles()) {
        ASSERT_NO_FATAL_FAILURE(expectAsStreamed<double>(value));
        if (std::fabs(value) < FLT_MAX) {
            ASSERT_NO_FATAL_FAILURE(expectAsStreamed<double>(static_cast<float>(value)));
        }
    }
    for (long const value : integers()) {
        ASSERT_NO_FATAL_FAILURE(expectAsStreamed<double>(value));
        ASSERT_NO_FATAL_FAILURE(expectAsStreamed<double>(static_cast<unsigned long>(value)));
        ASSERT_NO_FATAL_FAILURE(expectAsStreamed<int>(static_cast<int>(value)));
        ASSERT_NO_FATAL_FAILURE(expectAsStreamed<int>(static_cast<unsigned int>(value)));
        ASSERT_NO_FATAL_FAILURE(expectAsStreamed<int>(static_cast<short>(value)));
        ASSERT_NO_FATAL_FAILURE(expectAsStreamed<int>(static_cast<unsigned short>(value)));
        ASSERT_NO_FATAL_FAILURE(expectAsStreamed<int>(static_cast<unsigned char>(value)));
    }
    for (bool const value : {false, true})
        ASSERT_NO_FATAL_FAILURE(expectAsStreamed<bool>(value));
}

TEST(VariantTextRounding, WritesAsAStreamDoesInEachStateOfTheRoundingWords) {
    ScopedCLocale const c("C");
    for (char const* const name : {"C", "de_DE.UTF-8"}) {
        ScopedCppLocale const cpp(name);
        for (RoundingWords const& words : allRoundingWords()) {
            SCOPED_TRACE(testing::Message() << name << ", " << words);
            ScopedRoundingWords const scope(words);
            ASSERT_NO_FATAL_FAILURE(expectEveryTypeAsStreamed());
        }
    }
}

// Written out: 1000005 lies halfway between two results of six digits.
TEST(VariantTextRounding, RoundsByTheWordThatLibcObeys) {
    ScopedCLocale const c("C");
    ScopedCppLocale const cpp("C");
    struct {
        RoundingWords words;
        char const* text;
    } const rows[] = {
        {{FE_TONEAREST, FE_TONEAREST}, "1e+06"},
        {{FE_UPWARD, FE_UPWARD}, "1.00001e+06"},
#ifdef __x86_64__
        {{FE_TONEAREST, FE_UPWARD}, "1.00001e+06"},
        {{FE_UPWARD, FE_TONEAREST}, "1e+06"},
#endif
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(testing::Message() << row.words);
        ScopedRoundingWords const scope(row.words);
        EXPECT_EQ(Variant(1000005.0).toString(), row.text);
        EXPECT_EQ(Variant(1000005L).toString(), row.text);
    }
}

TEST(VariantTextRounding, RaisesNoFlagForANumberThatADoubleContains) {
    ScopedCLocale const c("C");
    ScopedCppLocale const cpp("C");
    for (double const value : {2.5, 0.1, 1e300, 1234567.0, 5e-324}) {
        EXPECT_EQ(flagsRaisedBy([&] { static_cast<void>(Variant(value).toString()); }), 0) << value;
    }
    EXPECT_EQ(flagsRaisedBy([] { static_cast<void>(Variant(-5).toString()); }), 0);
    EXPECT_EQ(flagsRaisedBy([] { static_cast<void>(Variant(100L).toString()); }), 0);
}

}  // namespace
