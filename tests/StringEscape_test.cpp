#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "utillibrary/internal/byte_class.h"
#include "utillibrary/utilities/StringEscape_internal.h"
#include <utillibrary/utilities/StringUtilities.h>

#include "support/failing_allocations.h"
#include "support/locales.h"
#include "support/random.h"
#include "support/text_models.h"

// escapeString. The test of unescapeString has the round trips.

using namespace com::halvorin::utilities;
using namespace testing_support;

namespace internal = com::halvorin::internal;

namespace {

std::string const NUL(1, '\0');

// ---- escapeString and each of its paths

struct EscapeFact {
    char const* fact;
    std::string text;
    std::string escaped;
    std::string keepingSpaces;
};

EscapeFact const ESCAPE_FACTS[] = {
    {"the empty string stays empty", "", "", ""},
    {"graphic bytes stay", "aZ09!~#$%&'(?@[]^`{|}", "aZ09!~#$%&'(?@[]^`{|}",
     "aZ09!~#$%&'(?@[]^`{|}"},
    {"a space stays if it may", "a b", "a\\u0020b", "a b"},
    {"form feed has a letter", "\f", "\\f", "\\f"},
    {"line feed has a letter", "\n", "\\n", "\\n"},
    {"carriage return has a letter", "\r", "\\r", "\\r"},
    {"tab has a letter", "\t", "\\t", "\\t"},
    {"double quote has a letter", "\"", "\\\"", "\\\""},
    {"backspace has a letter", "\b", "\\b", "\\b"},
    {"the vertical tab has no letter", "\v", "\\u000b", "\\u000b"},
    {"the bell has no letter", "\a", "\\u0007", "\\u0007"},
    {"a zero byte becomes digits", "a" + NUL + "b", "a\\u0000b", "a\\u0000b"},
    {"the last control byte before the space becomes digits", "\x1F", "\\u001f", "\\u001f"},
    {"the delete byte becomes digits", "\x7F", "\\u007f", "\\u007f"},
    // KEPT(escape-widens-by-sign)
    {"the byte 0x80 is widened by its sign", "\x80", "\\uff80", "\\uff80"},
    {"the byte 0xC3 is widened by its sign", "\xC3", "\\uffc3", "\\uffc3"},
    {"the byte 0xE9 is widened by its sign", "\xE9", "\\uffe9", "\\uffe9"},
    {"the byte 0xFF is widened by its sign", "\xFF", "\\uffff", "\\uffff"},
    {"a backslash becomes two", "\\", "\\\\", "\\\\"},
    // KEPT(backslash-starts-over)
    {"a backslash drops what is before it", "a\\b", "\\\\b", "\\\\b"},
    {"all before the last backslash is dropped", "C:\\dir\\file", "\\\\file", "\\\\file"},
    {"two backslashes in a row become two", "x\\\\y", "\\\\y", "\\\\y"},
    {"a backslash at the end drops all before it", "x\\", "\\\\", "\\\\"},
    {"a backslash drops escapes that are before it", "\n \xFF\\\n", "\\\\\\n", "\\\\\\n"},
};

// Calls `escapeString`, and each private path that owns the string.
void expectPaths(std::string const& text, bool keepSpace, std::string const& escaped) {
    EXPECT_EQ(escapeString(text, keepSpace), escaped);
    EXPECT_EQ(internal::escapeByLocale(text, keepSpace), escaped);
    internal::ByteClasses const classes;
    internal::Escaping const escaping{keepSpace, classes.graphicIsUsual()};
    EXPECT_EQ(internal::escaped(text, escaping), escaped);
    if (classes.graphicIsUsual()) {
        EXPECT_EQ(internal::escapeAsUsual(text, keepSpace), escaped);
        EXPECT_EQ(internal::isPlain(text, keepSpace), escaped == text);
    } else if (classes.asciiIsGraphic() && internal::isPlain(text, keepSpace)) {
        EXPECT_EQ(escaped, text);
    }
    std::vector<char> room(internal::escapedRoom(text.size()));
    char* const end = internal::writeEscaped(room.data(), text, escaping);
    EXPECT_EQ(std::string(room.data(), end), escaped);
}

// Alone, and after and before as many plain bytes as a word or a block has, and more.
void expectEscape(EscapeFact const& row, bool keepSpace) {
    std::string const& escaped = keepSpace ? row.keepingSpaces : row.escaped;
    expectPaths(row.text, keepSpace, escaped);
    bool const startsOver = row.text.find('\\') != std::string::npos;
    for (std::size_t size : {1U, 3U, 7U, 8U, 15U, 16U, 31U, 32U, 63U, 64U, 65U, 100U, 600U}) {
        std::string const plain(size, 'p');
        std::string const front = startsOver ? "" : plain;
        expectPaths(plain + row.text, keepSpace, front + escaped);
        expectPaths(row.text + plain, keepSpace, escaped + plain);
        expectPaths(plain + row.text + plain, keepSpace, front + escaped + plain);
    }
}

TEST(EscapeString, WritesEscapesForBytesThatAreNotGraphic) {
    for (char const* const locale : {"C", "de_DE.UTF-8", "tr_TR.UTF-8"}) {
        ScopedLocale const scope(locale);
        for (EscapeFact const& row : ESCAPE_FACTS) {
            SCOPED_TRACE(std::string(locale) + ": " + row.fact);
            expectEscape(row, false);
            expectEscape(row, true);
        }
    }
}

struct LocaleFact {
    char const* locale;
    EscapeFact row;
};

LocaleFact const LOCALE_FACTS[] = {
    // KEPT(byte-ff-is-eof): the character 255 is a letter in this locale.
    {"fr_FR.ISO-8859-15",
     {"letters above 0x7F are graphic, but not the byte 0xFF", "\xC9t\xE9 \xD7\xA0\xFF",
      "\xC9t\xE9\\u0020\xD7\xA0\\uffff", "\xC9t\xE9 \xD7\xA0\\uffff"}},
    {"xx_XX.ISO-8859-1",
     {"some letters above 0x7F are graphic", "\xC9t\xE9 \xD7\xA0\xFF",
      "\xC9t\\uffe9\\u0020\\uffd7\\uffa0\\uffff", "\xC9t\\uffe9 \\uffd7\\uffa0\\uffff"}},
    {"xx_XX.ISO-8859-1",
     {"0xC0 is graphic and 0xE9 is not", "\xE9\xD7\xC0", "\\uffe9\\uffd7\xC0",
      "\\uffe9\\uffd7\xC0"}},
    {"yy_YY.ISO-8859-1", {"a control byte is graphic", "\x01", "\x01", "\x01"}},
    {"yy_YY.ISO-8859-1", {"the byte 0x80 is graphic", "\x80", "\x80", "\x80"}},
    {"yy_YY.ISO-8859-1", {"'#' is not graphic", "a#b", "a\\u0023b", "a\\u0023b"}},
    {"vv_VV.ISO-8859-1", {"0x7F is graphic and '~' is not", "~\x7F", "\\u007e\x7F", "\\u007e\x7F"}},
    {"ww_WW.ISO-8859-1", {"'!' is not graphic", "a!", "a\\u0021", "a\\u0021"}},
    {"ww_WW.ISO-8859-1",
     {"a space stays beside a '!' that is not graphic", "! !", "\\u0021\\u0020\\u0021",
      "\\u0021 \\u0021"}},
    {"zz_ZZ.ISO-8859-1",
     {"0x80 is graphic and 0x81 is not", "\x80\x81", "\x80\\uff81", "\x80\\uff81"}},
    {"uu_UU.ISO-8859-1",
     {"0x1F is graphic and 0x1E is not", "\x1E\x1F", "\\u001e\x1F", "\\u001e\x1F"}},
};

TEST(EscapeString, AsksTheCLocaleWhatIsGraphic) {
    for (LocaleFact const& fact : LOCALE_FACTS) {
        SCOPED_TRACE(std::string(fact.locale) + ": " + fact.row.fact);
        ScopedCLocale const scope(fact.locale);
        expectEscape(fact.row, false);
        expectEscape(fact.row, true);
    }
    ScopedCLocale const c("C");
    ScopedCppLocale const cpp("fr_FR.ISO-8859-15");
    EXPECT_EQ(escapeString("\xC9", false), "\\uffc9");
}

TEST(EscapeString, WritesEachOfThe256Bytes) {
    for (std::string const& locale : byteLocales()) {
        ScopedCLocale const scope(locale);
        std::string all;
        for (int c = 255; c >= 0; --c) {
            SCOPED_TRACE(locale + ' ' + std::to_string(c));
            std::string const text(1, static_cast<char>(c));
            all += text;
            expectPaths(text, false, modelOfEscape(text, false));
            expectPaths(text, true, modelOfEscape(text, true));
        }
        expectPaths(all, false, modelOfEscape(all, false));
        // Without the backslash, so that every byte is written.
        std::erase(all, '\\');
        expectPaths(all, false, modelOfEscape(all, false));
        expectPaths(all, true, modelOfEscape(all, true));
    }
}

// The longest results, below, at and above the size up to which a result is made on the stack.
TEST(EscapeString, WritesSixCharactersForEachByte) {
    ScopedCLocale const scope("C");
    for (std::size_t size : {1U, 63U, 64U, 65U, 511U, 512U, 513U}) {
        std::string escaped;
        for (std::size_t i = 0; i < size; ++i)
            escaped += "\\u0001";
        expectPaths(std::string(size, '\x01'), false, escaped);
    }
}

TEST(EscapeString, EqualsItsModelOnAnyString) {
    std::mt19937_64 engine = randomEngine();
    std::string const characters[] = {"abcdefgh ", "abcdefghijklmnop\n", "\"\n\t\xE9 x", "p"};
    for (std::string const& locale : byteLocales()) {
        ScopedCLocale const scope(locale);
        for (int i = 0; i < 5'000; ++i) {
            std::size_t const limit = i % 100 == 0 ? 3000 : i % 10 == 0 ? 300 : 40;
            std::string const text = anyText(engine, characters[engine() % 4], limit);
            bool const keepSpace = engine() % 2 == 0;
            ASSERT_EQ(escapeString(text, keepSpace), modelOfEscape(text, keepSpace)) << locale;
        }
    }
}

// One byte of another kind at each position of a plain string, which is copied otherwise.
TEST(EscapeString, FindsTheOneByteThatIsNotPlain) {
    for (char const* const locale : {"C", "vv_VV.ISO-8859-1", "ww_WW.ISO-8859-1"}) {
        ScopedCLocale const scope(locale);
        for (char const other : std::string("\x1F !\"#[\\]~\x7F\x80\xFF", 12)) {
            for (std::size_t size = 1; size <= 140; size += size < 66 ? 1 : 9) {
                std::size_t const step = size <= 66 ? 1 : 7;
                for (std::size_t place = 0; place < size; place += step) {
                    std::string text(size, 'p');
                    text.reserve(300);  // a block whose ends a sanitizer guards
                    text[place] = other;
                    ASSERT_EQ(escapeString(text, false), modelOfEscape(text, false)) << text;
                    ASSERT_EQ(escapeString(text, true), modelOfEscape(text, true)) << text;
                }
            }
        }
    }
}

// ---- which strings the fast paths own

struct PlainFact {
    char const* fact;
    std::string text;
    bool plain;
    bool plainKeepingSpaces;
};

PlainFact const PLAIN_FACTS[] = {
    {"the empty string is plain", "", true, true},
    {"the first and the last graphic byte are plain", "!~", true, true},
    {"a space is plain if it is kept", "a b", false, true},
    {"a double quote is not plain", "a\"b", false, false},
    {"a backslash is not plain", "a\\b", false, false},
    {"the byte before the space is not plain", "\x1F", false, false},
    {"the byte after '~' is not plain", "\x7F", false, false},
    {"a byte above 0x7F is not plain", "\xE9", false, false},
};

TEST(IsPlain, KnowsTheStringsThatAreCopied) {
    for (PlainFact const& row : PLAIN_FACTS) {
        SCOPED_TRACE(row.fact);
        for (std::size_t size : {0U, 1U, 2U, 3U, 5U, 13U, 14U, 15U, 16U, 17U, 60U, 64U, 100U}) {
            std::string const plain(size, 'p');
            for (std::string const& text : {plain + row.text, row.text + plain}) {
                EXPECT_EQ(internal::isPlain(text, false), row.plain);
                EXPECT_EQ(internal::isPlain(text, true), row.plainKeepingSpaces);
            }
        }
    }
}

template <typename Word>
void expectCopied(std::string const& text, bool keepSpace, bool copied) {
    SCOPED_TRACE(text);
    std::vector<char> room(text.size() + 1, '#');
    auto const end = internal::copyPlain<Word>(room.data(), text, keepSpace);
    ASSERT_EQ(end.has_value(), copied);
    EXPECT_EQ(std::string(room.data(), end.value_or(room.data())), copied ? text : "");
    EXPECT_EQ(room.back(), '#');
}

TEST(CopyPlain, OwnsPlainStringsOfOneToTwoWords) {
    std::string const text = "abcdefghijklmnopq";
    for (std::size_t size = 0; size <= 17; ++size) {
        expectCopied<std::uint32_t>(text.substr(0, size), false, size >= 4 && size <= 8);
        expectCopied<std::uint64_t>(text.substr(0, size), false, size >= 8 && size <= 16);
    }
    for (PlainFact const& row : PLAIN_FACTS) {
        SCOPED_TRACE(row.fact);
        for (std::string const& longer : {"pppppp" + row.text, row.text + "pppppp"}) {
            std::string const twelve = "pppp" + longer;
            expectCopied<std::uint32_t>(longer, false, row.plain && longer.size() <= 8);
            expectCopied<std::uint32_t>(longer, true, row.plainKeepingSpaces && longer.size() <= 8);
            expectCopied<std::uint64_t>(twelve, false, row.plain);
            expectCopied<std::uint64_t>(twelve, true, row.plainKeepingSpaces);
        }
    }
}

TEST(EscapeString, AllocatesItsResultOnce) {
    std::string const plain(100'000, 'p');
    std::string const spaces(100'000, ' ');
    std::string const backslashes(100'000, '\\');
    struct {
        std::string text;
        long allocations;
        std::size_t bytes;  // with the zero byte at the end
    } const rows[] = {
        {"short", 0, 0},
        {plain, 1, 100'001},
        {plain + " ", 1, 100'007},
        {spaces, 1, 600'001},
        {spaces + plain, 1, 700'001},
        {backslashes, 0, 0},
        {plain + backslashes, 0, 0},
        {spaces + "\\" + plain, 1, 100'003},
    };
    for (char const* const locale : {"C", "fr_FR.ISO-8859-15"}) {
        ScopedCLocale const scope(locale);
        for (auto const& row : rows) {
            SCOPED_TRACE(locale + row.text.substr(0, 10));
            EXPECT_EQ(allocationsOf([&] { escapeString(row.text, false); }), row.allocations);
            EXPECT_EQ(watchedBytes(), row.bytes);
        }
    }
}

// The fast path makes a string of 16 to 29 bytes exactly. The general path reserves its size, and
// the standard library then reserves 30.
TEST(EscapeString, TakesTheFastPathUnderAUsualLocale) {
    std::string const text = "ab cdefghijklmn";
    ScopedCLocale const scope("C");
    EXPECT_EQ(escapeString(text, false).capacity(), 20U);
    EXPECT_EQ(internal::escapeAsUsual(text, false).capacity(), 20U);
    EXPECT_EQ(internal::escaped(text, {false, true}).capacity(), 20U);
}

}  // namespace
