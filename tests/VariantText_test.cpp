#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/Variant.h>

#include "support/locales.h"
#include "support/recorded_reports.h"

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::VariantType;
using com::halvorin::datatypes::xtime_t;
using testing_support::Report;
using testing_support::ScopedCLocale;
using testing_support::ScopedCppLocale;
using testing_support::ScopedLocale;
using testing_support::takeReports;

using namespace std::string_literals;

// What a Variant is written as, wide and narrow, under either locale. VariantText_facets_test.cpp
// has the facets of a host, VariantText_digits_test.cpp the digits of a double.
namespace {

using uchar = unsigned char;
using ushort = unsigned short;
using wide = std::wstring;

// Locales by the short name that a table has room for.
constexpr char const* C = "C";
constexpr char const* DE = "de_DE.UTF-8";
constexpr char const* EN = "en_US.UTF-8";
constexpr char const* FR = "fr_FR.ISO-8859-15";
constexpr char const* PS = "ps_AF.UTF-8";
constexpr char const* TR = "tr_TR.UTF-8";

Variant booleanByte(uchar byte) {
    Variant variant(true);
    variant.uVal.asUbyte = byte;
    return variant;
}

// Every way to ask for the text, with any identifier of a locale. KEPT(locale-id-is-ignored)
void expectText(Variant const& variant, wide const& text, std::string const& narrow) {
    for (unsigned int const localeId : {1033U, 0U, 1U, 5U, 1031U, UINT_MAX}) {
        SCOPED_TRACE(localeId);
        EXPECT_EQ(variant.convertToString(localeId), text);
        EXPECT_EQ(variant.toString(localeId), text);
        EXPECT_EQ(variant.convertToStringSBC(localeId), narrow);
        EXPECT_EQ(variant.toStringSBC(localeId), narrow);
    }
    EXPECT_EQ(variant.toString(), narrow);
    char const* const pointer = variant;
    EXPECT_STREQ(pointer, narrow.c_str());
    EXPECT_EQ(pointer, variant.sbcText.c_str());
    EXPECT_EQ(variant.sbcText, narrow);
}

std::string lowBytes(wide const& text) {
    std::string narrow;
    for (wchar_t const c : text)
        narrow += static_cast<char>(c & 0xFF);
    return narrow;
}

void expectText(Variant const& variant, std::string const& text) {
    expectText(variant, wide(text.begin(), text.end()), text);
}

// ---- every type

// A slot whose bytes above the type's own width are not zero, as copyUVal may leave it.
Variant slot(int type, unsigned long bits) {
    Variant variant;
    variant.dataType = type;
    variant.uVal.asUint64 = bits;
    return variant;
}

struct TextFact {
    char const* fact;
    Variant value;
    char const* text;
};

Variant nullValue() {
    Variant variant(42);
    variant.makeNull();
    return variant;
}

xtime_t at(unsigned int nanoseconds) { return {1709618889, nanoseconds}; }

// KEPT(uint32-prints-signed): from 2^31 on.
// KEPT(int64-prints-as-double): six digits of either 64-bit kind.
TextFact const TEXT_FACTS[] = {
    {"UnsignedByte in a full slot", slot(1, 0xFFFFFFFFFFFFFF07), "7"},
    {"Uint16 in a full slot", slot(2, 0xFFFFFFFFFFFF0007), "7"},
    {"Uint32 in a full slot", slot(3, 0xFFFFFFFF00000007), "7"},
    {"Byte in a full slot", slot(4, 0xFFFFFFFFFFFFFF07), "7"},
    {"Int16 in a full slot", slot(5, 0xFFFFFFFFFFFF0007), "7"},
    {"Int32 in a full slot", slot(6, 0xFFFFFFFF00000007), "7"},
    {"Float in a full slot", slot(7, 0xFFFFFFFF3F800000), "1"},
    {"Boolean in a full slot", slot(12, 0xFFFFFFFFFFFFFF00), "0"},
    {"Unknown", Variant(), "unknown"},
    {"Null", nullValue(), "null"},
    {"an UnsignedByte is no character", uchar{200}, "200"},
    {"the smallest UnsignedByte", uchar{0}, "0"},
    {"the largest UnsignedByte", uchar{255}, "255"},
    {"Uint16", ushort{65535}, "65535"},
    {"Uint32 below 2^31", 2147483647U, "2147483647"},
    {"Uint32 of 2^31", 2147483648U, "-2147483648"},
    {"Uint32 of 3000000000", 3000000000U, "-1294967296"},
    {"the largest Uint32", 4294967295U, "-1"},
    {"a Byte is no character", 'A', "65"},
    {"a negative Byte", '\xFB', "-5"},
    {"the smallest Byte", '\x80', "-128"},
    {"the largest Byte", '\x7F', "127"},
    {"the smallest Int16", short{-32768}, "-32768"},
    {"the largest Int16", short{32767}, "32767"},
    {"the smallest Int32", INT_MIN, "-2147483648"},
    {"the largest Int32", INT_MAX, "2147483647"},
    {"Int32 of seven digits has them all", 1234567, "1234567"},
    {"Float", 0.1F, "0.1"},
    {"Float of seven digits", 1234567.0F, "1.23457e+06"},
    {"the largest Float", FLT_MAX, "3.40282e+38"},
    {"the least positive Float", 0x1p-149F, "1.4013e-45"},
    {"a Float is widened to double", 0.1234565F, "0.123457"},
    {"Double", 2.5, "2.5"},
    {"a small Double has an exponent", 1e-7, "1e-07"},
    {"the largest Double", DBL_MAX, "1.79769e+308"},
    {"Int64", 100L, "100"},
    {"Int64 of six digits", -999999L, "-999999"},
    {"Int64 of seven digits", 1000001L, "1e+06"},
    {"Int64 of nine digits", 123456789L, "1.23457e+08"},
    {"Int64 of thirteen digits", 1234567890123L, "1.23457e+12"},
    {"the smallest Int64", LONG_MIN, "-9.22337e+18"},
    {"the largest Int64", LONG_MAX, "9.22337e+18"},
    {"Uint64 of zero", 0UL, "0"},
    {"Uint64 of 2^63", 9223372036854775808UL, "9.22337e+18"},
    {"the largest Uint64", ULONG_MAX, "1.84467e+19"},
    {"true", true, "1"},
    {"false", false, "0"},
    {"a Boolean byte of 2 is true", booleanByte(2), "1"},
    {"a Boolean byte of 255 is true", booleanByte(255), "1"},
    {"DateTime", at(250000000), "2024-03-05T06:08:09.250Z"},
    {"DateTime of whole seconds", at(0), "2024-03-05T06:08:09.000Z"},
    {"DateTime, not set", xtime_t(), "1970-01-01T00:00:00.000Z"},
    {"an empty String", "", ""},
    {"a String", "text beyond a short form", "text beyond a short form"},
    {"a String of digits", "42", "42"},
};

TEST(VariantText, PrintsEveryType) {
    ScopedLocale const classic(C);
    for (TextFact const& row : TEXT_FACTS) {
        SCOPED_TRACE(row.fact);
        expectText(row.value, row.text);
    }
}

// ---- integers

TEST(VariantText, PrintsIntegersOfEveryLength) {
    ScopedLocale const classic(C);
    struct Row {
        int value;
        char const* text;
    };
    for (Row const& row : {Row{0, "0"},
                           Row{9, "9"},
                           Row{10, "10"},
                           Row{99, "99"},
                           Row{100, "100"},
                           Row{999, "999"},
                           Row{1000, "1000"},
                           Row{9999, "9999"},
                           Row{10000, "10000"},
                           Row{99999, "99999"},
                           Row{100000, "100000"},
                           Row{999999, "999999"},
                           Row{1000000, "1000000"},
                           Row{9999999, "9999999"},
                           Row{10000000, "10000000"},
                           Row{99999999, "99999999"},
                           Row{100000000, "100000000"},
                           Row{999999999, "999999999"},
                           Row{1000000000, "1000000000"},
                           Row{-1, "-1"},
                           Row{-10, "-10"},
                           Row{-1000000000, "-1000000000"}}) {
        expectText(Variant(row.value), row.text);
    }
}

// ---- a String

struct NarrowingFact {
    char const* fact;
    wide text;
    std::string narrow;
};

// KEPT(low-eight-bits): no replacement for a character beyond a byte.
NarrowingFact const NARROWING_FACTS[] = {
    {"an empty string", L"", ""},
    {"ASCII", L"text", "text"},
    {"Latin-1", L"\u00E9", "\xE9"},
    {"the euro sign", L"\u20AC", "\xAC"},
    {"a letter becomes another", L"\u0141", "A"},
    {"beyond 16 bits", L"\U0001F600", "\0"s},
    {"a character that becomes a zero", L"a\u0100b", "a\0b"s},
    {"zero characters stay", L"a\0b\0"s, "a\0b\0"s},
    {"beyond a short form", L"\u0141 beyond a short form", "A beyond a short form"},
};

TEST(VariantText, NarrowsEachCharacterToItsLowEightBits) {
    for (NarrowingFact const& row : NARROWING_FACTS) {
        SCOPED_TRACE(row.fact);
        expectText(Variant(row.text), row.text, row.narrow);
    }
}

// Sixteen characters are narrowed at once. The bits above the low eight may be anything.
TEST(VariantText, NarrowsTextsOfEverySize) {
    for (wchar_t const above : {0, 0x100, 0x7FFFFF00, -0x100, 0x5A8000}) {
        for (std::size_t size = 1; size < 100; ++size) {
            std::string bytes;
            wide text;
            for (std::size_t i = 0; i < size; ++i) {
                bytes += static_cast<char>(3 * i + size);
                text += above | static_cast<unsigned char>(bytes.back());
            }
            EXPECT_EQ(Variant(text).toString(), bytes) << size;
        }
    }
}

TEST(VariantText, GivesEveryByteBack) {
    for (std::size_t size = 1; size < 256; ++size) {
        std::string bytes;
        for (std::size_t i = 0; i < size; ++i)
            bytes += static_cast<char>(255 - i);
        Variant const variant(bytes);
        EXPECT_EQ(variant.toString(), bytes);
        EXPECT_EQ(variant.toString(1033), variant.wText);
        EXPECT_EQ(variant.wText.size(), size);
    }
}

// No locale changes a String, or the words "unknown" and "null".
TEST(VariantText, LeavesTextToNoLocale) {
    for (std::string const& name : testing_support::allLocales()) {
        SCOPED_TRACE(name);
        ScopedLocale const locale(name);
        expectText(Variant(L"1234567.5"), "1234567.5");
        expectText(Variant(), "unknown");
        expectText(nullValue(), "null");
        expectText(Variant(true), "1");
        expectText(Variant(INFINITY), "inf");
        expectText(Variant(999), "999");
    }
}

// ---- locales

struct LocalFact {
    char const* fact;
    char const* cppLocale;
    Variant value;
    wide text;
};

LocalFact const LOCAL_FACTS[] = {
    {"no groups in the classic locale", C, 1234567, L"1234567"},
    {"an Int32 is grouped", DE, 1234567, L"1.234.567"},
    {"a negative Int32 is grouped", DE, -1234567, L"-1.234.567"},
    {"an Int32 of four digits is grouped", DE, 1234, L"1.234"},
    {"an Int32 of three digits has no group", DE, -999, L"-999"},
    {"a Uint16 is grouped", DE, ushort{65535}, L"65.535"},
    {"an Int16 is grouped", DE, short{-32768}, L"-32.768"},
    {"a Uint32 is grouped as an int", DE, 3000000000U, L"-1.294.967.296"},
    {"a Byte has no group", DE, '\x80', L"-128"},
    {"an UnsignedByte has no group", DE, uchar{255}, L"255"},
    {"a Double's point", DE, 0.5, L"0,5"},
    {"a Double's groups and point", DE, 1234.5, L"1.234,5"},
    {"a Double's groups alone", DE, 123456.0, L"123.456"},
    {"no groups before an exponent", DE, 1234567.0, L"1,23457e+06"},
    {"a Float", DE, -1234.5F, L"-1.234,5"},
    {"an Int64", DE, 123456L, L"123.456"},
    {"a Uint64", DE, 1234567UL, L"1,23457e+06"},
    {"a group of another kind", EN, 1234567, L"1,234,567"},
    {"groups of another kind beside a point", EN, 1234.5, L"1,234.5"},
    {"no group, and the point of the classic locale", EN, 0.5, L"0.5"},
    {"a group separator that is a space", FR, 1234567, L"1\u202F234\u202F567"},
    {"a group separator beyond a byte", PS, 1234567, L"1\u066C234\u066C567"},
    {"a decimal point beyond a byte", PS, 0.5, L"0\u066B5"},
    {"a locale of another alphabet", TR, 1234.5, L"1.234,5"},
};

TEST(VariantText, PrintsNumbersUnderTheGlobalCppLocale) {
    for (std::string const& cLocale : testing_support::allLocales()) {
        ScopedCLocale const c(cLocale);
        for (LocalFact const& row : LOCAL_FACTS) {
            SCOPED_TRACE(row.fact);
            SCOPED_TRACE(cLocale);
            ScopedCppLocale const cpp(row.cppLocale);
            expectText(row.value, row.text, lowBytes(row.text));
        }
    }
}

// ---- a DateTime follows the C locale instead

struct LocalTimeFact {
    char const* cLocale;
    wide text;
    std::string narrow;
};

// The decimal point of ps_AF is U+066B, which has two bytes in UTF-8. Each byte is widened by its
// sign. The first four bytes of point and digits are kept.
wide const WIDENED_POINT = {static_cast<wchar_t>(-39), static_cast<wchar_t>(-85)};

LocalTimeFact const LOCAL_TIME_FACTS[] = {
    {C, L"2024-03-05T06:08:09.250Z", "2024-03-05T06:08:09.250Z"},
    {EN, L"2024-03-05T06:08:09.250Z", "2024-03-05T06:08:09.250Z"},
    {DE, L"2024-03-05T06:08:09,250Z", "2024-03-05T06:08:09,250Z"},
    {FR, L"2024-03-05T06:08:09,250Z", "2024-03-05T06:08:09,250Z"},
    {PS, L"2024-03-05T06:08:09" + WIDENED_POINT + L"25Z",
     "2024-03-05T06:08:09\xD9\xAB"
     "25Z"},
};

TEST(VariantText, PrintsADateTimeUnderTheCLocale) {
    for (LocalTimeFact const& row : LOCAL_TIME_FACTS) {
        for (char const* const cppLocale : {C, DE}) {
            SCOPED_TRACE(row.cLocale);
            ScopedCLocale const c(row.cLocale);
            ScopedCppLocale const cpp(cppLocale);
            expectText(Variant(at(250000000)), row.text, row.narrow);
        }
    }
}

struct TimeFact {
    char const* fact;
    long seconds;
    unsigned int nanoseconds;
    char const* text;
};

TimeFact const TIME_FACTS[] = {
    {"before the epoch", -1, 999000000, "1969-12-31T23:59:59.999Z"},
    {"before 1858", -4000000000, 0, "1843-03-31T16:53:20.000Z"},
    {"after 2038", 4102444800, 500000000, "2100-01-01T00:00:00.500Z"},
    {"more nanoseconds than a second has", 0, 1500000000, "1970-01-01T00:00:01.500Z"},
};

TEST(VariantText, PrintsTheTimeAsItWasGiven) {
    ScopedLocale const classic(C);
    for (TimeFact const& row : TIME_FACTS) {
        SCOPED_TRACE(row.fact);
        Variant variant(xtime_t(row.seconds, row.nanoseconds));
        expectText(variant, row.text);
        variant.uVal.asDouble = 0;  // it takes no part
        expectText(variant, row.text);
    }
}

// ---- the narrow cache

TEST(VariantText, KeepsTheCharactersUntilTheNextCall) {
    ScopedLocale const classic(C);
    Variant variant(42);
    char const* const first = variant;
    EXPECT_STREQ(first, "42");
    variant = "another";
    EXPECT_STREQ(first, "42");  // no longer the value
    EXPECT_EQ(variant.toString(), "another");
    variant.clear();
    variant.makeNull();
    variant = xtime_t(0, 0);
    variant.assign(variant);
    variant.assign(Variant(L"a copy"));
    variant.copyUVal(Variant(7));
    static_cast<void>(variant.toString());
    static_cast<void>(variant.convertToStringSBC(1033));
    static_cast<void>(variant.toInt32());
    EXPECT_STREQ(first, "42");
    EXPECT_EQ(variant.sbcText, "42");
    char const* const second = variant;
    EXPECT_STREQ(second, "a copy");
    EXPECT_EQ(variant.sbcText, "a copy");
}

TEST(VariantText, KeepsOneCacheForEachObject) {
    Variant const original("a text beyond any short form");
    char const* const pointer = original;
    Variant const copy(original);
    EXPECT_EQ(copy.sbcText, "");
    char const* const pointerOfCopy = copy;
    EXPECT_NE(pointer, pointerOfCopy);
    EXPECT_STREQ(pointer, "a text beyond any short form");
    EXPECT_STREQ(pointerOfCopy, "a text beyond any short form");
}

TEST(VariantText, EndsTheCharactersWithAZero) {
    Variant const variant(L"a\0b"s);
    char const* const pointer = variant;
    EXPECT_EQ(variant.sbcText, "a\0b"s);
    EXPECT_EQ(std::memcmp(pointer, "a\0b", 4), 0);
    EXPECT_STREQ(static_cast<char const*>(Variant("")), "");
}

// ---- no such type

Report const UNKNOWN_TYPE = {"Variant::convertToString", 3, "Cannot convert unknown type",
                             0x80004005};

struct EntryPoint {
    char const* name;
    std::function<bool(Variant const&)> givesNothing;
};

EntryPoint entryPoint(char const* name, std::function<bool(Variant const&)> givesNothing) {
    return {name, std::move(givesNothing)};
}

EntryPoint const ENTRY_POINTS[] = {
    entryPoint("convertToString", [](Variant const& v) { return v.convertToString(1033).empty(); }),
    entryPoint("convertToStringSBC",
               [](Variant const& v) { return v.convertToStringSBC(1033).empty(); }),
    entryPoint("toString(id)", [](Variant const& v) { return v.toString(1033).empty(); }),
    entryPoint("toStringSBC", [](Variant const& v) { return v.toStringSBC(1033).empty(); }),
    entryPoint("toString", [](Variant const& v) { return v.toString().empty(); }),
    entryPoint("operator char const*",
               [](Variant const& v) {
                   v.sbcText = "of an earlier call";
                   return *static_cast<char const*>(v) == '\0' && v.sbcText.empty();
               }),
};

TEST(VariantText, ReportsATypeThatDoesNotExist) {
    for (VariantType const type : {15, 16, 99, -1, -2, INT_MIN, INT_MAX}) {
        for (EntryPoint const& entry : ENTRY_POINTS) {
            SCOPED_TRACE(entry.name);
            SCOPED_TRACE(type);
            Variant variant(L"text that is not printed");
            variant.dataType = type;
            takeReports();
            EXPECT_TRUE(entry.givesNothing(variant));
            EXPECT_EQ(takeReports(), std::vector<Report>{UNKNOWN_TYPE});
        }
    }
}

TEST(VariantText, ReportsNoOtherType) {
    takeReports();
    for (VariantType type = 0; type <= 14; ++type) {
        Variant variant(L"text");
        variant.dataType = type;
        EXPECT_NE(variant.toString(), "") << type;
        EXPECT_NE(variant.toString(1033), L"") << type;
    }
    EXPECT_EQ(takeReports(), std::vector<Report>());
}

}  // namespace
