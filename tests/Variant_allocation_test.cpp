#include <climits>
#include <cmath>
#include <cstdlib>
#include <cwchar>
#include <functional>
#include <locale>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/Variant.h>

#include "support/failing_allocations.h"
#include "support/locales.h"

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;
using testing_support::allocationsOf;
using testing_support::failsWithout;
using testing_support::freshLocale;
using testing_support::ScopedCppLocale;
using testing_support::ScopedLocale;
using testing_support::watchedAllocations;

// What a Variant allocates, and what it contains after an allocation failed.
namespace {

char const* const LONG_TEXT = "text far beyond any short form of a string";
wchar_t const* const LONG_WIDE_TEXT = L"text far beyond any short form of a string";

// ---- numbers

std::vector<Variant> someNumbers() {
    using uchar = unsigned char;
    using ushort = unsigned short;
    std::vector<Variant> numbers = {uchar{200},    ushort{65535}, 4294967295U,  '\x80',
                                    short{-32768}, -2147483647,   -1.23457e30F, -1.23457e-300,
                                    LONG_MIN,      ULONG_MAX,     true,         Variant()};
    numbers.emplace_back().makeNull();
    return numbers;
}

TEST(VariantAllocation, IsNoneForNumbersAndTimes) {
    EXPECT_EQ(allocationsOf([] {
                  Variant const first(-1.5);
                  Variant second(first);
                  second = 3;
                  second = first;
                  second.assign(xtime_t(1763164800, 7));
                  Variant const time(xtime_t(1763164800, 7));
                  second.copyUVal(time);
                  second = time;
                  second.clear();
                  second.makeNull();
              }),
              0);
}

TEST(VariantAllocation, IsNoneForReadingNumbers) {
    for (Variant const& number : someNumbers()) {
        if (!number.hasValue()) continue;
        SCOPED_TRACE(number.type());
        EXPECT_EQ(allocationsOf([&number] {
                      static_cast<void>(number.toUbyte());
                      static_cast<void>(number.toByte());
                      static_cast<void>(number.toInt16());
                      static_cast<void>(number.toUint16());
                      static_cast<void>(number.toInt32());
                      static_cast<void>(number.toUint32());
                      static_cast<void>(number.toInt64());
                      static_cast<void>(number.toUint64());
                      static_cast<void>(number.toFloat());
                      static_cast<void>(number.toDouble());
                      static_cast<void>(number.toBool());
                      static_cast<void>(number.toXtime_t());
                  }),
                  0);
    }
}

TEST(VariantAllocation, IsNoneForReadingPlainDigits) {
    ScopedLocale const foreign("de_DE.UTF-8");  // which makes no difference
    for (wchar_t const* const text :
         {L"123456789012345678", L"-123456789012345678", L"+123456789012345678"}) {
        Variant const digits(text);
        EXPECT_EQ(allocationsOf([&digits] {
                      EXPECT_EQ(std::abs(digits.toInt64()), 123456789012345678);
                      EXPECT_EQ(std::abs(digits.toDouble()), 123456789012345680.0);
                      EXPECT_TRUE(digits.toBool());
                  }),
                  0);
    }
}

// Without a stream, if a stream would write the same characters.
TEST(VariantAllocation, IsNoneForTheNarrowTextOfANumber) {
    std::locale const classic = std::locale::classic();
    for (std::locale const& plain :
         {classic, std::locale(classic, "de_DE.UTF-8", std::locale::ctype),
          std::locale(classic, new std::ctype_byname<wchar_t>("de_DE.UTF-8")),
          std::locale(std::locale("de_DE.UTF-8"), classic, std::locale::numeric)}) {
        ScopedCppLocale const cpp(plain);
        for (Variant const& number : someNumbers()) {
            SCOPED_TRACE(number.type());
            EXPECT_EQ(allocationsOf([&number] {
                          static_cast<void>(number.toString());
                          static_cast<void>(number.convertToStringSBC(1033));
                          static_cast<void>(number.toStringSBC(1033));
                          static_cast<void>(static_cast<char const*>(number));
                      }),
                      0);
        }
    }
}

// ---- text

TEST(VariantAllocation, IsOneForALongText) {
    std::string const text(LONG_TEXT);
    std::wstring const wide(LONG_WIDE_TEXT);
    Variant const variant(LONG_TEXT);
    EXPECT_EQ(allocationsOf([] { Variant const built(LONG_TEXT); }), 1);
    EXPECT_EQ(allocationsOf([] { Variant const built(LONG_WIDE_TEXT); }), 1);
    EXPECT_EQ(allocationsOf([&] { Variant const built(text); }), 1);
    EXPECT_EQ(allocationsOf([&] { Variant const built(wide); }), 1);
    EXPECT_EQ(allocationsOf([&] { Variant const built(variant); }), 1);
    EXPECT_EQ(allocationsOf([&] { static_cast<void>(variant.toString()); }), 1);
    EXPECT_EQ(allocationsOf([&] { static_cast<void>(variant.toString(1033)); }), 1);
    EXPECT_EQ(allocationsOf([&] { static_cast<void>(static_cast<char const*>(variant)); }), 1);
}

// ---- every way to assign a string

struct TextWay {
    char const* name;
    std::function<void(Variant&)> assign;
};

std::vector<TextWay> textWays() {
    std::string const text(LONG_TEXT);
    std::wstring const wide(LONG_WIDE_TEXT);
    return {
        {"assign(char const*)", [](Variant& variant) { variant.assign(LONG_TEXT); }},
        {"assign(std::string)", [text](Variant& variant) { variant.assign(text); }},
        {"assign(wchar_t const*)", [](Variant& variant) { variant.assign(LONG_WIDE_TEXT); }},
        {"assign(std::wstring)", [wide](Variant& variant) { variant.assign(wide); }},
        {"operator=(char const*)", [](Variant& variant) { variant = LONG_TEXT; }},
        {"operator=(wchar_t const*)", [](Variant& variant) { variant = LONG_WIDE_TEXT; }},
    };
}

TEST(VariantAllocation, IsNoneForTextWhereThereIsRoom) {
    for (TextWay const& way : textWays()) {
        SCOPED_TRACE(way.name);
        Variant exact{std::wstring(std::wcslen(LONG_WIDE_TEXT), L'x')};
        ASSERT_EQ(exact.wText.capacity(), std::wcslen(LONG_WIDE_TEXT));
        EXPECT_EQ(allocationsOf([&] { way.assign(exact); }), 0);
        EXPECT_EQ(exact.wText, LONG_WIDE_TEXT);
        Variant variant(std::string(100, 'x'));
        EXPECT_EQ(allocationsOf([&] { way.assign(variant); }), 0);
        EXPECT_EQ(variant.wText, LONG_WIDE_TEXT);
        variant = 7;
        EXPECT_EQ(allocationsOf([&] { way.assign(variant); }), 0);
        EXPECT_EQ(variant.wText, LONG_WIDE_TEXT);
        variant.clear();
        EXPECT_EQ(allocationsOf([&] { way.assign(variant); }), 0);
        EXPECT_EQ(variant.wText, LONG_WIDE_TEXT);
    }
    Variant const source(LONG_TEXT);
    Variant variant(std::string(100, 'x'));
    EXPECT_EQ(allocationsOf([&] { variant = source; }), 0);
    EXPECT_EQ(variant.wText, LONG_WIDE_TEXT);
}

Variant withoutRoom() {
    Variant variant(xtime_t(1763164800, 7));
    variant.wText = L"old";
    variant.wTextAux = L"aux";
    return variant;
}

void expectTheRestOf(Variant const& variant) {
    EXPECT_EQ(variant.timeVal, xtime_t(1763164800, 7));
    EXPECT_EQ(variant.wTextAux, L"aux");
}

TEST(VariantAllocation, LeavesAClearedVariantWhenTextFails) {
    for (TextWay const& way : textWays()) {
        SCOPED_TRACE(way.name);
        Variant variant = withoutRoom();
        variant.sbcText = "cached";
        EXPECT_TRUE(failsWithout(0, [&] { way.assign(variant); }));
        EXPECT_EQ(variant.type(), 0);
        EXPECT_EQ(variant.uVal.asUint64, 0U);
        EXPECT_EQ(variant.wText, L"");
        expectTheRestOf(variant);
        EXPECT_EQ(variant.sbcText, "cached");
        way.assign(variant);
        EXPECT_EQ(variant.type(), 9);
        EXPECT_EQ(variant.wText, LONG_WIDE_TEXT);
    }
}

TEST(VariantAllocation, LeavesTheSourcesTypeBesideNoTextWhenACopyFails) {
    Variant source(LONG_TEXT);
    source.uVal.asUint64 = 5;
    source.wTextAux = LONG_WIDE_TEXT;
    source.timeVal = xtime_t(1, 2);
    std::vector<std::function<void(Variant&)>> const ways = {
        [&source](Variant& variant) { variant.assign(source); },
        [&source](Variant& variant) { variant = source; },
    };
    for (auto const& copy : ways) {
        Variant variant = withoutRoom();
        EXPECT_TRUE(failsWithout(0, [&] { copy(variant); }));
        EXPECT_EQ(variant.type(), 9);
        EXPECT_EQ(variant.uVal.asUint64, 5U);
        EXPECT_EQ(variant.wText, L"");
        expectTheRestOf(variant);

        // The second string fails, after the first one was copied.
        Variant other = withoutRoom();
        EXPECT_TRUE(failsWithout(1, [&] { copy(other); }));
        EXPECT_EQ(other.type(), 9);
        EXPECT_EQ(other.uVal.asUint64, 5U);
        EXPECT_EQ(other.wText, LONG_WIDE_TEXT);
        expectTheRestOf(other);

        EXPECT_FALSE(failsWithout(2, [&] { copy(other); }));
        EXPECT_EQ(other.wTextAux, LONG_WIDE_TEXT);
        EXPECT_EQ(other.timeVal, xtime_t(1, 2));
    }
    EXPECT_EQ(source.wText, LONG_WIDE_TEXT);
}

TEST(VariantAllocation, BuildsNothingWhenItFails) {
    std::string const text(LONG_TEXT);
    std::wstring const wide(LONG_WIDE_TEXT);
    Variant source(LONG_TEXT);
    source.wTextAux = LONG_WIDE_TEXT;
    EXPECT_TRUE(failsWithout(0, [] { Variant const built(LONG_TEXT); }));
    EXPECT_TRUE(failsWithout(0, [] { Variant const built(LONG_WIDE_TEXT); }));
    EXPECT_TRUE(failsWithout(0, [&] { Variant const built(text); }));
    EXPECT_TRUE(failsWithout(0, [&] { Variant const built(wide); }));
    EXPECT_TRUE(failsWithout(0, [&] { Variant const built(source); }));
    EXPECT_TRUE(failsWithout(1, [&] { Variant const built(source); }));
    EXPECT_FALSE(failsWithout(2, [&] { Variant const built(source); }));
}

TEST(VariantAllocation, KeepsTheNarrowCacheWhenANewOneFails) {
    Variant const variant(LONG_TEXT);
    variant.sbcText = "cached";
    EXPECT_TRUE(failsWithout(0, [&] { static_cast<void>(static_cast<char const*>(variant)); }));
    EXPECT_EQ(variant.sbcText, "cached");
}

// ---- streams

// Lets each allocation fail in turn: the result is complete, or there is none. Gives their number.
template <typename Result>
long expectWholeOrNone(std::function<Result()> const& work, Result const& whole) {
    for (long failingAllocation = 0;; ++failingAllocation) {
        SCOPED_TRACE(failingAllocation);
        ScopedCppLocale const cpp(freshLocale());
        std::optional<Result> result;
        bool const failed = failsWithout(failingAllocation, [&] { result.emplace(work()); });
        EXPECT_EQ(failed, !result);
        // There is no result exactly if the allocation was reached.
        EXPECT_EQ(failed, watchedAllocations() > failingAllocation);
        if (result) {
            EXPECT_EQ(*result, whole);
            return failingAllocation;
        }
    }
}

TEST(VariantAllocation, CutsNoTextThatAStreamPrints) {
    Variant const integer(-1234567890);
    Variant const floating(123456.0);
    std::wstring const digits = L"-1_234_567_890";
    EXPECT_GT(expectWholeOrNone<std::wstring>([&] { return integer.toString(1033); }, digits), 1);
    EXPECT_GT(expectWholeOrNone<std::string>([&] { return integer.toString(); }, "-1_234_567_890"),
              0);
    EXPECT_GT(expectWholeOrNone<std::wstring>([&] { return floating.toString(1033); }, L"123_456"),
              1);
    EXPECT_GT(expectWholeOrNone<std::string>(
                  [&] { return std::string(static_cast<char const*>(floating)); }, "123_456"),
              0);
}

TEST(VariantAllocation, CutsNoNumberThatAStreamReads) {
    Variant const grouped(L"  1_234_567_890 and more");
    EXPECT_GT(expectWholeOrNone<long>([&] { return grouped.toInt64(); }, 1234567890), 0);
    EXPECT_GT(expectWholeOrNone<unsigned char>([&] { return grouped.toUbyte(); }, 210), 0);
    EXPECT_GT(expectWholeOrNone<long>([&] { return static_cast<long>(grouped); }, 1234567890), 0);
}

// A stream reads a string where digits are followed by the locale's separator of groups.
TEST(VariantAllocation, MayFailOnlyWhereAStreamReadsTheString) {
    struct {
        char const* locale;
        wchar_t const* text;
        bool asInteger;
    } const rows[] = {
        {"C", L"", false},
        {"C", L"-999999999999999999", false},
        {"C", L"12345678901234567890 and more", false},
        {"C", L"  42.000", false},
        {"C", L" \u200342", false},
        {"de_DE.UTF-8", L"-999999999999999999", false},
        {"de_DE.UTF-8", L" 42", false},
        {"de_DE.UTF-8", L"42,5", false},
        {"de_DE.UTF-8", L"42.000", true},
    };
    for (auto const& row : rows) {
        ScopedLocale const locale(row.locale);
        Variant const variant(row.text);
        SCOPED_TRACE(testing::PrintToString(row.text));
        EXPECT_EQ(failsWithout(0, [&] { static_cast<void>(variant.toInt32()); }), row.asInteger);
        EXPECT_FALSE(failsWithout(0, [&] { static_cast<void>(variant.toDouble()); }));
        EXPECT_FALSE(failsWithout(0, [&] { static_cast<void>(variant.toBool()); }));
    }
}

TEST(VariantAllocation, CutsNoDateTime) {
    ScopedLocale const classic("C");
    Variant const time(xtime_t(1709618889, 250000000));
    EXPECT_GT(
        expectWholeOrNone<std::string>([&] { return time.toString(); }, "2024-03-05T06:08:09.250Z"),
        0);
    EXPECT_GT(expectWholeOrNone<std::wstring>([&] { return time.toString(1033); },
                                              L"2024-03-05T06:08:09.250Z"),
              0);
}

}  // namespace
