#include "utillibrary/internal/byte_class.h"

#include <string>

#include <gtest/gtest.h>

#include "support/locales.h"

using namespace com::halvorin::internal;
using namespace testing_support;

// glibc's tables give what the functions of every libc give.
namespace {

TEST(ByteClasses, AreThoseOfTheFunctions) {
    for (std::string const& locale : byteLocales()) {
        ScopedCLocale const scope(locale);
        ClassesByFunction const byFunction;
        ByteClasses const classes;
        LowerCaseByFunction const lowerByFunction;
        LowerCase const lower;
        for (int byte = -128; byte < 128; ++byte) {
            auto const c = static_cast<char>(byte);
            EXPECT_EQ(classes.isWhitespace(c), byFunction.isWhitespace(c)) << locale << ' ' << byte;
            EXPECT_EQ(classes.isGraphic(c), byFunction.isGraphic(c)) << locale << ' ' << byte;
            EXPECT_EQ(classes.isHexDigit(c), byFunction.isHexDigit(c)) << locale << ' ' << byte;
            EXPECT_EQ(lower(c), lowerByFunction(c)) << locale << ' ' << byte;
        }
    }
}

struct GraphicFact {
    char const* locale;
    bool ascii;
    bool others;
    bool usual;
};

GraphicFact const GRAPHIC_FACTS[] = {
    {"C", true, false, true},
    {"de_DE.UTF-8", true, false, true},
    {"tr_TR.UTF-8", true, false, true},
    {"fr_FR.ISO-8859-15", true, true, false},   // letters above 0x7F
    {"uu_UU.ISO-8859-1", true, true, false},    // 0x1F
    {"vv_VV.ISO-8859-1", false, true, false},   // 0x7F is graphic, "~" is not
    {"ww_WW.ISO-8859-1", false, false, false},  // "!" is printable, but not graphic
    {"xx_XX.ISO-8859-1", true, true, false},    // some letters above 0x7F
    {"yy_YY.ISO-8859-1", false, true, false},   // a control byte and 0x80 are graphic, "#" is not
    {"zz_ZZ.ISO-8859-1", true, true, false},    // 0x80
};

template <typename Classes>
void expectGraphic(GraphicFact const& row) {
    Classes const classes;
    EXPECT_EQ(classes.asciiIsGraphic(), row.ascii);
    EXPECT_EQ(classes.othersAreGraphic(), row.others);
    EXPECT_EQ(classes.graphicIsUsual(), row.usual);
}

TEST(ByteClasses, KnowTheUsualGraphicBytes) {
    for (GraphicFact const& row : GRAPHIC_FACTS) {
        SCOPED_TRACE(row.locale);
        ScopedCLocale const scope(row.locale);
        expectGraphic<ByteClasses>(row);
        expectGraphic<ClassesByFunction>(row);
    }
}

}  // namespace
