#include <deque>
#include <list>
#include <map>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <vector>

#include <gmock/gmock.h>

#include <utillibrary/utilities/StringNVP.h>

#include "support/locales.h"
#include "support/text_models.h"

// Each table runs through a form that the library exports, and through the templates, which are the
// general path. StringNVP_hosts_test.cpp has the lists and maps of hosts.

using namespace com::halvorin::utilities;
using namespace testing_support;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::Pair;
using testing::UnorderedElementsAre;

namespace {

using Strings = std::vector<std::string>;
using HashMap = std::unordered_map<std::string, std::string>;
using SortedMap = std::map<std::string, std::string>;

std::string const NUL(1, '\0');
std::string const LONG_FIELD(100, 'l');
std::string const FIFTEEN = "123456789012345";
std::string const SIXTEEN = "1234567890123456";

// ---- split

struct SplitFact {
    char const* fact;
    std::string text;
    std::string separators;
    Strings fields;
};

SplitFact const SPLIT_FACTS[] = {
    {"a separator ends a field", "a,b", ",", {"a", "b"}},
    {"each byte of the separators ends a field", "a b;c", " ;", {"a", "b", "c"}},
    {"the order of the separators does not matter", "a b;c", "; ", {"a", "b", "c"}},
    {"separators are bytes, not one string", "a, b", ", ", {"a", "b"}},
    {"an empty field in the middle is dropped", "a,,b", ",", {"a", "b"}},
    {"an empty first field is dropped", ",a", ",", {"a"}},
    {"several empty fields in a row are dropped", ",,,a,,,b", ",", {"a", "b"}},
    // KEPT(split-keeps-last)
    {"an empty last field is appended", "a,", ",", {"a", ""}},
    {"an empty last field is appended after dropped ones", "a,,b,", ",", {"a", "b", ""}},
    {"separators alone give one empty field", ",,,", ",", {""}},
    {"an empty string gives one empty field", "", ",", {""}},
    {"a string without a separator is one field", "abc", ",", {"abc"}},
    {"without separators the whole string is one field", "a,b ", "", {"a,b "}},
    {"an empty string without separators gives one empty field", "", "", {""}},
    {"a separator that is given twice counts once", "a,b", ",,", {"a", "b"}},
    {"four separators all end fields", "a.b,c;d:e-f", ".,;:", {"a", "b", "c", "d", "e-f"}},
    {"five separators all end fields", "a.b,c;d:e-f", ".,;:-", {"a", "b", "c", "d", "e", "f"}},
    {"a byte that is none of five separators ends no field", "a.b_c", ".,;:-", {"a", "b_c"}},
    {"five times the same separator is one separator", "a.b,c", ".....", {"a", "b,c"}},
    {"a zero byte belongs to a field", "a" + NUL + "b", ",", {"a" + NUL + "b"}},
    {"a zero byte can be the separator", "a" + NUL + "b", NUL, {"a", "b"}},
    {"a zero byte can be one of five separators", "a" + NUL + "b", ".,;:" + NUL, {"a", "b"}},
    {"bytes above 0x7F can be separators", "a\377b\x80", "\xFF\x80", {"a", "b", ""}},
    {"bytes next to the separators belong to a field", "a\376b\x7F", "\xFF\x80", {"a\376b\x7F"}},
    {"fields of 100 bytes stay whole",
     LONG_FIELD + "," + LONG_FIELD,
     ",",
     {LONG_FIELD, LONG_FIELD}},
    {"a long field may come between short ones",
     "a," + LONG_FIELD + ",b",
     ",",
     {"a", LONG_FIELD, "b"}},
    {"fields of 15 and 16 bytes stay whole",
     FIFTEEN + "," + SIXTEEN + ",",
     ",",
     {FIFTEEN, SIXTEEN, ""}},
};

template <typename List>
class SplitInto : public testing::Test {};
using Lists = testing::Types<Strings, std::list<std::string>, std::deque<std::string>>;
TYPED_TEST_SUITE(SplitInto, Lists);

TYPED_TEST(SplitInto, AppendsTheFieldsOfAString) {
    for (SplitFact const& row : SPLIT_FACTS) {
        SCOPED_TRACE(row.fact);
        TypeParam fields;
        split(fields, row.text, row.separators);
        EXPECT_THAT(fields, ElementsAreArray(row.fields));
        split(fields, "x", ",");  // KEPT(appended-never-cleared)
        EXPECT_EQ(fields.size(), row.fields.size() + 1);
        EXPECT_EQ(fields.front(), row.fields.front());
        EXPECT_EQ(fields.back(), "x");
    }
}

TYPED_TEST(SplitInto, ReadsElementsOfItsList) {
    for (std::string const& text : {std::string("a,b,c"), LONG_FIELD + "," + LONG_FIELD + ",c"}) {
        TypeParam fields = {text, ","};
        split(fields, fields.front(), fields.back());
        Strings expected = modelOfSplit(text, ",");
        expected.insert(expected.begin(), {text, ","});
        EXPECT_THAT(fields, ElementsAreArray(expected));

        TypeParam same = {text};
        split(same, same.front(), same.front());
        EXPECT_THAT(same, ElementsAre(text, ""));
    }
}

TEST(Split, ReadsElementsOfAVectorWithAndWithoutRoom) {
    for (std::string const& text : {std::string("a,b,c"), LONG_FIELD + "," + LONG_FIELD + ",c"}) {
        for (std::size_t const reserved : {3U, 100U}) {
            for (std::size_t const position : {0U, 2U}) {
                Strings fields(3, ",");
                fields[position] = text;
                Strings expected = modelOfSplit(text, ",");
                expected.insert(expected.begin(), fields.begin(), fields.end());
                fields.reserve(reserved);
                split(fields, fields[position], fields[1]);
                EXPECT_EQ(fields, expected);
            }
        }
    }
}

// One of the two lists is at a lower address than the other, and stays there.
TEST(Split, ReadsElementsOfAnotherVector) {
    Strings first = {"a,b", ","};
    Strings second = {"c,d", ","};
    first.reserve(4);
    second.reserve(4);
    split(first, second[0], second[1]);
    EXPECT_THAT(first, ElementsAre("a,b", ",", "c", "d"));
    split(second, first[0], first[1]);
    EXPECT_THAT(second, ElementsAre("c,d", ",", "a", "b"));
}

// ---- addToNVPString

struct AddFact {
    char const* fact;
    std::string before;
    std::string name;
    std::string value;
    std::string after;
};

AddFact const ADD_FACTS[] = {
    {"a pair is appended to an empty string", "", "a", "1", "a=1"},
    {"a space comes before the second pair", "a=1", "b", "2", "a=1 b=2"},
    {"a space comes even after a space", " ", "a", "1", "  a=1"},
    // KEPT(no-empty-value-is-added)
    {"an empty value appends nothing", "a=1", "b", "", "a=1"},
    {"an empty name appends nothing", "a=1", "", "2", "a=1"},
    {"an empty name with an empty value appends nothing", "a=1", "", "", "a=1"},
    {"an empty value appends nothing to an empty string", "", "a", "", ""},
    {"an empty name appends nothing to an empty string", "", "", "1", ""},
    // KEPT(two-writers)
    {"a value is written unescaped", "a=1", "d", "x y", "a=1 d=x y"},
    {"quotes, backslashes and zero bytes are written unescaped", "", "a", "\"\\\n\xFF=" + NUL,
     "a=\"\\\n\xFF=" + NUL},
    // KEPT(names-are-unchecked)
    {"a name with a space and = is written as it is", "", "a b=c", "1", "a b=c=1"},
};

TEST(AddToNVPString, AppendsAPair) {
    for (AddFact const& row : ADD_FACTS) {
        SCOPED_TRACE(row.fact);
        std::string nvp = row.before;
        addToNVPString(nvp, row.name, row.value);
        EXPECT_EQ(nvp, row.after);
    }
}

TEST(AddToNVPString, ReadsItsOwnStringAfterTheSpace) {
    std::string name = "ab";
    addToNVPString(name, name, "v");  // KEPT(own-text-is-read-late)
    EXPECT_EQ(name, "ab ab =v");
    std::string value = "ab";
    addToNVPString(value, "n", value);
    EXPECT_EQ(value, "ab n=ab n=");
    std::string both = LONG_FIELD;
    addToNVPString(both, both, both);
    EXPECT_EQ(both, LONG_FIELD + " " + LONG_FIELD + " =" + LONG_FIELD + " " + LONG_FIELD + " =");
}

TEST(AddToNVPString, AsksForNoMemoryIfThePairJustFits) {
    std::size_t const capacity = std::string().capacity();
    std::string nvp(capacity - 4, 'x');
    addToNVPString(nvp, "c", "d");
    EXPECT_EQ(nvp, std::string(capacity - 4, 'x') + " c=d");
    EXPECT_EQ(nvp.capacity(), capacity);
}

// ---- serializeNVP

struct SerializeFact {
    char const* fact;
    SortedMap map;
    std::string before;
    std::string after;
};

SerializeFact const SERIALIZE_FACTS[] = {
    {"an empty map appends nothing to an empty string", {}, "", ""},
    {"an empty map appends nothing to other strings", {}, "x=1", "x=1"},
    {"one pair is written without a space", {{"a", "1"}}, "", "a=1"},
    {"a space comes between two pairs", {{"a", "1"}, {"b", "2"}}, "", "a=1 b=2"},
    // KEPT(appended-never-cleared)
    {"a space comes before the first pair after a string",
     {{"a", "1"}, {"b", "2"}},
     "x=1",
     "x=1 a=1 b=2"},
    {"a space comes before the first pair even after a space", {{"a", "1"}}, " ", "  a=1"},
    // KEPT(two-writers)
    {"a space in a value is escaped", {{"b", "two words"}}, "x=1", "x=1 b=two\\u0020words"},
    {"a quote in a value is escaped", {{"q", "say \"hi\""}}, "", "q=say\\u0020\\\"hi\\\""},
    {"an empty value is written as name and =", {{"a", ""}}, "", "a="},
    {"an empty name is written as = and value", {{"", "1"}}, "", "=1"},
    {"an empty name with an empty value is written as =", {{"", ""}, {"a", "1"}}, "", "= a=1"},
    // KEPT(names-are-unchecked)
    {"a name is written unescaped", {{"a b=\"\\", "1"}}, "", "a b=\"\\=1"},
    // KEPT(backslash-starts-over)
    {"a value keeps only what follows its last backslash",
     {{"a", "C:\\dir\\file"}},
     "",
     "a=\\\\file"},
    {"a backslash drops nothing outside its value", {{"a", "1"}, {"b", "\\"}}, "x", "x a=1 b=\\\\"},
    {"a name of seven bytes is written whole", {{"seven77", "1"}}, "", "seven77=1"},
    {"a name of eight bytes is written whole", {{"eight888", "1"}}, "", "eight888=1"},
    {"a name of nine bytes is written whole", {{"nine99999", "1"}}, "", "nine99999=1"},
    {"a name of sixteen bytes is written whole",
     {{"sixteen666666666", "1"}},
     "",
     "sixteen666666666=1"},
    {"a name of seventeen bytes is written whole",
     {{"seventeen77777777", "1"}},
     "",
     "seventeen77777777=1"},
};

TEST(SerializeNVP, AppendsThePairsOfAMap) {
    ScopedCLocale const scope("C");
    for (SerializeFact const& row : SERIALIZE_FACTS) {
        SCOPED_TRACE(row.fact);
        std::string out = row.before;
        serializeNVP(out, row.map);
        EXPECT_EQ(out, row.after);
        if (row.map.size() > 1) continue;  // a hash map has an order of its own
        out = row.before;
        serializeNVP(out, HashMap(row.map.begin(), row.map.end()));
        EXPECT_EQ(out, row.after);
    }
}

TEST(SerializeNVP, AppendsThePairsOfAHashMapInItsOrder) {
    HashMap const map = {{"a", "1"}, {"b", "2"}, {"c", "3"}};
    std::string expected = "x";
    for (auto const& [name, value] : map)
        expected += " " + name + "=" + value;
    std::string out = "x";
    serializeNVP(out, map);
    EXPECT_EQ(out, expected);
}

// Pairs are collected in 4096 bytes. The last escape is stored as eight bytes, of which six count.
TEST(SerializeNVP, WritesPairsThatJustFillItsBuffer) {
    for (char const* const value : {"", "x", "\"", "\x01", "\x01\x01", "plain value"}) {
        std::string const written = escapeString(value, false);
        for (std::size_t size = 4070; size <= 4100; ++size) {
            std::string const name(size, 'n');
            for (std::string const before : {"", "a=b"}) {
                std::string out = before;
                serializeNVP(out, std::unordered_map<std::string, std::string>{{name, value}});
                ASSERT_EQ(out, before + (before.empty() ? "" : " ") + name + '=' + written) << size;
            }
        }
    }
}

TEST(SerializeNVP, MayWriteToAValueOfItsMap) {
    for (std::string const& value : {std::string("v v"), LONG_FIELD, std::string(5000, 'v')}) {
        std::string const escaped = modelOfEscape(value, false);
        SortedMap sorted = {{"a", "1"}, {"b", value}, {"c", "3"}};
        serializeNVP(sorted["b"], sorted);
        EXPECT_EQ(sorted["b"], value + " a=1 b=" + escaped + " c=3");
        HashMap hashed = {{"b", value}};
        serializeNVP(hashed["b"], hashed);
        EXPECT_EQ(hashed["b"], value + " b=" + escaped);
    }
}

// ---- deserializeNVP

struct DeserializeFact {
    char const* fact;
    std::string text;
    bool wellFormed;
    SortedMap map;  // inserted into a map that contains {"held", "0"}, which is left out here
};

DeserializeFact const DESERIALIZE_FACTS[] = {
    {"one pair is inserted", "a=1", true, {{"a", "1"}}},
    {"two pairs are inserted", "a=1 b=2", true, {{"a", "1"}, {"b", "2"}}},
    {"spaces around pairs are ignored", "  a=1   b=x=y  ", true, {{"a", "1"}, {"b", "x=y"}}},
    {"all whitespace at the two ends is ignored", "\t\n\v\f\r a=1 \n", true, {{"a", "1"}}},
    {"a tab does not separate pairs", "a=1\tb=2", true, {{"a", "1\tb=2"}}},
    {"a tab can be a value", "a=\t b=2", true, {{"a", "\t"}, {"b", "2"}}},
    {"a tab can be a name, except at the start of the string", "\t=1 \t=2", false, {{"\t", "2"}}},
    {"a value may be empty", "a=", true, {{"a", ""}}},
    {"a value may contain =", "a==", true, {{"a", "="}}},
    // KEPT(malformed-fields-are-skipped)
    {"a field without = is skipped", "a=1 junk b=2", false, {{"a", "1"}, {"b", "2"}}},
    {"a first field without = is skipped", "junk a=1", false, {{"a", "1"}}},
    {"a last field without = is skipped", "a=1 junk", false, {{"a", "1"}}},
    {"a field without a name is skipped", "=5", false, {}},
    {"fields without a name are skipped, and others are read", "=5 a=1 =", false, {{"a", "1"}}},
    // KEPT(first-value-wins)
    {"the first value of a name stays", "a=1 a=2", true, {{"a", "1"}}},
    {"the first value stays when the second is escaped", "a=1 a=\\n", true, {{"a", "1"}}},
    {"an empty first value stays", "a= a=2", true, {{"a", ""}}},
    {"a value from before the call stays", "held=1 a=2", true, {{"a", "2"}}},
    // KEPT(empty-text-is-malformed)
    {"an empty string is malformed", "", false, {}},
    {"a string of whitespace is malformed", " \t ", false, {}},
    {"values are unescaped", "a=two\\u0020words", true, {{"a", "two words"}}},
    {"values with and without escapes are read",
     "place=east\\u0020wing t=20.5",
     true,
     {{"place", "east wing"}, {"t", "20.5"}}},
    {"an escape gives any byte", "a=\\u0000\\n\\uffc3", true, {{"a", NUL + "\n\xC3"}}},
    {"an unknown escape gives two backslashes", "a=\\q", true, {{"a", "\\\\"}}},
    {"names are not unescaped", "a\\n=1", true, {{"a\\n", "1"}}},
    {"a zero byte is an ordinary byte", "a" + NUL + "=1" + NUL, true, {{"a" + NUL, "1" + NUL}}},
    {"quotes keep nothing together", "a=\"x y\"", false, {{"a", "\"x"}}},
};

template <typename Map>
class DeserializeInto : public testing::Test {};
using Maps = testing::Types<HashMap, SortedMap>;
TYPED_TEST_SUITE(DeserializeInto, Maps);

TYPED_TEST(DeserializeInto, InsertsThePairsOfAString) {
    for (std::string const& locale : allLocales()) {
        ScopedLocale const scope(locale);
        for (DeserializeFact const& row : DESERIALIZE_FACTS) {
            SCOPED_TRACE(locale + ": " + row.fact);
            TypeParam map;
            map["held"] = "0";
            EXPECT_EQ(deserializeNVP(map, row.text), row.wellFormed);
            SortedMap sorted(map.begin(), map.end());
            EXPECT_EQ(sorted["held"], "0");  // KEPT(appended-never-cleared)
            sorted.erase("held");
            EXPECT_EQ(sorted, row.map);
        }
    }
}

TYPED_TEST(DeserializeInto, InsertsIntoAnEmptyMap) {
    TypeParam map;
    EXPECT_TRUE(deserializeNVP(map, "a=1 b=2 c=\\u0033"));
    EXPECT_THAT(map, UnorderedElementsAre(Pair("a", "1"), Pair("b", "2"), Pair("c", "3")));
    TypeParam none;
    EXPECT_FALSE(deserializeNVP(none, ""));
    EXPECT_TRUE(none.empty());
}

TYPED_TEST(DeserializeInto, ReadsAValueOfItsMap) {
    TypeParam map;
    map["text"] = "a=1 b=2 text=3 " + LONG_FIELD + "=4";
    std::string const text = map["text"];
    EXPECT_TRUE(deserializeNVP(map, map["text"]));
    EXPECT_THAT(map, UnorderedElementsAre(Pair("text", text), Pair("a", "1"), Pair("b", "2"),
                                          Pair(LONG_FIELD, "4")));
}

TYPED_TEST(DeserializeInto, InsertsManyPairs) {
    // Below, at and above the numbers at which a hash map may get more buckets.
    for (int const count : {4095, 4096, 4097, 36'865}) {
        for (bool const first : {false, true}) {
            TypeParam map;
            if (first) map["first"] = "0";
            std::string text;
            for (int i = 0; i < count; ++i)
                text += "n" + std::to_string(i) + "=" + std::to_string(i) + " n0=again ";
            EXPECT_TRUE(deserializeNVP(map, text));
            ASSERT_EQ(map.size(), static_cast<std::size_t>(count) + (first ? 1 : 0));
            for (int i = 0; i < count; ++i)
                ASSERT_EQ(map.at("n" + std::to_string(i)), std::to_string(i));
        }
    }
}

TEST(DeserializeNVP, AsksTheCLocaleWhatWhitespaceIs) {
    {
        ScopedCLocale const scope("xx_XX.ISO-8859-1");  // 0xA0 is whitespace there
        SortedMap map;
        EXPECT_TRUE(deserializeNVP(map, "\240a=1\xA0 \xA0"));
        EXPECT_THAT(map, ElementsAre(Pair("a", "1")));
    }
    ScopedCLocale const c("C");
    ScopedCppLocale const cpp("xx_XX.ISO-8859-1");
    SortedMap map;
    EXPECT_TRUE(deserializeNVP(map, "\240a=1"));
    EXPECT_THAT(map, ElementsAre(Pair("\240a", "1")));
}

// ---- the exported forms

// A template's symbol contains its signature; a change of either would break hosts.
static_assert(std::is_same_v<decltype(&split<Strings>),
                             void (*)(Strings&, std::string const&, std::string const&)>);
static_assert(
    std::is_same_v<decltype(&serializeNVP<HashMap>), void (*)(std::string&, HashMap const&)>);
static_assert(
    std::is_same_v<decltype(&deserializeNVP<HashMap>), bool (*)(HashMap&, std::string const&)>);

}  // namespace
