#include <climits>
#include <locale>
#include <new>
#include <optional>
#include <random>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "utillibrary/internal/locale.h"
#include "utillibrary/internal/wide_number.h"
#include <utillibrary/datatypes/Variant.h>

#include "support/cancellation.h"
#include "support/failing_allocations.h"
#include "support/locales.h"
#include "support/random.h"
#include "support/reading_locales.h"

using com::halvorin::datatypes::Variant;
using com::halvorin::internal::extractInt64;
using com::halvorin::internal::isClassic;
using com::halvorin::internal::readClassicInt64;
using com::halvorin::internal::readStandardInt64;
using com::halvorin::internal::standardReadingFacets;
using testing_support::allocationsOf;
using testing_support::cancelThisThread;
using testing_support::endsByCancellation;
using testing_support::failsWithout;
using testing_support::randomEngine;
using testing_support::ReadingLocale;
using testing_support::readingLocales;
using testing_support::ScopedCppLocale;

// What a Variant reads as an integer under any global C++ locale, facets of a host included: what a
// plain wide stream reads. Each string goes through the general path, the fast paths and the public
// functions.
namespace {

using namespace std::string_literals;

long streamed(std::wstring const& text) {
    if (text.empty()) return 0;
    std::wistringstream stream(text);
    long value = 0;
    stream >> std::dec >> value;
    return value;
}

void expectReadAsStreamed(std::wstring const& text, ReadingLocale const& row) {
    SCOPED_TRACE(testing::PrintToString(text));
    long const expected = streamed(text);
    ASSERT_EQ(extractInt64(text), expected);
    auto const fast = readStandardInt64(text, row.locale);
    if (fast) {
        ASSERT_TRUE(row.standard);
        ASSERT_EQ(*fast, expected);
    }
    if (isClassic(row.locale)) {
        ASSERT_EQ(readClassicInt64(text), expected);
    }
    Variant const variant(text);
    ASSERT_EQ(variant.toInt64(), expected);
    ASSERT_EQ(variant.toInt32(), static_cast<int>(expected));
    ASSERT_EQ(variant.toUint64(), static_cast<unsigned long>(expected));
    ASSERT_EQ(static_cast<short>(variant), static_cast<short>(expected));
}

std::wstring const TEXTS[] = {
    L"",
    L"0",
    L"7",
    L"42",
    L"-42",
    L"+42",
    L"31",
    L"152",
    L"1721",
    L"00042",
    L"123456789012345678",
    L"1234567890123456789",
    L"9223372036854775807",
    L"9223372036854775808",
    L"-9223372036854775808",
    L"-9223372036854775809",
    L"99999999999999999999",
    L"-99999999999999999999",
    L"000000000000000000000000000000000042",
    L" 42 km",
    L"\t\n\v\f\r 42",
    L"\u200342",
    L"42.5",
    L"42,5",
    L"1.234.567",
    L"1,234,567",
    L"1-234",
    L"1+2",
    L"-.5",
    L"-",
    L"+-1",
    L"- 1",
    L"abc",
    L"\u0664\u0662",
    L"\u22124",
    L"4\0002"s,
    L"\00042"s,
};

TEST(VariantNumbersFacets, ReadsWhatAPlainStreamReadsUnderEachLocale) {
    ASSERT_GE(readingLocales().size(), 18U);
    for (ReadingLocale const& row : readingLocales()) {
        SCOPED_TRACE(row.fact);
        ScopedCppLocale const cpp(row.locale);
        for (std::wstring const& text : TEXTS)
            ASSERT_NO_FATAL_FAILURE(expectReadAsStreamed(text, row));
    }
}

std::wstring randomDigits(std::mt19937_64& engine, std::size_t most) {
    std::wstring digits;
    for (std::size_t count = engine() % (most + 1); count > 0; --count)
        digits += static_cast<wchar_t>(L'0' + engine() % 10);
    return digits;
}

// A plain number in half of the cases; else characters that numbers are made of, in any order.
std::wstring randomText(std::mt19937_64& engine) {
    std::wstring const signs[] = {L"", L"", L"-", L"+"};
    if (engine() % 2 == 0) return signs[engine() % 4] + randomDigits(engine, 21);
    std::wstring const characters = L"0123456789012345678901234567890+-+-.,  \t\u2003\u0664xa\0"s;
    std::wstring text;
    for (std::size_t count = engine() % 12; count > 0; --count)
        text += characters[engine() % characters.size()];
    return text;
}

TEST(VariantNumbersFacets, ReadsRandomStringsAsAPlainStreamDoes) {
    std::mt19937_64 engine = randomEngine();
    for (ReadingLocale const& row : readingLocales()) {
        SCOPED_TRACE(row.fact);
        ScopedCppLocale const cpp(row.locale);
        for (int i = 0; i < 400; ++i)
            ASSERT_NO_FATAL_FAILURE(expectReadAsStreamed(randomText(engine), row));
    }
}

// ---- results as literals: a stream and a Variant could make the same mistake

struct FacetFact {
    char const* locale;
    std::wstring text;
    long value;
};

FacetFact const FACET_FACTS[] = {
    {"a named locale with a minus between groups", L"-42", 0},
    {"a named locale with digits as separators", L"152", 1},
    {"a named locale with a plus as decimal point", L"+42", 0},
    {"a named locale in which signs are whitespace", L"-42", 42},
    {"num_get that reads hexadecimal digits", L"31", 49},
    {"a host's num_get, combined into the classic locale", L"31", 49},
    {"num_get that throws an int", L"42", 0},
    {"num_get that throws std::runtime_error", L"42", 0},
    {"num_get that throws after it has stored the value", L"42", 42},
    {"num_get that sets badbit", L"42", 42},
    {"num_get that fails its iterator", L"42", 42},
    {"numpunct with a minus between groups", L"-42", 0},
    {"numpunct with a digit as decimal point", L"142", 1},
    {"ctype with digits of another script", L"42", 0},
    {"ctype with digits of another script", L"\u0664\u0662", 42},
    {"ctype with another minus", L"-42", 0},
    {"ctype with a digit and a sign as whitespace", L"-42", 2},
    {"ctype that throws when it is asked for whitespace", L"42", 0},
    {"ctype that throws when it widens", L"42", 0},
};

TEST(VariantNumbersFacets, FollowsEachFacet) {
    for (FacetFact const& row : FACET_FACTS) {
        SCOPED_TRACE(row.locale);
        int found = 0;
        for (ReadingLocale const& locale : readingLocales()) {
            if (std::string(locale.fact) != row.locale) continue;
            ++found;
            ScopedCppLocale const cpp(locale.locale);
            EXPECT_EQ(Variant(row.text).toInt64(), row.value);
            EXPECT_EQ(extractInt64(row.text), row.value);
        }
        EXPECT_EQ(found, 1);
    }
}

// ---- which strings a fast path reads

struct FastFact {
    char const* fact;
    char const* locale;
    std::wstring text;
    std::optional<long> value;
};

char const* const GERMAN = "de_DE.UTF-8";

FastFact const FAST_FACTS[] = {
    {"digits are read", GERMAN, L"1234567", 1234567},
    {"a minus and digits are read", GERMAN, L"-42", -42},
    {"a number above the range is read", GERMAN, L"99999999999999999999", LONG_MAX},
    {"a number below the range is read", GERMAN, L"-99999999999999999999", LONG_MIN},
    {"whitespace before a number is skipped", GERMAN, L" \u2003-42", -42},
    {"letters after a number are ignored", GERMAN, L"42 km", 42},
    {"the decimal point ends a number", GERMAN, L"1,5", 1},
    {"a string without digits is 0", GERMAN, L"abc", 0},
    {"an empty string is 0", GERMAN, L"", 0},
    {"a separator within a number is left to the stream", GERMAN, L"1.234", std::nullopt},
    {"a separator after a number is left to the stream", GERMAN, L"12.", std::nullopt},
    {"a separator before a number is left to the stream", GERMAN, L".12", std::nullopt},
    {"a separator that is a sign leaves all to the stream", "mm_MM.ISO-8859-1", L"42",
     std::nullopt},
    {"a separator that is a digit leaves all to the stream", "nn_NN.ISO-8859-1", L"42",
     std::nullopt},
    {"a decimal point that is a sign leaves all to the stream", "pp_PP.ISO-8859-1", L"42",
     std::nullopt},
    {"a sign that is whitespace is skipped", "ss_SS.ISO-8859-1", L"-42", 42},
    {"the classic locale is read as any other", "C", L" -42 km", -42},
};

TEST(VariantNumbersFacets, ReadsMostStringsWithoutAStream) {
    for (FastFact const& row : FAST_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(readStandardInt64(row.text, std::locale(row.locale)), row.value);
        ScopedCppLocale const cpp(row.locale);
        EXPECT_EQ(Variant(row.text).toInt64(), streamed(row.text));
    }
}

TEST(VariantNumbersFacets, LeavesEachFacetOfAHostToTheStream) {
    for (ReadingLocale const& row : readingLocales()) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(standardReadingFacets(row.locale).has_value(), row.standard);
        if (!row.standard) {
            EXPECT_EQ(readStandardInt64(L"42", row.locale), std::nullopt);
        }
    }
}

// The fast path of the classic locale knows which characters a stream skips, and asks no facet.
TEST(VariantNumbersFacets, TheClassicLocaleHasSixCharactersOfWhitespace) {
    auto const& facet = std::use_facet<std::ctype<wchar_t>>(std::locale::classic());
    constexpr wchar_t LAST_CHARACTER = 0x10FFFF;
    std::wstring text = L"x7";
    for (wchar_t c = 1; c <= LAST_CHARACTER; ++c) {
        bool const isNumber = (c >= L'0' && c <= L'9') || c == L'+' || c == L'-';
        if (isNumber) continue;
        text[0] = c;
        ASSERT_EQ(readClassicInt64(text), facet.is(std::ctype_base::space, c) ? 7 : 0)
            << static_cast<unsigned long>(c);
    }
    text[0] = static_cast<wchar_t>(-1);
    EXPECT_EQ(readClassicInt64(text), 0);
}

// A stream copies the string. So a function that allocates nothing has made none.
TEST(VariantNumbersFacets, AllocatesNothingIfAFastPathReads) {
    Variant const plain(L"-12345678901234567890");
    Variant const framed(L" \t 12345678901234567890 kilometres");
    Variant const grouped(L"12.345.678.901.234.567.890");
    {
        ScopedCppLocale const cpp("C");
        EXPECT_EQ(allocationsOf([&] { static_cast<void>(plain.toInt64()); }), 0);
        EXPECT_EQ(allocationsOf([&] { static_cast<void>(framed.toInt64()); }), 0);
        EXPECT_EQ(allocationsOf([&] { static_cast<void>(grouped.toInt64()); }), 0);
    }
    ScopedCppLocale const cpp(GERMAN);
    EXPECT_EQ(allocationsOf([&] { static_cast<void>(plain.toInt64()); }), 0);
    EXPECT_EQ(allocationsOf([&] { static_cast<void>(framed.toInt64()); }), 0);
    EXPECT_GT(allocationsOf([&] { static_cast<void>(grouped.toInt64()); }), 0);
}

// ---- what passes

// The stream itself allocates, and a new locale does at the first number that is read with it.
TEST(VariantNumbersFacets, LetsAFailedAllocationOfTheStreamPass) {
    Variant const grouped(L"2.345.678.901.234.567.890");
    long failed = 0;
    for (;; ++failed) {
        ScopedCppLocale const cpp{std::locale(GERMAN)};
        long value = 0;
        if (!failsWithout(failed, [&] { value = grouped.toInt64(); })) {
            EXPECT_EQ(value, 2345678901234567890);
            break;
        }
        EXPECT_EQ(value, 0);
    }
    EXPECT_GE(failed, 2);
}

class NumGetWithoutMemory : public std::num_get<wchar_t> {
protected:
    iter_type do_get(iter_type /*from*/, iter_type /*end*/, std::ios_base& /*stream*/,
                     std::ios_base::iostate& /*state*/, long& value) const override {
        value = 7;
        throw std::bad_alloc();
    }
};

TEST(VariantNumbersFacets, LetsAFailedAllocationOfAFacetPass) {
    ScopedCppLocale const cpp(std::locale(std::locale::classic(), new NumGetWithoutMemory));
    EXPECT_THROW(static_cast<void>(Variant(L"42").toInt32()), std::bad_alloc);
    EXPECT_THROW(static_cast<void>(static_cast<long>(Variant(L"42"))), std::bad_alloc);
}

class CancellingNumGet : public std::num_get<wchar_t> {
protected:
    iter_type do_get(iter_type from, iter_type /*end*/, std::ios_base& /*stream*/,
                     std::ios_base::iostate& /*state*/, long& /*value*/) const override {
        cancelThisThread();
        return from;
    }
};

TEST(VariantNumbersFacets, LetsTheCancellationOfAThreadPass) {
    ScopedCppLocale const cpp(std::locale(std::locale::classic(), new CancellingNumGet));
    EXPECT_TRUE(endsByCancellation([] { static_cast<void>(Variant(L"42").toInt64()); }));
}

}  // namespace
