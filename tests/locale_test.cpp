#include "utillibrary/internal/locale.h"

#include <locale>

#include <gtest/gtest.h>

#include "support/locales.h"
#include "support/reading_locales.h"
#include "support/writing_locales.h"

using com::halvorin::internal::decimalPointIsDot;
using com::halvorin::internal::isClassic;
using com::halvorin::internal::singleDecimalPoint;
using com::halvorin::internal::standardReadingFacets;
using com::halvorin::internal::wideDecimalPoint;
using com::halvorin::internal::wideStreamsWritePlainNumbers;
using com::halvorin::internal::writesPlainNumbers;
using testing_support::ScopedCLocale;
using testing_support::ScopedCppLocale;

namespace {

struct PointFact {
    char const* locale;
    char narrow;
    wchar_t wide;
};

PointFact const POINT_FACTS[] = {
    {"C", '.', L'.'},
    {"en_US.UTF-8", '.', L'.'},
    {"de_DE.UTF-8", ',', L','},
    {"ps_AF.UTF-8", '\0', L'\u066B'},  // two bytes in UTF-8
    {"ee_EE.ISO-8859-1", 'e', L'e'},
};

TEST(Locale, TellsTheDecimalPointOfTheCLocale) {
    ScopedCppLocale const cpp("de_DE.UTF-8");
    for (PointFact const& row : POINT_FACTS) {
        SCOPED_TRACE(row.locale);
        ScopedCLocale const c(row.locale);
        EXPECT_EQ(singleDecimalPoint(), row.narrow);
        EXPECT_EQ(wideDecimalPoint(), row.wide);
        EXPECT_EQ(decimalPointIsDot(), row.narrow == '.');
    }
}

TEST(Locale, TellsTheClassicLocaleFromEachOther) {
    std::locale const classic = std::locale::classic();
    EXPECT_TRUE(isClassic(classic));
    EXPECT_TRUE(isClassic(std::locale("C")));
    EXPECT_FALSE(isClassic(std::locale("de_DE.UTF-8")));
    auto const combined = classic.combine<std::numpunct<wchar_t>>(std::locale("de_DE.UTF-8"));
    EXPECT_FALSE(isClassic(combined));
    ScopedCLocale const c("de_DE.UTF-8");
    {
        ScopedCppLocale const cpp(classic);
        EXPECT_TRUE(isClassic(std::locale()));
    }
    ScopedCppLocale const cpp(combined);
    EXPECT_FALSE(isClassic(std::locale()));
}

TEST(Locale, TellsTheFacetsOfTheLibraryFromThoseOfAHost) {
    for (auto const& row : testing_support::readingLocales()) {
        SCOPED_TRACE(row.fact);
        auto const facets = standardReadingFacets(row.locale);
        ASSERT_EQ(facets.has_value(), row.standard);
        if (!facets) continue;
        EXPECT_EQ(&facets->punctuation, &std::use_facet<std::numpunct<wchar_t>>(row.locale));
        EXPECT_EQ(&facets->characters, &std::use_facet<std::ctype<wchar_t>>(row.locale));
    }
}

TEST(Locale, TellsWhereNumbersAreWrittenAsInTheClassicLocale) {
    for (auto const& row : testing_support::writingLocales()) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(writesPlainNumbers(row.locale), row.plain);
        ScopedCppLocale const cpp(row.locale);
        EXPECT_EQ(wideStreamsWritePlainNumbers(), row.plain);
    }
}

}  // namespace
