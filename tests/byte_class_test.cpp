#include <string>

#include <gtest/gtest.h>

#include "utillibrary/utilities/byte_class_internal.h"

#include "support/locales.h"

using namespace com::halvorin::internal;
using namespace testing_support;

// The tables of one libc, held against the functions of every libc.
namespace {

TEST(ByteClasses, AreThoseOfTheFunctions) {
    for (std::string const& locale : byteLocales()) {
        ScopedCLocale const scope(locale);
        CalledClasses const called;
        ByteClasses const classes;
        CalledLowerCase const calledLower;
        LowerCase const lower;
        for (int byte = -128; byte < 128; ++byte) {
            auto const c = static_cast<char>(byte);
            EXPECT_EQ(classes.isBlank(c), called.isBlank(c)) << locale << ' ' << byte;
            EXPECT_EQ(classes.isGraphic(c), called.isGraphic(c)) << locale << ' ' << byte;
            EXPECT_EQ(classes.isHexDigit(c), called.isHexDigit(c)) << locale << ' ' << byte;
            EXPECT_EQ(static_cast<char>(lower(c)), static_cast<char>(calledLower(c)))
                << locale << ' ' << byte;
        }
    }
}

struct UsualFact {
    char const* locale;
    bool usual;
};

UsualFact const USUAL_FACTS[] = {
    {"C",                 true },
    {"de_DE.UTF-8",       true },
    {"tr_TR.UTF-8",       true },
    {"fr_FR.ISO-8859-15", false}, // letters above 0x7F
    {"xx_XX.ISO-8859-1",  false}, // some of them
    {"yy_YY.ISO-8859-1",  false}, // a control byte and 0x80, and "#" is missing
    {"zz_ZZ.ISO-8859-1",  false}, // 0x80 alone
};

TEST(ByteClasses, KnowTheUsualGraphicBytes) {
    for (UsualFact const& row : USUAL_FACTS) {
        ScopedCLocale const scope(row.locale);
        EXPECT_EQ(ByteClasses().graphicIsUsual(), row.usual) << row.locale;
        EXPECT_EQ(CalledClasses().graphicIsUsual(), row.usual) << row.locale;
    }
}

}  // namespace
