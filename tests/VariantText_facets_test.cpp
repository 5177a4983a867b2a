#include <climits>
#include <cmath>
#include <locale>
#include <new>
#include <random>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "utillibrary/datatypes/VariantText_internal.h"
#include <utillibrary/datatypes/Variant.h>

#include "support/cancellation.h"
#include "support/locales.h"
#include "support/random.h"
#include "support/writing_locales.h"

using com::halvorin::datatypes::Variant;
using com::halvorin::internal::insertIntoStream;
using com::halvorin::internal::PLAIN_SIZE;
using com::halvorin::internal::writePlain;
using testing_support::cancelThisThread;
using testing_support::endsByCancellation;
using testing_support::randomEngine;
using testing_support::ScopedCppLocale;
using testing_support::WritingLocale;
using testing_support::writingLocales;

// What a Variant writes for a number under any global C++ locale, facets of a host included: the
// characters that a plain wide stream has. One table goes through the general path, the fast path
// and the public functions.
namespace {

template <typename Value>
std::wstring streamed(Value value) {
    std::wostringstream stream;
    stream << value;
    return stream.str();
}

std::string lowBytes(std::wstring const& wide) {
    std::string narrow;
    for (wchar_t const c : wide)
        narrow += static_cast<char>(c & 0xFF);
    return narrow;
}

void expectText(Variant const& variant, std::wstring const& text) {
    EXPECT_EQ(variant.toString(1033), text);
    EXPECT_EQ(variant.convertToString(1033), text);
    EXPECT_EQ(variant.toString(), lowBytes(text));
    EXPECT_EQ(variant.toStringSBC(1033), lowBytes(text));
    EXPECT_EQ(variant.convertToStringSBC(1033), lowBytes(text));
    EXPECT_EQ(std::string(static_cast<char const*>(variant)), lowBytes(text).c_str());
}

template <typename Value>
void expectPaths(Value value, bool plain) {
    std::wstring const text = streamed(value);
    EXPECT_EQ(insertIntoStream(value), text);
    std::string narrow(PLAIN_SIZE, '?');
    auto const size = writePlain(narrow.data(), value);
    EXPECT_EQ(size.has_value(), plain);
    if (size) {
        EXPECT_EQ(narrow.substr(0, *size), lowBytes(text));
    }
    expectText(Variant(value), text);
}

constexpr int INTEGERS[] = {0, 7, -7, 42, 999, 1000, -1000, 1234567, INT_MIN, INT_MAX};
double const DOUBLES[] = {0.0,     -0.0, 0.5,   -1234.5, -12345.6, 1e-5,      123456,
                          1234567, 1e5,  1e300, -1e-300, INFINITY, -INFINITY, NAN};

TEST(VariantTextFacets, WritesWhatAPlainStreamWritesUnderEachLocale) {
    ASSERT_GE(writingLocales().size(), 18U);
    for (WritingLocale const& row : writingLocales()) {
        SCOPED_TRACE(row.fact);
        ScopedCppLocale const cpp(row.locale);
        for (int const value : INTEGERS)
            expectPaths(value, row.plain);
        for (double const value : DOUBLES)
            expectPaths(value, row.plain);
        for (bool const value : {false, true})
            expectPaths(value, row.plain);
    }
}

TEST(VariantTextFacets, InsertsEachTypeAsItsStatedOne) {
    for (WritingLocale const& row : writingLocales()) {
        SCOPED_TRACE(row.fact);
        ScopedCppLocale const cpp(row.locale);
        expectText(Variant(static_cast<unsigned char>(200)), streamed(200));
        expectText(Variant(static_cast<unsigned short>(65535)), streamed(65535));
        expectText(Variant(3000000000U), streamed(-1294967296));
        expectText(Variant('\xFB'), streamed(-5));
        expectText(Variant(static_cast<short>(-1234)), streamed(-1234));
        expectText(Variant(0.1F), streamed(0.10000000149011612));
        expectText(Variant(1234567L), streamed(1234567.0));
        expectText(Variant(18446744073709551615UL), streamed(18446744073709551616.0));
        expectText(Variant(L"-1234.5"), L"-1234.5");
        expectText(Variant(), L"unknown");
    }
}

TEST(VariantTextFacets, WritesRandomNumbersAsAPlainStreamDoes) {
    std::mt19937_64 engine = randomEngine();
    for (WritingLocale const& row : writingLocales()) {
        SCOPED_TRACE(row.fact);
        ScopedCppLocale const cpp(row.locale);
        for (int i = 0; i < 300; ++i) {
            auto const integer = static_cast<int>(static_cast<long>(engine()) >> engine() % 63);
            double const floating =
                std::ldexp(static_cast<double>(integer), static_cast<int>(engine() % 60) - 30);
            ASSERT_EQ(Variant(integer).toString(1033), streamed(integer));
            ASSERT_EQ(Variant(floating).toString(1033), streamed(floating));
        }
    }
}

// The characters so far, as literals: a stream and a Variant could make the same mistake.
TEST(VariantTextFacets, GivesTheCharactersSoFarIfAFacetFails) {
    struct {
        char const* fact;
        std::wstring text;
    } const rows[] = {
        {"num_put that throws an int", L"a"},
        {"num_put that throws before it writes", L""},
        {"num_put that sets badbit", L"a42"},
        {"num_put that sets failbit", L"a42"},
        {"num_put that fails its iterator", L"a"},
        {"numpunct that throws", L""},
        {"ctype that throws", L""},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.fact);
        int found = 0;
        for (WritingLocale const& locale : writingLocales()) {
            if (std::string(locale.fact) != row.fact) continue;
            ++found;
            ScopedCppLocale const cpp(locale.locale);
            expectText(Variant(42), row.text);
        }
        EXPECT_EQ(found, 1);
    }
}

// ---- what passes

class NumPutWithoutMemory : public std::num_put<wchar_t> {
protected:
    iter_type do_put(iter_type /*out*/, std::ios_base& /*stream*/, wchar_t /*fill*/,
                     long /*value*/) const override {
        throw std::bad_alloc();
    }
};

TEST(VariantTextFacets, LetsAFailedAllocationPass) {
    ScopedCppLocale const cpp(std::locale(std::locale::classic(), new NumPutWithoutMemory));
    Variant const variant(42);
    variant.sbcText = "of an earlier call";
    EXPECT_THROW(static_cast<void>(variant.toString()), std::bad_alloc);
    EXPECT_THROW(static_cast<void>(variant.toString(1033)), std::bad_alloc);
    EXPECT_THROW(static_cast<void>(static_cast<char const*>(variant)), std::bad_alloc);
    EXPECT_EQ(variant.sbcText, "of an earlier call");
}

class CancellingNumPut : public std::num_put<wchar_t> {
protected:
    iter_type do_put(iter_type out, std::ios_base& /*stream*/, wchar_t /*fill*/,
                     long /*value*/) const override {
        cancelThisThread();
        return out;
    }
};

TEST(VariantTextFacets, LetsTheCancellationOfAThreadPass) {
    ScopedCppLocale const cpp(std::locale(std::locale::classic(), new CancellingNumPut));
    EXPECT_TRUE(endsByCancellation([] { static_cast<void>(Variant(42).toString()); }));
}

}  // namespace
