#include <algorithm>
#include <string>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>

#include <utillibrary/utilities/StringUtilities.h>

#include "support/failing_allocations.h"
#include "support/locales.h"
#include "support/random.h"
#include "support/text_models.h"

using namespace com::halvorin::utilities;
using namespace testing_support;

namespace {

using Texts = std::vector<std::string>;

std::string const NUL(1, '\0');

// ---- searchVector

struct SearchFact {
    char const* fact;
    Texts list;
    std::string text;
    bool partial;
    std::size_t position;  // the list's size: not found
};

std::string const SHORTER(63, 'a');
std::string const LONGER(64, 'a');

SearchFact const SEARCH_FACTS[] = {
    {"nothing is found in an empty list", {}, "", true, 0},
    {"nor as a whole element", {}, "", false, 0},
    {"a whole element is found", {"a", "abc", "b"}, "abc", false, 1},
    {"the first of several", {"x", "a", "a"}, "a", false, 1},
    {"the last one too", {"x", "y", "z"}, "z", false, 2},
    {"with its case", {"ABC"}, "abc", false, 1},
    {"and not as a part", {"abcd", "xabc"}, "abc", false, 2},
    {"nor the other way round", {"ab"}, "abc", false, 1},
    {"an empty text is an empty element", {"a", ""}, "", false, 1},
    {"partly, the end of an element is found", {"x", "abcd"}, "cd", true, 1},
    {"and its middle", {"x", "abcd"}, "bc", true, 1},
    {"and its start", {"x", "abcd"}, "ab", true, 1},
    {"in the first element that has it", {"x", "1a", "2a"}, "a", true, 1},
    {"with its case, partly too", {"xABCx"}, "abc", true, 1},
    {"in one run of bytes", {"axb"}, "ab", true, 1},
    {"an empty text is in the first element", {"a", ""}, "", true, 0},
    {"a zero byte is like any other", {"a", "a" + NUL + "b"}, NUL + "b", true, 1},
    {"and does not end an element", {"a" + NUL + "b", "a"}, "a", false, 1},
    {"nor make two elements equal", {"a" + NUL + "b"}, "a" + NUL + "c", false, 1},
    {"a text of 63 bytes is found", {"x", "y" + SHORTER + "z"}, SHORTER, true, 1},
    {"one of 64", {"x", "y" + LONGER + "z"}, LONGER, true, 1},
    {"or not", {SHORTER, LONGER + LONGER}, LONGER + "b", true, 2},
    {"the end of a long one is looked at", {LONGER + LONGER, LONGER + "b"}, LONGER + "b", true, 1},
};

TEST(SearchVector, FindsTheFirstElementThatMatches) {
    for (SearchFact const& row : SEARCH_FACTS) {
        SCOPED_TRACE(row.fact);
        Texts list = row.list;
        Texts const& constant = list;
        EXPECT_EQ(searchVector(list, row.text, row.partial) - list.begin(),
                  static_cast<std::ptrdiff_t>(row.position));
        EXPECT_EQ(searchVector(constant, row.text, row.partial) - constant.begin(),
                  static_cast<std::ptrdiff_t>(row.position));
    }
}

TEST(SearchVector, GivesAPositionToWriteToWhereTheListMayChange) {
    Texts list = {"a", "b"};
    *searchVector(list, "b", false) = "c";
    EXPECT_EQ(list, (Texts{"a", "c"}));
    static_assert(std::is_same_v<decltype(searchVector(std::declval<Texts const&>(), "", false)),
                                 Texts::const_iterator>);
    static_assert(std::is_same_v<decltype(searchVector(list, "", false)), Texts::iterator>);
}

// ---- endsWith

struct EndFact {
    std::string text;
    std::string suffix;
    bool ends;
};

EndFact const END_FACTS[] = {
    {"abc", "", true},
    {"", "", true},
    {"", "a", false},
    {"abc", "c", true},
    {"abc", "bc", true},
    {"abc", "abc", true},
    {"bc", "abc", false},
    {"abc", "ab", false},
    {"abc", "C", false},
    {"a" + NUL + "b", "b", true},
    {"a" + NUL + "b", NUL + "b", true},
    {"ab" + NUL, "b", false},
    {"ab", "b" + NUL, false},
    // Before a short text lies its size, whose last byte is zero.
    {"b", NUL + "b", false},
};

TEST(EndsWith, ComparesTheLastBytes) {
    for (EndFact const& row : END_FACTS) {
        EXPECT_EQ(endsWith(row.text, row.suffix), row.ends) << row.text << ", " << row.suffix;
    }
}

// ---- iequals

struct EqualFact {
    char const* fact;
    std::string text;
    std::string other;
    bool equal;
};

std::string const LETTERS = "abcdefghijklmnopqrstuvwxyz";
std::string const CAPITALS = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
std::string const FIFTEEN = "onetwothreefour";
std::string const SIXTEEN = "onetwothreefour5";

EqualFact const EQUAL_FACTS[] = {
    {"an empty text equals any", "", "anything", true},
    {"also an empty one", "", "", true},
    {"case does not matter", "Ab", "aB", true},
    {"all letters have two cases", LETTERS, CAPITALS, true},
    {"either way round", CAPITALS, LETTERS, true},
    {"other letters differ", "ab", "ac", false},
    {"at the front too", "ab", "bb", false},
    {"the other text may go on", "abc", "ABCdef", true},  // KEPT(iequals-looks-one-way)
    {"by one byte", "ab", "abc", true},
    {"but not the first one", "ABCdef", "abc", false},
    {"not by one byte either", "abc", "ab", false},
    {"nor beyond an empty one", "a", "", false},
    {"not even by a zero byte", "ab" + NUL, "ab", false},
    {"zero bytes are like any other", "a" + NUL + "B", "A" + NUL + "b", true},
    {"and do not end the comparison", "a" + NUL + "b", "a" + NUL + "c", false},
    {"'@' is no capital '`'", "@", "`", false},
    {"nor '[' one of '{'", "[", "{", false},
    {"nor is '0' one of 'P'", "0", "P", false},
    {"the same in sixteen bytes", "@" + FIFTEEN, "`" + FIFTEEN, false},
    {"and in sixteen others", "[" + FIFTEEN, "{" + FIFTEEN, false},
    {"a difference in the last byte of sixteen", FIFTEEN + "x", FIFTEEN + "y", false},
    {"in the first one", "x" + FIFTEEN, "y" + FIFTEEN, false},
    {"in the seventeenth", SIXTEEN + "x", SIXTEEN + "y", false},
    {"none in seventeen", SIXTEEN + "x", SIXTEEN + "X", true},
    {"none in 52", LETTERS + CAPITALS, CAPITALS + LETTERS, true},
    {"bytes above 0x7F equal themselves", "\xC3\x84", "\xC3\x84", true},
    {"and nothing else, in UTF-8", "\xC3\x84", "\xC3\xA4", false},
};

TEST(Iequals, ComparesWithoutCase) {
    for (char const* const locale : {"C", "de_DE.UTF-8", "ps_AF.UTF-8"}) {
        ScopedLocale const scope(locale);
        for (EqualFact const& row : EQUAL_FACTS) {
            SCOPED_TRACE(std::string(locale) + ": " + row.fact);
            EXPECT_EQ(iequals(row.text, row.other), row.equal);
        }
    }
}

// Alone, and in texts long enough to be looked at in pieces.
bool equalAnywhere(std::string const& text, std::string const& other) {
    bool const equal = iequals(text, other);
    for (std::size_t size : {14U, 15U, 16U, 31U, 40U}) {
        std::string const front(size, 'z');
        std::string const back(40, 'Z');
        EXPECT_EQ(iequals(front + text, front + other), equal) << size;
        EXPECT_EQ(iequals(front + text + back, front + other + back), equal) << size;
    }
    return equal;
}

TEST(Iequals, AsksTheCLocaleForTheCaseOfALetter) {
    {
        ScopedCLocale const scope("fr_FR.ISO-8859-15");
        EXPECT_TRUE(equalAnywhere("\xC9", "\xE9"));  // E acute
        EXPECT_TRUE(equalAnywhere("\xE9T\xC9", "\xC9t\xE9"));
        EXPECT_FALSE(equalAnywhere("\xC9", "\xEA"));
        EXPECT_FALSE(equalAnywhere("\xC9T", "\xE9S"));
    }
    {
        ScopedCLocale const scope("tr_TR.UTF-8");  // the small letter of I has no dot
        EXPECT_FALSE(equalAnywhere("I", "i"));
        EXPECT_TRUE(equalAnywhere("I", "I"));
        EXPECT_TRUE(equalAnywhere("J", "j"));
    }
    {
        ScopedCLocale const scope("xx_XX.ISO-8859-1");  // A and B alone have one
        EXPECT_TRUE(equalAnywhere("AB", "ab"));
        EXPECT_FALSE(equalAnywhere("C", "c"));
    }
    {
        ScopedCLocale const scope("yy_YY.ISO-8859-1");  // all but Z have one
        EXPECT_TRUE(equalAnywhere("AY", "ay"));
        EXPECT_FALSE(equalAnywhere("Z", "z"));
    }
    {
        ScopedCLocale const scope("zz_ZZ.ISO-8859-1");  // all but A
        EXPECT_TRUE(equalAnywhere("BZ", "bz"));
        EXPECT_FALSE(equalAnywhere("A", "a"));
    }
    {
        ScopedCLocale const c("C");
        ScopedCppLocale const cpp("fr_FR.ISO-8859-15");
        EXPECT_FALSE(equalAnywhere("\xC9", "\xE9"));
    }
}

// KEPT(byte-ff-is-eof): both locales have 0xFF as a small letter, of 0xBE and of 0xD0.
TEST(Iequals, HasNothingEqualTheByteFFButItself) {
    {
        ScopedCLocale const scope("fr_FR.ISO-8859-15");
        EXPECT_FALSE(equalAnywhere("\xBE", "\xFF"));
        EXPECT_FALSE(equalAnywhere("\xFF", "\xBE"));
        EXPECT_TRUE(equalAnywhere("\xFF", "\xFF"));
        EXPECT_TRUE(equalAnywhere("\xBD", "\xBC"));  // another pair: small and capital oe
    }
    {
        ScopedCLocale const scope("xx_XX.ISO-8859-1");
        EXPECT_FALSE(equalAnywhere("\xD0", "\xFF"));
        EXPECT_TRUE(equalAnywhere("\xD0", "\xD0"));
    }
}

TEST(Iequals, EqualsItsModelOnAnyPairOfBytes) {
    for (std::string const& locale : byteLocales()) {
        ScopedCLocale const scope(locale);
        for (int left = 0; left < 256; ++left) {
            for (int right = 0; right < 256; ++right) {
                std::string const text(1, static_cast<char>(left));
                std::string const other(1, static_cast<char>(right));
                std::string const rest(16, 'k');
                bool const equal = modelOfIequals(text, other);
                ASSERT_EQ(iequals(text, other), equal) << locale << ' ' << left << ' ' << right;
                ASSERT_EQ(iequals(text + rest, other + rest), equal)
                    << locale << ' ' << left << ' ' << right;
            }
        }
    }
}

TEST(Iequals, EqualsItsModelOnLongTexts) {
    std::mt19937_64 engine = randomEngine();
    for (std::string const& locale : byteLocales()) {
        ScopedCLocale const scope(locale);
        for (int i = 0; i < 100'000; ++i) {
            std::string text(engine() % 70, '\0');
            for (char& c : text)
                c = static_cast<char>(engine() % 8 == 0 ? engine() : 'A' + engine() % 60);
            std::string other = text;
            for (char& c : other) {
                if (engine() % 4 == 0) c = static_cast<char>(c ^ 0x20);
            }
            if (engine() % 4 == 0) other += "more";
            ASSERT_EQ(iequals(text, other), modelOfIequals(text, other)) << locale;
        }
    }
}

// ---- escapeString

struct EscapeFact {
    char const* fact;
    std::string text;
    char const* escaped;
    char const* keepingSpaces;
};

EscapeFact const ESCAPE_FACTS[] = {
    {"an empty text is empty", "", "", ""},
    {"graphic bytes stay", "aZ09!~#$%&'(?@[]^`{|}", "aZ09!~#$%&'(?@[]^`{|}",
     "aZ09!~#$%&'(?@[]^`{|}"},
    {"a space stays where it may", "a b", "a\\u0020b", "a b"},
    {"six bytes have a letter", "\t\n\r\f\b\"", "\\t\\n\\r\\f\\b\\\"", "\\t\\n\\r\\f\\b\\\""},
    {"the vertical tab has none", "\v", "\\u000b", "\\u000b"},
    {"nor has the bell", "\a", "\\u0007", "\\u0007"},
    {"a zero byte is like any other", "a" + NUL + "b", "a\\u0000b", "a\\u0000b"},
    {"the last control byte", "\x1F", "\\u001f", "\\u001f"},
    {"the delete byte", "\x7F", "\\u007f", "\\u007f"},
    // KEPT(escape-widens-by-sign)
    {"a byte above is widened by sign", "\x80", "\\uff80", "\\uff80"},
    {"another one", "\xC3", "\\uffc3", "\\uffc3"},
    {"and another", "\xE9", "\\uffe9", "\\uffe9"},
    {"the last byte of all", "\xFF", "\\uffff", "\\uffff"},
    {"a backslash becomes two", "\\", "\\\\", "\\\\"},
    {"and drops what is before it", "a\\b", "\\\\b", "\\\\b"},  // KEPT(backslash-starts-over)
    {"up to the last one", "C:\\dir\\file", "\\\\file", "\\\\file"},
    {"also two in a row", "x\\\\y", "\\\\y", "\\\\y"},
    {"also at the end", "x\\", "\\\\", "\\\\"},
    {"escapes before it go too", "\n \xFF\\\n", "\\\\\\n", "\\\\\\n"},
};

// The same behind more plain bytes than any word or block holds, and before as many.
void expectEscape(EscapeFact const& row, bool keepSpace, std::string const& escaped) {
    EXPECT_EQ(escapeString(row.text, keepSpace), escaped);
    bool const startsOver = row.text.find('\\') != std::string::npos;
    for (std::size_t size : {1U, 3U, 7U, 8U, 15U, 16U, 31U, 32U, 63U, 64U, 65U, 100U, 600U}) {
        std::string const plain(size, 'p');
        EXPECT_EQ(escapeString(plain + row.text, keepSpace), (startsOver ? "" : plain) + escaped);
        EXPECT_EQ(escapeString(row.text + plain, keepSpace), escaped + plain);
        EXPECT_EQ(escapeString(plain + row.text + plain, keepSpace),
                  (startsOver ? "" : plain) + escaped + plain);
    }
}

TEST(EscapeString, WritesEscapesForWhatIsNotGraphic) {
    for (char const* const locale : {"C", "de_DE.UTF-8", "tr_TR.UTF-8"}) {
        ScopedLocale const scope(locale);
        for (EscapeFact const& row : ESCAPE_FACTS) {
            SCOPED_TRACE(std::string(locale) + ": " + row.fact);
            expectEscape(row, false, row.escaped);
            expectEscape(row, true, row.keepingSpaces);
        }
    }
}

TEST(EscapeString, AsksTheCLocaleWhatIsGraphic) {
    std::string const text = "\xC9t\xE9 \xD7\xA0\xFF";
    {
        ScopedCLocale const scope("fr_FR.ISO-8859-15");
        // KEPT(byte-ff-is-eof): the character 255 is a letter here.
        EscapeFact const row = {"", text, "\xC9t\xE9\\u0020\xD7\xA0\\uffff",
                                "\xC9t\xE9 \xD7\xA0\\uffff"};
        expectEscape(row, false, row.escaped);
        expectEscape(row, true, row.keepingSpaces);
    }
    {
        ScopedCLocale const scope("xx_XX.ISO-8859-1");
        EscapeFact const row = {"", text, "\xC9t\\uffe9\\u0020\\uffd7\\uffa0\\uffff",
                                "\xC9t\\uffe9 \\uffd7\\uffa0\\uffff"};
        // The locale has a few small letters graphic, as they are hexadecimal digits there.
        EscapeFact const other = {"", "\xE9\xD7\xC0", "\\uffe9\\uffd7\xC0", "\\uffe9\\uffd7\xC0"};
        expectEscape(row, false, row.escaped);
        expectEscape(row, true, row.keepingSpaces);
        expectEscape(other, false, other.escaped);
    }
    {
        // Bytes below 0x80 are asked about too, be there others beside them or not.
        ScopedCLocale const scope("yy_YY.ISO-8859-1");
        expectEscape({"", "\x01", "\x01", "\x01"}, false, "\x01");
        expectEscape({"", "\x80", "\x80", "\x80"}, false, "\x80");
        expectEscape({"", "a#b", "a\\u0023b", "a\\u0023b"}, false, "a\\u0023b");
    }
    {
        ScopedCLocale const scope("vv_VV.ISO-8859-1");
        expectEscape({"", "~\x7F", "\\u007e\x7F", "\\u007e\x7F"}, false, "\\u007e\x7F");
    }
    {
        ScopedCLocale const scope("ww_WW.ISO-8859-1");
        expectEscape({"", "a!", "a\\u0021", "a\\u0021"}, false, "a\\u0021");
        expectEscape({"", "a !", "a !", "a \\u0021"}, true, "a \\u0021");
        expectEscape({"", "! !", "", ""}, false, "\\u0021\\u0020\\u0021");
    }
    {
        ScopedCLocale const scope("zz_ZZ.ISO-8859-1");
        expectEscape({"", "\x80\x81", "\x80\\uff81", "\x80\\uff81"}, false, "\x80\\uff81");
    }
    ScopedCLocale const c("C");
    ScopedCppLocale const cpp("fr_FR.ISO-8859-15");
    EXPECT_EQ(escapeString("\xC9", false), "\\uffc9");
}

TEST(EscapeString, AsksAboutEveryByteOfALongText) {
    std::string const zeros(64, '0');
    std::string const tail(20, '0');
    for (auto const& [locale, byte] : {std::pair("fr_FR.ISO-8859-15", "\xA1"),
                                       {"yy_YY.ISO-8859-1", "\x80"},
                                       {"yy_YY.ISO-8859-1", "\x01"},
                                       {"zz_ZZ.ISO-8859-1", "\x80"}}) {
        ScopedCLocale const scope(locale);
        for (std::string const& text : {zeros + byte + tail, zeros + tail + byte}) {
            EXPECT_EQ(escapeString(text, false), text) << locale;
        }
    }
}

TEST(EscapeString, WritesEachOfThe256Bytes) {
    for (std::string const& locale : byteLocales()) {
        ScopedCLocale const scope(locale);
        std::string all;
        for (int c = 255; c >= 0; --c) {
            std::string const text(1, static_cast<char>(c));
            all += text;
            for (bool const keepSpace : {false, true}) {
                EXPECT_EQ(escapeString(text, keepSpace), modelOfEscape(text, keepSpace)) << c;
            }
        }
        EXPECT_EQ(escapeString(all, false), modelOfEscape(all, false));
    }
}

std::string anyText(std::mt19937_64& engine, std::string const& characters, std::size_t limit) {
    std::string text(engine() % limit, '\0');
    for (char& c : text) {
        c = engine() % 16 == 0 ? static_cast<char>(engine())
                               : characters[engine() % characters.size()];
    }
    return text;
}

TEST(EscapeString, EqualsItsModelOnAnyText) {
    std::mt19937_64 engine = randomEngine();
    std::string const characters[] = {"abcdefgh ", "abcdefghijklmnop\n", "\"\n\t\xE9 x", "p"};
    for (std::string const& locale : byteLocales()) {
        ScopedCLocale const scope(locale);
        for (int i = 0; i < 40'000; ++i) {
            std::size_t const limit = i % 100 == 0 ? 3000 : i % 10 == 0 ? 300 : 40;
            std::string const text = anyText(engine, characters[engine() % 4], limit);
            bool const keepSpace = engine() % 2 == 0;
            ASSERT_EQ(escapeString(text, keepSpace), modelOfEscape(text, keepSpace)) << locale;
        }
    }
}

// One byte of another kind at each place of a plain text, which else is copied whole.
TEST(EscapeString, FindsTheOneByteThatIsNotPlain) {
    for (char const* const locale : {"C", "vv_VV.ISO-8859-1", "ww_WW.ISO-8859-1"}) {
        ScopedCLocale const scope(locale);
        for (char const other : std::string("\x1F !\"#[\\]~\x7F\x80\xFF", 12)) {
            for (std::size_t size = 1; size <= 140; ++size) {
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

TEST(EscapeString, AllocatesItsResultOnce) {
    ScopedCLocale const scope("C");
    std::string const plain(100'000, 'p');
    std::string const blanks(100'000, ' ');
    std::string const backslashes(100'000, '\\');
    struct {
        std::string text;
        long allocations;
        std::size_t bytes;  // with the terminating zero
    } const rows[] = {
        {"short", 0, 0},
        {plain, 1, 100'001},
        {plain + " ", 1, 100'007},
        {blanks, 1, 600'001},
        {blanks + plain, 1, 700'001},
        {backslashes, 0, 0},
        {plain + backslashes, 0, 0},
        {blanks + "\\" + plain, 1, 100'003},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.text.substr(0, 10));
        EXPECT_EQ(allocationsOf([&] { escapeString(row.text, false); }), row.allocations);
        EXPECT_EQ(watchedBytes(), row.bytes);
    }
}

// ---- unescapeString

struct UnescapeFact {
    char const* fact;
    std::string text;
    std::string read;
};

UnescapeFact const UNESCAPE_FACTS[] = {
    {"an empty text is empty", "", ""},
    {"plain bytes stay", "abc \xFF", "abc \xFF"},
    {"a zero byte too", "a" + NUL + "b", "a" + NUL + "b"},
    {"four marks stand for themselves", R"(\"\'\?\\)", R"("'?\)"},
    {"seven letters name a byte", R"(\a\b\f\n\r\t\v)", "\a\b\f\n\r\t\v"},
    {"a backslash at the end stays", "abc\\", "abc\\"},  // KEPT(last-backslash-stays)
    {"also alone", "\\", "\\"},
    {"two of them are one", "\\\\", "\\"},
    {"of three the last one stays", "\\\\\\", "\\\\"},
    {"four digits are a byte", R"(\u0041)", "A"},
    {"and the fifth is itself", R"(\u00412)", "A2"},
    {"three digits", R"(\u041g)", "Ag"},
    {"two digits", R"(\u41g)", "Ag"},
    {"one digit", R"(\u4)", "\x04"},
    {"no digit is a zero byte", R"(\u)", NUL},  // KEPT(no-digits-give-zero)
    {"before what is no digit", R"(\ug)", NUL + "g"},
    {"also before another escape", R"(\u\n)", NUL + "\n"},
    {"or between digits", R"(\u00g1)", NUL + "g1"},
    {"digits in either case", R"(\uFfC3\uffc3)", "\xC3\xC3"},
    {"all digits", R"(\u0123\u4567\u89ab\ucdef\uABCD\uEF09)", "\x23\x67\xAB\xEF\xCD\x09"},
    {"the low eight bits count", R"(\u20ac)", "\xAC"},  // KEPT(escape-is-one-byte)
    {"also where they are zero", R"(\uff00)", NUL},
    {"'0x' is no digit behind u", R"(\u0x41)", NUL + "x41"},
    {"nor is a sign", R"(\u-1)", NUL + "-1"},
    {"nor a blank", R"(\u 41)", NUL + " 41"},
    {"'/' and ':' are none", R"(\u/\u:)", NUL + "/" + NUL + ":"},
    {"nor are '@' and 'G'", R"(\u@\uG)", NUL + "@" + NUL + "G"},
    {"nor are '`' and 'g'", R"(\u`\ug)", NUL + "`" + NUL + "g"},
    {"two digits behind x are dropped", R"(\x41)", NUL},  // KEPT(x-drops-two-digits)
    {"and up to four are read", R"(\x4142)", "B"},
    {"three of them", R"(\x00141)", "A"},
    {"four of them", R"(\x00ff412)", "A2"},
    {"one digit is dropped", R"(\x4)", NUL},
    {"and so is one before another byte", R"(\x4g)", NUL + "g"},
    {"no digit", R"(\x)", NUL},
    {"no digit before another byte", R"(\xZ)", NUL + "Z"},
    // KEPT(unknown-escape-is-two-backslashes)
    {"an unknown escape is two backslashes", R"(\q)", "\\\\"},
    {"octal digits are unknown", R"(\0)", "\\\\"},
    {"and only one of them is lost", R"(\101)", R"(\\01)"},
    {"'e' is unknown", R"(\e)", "\\\\"},
    {"capitals are unknown", R"(\U0041\X41\N)", R"(\\0041\\41\\)"},
    {"a space is unknown", R"(\ a)", R"(\\a)"},
    {"a zero byte is unknown", "\\" + NUL + "a", R"(\\a)"},
    {"so is a byte above 0x7F", "\\\351a", R"(\\a)"},
    {"an escape may follow an escape", R"(\n\u0041\x0042\t)", "\nAB\t"},
};

TEST(UnescapeString, ReadsEscapes) {
    for (std::string const& locale : allLocales()) {
        ScopedLocale const scope(locale);
        for (UnescapeFact const& row : UNESCAPE_FACTS) {
            SCOPED_TRACE(locale + ": " + row.fact);
            EXPECT_EQ(unescapeString(row.text), row.read);
            for (std::size_t size : {1U, 7U, 8U, 15U, 100U, 300U}) {
                std::string const plain(size, 'p');
                EXPECT_EQ(unescapeString(plain + row.text), plain + row.read);
            }
        }
    }
}

TEST(UnescapeString, ReadsEachByteBehindABackslash) {
    ScopedCLocale const scope("C");
    for (int c = 0; c < 256; ++c) {
        std::string const text = "\\" + std::string(1, static_cast<char>(c)) + "z";
        EXPECT_EQ(unescapeString(text), modelOfUnescape(text)) << c;
    }
}

TEST(UnescapeString, AsksTheCLocaleWhatADigitIs) {
    {
        // More digits here, that are taken with the others and have no value of their own.
        ScopedCLocale const scope("xx_XX.ISO-8859-1");
        EXPECT_EQ(unescapeString("\\u4\3001z"), "\x04z");
        EXPECT_EQ(unescapeString("\\u41\xC0z"), "Az");
        EXPECT_EQ(unescapeString("\\u\xC0\xC1\xC2\xC3\xC4z"), NUL + "\xC4z");
        EXPECT_EQ(unescapeString("\\x\xC0\3010041z"), "Az");
        EXPECT_EQ(unescapeString("\\u\xC6z"), NUL + "\xC6z");
    }
    ScopedCLocale const c("C");
    ScopedCppLocale const cpp("xx_XX.ISO-8859-1");
    EXPECT_EQ(unescapeString("\\u41\xC0z"), "A\xC0z");
}

// In a block of their own size, so that a sanitizer sees who reads behind them.
TEST(UnescapeString, ReadsNothingBehindItsText) {
    ScopedCLocale const scope("C");
    std::string const escapes[] = {R"(\u0041)", R"(\x410041)", R"(\n)",          R"(\\)",
                                   R"(\q)",     R"(\u00)",     "abcdefgh\\u0041"};
    for (std::string const& escape : escapes) {
        for (std::size_t size = 0; size <= escape.size(); ++size) {
            for (std::size_t front : {16U, 17U, 23U, 300U}) {
                std::string text(front, 'p');
                text += escape.substr(0, size);
                text.shrink_to_fit();
                EXPECT_EQ(unescapeString(text), modelOfUnescape(text)) << text;
                EXPECT_EQ(escapeString(text, false), modelOfEscape(text, false)) << text;
            }
        }
    }
}

TEST(UnescapeString, FindsTheOneEscapeAtAnyPlace) {
    ScopedCLocale const scope("C");
    for (char const* const escape : {R"(\u0041)", R"(\n)", R"(\)"}) {
        for (std::size_t before = 0; before <= 40; ++before) {
            for (std::size_t behind = 0; behind <= 40; ++behind) {
                std::string const text =
                    std::string(before, 'p') + escape + std::string(behind, 'q');
                ASSERT_EQ(unescapeString(text), modelOfUnescape(text)) << text;
            }
        }
    }
}

TEST(UnescapeString, EqualsItsModelOnAnyText) {
    std::mt19937_64 engine = randomEngine();
    std::string const characters[] = {"\\ux0041gAF", "\\", "abcdefghijklmnop\\n", "\\u0041"};
    for (std::string const& locale : byteLocales()) {
        ScopedCLocale const scope(locale);
        for (int i = 0; i < 60'000; ++i) {
            std::size_t const limit = i % 100 == 0 ? 3000 : i % 10 == 0 ? 300 : 40;
            std::string const text = anyText(engine, characters[engine() % 4], limit);
            ASSERT_EQ(unescapeString(text), modelOfUnescape(text)) << locale;
        }
    }
}

TEST(UnescapeString, UndoesEscapingOfTextsWithoutABackslash) {
    std::mt19937_64 engine = randomEngine();
    for (std::string const& locale : byteLocales()) {
        ScopedCLocale const scope(locale);
        for (int i = 0; i < 40'000; ++i) {
            std::string text(engine() % 100, '\0');
            for (char& c : text) {
                do {
                    c = static_cast<char>(engine());
                } while (c == '\\');
            }
            ASSERT_EQ(unescapeString(escapeString(text, false)), text);
            ASSERT_EQ(unescapeString(escapeString(text, true)), text);
        }
    }
}

TEST(UnescapeString, KeepsNoMoreMemoryThanTwiceItsResult) {
    ScopedCLocale const scope("C");
    std::string const plain(100'000, 'p');
    std::string const oneEscape = plain + "\\n";
    std::string escapes;
    for (int i = 0; i < 20'000; ++i)
        escapes += "\\u0041";
    for (std::string const& text : {plain, oneEscape}) {
        EXPECT_EQ(allocationsOf([&text] { unescapeString(text); }), 1);
    }
    EXPECT_LE(unescapeString(escapes).capacity(), 2 * 20'000U);
    EXPECT_LE(unescapeString(plain.substr(0, 30'000) + escapes.substr(0, 6 * 18'000)).capacity(),
              2 * 48'000U);
}

}  // namespace
