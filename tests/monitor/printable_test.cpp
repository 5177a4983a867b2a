// Texts that are safe to show on a terminal.
#include "program/printable.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

using namespace monitor;
using namespace std::string_view_literals;

namespace {

struct PrintableFact {
    char const* fact;
    std::string_view text;
    std::string_view shown;
};

PrintableFact const PRINTABLE_FACTS[] = {
    {"an empty text is empty", ""sv, ""sv},
    {"ASCII is shown as it is", " !a~"sv, " !a~"sv},
    {"a backslash is shown as it is", "\\x1B"sv, "\\x1B"sv},
    {"a zero byte is escaped", "a\0b"sv, "a\\x00b"sv},
    {"an escape byte is escaped", "\x1b[31m"sv, "\\x1B[31m"sv},
    {"a newline is escaped", "a\nb"sv, "a\\x0Ab"sv},
    {"the last control byte before the space is escaped", "\x1f"sv, "\\x1F"sv},
    {"DEL is escaped", "\x7f"sv, "\\x7F"sv},
    {"the first control character of two bytes is escaped", "\xc2\x80"sv, "\\xC2\\x80"sv},
    {"the control sequence introducer is escaped", "\xc2\x9b"sv, "\\xC2\\x9B"sv},
    {"the last control character of two bytes is escaped", "\xc2\x9f"sv, "\\xC2\\x9F"sv},
    {"the first character after them is shown", "\xc2\xa0"sv, "\xc2\xa0"sv},
    {"a character of two bytes is shown", "\xc3\xa4"sv, "\xc3\xa4"sv},
    {"the last character of two bytes is shown", "\xdf\xbf"sv, "\xdf\xbf"sv},
    {"the first character of three bytes is shown", "\xe0\xa0\x80"sv, "\xe0\xa0\x80"sv},
    {"the last character before the surrogates is shown", "\xed\x9f\xbf"sv, "\xed\x9f\xbf"sv},
    {"the first surrogate is escaped", "\xed\xa0\x80"sv, "\\xED\\xA0\\x80"sv},
    {"the last surrogate is escaped", "\xed\xbf\xbf"sv, "\\xED\\xBF\\xBF"sv},
    {"the first character after the surrogates is shown", "\xee\x80\x80"sv, "\xee\x80\x80"sv},
    {"the first character of four bytes is shown", "\xf0\x90\x80\x80"sv, "\xf0\x90\x80\x80"sv},
    {"the last character of all is shown", "\xf4\x8f\xbf\xbf"sv, "\xf4\x8f\xbf\xbf"sv},
    {"a number above the last character is escaped", "\xf4\x90\x80\x80"sv,
     "\\xF4\\x90\\x80\\x80"sv},
    {"a character in more bytes than it needs is escaped", "\xc1\x81"sv, "\\xC1\\x81"sv},
    {"three bytes for a character of two are escaped", "\xe0\x9f\xbf"sv, "\\xE0\\x9F\\xBF"sv},
    {"four bytes for a character of three are escaped", "\xf0\x8f\xbf\xbf"sv,
     "\\xF0\\x8F\\xBF\\xBF"sv},
    {"a following byte alone is escaped", "\x80"sv, "\\x80"sv},
    {"the last following byte alone is escaped", "\xbf"sv, "\\xBF"sv},
    {"a first byte that is never used is escaped", "\xf8\x90\x80\x80\x80"sv,
     "\\xF8\\x90\\x80\\x80\\x80"sv},
    {"a cut character is escaped", "a\xc3"sv, "a\\xC3"sv},
    {"a cut character of three bytes is escaped", "\xe2\x82"sv, "\\xE2\\x82"sv},
    {"a character that another one interrupts is escaped", "\xe2\x82z"sv, "\\xE2\\x82z"sv},
};

TEST(Printable, HasNoControlBytesAndIsUtf8) {
    for (PrintableFact const& row : PRINTABLE_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(printable(row.text), row.shown);
        EXPECT_EQ(isPrintable(row.text), row.text == row.shown);
    }
}

}  // namespace
