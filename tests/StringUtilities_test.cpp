#include <algorithm>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "utillibrary/utilities/StringUtilities_internal.h"
#include <utillibrary/utilities/StringUtilities.h>

#include "support/locales.h"
#include "support/random.h"
#include "support/text_models.h"

// Searching and comparing.

using namespace com::halvorin::utilities;
using namespace testing_support;

namespace internal = com::halvorin::internal;

namespace {

using Strings = std::vector<std::string>;

std::string const NUL(1, '\0');

// ---- searchVector

struct SearchFact {
    char const* fact;
    Strings list;
    std::string text;
    bool partial;
    std::size_t position;  // the size of the list: not found
};

std::string const BYTES_63(63, 'a');
std::string const BYTES_64(64, 'a');

SearchFact const SEARCH_FACTS[] = {
    {"an empty list contains no element that contains a string", {}, "", true, 0},
    {"an empty list contains no element that equals a string", {}, "", false, 0},
    {"an element that equals the string is found", {"a", "abc", "b"}, "abc", false, 1},
    {"the first of two equal elements is found", {"x", "a", "a"}, "a", false, 1},
    {"the last element is found", {"x", "y", "z"}, "z", false, 2},
    {"an element in another case does not equal the string", {"ABC"}, "abc", false, 1},
    {"an element that contains the string does not equal it", {"abcd", "xabc"}, "abc", false, 2},
    {"an element that begins the string does not equal it", {"ab"}, "abc", false, 1},
    {"an empty string equals an empty element", {"a", ""}, "", false, 1},
    {"an element that ends with the string contains it", {"x", "abcd"}, "cd", true, 1},
    {"an element with the string in its middle contains it", {"x", "abcd"}, "bc", true, 1},
    {"an element that begins with the string contains it", {"x", "abcd"}, "ab", true, 1},
    {"an element that equals the string contains it", {"x", "ab"}, "ab", true, 1},
    {"the first of two elements that contain the string is found", {"x", "1a", "2a"}, "a", true, 1},
    {"an element in another case does not contain the string", {"xABCx"}, "abc", true, 1},
    {"an element with the bytes apart does not contain the string", {"axb"}, "ab", true, 1},
    {"a shorter element does not contain the string", {"a"}, "ab", true, 1},
    {"the first element contains the empty string", {"a", ""}, "", true, 0},
    {"a zero byte is found like any other", {"a", "a" + NUL + "b"}, NUL + "b", true, 1},
    {"a zero byte does not end an element", {"a" + NUL + "b", "a"}, "a", false, 1},
    {"bytes after a zero byte are compared", {"a" + NUL + "b"}, "a" + NUL + "c", false, 1},
    {"a string of 63 bytes is found", {"x", "y" + BYTES_63 + "z"}, BYTES_63, true, 1},
    {"a string of 64 bytes is found", {"x", "y" + BYTES_64 + "z"}, BYTES_64, true, 1},
    {"a string of 65 bytes is found",
     {BYTES_64 + BYTES_64, BYTES_64 + "b"},
     BYTES_64 + "b",
     true,
     1},
    {"a string of 63 bytes that occurs nowhere is not found",
     {BYTES_63.substr(1), "z"},
     BYTES_63,
     true,
     2},
    {"a string of 64 bytes that occurs nowhere is not found", {BYTES_63, "z"}, BYTES_64, true, 2},
    {"a string of 65 bytes that occurs nowhere is not found",
     {BYTES_63, BYTES_64 + BYTES_64},
     BYTES_64 + "b",
     true,
     2},
};

TEST(SearchVector, FindsTheFirstElementThatMatches) {
    for (SearchFact const& row : SEARCH_FACTS) {
        SCOPED_TRACE(row.fact);
        Strings list = row.list;
        Strings const& constant = list;
        EXPECT_EQ(searchVector(list, row.text, row.partial) - list.begin(),
                  static_cast<std::ptrdiff_t>(row.position));
        EXPECT_EQ(searchVector(constant, row.text, row.partial) - constant.begin(),
                  static_cast<std::ptrdiff_t>(row.position));
    }
}

TEST(SearchVector, GivesAPositionToWriteToWhereTheListMayChange) {
    Strings list = {"a", "b"};
    *searchVector(list, "b", false) = "c";
    EXPECT_EQ(list, (Strings{"a", "c"}));
    static_assert(std::is_same_v<decltype(searchVector(std::declval<Strings const&>(), "", false)),
                                 Strings::const_iterator>);
    static_assert(std::is_same_v<decltype(searchVector(list, "", false)), Strings::iterator>);
}

// ---- endsWith

struct EndFact {
    char const* fact;
    std::string text;
    std::string suffix;
    bool ends;
};

EndFact const END_FACTS[] = {
    {"every string ends with the empty string", "abc", "", true},
    {"the empty string ends with the empty string", "", "", true},
    {"the empty string does not end with a byte", "", "a", false},
    {"a string ends with its last byte", "abc", "c", true},
    {"a string ends with its last two bytes", "abc", "bc", true},
    {"a string ends with itself", "abc", "abc", true},
    {"a string does not end with a longer one", "bc", "abc", false},
    {"a string does not end with its first bytes", "abc", "ab", false},
    {"another case is another byte", "abc", "C", false},
    {"the byte after a zero byte is an end", "a" + NUL + "b", "b", true},
    {"a zero byte is compared like any other", "a" + NUL + "b", NUL + "b", true},
    {"a zero byte at the end of the string counts", "ab" + NUL, "b", false},
    {"a zero byte at the end of the suffix counts", "ab", "b" + NUL, false},
    // The size of a short std::string lies before its bytes, and ends with a zero byte.
    {"what lies before a string is not its end", "b", NUL + "b", false},
};

TEST(EndsWith, ComparesTheLastBytes) {
    for (EndFact const& row : END_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(endsWith(row.text, row.suffix), row.ends);
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
std::string const BYTES_15 = "onetwothreefour";
std::string const BYTES_16 = "onetwothreefour5";

EqualFact const EQUAL_FACTS[] = {
    {"the empty string equals the front of every string", "", "anything", true},
    {"the empty string equals the empty string", "", "", true},
    {"case does not matter", "Ab", "aB", true},
    {"all 26 small letters equal their capitals", LETTERS, CAPITALS, true},
    {"all 26 capitals equal their small letters", CAPITALS, LETTERS, true},
    {"a difference in the last of two bytes is seen", "ab", "ac", false},
    {"a difference in the first of two bytes is seen", "ab", "bb", false},
    // KEPT(iequals-looks-one-way)
    {"the second string may be longer by three bytes", "abc", "ABCdef", true},
    {"the second string may be longer by one byte", "ab", "abc", true},
    {"the first string may not be longer by three bytes", "ABCdef", "abc", false},
    {"the first string may not be longer by one byte", "abc", "ab", false},
    {"a byte does not equal the front of the empty string", "a", "", false},
    {"the first string may not be longer by a zero byte", "ab" + NUL, "ab", false},
    {"a zero byte equals a zero byte", "a" + NUL + "B", "A" + NUL + "b", true},
    {"bytes after a zero byte are compared", "a" + NUL + "b", "a" + NUL + "c", false},
    {"'@' and '`' are no letters, and differ", "@", "`", false},
    {"'[' and '{' are no letters, and differ", "[", "{", false},
    {"'0' and 'P' differ in the bit of the case, and are no pair", "0", "P", false},
    {"'@' and '`' differ in a block of sixteen bytes", "@" + BYTES_15, "`" + BYTES_15, false},
    {"'[' and '{' differ in a block of sixteen bytes", "[" + BYTES_15, "{" + BYTES_15, false},
    {"a difference in the last of 16 bytes is seen", BYTES_15 + "x", BYTES_15 + "y", false},
    {"a difference in the first of 16 bytes is seen", "x" + BYTES_15, "y" + BYTES_15, false},
    {"a difference in the last of 17 bytes is seen", BYTES_16 + "x", BYTES_16 + "y", false},
    {"17 bytes that differ in case are equal", BYTES_16 + "x", BYTES_16 + "X", true},
    {"52 bytes that differ in case are equal", LETTERS + CAPITALS, CAPITALS + LETTERS, true},
    {"bytes above 0x7F equal themselves", "\xC3\x84", "\xC3\x84", true},
    {"letters above 0x7F have no other case in UTF-8", "\xC3\x84", "\xC3\xA4", false},
};

TEST(Iequals, ComparesWithoutCase) {
    for (char const* const locale : {"C", "de_DE.UTF-8", "ps_AF.UTF-8"}) {
        ScopedLocale const scope(locale);
        for (EqualFact const& row : EQUAL_FACTS) {
            SCOPED_TRACE(std::string(locale) + ": " + row.fact);
            EXPECT_EQ(iequals(row.text, row.other), row.equal);
            if (row.text.size() > row.other.size()) continue;
            EXPECT_EQ(internal::equalByTable(internal::LowerCase(), row.text.data(),
                                             row.other.data(), row.text.size()),
                      row.equal);
        }
    }
}

// Compares two strings alone, and inside longer ones that are compared in blocks.
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
        ScopedCLocale const scope("tr_TR.UTF-8");  // the lower case of I has no dot
        EXPECT_FALSE(equalAnywhere("I", "i"));
        EXPECT_TRUE(equalAnywhere("I", "I"));
        EXPECT_TRUE(equalAnywhere("J", "j"));
    }
    {
        ScopedCLocale const scope("xx_XX.ISO-8859-1");  // only A and B have small letters
        EXPECT_TRUE(equalAnywhere("AB", "ab"));
        EXPECT_FALSE(equalAnywhere("C", "c"));
    }
    {
        ScopedCLocale const scope("yy_YY.ISO-8859-1");  // all but Z have small letters
        EXPECT_TRUE(equalAnywhere("AY", "ay"));
        EXPECT_FALSE(equalAnywhere("Z", "z"));
    }
    {
        ScopedCLocale const scope("zz_ZZ.ISO-8859-1");  // all but A have small letters
        EXPECT_TRUE(equalAnywhere("BZ", "bz"));
        EXPECT_FALSE(equalAnywhere("A", "a"));
    }
    {
        ScopedCLocale const c("C");
        ScopedCppLocale const cpp("fr_FR.ISO-8859-15");
        EXPECT_FALSE(equalAnywhere("\xC9", "\xE9"));
    }
}

// KEPT(byte-ff-is-eof): in these locales the character 255 is the small letter of 0xBE and of 0xD0.
TEST(Iequals, FindsTheByteFFEqualToItselfAlone) {
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
        std::string text = "?";
        std::string other = "?";
        std::string block = "?" + BYTES_15;
        std::string otherBlock = "?" + BYTES_15;
        for (int pair = 0; pair < 65536; ++pair) {
            text[0] = block[0] = static_cast<char>(pair);
            other[0] = otherBlock[0] = static_cast<char>(pair >> 8);
            bool const equal = modelOfIequals(text, other);
            ASSERT_EQ(iequals(text, other), equal) << locale << ' ' << pair;
            ASSERT_EQ(iequals(block, otherBlock), equal) << locale << ' ' << pair;
        }
    }
}

TEST(Iequals, EqualsItsModelOnLongStrings) {
    std::mt19937_64 engine = randomEngine();
    for (std::string const& locale : byteLocales()) {
        ScopedCLocale const scope(locale);
        for (int i = 0; i < 10'000; ++i) {
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

// ---- the fast path of iequals

struct BlockFact {
    char const* fact;
    std::string left;
    std::string right;
    bool answered;
};

BlockFact const BLOCK_FACTS[] = {
    {"the same bytes are answered", BYTES_16, BYTES_16, true},
    {"letters in the other case are answered", "ABCDEFGHIJKLMNOP", "abcdefghijklmnop", true},
    {"a letter in the other case at the end is answered", BYTES_15 + "x", BYTES_15 + "X", true},
    {"bytes above 0x7F that are the same are answered",
     "\x80\xC9\xE9\xFF"
     "twelve bytes",
     "\x80\xC9\xE9\xFF"
     "TWELVE BYTES",
     true},
    {"zero bytes are answered", std::string(16, '\0'), std::string(16, '\0'), true},
    {"A and Z are letters", "AZazAZazAZazAZaz", "azAZazAZazAZazAZ", true},
    {"another letter is declined", BYTES_15 + "x", BYTES_15 + "y", false},
    {"'@' and '`' are declined", "@" + BYTES_15, "`" + BYTES_15, false},
    {"'[' and '{' are declined", "[" + BYTES_15, "{" + BYTES_15, false},
    {"letters above 0x7F in the other case are declined", "\xC9" + BYTES_15, "\xE9" + BYTES_15,
     false},
};

TEST(EqualByLetters, AnswersForTheLettersOfAsciiAlone) {
    ScopedCLocale const scope("C");
    for (BlockFact const& row : BLOCK_FACTS) {
        SCOPED_TRACE(row.fact);
        auto const answer = internal::equalByLetters(row.left.data(), row.right.data());
        EXPECT_EQ(answer.has_value(), row.answered);
        bool const equal = internal::equalByTable(internal::LowerCase(), row.left.data(),
                                                  row.right.data(), row.left.size());
        EXPECT_EQ(answer.value_or(equal), equal);
    }
}

// Each pair of bytes in a block that is the same otherwise.
TEST(EqualByLetters, AgreesWithTheTablesOfLocalesThatPairTheLetters) {
    for (std::string const& locale : byteLocales()) {
        ScopedCLocale const scope(locale);
        internal::LowerCase const lower;
        if (!internal::pairsLetters(lower)) continue;
        for (unsigned pair = 0; pair < 65536; ++pair) {
            std::string left = BYTES_16;
            std::string right = BYTES_16;
            left[pair % 16] = static_cast<char>(pair);
            right[pair % 16] = static_cast<char>(pair >> 8);
            if (!internal::equalByLetters(left.data(), right.data())) continue;
            ASSERT_TRUE(internal::equalByTable(lower, left.data(), right.data(), 16))
                << locale << pair;
        }
    }
}

TEST(PairsLetters, SaysWhetherALocaleHasTheUsualSmallLetters) {
    struct {
        char const* locale;
        bool pairs;
    } const rows[] = {
        {"C", true},
        {"de_DE.UTF-8", true},
        {"fr_FR.ISO-8859-15", true},
        {"tr_TR.UTF-8", false},       // I
        {"xx_XX.ISO-8859-1", false},  // all from C on
        {"yy_YY.ISO-8859-1", false},  // Z
        {"zz_ZZ.ISO-8859-1", false},  // A
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.locale);
        ScopedCLocale const scope(row.locale);
        EXPECT_EQ(internal::pairsLetters(internal::LowerCase()), row.pairs);
    }
}

}  // namespace
