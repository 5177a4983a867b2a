#include <string>

#include <gtest/gtest.h>

#include <utillibrary/utilities/StringTrim.h>

#include "support/locales.h"
#include "support/random.h"
#include "support/text_models.h"

using com::halvorin::utilities::trim;
using namespace testing_support;

namespace {

struct TrimFact {
    char const* fact;
    std::string text;
    std::string trimmed;
};

std::string const NUL(1, '\0');
std::string const LONG(64, 'x');

TrimFact const TRIM_FACTS[] = {
    {"an empty text is empty", "", ""},
    {"a text of blanks is empty", " \t\r\n", ""},
    {"one blank is empty", " ", ""},
    {"all six blanks go, at both ends", " \t\n\v\f\ra\r\f\v\n\t ", "a"},
    {"blanks inside stay", "  a b  ", "a b"},
    {"one end is trimmed without the other", "a ", "a"},
    {"nor the other without the one", " a", "a"},
    {"a text without blanks stays", "abc", "abc"},
    {"a zero byte is no blank", " " + NUL + "a" + NUL + " ", NUL + "a" + NUL},
    {"nor are the other control bytes", "\b\x0E\x1F\x7F", "\b\x0E\x1F\x7F"},
    {"nor is a no-break space in UTF-8", "\xC2\240a", "\xC2\240a"},
    {"nor a next-line character", "\205a\x85", "\205a\x85"},
    {"a long text keeps its middle", "\n" + LONG + "\t", LONG},
};

TEST(Trim, TakesTheBlanksOffBothEnds) {
    for (std::string const& locale : allLocales()) {
        ScopedLocale const scope(locale);
        for (TrimFact const& row : TRIM_FACTS) {
            SCOPED_TRACE(locale + ": " + row.fact);
            std::string const text = row.text;
            EXPECT_EQ(trim(text), row.trimmed);
            EXPECT_EQ(text, row.text);
        }
    }
}

TEST(Trim, KnowsSixBlanksInC) {
    ScopedCLocale const scope("C");
    std::string blanks;
    for (int c = 0; c < 256; ++c) {
        if (trim(std::string(1, static_cast<char>(c))).empty()) blanks += static_cast<char>(c);
    }
    EXPECT_EQ(blanks, "\t\n\v\f\r ");
}

TEST(Trim, AsksTheCLocaleWhatABlankIs) {
    ScopedCLocale const scope("xx_XX.ISO-8859-1");
    EXPECT_EQ(trim("\240a \xA0"), "a");
    EXPECT_EQ(trim("\241a"), "\241a");
    // KEPT(byte-ff-is-eof): this locale has the character 255 blank.
    EXPECT_EQ(trim("\377a\xFF"), "\377a\xFF");
}

TEST(Trim, DoesNotAskTheGlobalCppLocale) {
    ScopedCLocale const c("C");
    ScopedCppLocale const cpp("xx_XX.ISO-8859-1");
    EXPECT_EQ(trim("\240a\xA0"), "\240a\xA0");
}

TEST(Trim, EqualsItsModelOnAnyText) {
    std::mt19937_64 engine = randomEngine();
    std::string const bytes = "\t\n\r \v\f\x85\xA0\377a" + NUL;
    for (char const* const locale : {"C", "fr_FR.ISO-8859-15", "xx_XX.ISO-8859-1"}) {
        ScopedCLocale const scope(locale);
        for (int i = 0; i < 100'000; ++i) {
            std::string text(engine() % 12, ' ');
            for (char& c : text)
                c = bytes[engine() % bytes.size()];
            ASSERT_EQ(trim(text), modelOfTrim(text)) << locale;
        }
    }
}

}  // namespace
