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
std::string const BYTES_64(64, 'x');

TrimFact const TRIM_FACTS[] = {
    {"the empty string stays empty", "", ""},
    {"a string of whitespace becomes empty", " \t\r\n", ""},
    {"a single space becomes empty", " ", ""},
    {"all six kinds of whitespace are dropped at both ends", " \t\n\v\f\ra\r\f\v\n\t ", "a"},
    {"whitespace inside stays", "  a b  ", "a b"},
    {"whitespace at the end alone is dropped", "a ", "a"},
    {"whitespace at the front alone is dropped", " a", "a"},
    {"a string without whitespace stays", "abc", "abc"},
    {"a zero byte is no whitespace", " " + NUL + "a" + NUL + " ", NUL + "a" + NUL},
    {"the other control bytes are no whitespace", "\b\x0E\x1F\x7F", "\b\x0E\x1F\x7F"},
    {"a no-break space of UTF-8 is no whitespace", "\xC2\240a", "\xC2\240a"},
    {"a byte 0x85 is no whitespace", "\205a\x85", "\205a\x85"},
    {"64 bytes between whitespace stay", "\n" + BYTES_64 + "\t", BYTES_64},
};

TEST(Trim, DropsWhitespaceAtBothEnds) {
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

TEST(Trim, KnowsSixKindsOfWhitespaceInC) {
    ScopedCLocale const scope("C");
    std::string whitespace;
    for (int c = 0; c < 256; ++c) {
        if (trim(std::string(1, static_cast<char>(c))).empty()) whitespace += static_cast<char>(c);
    }
    EXPECT_EQ(whitespace, "\t\n\v\f\r ");
}

TEST(Trim, AsksTheCLocaleWhatWhitespaceIs) {
    ScopedCLocale const scope("xx_XX.ISO-8859-1");
    EXPECT_EQ(trim("\240a \xA0"), "a");
    EXPECT_EQ(trim("\241a"), "\241a");
    // KEPT(byte-ff-is-eof): the character 255 is whitespace in this locale.
    EXPECT_EQ(trim("\377a\xFF"), "\377a\xFF");
}

TEST(Trim, DoesNotAskTheGlobalCppLocale) {
    ScopedCLocale const c("C");
    ScopedCppLocale const cpp("xx_XX.ISO-8859-1");
    EXPECT_EQ(trim("\240a\xA0"), "\240a\xA0");
}

TEST(Trim, EqualsItsModelOnAnyString) {
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
