#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "utillibrary/utilities/StringEscape_internal.h"
#include <utillibrary/utilities/StringUtilities.h>

#include "support/failing_allocations.h"
#include "support/locales.h"
#include "support/random.h"
#include "support/text_models.h"

// unescapeString, and round trips through escapeString.

using namespace com::halvorin::utilities;
using namespace testing_support;

namespace internal = com::halvorin::internal;

namespace {

std::string const NUL(1, '\0');

struct UnescapeFact {
    char const* fact;
    std::string text;
    std::string read;
};

UnescapeFact const UNESCAPE_FACTS[] = {
    {"the empty string stays empty", "", ""},
    {"bytes without an escape stay", "abc \xFF", "abc \xFF"},
    {"a zero byte stays", "a" + NUL + "b", "a" + NUL + "b"},
    {"four marks give themselves", R"(\"\'\?\\)", R"("'?\)"},
    {"seven letters give a control byte", R"(\a\b\f\n\r\t\v)", "\a\b\f\n\r\t\v"},
    // KEPT(last-backslash-stays)
    {"a backslash at the end stays", "abc\\", "abc\\"},
    {"a backslash alone stays", "\\", "\\"},
    {"two backslashes give one", "\\\\", "\\"},
    {"of three backslashes the last one stays", "\\\\\\", "\\\\"},
    {"four digits give a byte", R"(\u0041)", "A"},
    {"a fifth digit is no part of the escape", R"(\u00412)", "A2"},
    {"three digits give a byte", R"(\u041g)", "Ag"},
    {"two digits give a byte", R"(\u41g)", "Ag"},
    {"one digit gives a byte", R"(\u4)", "\x04"},
    // KEPT(no-digits-give-zero)
    {"no digit after u gives a zero byte", R"(\u)", NUL},
    {"a letter that is no digit stays after u", R"(\ug)", NUL + "g"},
    {"an escape may follow u without a digit", R"(\u\n)", NUL + "\n"},
    {"a letter that is no digit ends the digits", R"(\u00g1)", NUL + "g1"},
    {"digits are read in either case", R"(\uFfC3\uffc3)", "\xC3\xC3"},
    {"all digits are read", R"(\u0123\u4567\u89ab\ucdef\uABCD\uEF09)", "\x23\x67\xAB\xEF\xCD\x09"},
    // KEPT(escape-is-one-byte)
    {"the low eight bits of the number count", R"(\u20ac)", "\xAC"},
    {"low eight bits that are zero give a zero byte", R"(\uff00)", NUL},
    {"'0x' is one digit after u", R"(\u0x41)", NUL + "x41"},
    {"a sign is no digit", R"(\u-1)", NUL + "-1"},
    {"a space is no digit", R"(\u 41)", NUL + " 41"},
    {"'/' and ':' are no digits", R"(\u/\u:)", NUL + "/" + NUL + ":"},
    {"'@' and 'G' are no digits", R"(\u@\uG)", NUL + "@" + NUL + "G"},
    {"'`' and 'g' are no digits", R"(\u`\ug)", NUL + "`" + NUL + "g"},
    // KEPT(x-drops-two-digits)
    {"two digits after x are dropped", R"(\x41)", NUL},
    {"four digits after x give the byte of the last two", R"(\x4142)", "B"},
    {"five digits after x give the byte of the last three", R"(\x00141)", "A"},
    {"of seven digits after x the last is no part of the escape", R"(\x00ff412)", "A2"},
    {"one digit after x is dropped", R"(\x4)", NUL},
    {"one digit after x is dropped before another byte", R"(\x4g)", NUL + "g"},
    {"no digit after x gives a zero byte", R"(\x)", NUL},
    {"a letter that is no digit stays after x", R"(\xZ)", NUL + "Z"},
    // KEPT(unknown-escape-is-two-backslashes)
    {"an unknown escape gives two backslashes", R"(\q)", "\\\\"},
    {"a digit after a backslash is unknown", R"(\0)", "\\\\"},
    {"of three digits after a backslash one is dropped", R"(\101)", R"(\\01)"},
    {"'e' is unknown", R"(\e)", "\\\\"},
    {"capitals are unknown", R"(\U0041\X41\N)", R"(\\0041\\41\\)"},
    {"a space is unknown", R"(\ a)", R"(\\a)"},
    {"a zero byte is unknown", "\\" + NUL + "a", R"(\\a)"},
    {"a byte above 0x7F is unknown", "\\\351a", R"(\\a)"},
    {"an escape may follow an escape", R"(\n\u0041\x0042\t)", "\nAB\t"},
};

TEST(UnescapeString, ReadsEscapes) {
    for (std::string const& locale : allLocales()) {
        ScopedLocale const scope(locale);
        for (UnescapeFact const& row : UNESCAPE_FACTS) {
            SCOPED_TRACE(locale + ": " + row.fact);
            EXPECT_EQ(unescapeString(row.text), row.read);
            for (std::size_t size : {1U, 7U, 8U, 15U, 100U, 8192U}) {
                std::string const plain(size, 'p');
                EXPECT_EQ(unescapeString(plain + row.text), plain + row.read);
            }
        }
    }
}

TEST(UnescapeString, ReadsEachByteAfterABackslash) {
    ScopedCLocale const scope("C");
    for (int c = 0; c < 256; ++c) {
        std::string const text = "\\" + std::string(1, static_cast<char>(c)) + "z";
        EXPECT_EQ(unescapeString(text), modelOfUnescape(text)) << c;
    }
}

TEST(UnescapeString, AsksTheCLocaleWhatADigitIs) {
    {
        // More bytes are digits here. They belong to the escape, and end the number.
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

// ---- the byte that digits give, by both paths

struct DigitsFact {
    char const* fact;
    std::string text;
    char byte;
    std::size_t size;
    bool answered;  // by the fast path
};

DigitsFact const DIGITS_FACTS[] = {
    {"no digit gives 0", "", 0, 0, false},
    {"one digit gives its value", "4", 4, 1, false},
    {"two digits give a byte", "41", 'A', 2, false},
    {"three digits give the low eight bits", "141", 'A', 3, false},
    {"four digits give the low eight bits", "2041", 'A', 4, true},
    {"a fifth digit is not read", "00412", 'A', 4, true},
    {"small letters are digits", "abcf", '\xCF', 4, true},
    {"capitals are digits", "ABCF", '\xCF', 4, true},
    {"the first and the last digit of each range are read", "09Af", '\xAF', 4, true},
    {"a byte that is no digit ends three digits", "041g", 'A', 3, false},
    {"a byte that is no digit ends two digits", "41g0", 'A', 2, false},
    {"a byte that is no digit ends one digit", "4g41", 4, 1, false},
    {"a byte that is no digit gives 0", "g041", 0, 0, false},
    {"'/' before the digits is none", "004/", 4, 3, false},
    {"':' after the digits is none", "004:", 4, 3, false},
    {"'@' before the capitals is none", "004@", 4, 3, false},
    {"'G' after the capitals is none", "004G", 4, 3, false},
    {"'`' before the small letters is none", "004`", 4, 3, false},
    {"a sign is none", "-041", 0, 0, false},
    {"a space is none", " 041", 0, 0, false},
    {"a zero byte is none", "00" + NUL + "4", 0, 2, false},
    {"a byte above 0x7F is none", "004\xE9", 4, 3, false},
};

TEST(ReadDigits, GivesTheByteOfUpToFourDigits) {
    ScopedCLocale const scope("C");
    for (DigitsFact const& row : DIGITS_FACTS) {
        SCOPED_TRACE(row.fact);
        auto const read = internal::readDigits(row.text);
        EXPECT_EQ(read.byte, row.byte);
        EXPECT_EQ(read.size, row.size);
        auto const answer = internal::readFourDigits(row.text);
        ASSERT_EQ(answer.has_value(), row.answered);
        if (!answer) continue;
        EXPECT_EQ(answer->byte, row.byte);
        EXPECT_EQ(answer->size, row.size);
    }
}

TEST(ReadDigits, DeclinesDigitsOfALocaleOnTheFastPath) {
    ScopedCLocale const scope("xx_XX.ISO-8859-1");
    std::string const text = "41\xC0z";
    EXPECT_EQ(internal::readDigits(text).size, 3U);
    EXPECT_FALSE(internal::readFourDigits(text + "1"));
    EXPECT_FALSE(
        internal::readFourDigits("\xC0"
                                 "041"));
}

// ---- any string

// In a block of their own size, so that a sanitizer sees a read after their end.
TEST(UnescapeString, ReadsNothingAfterItsString) {
    ScopedCLocale const scope("C");
    std::string const escapes[] = {R"(\u0041)", R"(\x410041)", R"(\n)",          R"(\\)",
                                   R"(\q)",     R"(\u00)",     "abcdefgh\\u0041"};
    for (std::string const& escape : escapes) {
        for (std::size_t size = 0; size <= escape.size(); ++size) {
            for (std::size_t front : {16U, 17U, 23U, 300U, 8192U}) {
                std::string text(front, 'p');
                text += escape.substr(0, size);
                text.shrink_to_fit();
                EXPECT_EQ(unescapeString(text), modelOfUnescape(text)) << text;
                EXPECT_EQ(escapeString(text, false), modelOfEscape(text, false)) << text;
            }
        }
    }
}

TEST(UnescapeString, FindsTheOneEscapeAtAnyPosition) {
    ScopedCLocale const scope("C");
    for (char const* const escape : {R"(\u0041)", R"(\n)", R"(\\)", R"(\)"}) {
        for (std::size_t before = 0; before <= 100; ++before) {
            for (std::size_t after = 0; after <= 100; ++after) {
                std::string const text =
                    std::string(before, 'p') + escape + std::string(after, 'q');
                ASSERT_EQ(unescapeString(text), modelOfUnescape(text)) << text;
            }
        }
    }
}

TEST(UnescapeString, EqualsItsModelOnAnyString) {
    std::mt19937_64 engine = randomEngine();
    std::string const characters[] = {"\\ux0041gAF", "\\", "abcdefghijklmnop\\n", "\\u0041"};
    for (std::string const& locale : byteLocales()) {
        ScopedCLocale const scope(locale);
        for (int i = 0; i < 5'000; ++i) {
            std::size_t const limit = i % 1000 == 0 ? 12'000 : i % 10 == 0 ? 300 : 40;
            std::string const text = anyText(engine, characters[engine() % 4], limit);
            ASSERT_EQ(unescapeString(text), modelOfUnescape(text)) << locale;
        }
    }
}

TEST(UnescapeString, UndoesEscapingOfStringsWithoutABackslash) {
    std::mt19937_64 engine = randomEngine();
    for (std::string const& locale : byteLocales()) {
        ScopedCLocale const scope(locale);
        for (int i = 0; i < 5'000; ++i) {
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

// ---- memory

std::string const PLAIN_8192(8192, 'p');

std::string escapesOf(std::size_t count) {
    std::string escapes;
    for (std::size_t i = 0; i < count; ++i)
        escapes += "\\u0041";
    return escapes;
}

struct MemoryFact {
    char const* fact;
    std::string text;
    long allocations;
    std::size_t capacity;  // of the result
};

MemoryFact const MEMORY_FACTS[] = {
    {"a short result has no block", escapesOf(15), 0, 15},
    {"a string without an escape is copied", PLAIN_8192 + PLAIN_8192, 1, 16384},
    {"8191 bytes get a block for the result", escapesOf(1365) + "p", 1, 1366},
    {"8192 bytes get a block for the result", escapesOf(1365) + "pp", 1, 1367},
    {"8193 bytes that become 8192 keep a block of their own size", PLAIN_8192.substr(1) + "\\n", 1,
     8193},
    {"a result of half the size keeps the block", escapesOf(1640) + PLAIN_8192.substr(0, 6560), 1,
     16400},
    {"a result of less than half the size gets a block of its own",
     escapesOf(1641) + PLAIN_8192.substr(0, 6559), 2, 8200},
    {"a result of a sixth of the size gets a block of its own", escapesOf(20'000), 2, 20'000},
};

TEST(UnescapeString, KeepsNoMoreMemoryThanTwiceItsResult) {
    ScopedCLocale const scope("C");
    for (MemoryFact const& row : MEMORY_FACTS) {
        SCOPED_TRACE(row.fact);
        std::string result;
        EXPECT_EQ(allocationsOf([&] { result = unescapeString(row.text); }), row.allocations);
        EXPECT_EQ(result.capacity(), row.capacity);
        EXPECT_LE(result.capacity(), 2 * result.size());
    }
}

}  // namespace
