#include <deque>
#include <list>
#include <map>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include <gmock/gmock.h>

#include <utillibrary/utilities/StringNVP.h>

#include "support/failing_allocations.h"
#include "support/locales.h"
#include "support/random.h"
#include "support/text_models.h"

using namespace com::halvorin::utilities;
using namespace testing_support;
using testing::ElementsAre;
using testing::Pair;
using testing::UnorderedElementsAre;

namespace {

using Texts = std::vector<std::string>;
using HashMap = std::unordered_map<std::string, std::string>;
using SortedMap = std::map<std::string, std::string>;

// ---- split

struct SplitFact {
    char const* fact;
    std::string text;
    std::string separators;
    Texts fields;
};

std::string const NUL(1, '\0');
std::string const LONG_FIELD(100, 'l');
std::string const FIFTEEN = "123456789012345";
std::string const SIXTEEN = "1234567890123456";

SplitFact const SPLIT_FACTS[] = {
    {"a separator ends a field", "a,b", ",", {"a", "b"}},
    {"separators are a set of bytes", "a b;c", " ;", {"a", "b", "c"}},
    {"in any order", "a b;c", "; ", {"a", "b", "c"}},
    {"and not a text", "a, b", ", ", {"a", "b"}},
    {"an empty field is dropped", "a,,b", ",", {"a", "b"}},
    {"also the first one", ",a", ",", {"a"}},
    {"also several", ",,,a,,,b", ",", {"a", "b"}},
    {"but never the last one", "a,", ",", {"a", ""}},                   // KEPT(split-keeps-last)
    {"once, whatever stands before it", "a,,b,", ",", {"a", "b", ""}},  // KEPT(split-keeps-last)
    {"also after separators alone", ",,,", ",", {""}},
    {"an empty text is an empty field", "", ",", {""}},
    {"a text without separators is one", "abc", ",", {"abc"}},
    {"as is any without a set", "a,b ", "", {"a,b "}},
    {"also an empty one", "", "", {""}},
    {"a separator may stand there twice", "a,b", ",,", {"a", "b"}},
    {"a set of five", "a.b,c;d:e-f", ".,;:-", {"a", "b", "c", "d", "e", "f"}},
    {"of five, not of six", "a.b_c", ".,;:-", {"a", "b_c"}},
    {"of five with one byte twice", "a.b,c", ".....", {"a", "b,c"}},
    {"a set of four", "a.b,c;d:e-f", ".,;:", {"a", "b", "c", "d", "e-f"}},
    {"a zero byte is no separator", "a" + NUL + "b", ",", {"a" + NUL + "b"}},
    {"unless it is one", "a" + NUL + "b", NUL, {"a", "b"}},
    {"among five as well", "a" + NUL + "b", ".,;:" + NUL, {"a", "b"}},
    {"bytes above 0x7F too", "a\377b\x80", "\xFF\x80", {"a", "b", ""}},
    {"their neighbours are none", "a\376b\x7F", "\xFF\x80", {"a\376b\x7F"}},
    {"a long field stays whole", LONG_FIELD + "," + LONG_FIELD, ",", {LONG_FIELD, LONG_FIELD}},
    {"short fields before long ones", "a," + LONG_FIELD + ",b", ",", {"a", LONG_FIELD, "b"}},
    {"of 15 and of 16 bytes", FIFTEEN + "," + SIXTEEN + ",", ",", {FIFTEEN, SIXTEEN, ""}},
};

template <typename List>
class SplitInto : public testing::Test {};
using Lists = testing::Types<Texts, std::list<std::string>, std::deque<std::string>>;
TYPED_TEST_SUITE(SplitInto, Lists);

TYPED_TEST(SplitInto, AppendsTheFieldsOfAText) {
    for (SplitFact const& row : SPLIT_FACTS) {
        SCOPED_TRACE(row.fact);
        TypeParam fields;
        split(fields, row.text, row.separators);
        EXPECT_THAT(fields, testing::ElementsAreArray(row.fields));
        split(fields, "x", ",");  // KEPT(appended-never-cleared)
        EXPECT_EQ(fields.size(), row.fields.size() + 1);
        EXPECT_EQ(fields.front(), row.fields.front());
        EXPECT_EQ(fields.back(), "x");
    }
}

// No more than a sequence needs to have.
struct Sink {
    void push_back(std::string field) { fields.push_back(std::move(field)); }
    Texts fields;
};

TEST(Split, NeedsNothingOfAListButPushBack) {
    Sink sink;
    split(sink, "a,,bc,", ",");
    EXPECT_THAT(sink.fields, ElementsAre("a", "bc", ""));
}

TEST(Split, MayBeGivenAnElementOfItsList) {
    for (std::string const& text : {std::string("a,b,c"), LONG_FIELD + "," + LONG_FIELD + ",c"}) {
        for (std::size_t reserved : {3U, 100U}) {
            Texts fields = {"x", text, ","};
            fields.reserve(reserved);
            split(fields, fields[1], fields[2]);
            Texts expected = modelOfSplit(text, ",");
            expected.insert(expected.begin(), {"x", text, ","});
            EXPECT_EQ(fields, expected);
        }
        Texts same = {text};
        same.shrink_to_fit();
        split(same, same[0], same[0]);
        EXPECT_THAT(same, ElementsAre(text, ""));
        std::list<std::string> linked = {text, ","};
        split(linked, linked.front(), linked.back());
        EXPECT_EQ(linked.size(), 5U);
    }
}

TEST(Split, EqualsItsModelOnAnyText) {
    std::mt19937_64 engine = randomEngine();
    for (int i = 0; i < 200'000; ++i) {
        std::string separators(engine() % 8, '\0');
        for (char& c : separators)
            c = static_cast<char>(engine() % 6 + 0x7D);
        // Long runs without a separator, and texts of little else.
        unsigned const letters = engine() % 2 == 0 ? 8 : 60;
        std::string text(engine() % (i % 20 == 0 ? 400 : 90), '\0');
        for (char& c : text)
            c = static_cast<char>(engine() % letters + 0x7D);
        text.shrink_to_fit();
        Texts fields;
        split(fields, text, separators);
        ASSERT_EQ(fields, modelOfSplit(text, separators));
    }
}

TEST(Split, GrowsItsListOnce) {
    std::string text;
    for (int i = 0; i < 1000; ++i)
        text += "field,,";
    EXPECT_EQ(allocationsOf([&text] {
                  Texts fields;
                  split(fields, text, ",");
              }),
              1);
    EXPECT_EQ(watchedBytes(), 1001 * sizeof(std::string));

    std::string const separators(1'000'000, ',');  // no field at all, but the last one
    EXPECT_EQ(allocationsOf([&separators] {
                  Texts fields;
                  split(fields, separators, ",");
              }),
              1);
    EXPECT_EQ(watchedBytes(), sizeof(std::string));
}

TEST(Split, GrowsItsListByDoubling) {
    Texts fields;
    EXPECT_LE(allocationsOf([&fields] {
                  for (int i = 0; i < 10'000; ++i)
                      split(fields, "a,b,c", ",");
              }),
              16);
    EXPECT_EQ(fields.size(), 30'000U);  // below 3 * 2^14
}

// ---- addToNVPString

TEST(AddToNVPString, AppendsAPair) {
    std::string line;
    addToNVPString(line, "a", "1");
    EXPECT_EQ(line, "a=1");
    addToNVPString(line, "b", "2");
    EXPECT_EQ(line, "a=1 b=2");
    addToNVPString(line, "c", "");  // KEPT(no-empty-value-is-added)
    EXPECT_EQ(line, "a=1 b=2");
    addToNVPString(line, "", "3");
    EXPECT_EQ(line, "a=1 b=2");
    addToNVPString(line, "", "");
    EXPECT_EQ(line, "a=1 b=2");
    addToNVPString(line, "d", "x y");  // KEPT(two-writers)
    EXPECT_EQ(line, "a=1 b=2 d=x y");
}

TEST(AddToNVPString, WritesNameAndValueAsTheyAre) {
    std::string line = " ";
    addToNVPString(line, "a b=c", "\"\\\n\xFF=" + NUL);  // KEPT(names-are-unchecked)
    EXPECT_EQ(line, "  a b=c=\"\\\n\xFF=" + NUL);
    std::string empty;
    addToNVPString(empty, "", "1");
    EXPECT_EQ(empty, "");
    addToNVPString(empty, "a", "");
    EXPECT_EQ(empty, "");
}

TEST(AddToNVPString, MayBeGivenItsOwnText) {
    std::string name = "ab";
    // KEPT(own-text-is-read-late): the space is there when the name is read.
    addToNVPString(name, name, "v");
    EXPECT_EQ(name, "ab ab =v");
    std::string value = "ab";
    addToNVPString(value, "n", value);
    EXPECT_EQ(value, "ab n=ab n=");
    std::string both = LONG_FIELD;
    addToNVPString(both, both, both);
    EXPECT_EQ(both, LONG_FIELD + " " + LONG_FIELD + " =" + LONG_FIELD + " " + LONG_FIELD + " =");
}

TEST(AddToNVPString, GrowsByDoublingAndAtOnce) {
    std::string line;
    EXPECT_LE(allocationsOf([&line] {
                  for (int i = 0; i < 10'000; ++i)
                      addToNVPString(line, "name", "value");
              }),
              20);
    EXPECT_EQ(line.size(), 10'000 * 11 - 1U);

    std::string full = "seven=7 eight=8";  // no room for more in the string itself
    EXPECT_TRUE(failsWithout(0, [&full] { addToNVPString(full, "nine", "9"); }));
    EXPECT_EQ(full, "seven=7 eight=8");
}

// ---- serializeNVP

TEST(SerializeNVP, WritesThePairsOfAMap) {
    ScopedCLocale const scope("C");
    struct {
        char const* fact;
        SortedMap map;
        std::string before;
        std::string after;
    } const rows[] = {
        {"an empty map writes nothing", {}, "", ""},
        {"also behind a text", {}, "x=1", "x=1"},
        {"one pair", {{"a", "1"}}, "", "a=1"},
        {"a space stands between two", {{"a", "1"}, {"b", "2"}}, "", "a=1 b=2"},
        // KEPT(appended-never-cleared)
        {"and before the first, if need be", {{"a", "1"}, {"b", "2"}}, "x=1", "x=1 a=1 b=2"},
        {"even behind a space", {{"a", "1"}}, " ", "  a=1"},
        // KEPT(two-writers)
        {"values are escaped", {{"b", "two words"}}, "x=1", "x=1 b=two\\u0020words"},
        {"quotes too", {{"q", "say \"hi\""}}, "", "q=say\\u0020\\\"hi\\\""},
        {"an empty value is written", {{"a", ""}}, "", "a="},
        {"so is an empty name", {{"", "1"}}, "", "=1"},
        {"and nothing at all", {{"", ""}, {"a", "1"}}, "", "= a=1"},
        // KEPT(names-are-unchecked)
        {"names are written as they are", {{"a b=\"\\", "1"}}, "", "a b=\"\\=1"},
        // KEPT(backslash-starts-over)
        {"a backslash drops a value's front", {{"a", "C:\\dir\\file"}}, "", "a=\\\\file"},
        {"but nothing before the value", {{"a", "1"}, {"b", "\\"}}, "x", "x a=1 b=\\\\"},
        {"a name of seven bytes", {{"seven77", "1"}}, "", "seven77=1"},
        {"of eight", {{"eight888", "1"}}, "", "eight888=1"},
        {"of nine", {{"nine99999", "1"}}, "", "nine99999=1"},
        {"of sixteen", {{"sixteen666666666", "1"}}, "", "sixteen666666666=1"},
        {"of seventeen", {{"seventeen77777777", "1"}}, "", "seventeen77777777=1"},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.fact);
        std::string out = row.before;
        serializeNVP(out, row.map);
        EXPECT_EQ(out, row.after);
    }
}

std::string modelOfSerialize(std::string const& before, SortedMap const& map) {
    std::string out = before;
    for (auto const& [name, value] : map) {
        if (!out.empty()) out += ' ';
        out += name + '=';
        out += modelOfEscape(value, false);
    }
    return out;
}

TEST(SerializeNVP, EqualsItsModelOnAnyMap) {
    std::mt19937_64 engine = randomEngine();
    std::size_t const sizes[] = {0, 1, 9, 20, 100, 650, 680, 700, 1000, 4096, 20'000};
    for (char const* const locale : {"C", "fr_FR.ISO-8859-15"}) {
        ScopedCLocale const scope(locale);
        for (int i = 0; i < 3000; ++i) {
            SortedMap map;
            std::size_t const pairs = engine() % 40;
            std::size_t const limit = i % 3 == 0 ? std::size(sizes) : 5;
            for (std::size_t p = 0; p < pairs; ++p) {
                std::string value(sizes[engine() % limit], 'v');
                for (char& c : value) {
                    if (engine() % 8 == 0) c = static_cast<char>(engine());
                }
                std::string name(engine() % 200 == 0 ? 5000 : engine() % 20, 'n');
                name += std::to_string(engine() % 1000);
                map[name] = value;
            }
            std::string const before = engine() % 2 == 0 ? "" : "x=1";
            std::string out = before;
            serializeNVP(out, map);
            ASSERT_EQ(out, modelOfSerialize(before, map));
        }
    }
}

TEST(SerializeNVP, AllocatesItsTextOnce) {
    ScopedCLocale const scope("C");
    HashMap map;
    for (int i = 0; i < 64; ++i)
        map["name" + std::to_string(i)] = "some value";
    EXPECT_EQ(allocationsOf([&map] {
                  std::string out;
                  serializeNVP(out, map);
              }),
              1);
}

TEST(SerializeNVP, LeavesItsTextWhereMemoryRunsOut) {
    SortedMap map;
    for (int i = 0; i < 20; ++i)
        map["name" + std::to_string(i)] = std::string(1000, ' ');
    long failing = 0;
    std::string out = "x=1";
    while (failsWithout(failing, [&] { serializeNVP(out, map); })) {
        ASSERT_EQ(out, "x=1");
        ++failing;
    }
    EXPECT_EQ(out, modelOfSerialize("x=1", map));
    EXPECT_GT(failing, 1);
}

TEST(SerializeNVP, MayWriteToAValueOfItsMap) {
    for (std::string const& value : {std::string("v v"), LONG_FIELD, std::string(5000, 'v')}) {
        SortedMap map = {{"a", "1"}, {"b", value}, {"c", "3"}};
        serializeNVP(map["b"], map);
        EXPECT_EQ(map["b"], value + " a=1 b=" + modelOfEscape(value, false) + " c=3");
    }
}

// ---- deserializeNVP

struct DeserializeFact {
    char const* fact;
    std::string text;
    bool wellFormed;
    SortedMap map;  // into one that holds {"held", "0"}, which is left out here
};

DeserializeFact const DESERIALIZE_FACTS[] = {
    {"one pair", "a=1", true, {{"a", "1"}}},
    {"several", "a=1 b=2", true, {{"a", "1"}, {"b", "2"}}},
    {"blanks around and between", "  a=1   b=x=y  ", true, {{"a", "1"}, {"b", "x=y"}}},
    {"any blanks at the ends", "\t\n\v\f\r a=1 \n", true, {{"a", "1"}}},
    {"others than spaces do not separate", "a=1\tb=2", true, {{"a", "1\tb=2"}}},
    {"they may be a value", "a=\t b=2", true, {{"a", "\t"}, {"b", "2"}}},
    {"or a name", "\t=1 \t=2", false, {{"\t", "2"}}},
    {"a value may be empty", "a=", true, {{"a", ""}}},
    {"a value may have more '='", "a==", true, {{"a", "="}}},
    // KEPT(malformed-fields-are-skipped)
    {"a field without one is malformed", "a=1 junk b=2", false, {{"a", "1"}, {"b", "2"}}},
    {"at the front", "junk a=1", false, {{"a", "1"}}},
    {"at the end", "a=1 junk", false, {{"a", "1"}}},
    {"a field without a name too", "=5", false, {}},
    {"also beside others", "=5 a=1 =", false, {{"a", "1"}}},
    {"the first of a name wins", "a=1 a=2", true, {{"a", "1"}}},  // KEPT(first-value-wins)
    {"also an escaped one", "a=1 a=\\n", true, {{"a", "1"}}},
    {"and an empty one", "a= a=2", true, {{"a", ""}}},
    {"what the map holds wins", "held=1 a=2", true, {{"a", "2"}}},  // KEPT(first-value-wins)
    {"an empty text is malformed", "", false, {}},                  // KEPT(empty-text-is-malformed)
    {"so is one of blanks", " \t ", false, {}},
    {"values are unescaped", "a=two\\u0020words", true, {{"a", "two words"}}},
    {"beside others that are not",
     "place=east\\u0020wing t=20.5",
     true,
     {{"place", "east wing"}, {"t", "20.5"}}},
    {"into any byte", "a=\\u0000\\n\\uffc3", true, {{"a", NUL + "\n\xC3"}}},
    {"an unknown escape is two backslashes", "a=\\q", true, {{"a", "\\\\"}}},
    {"names are not", "a\\n=1", true, {{"a\\n", "1"}}},
    {"a zero byte is like any other", "a" + NUL + "=1" + NUL, true, {{"a" + NUL, "1" + NUL}}},
    {"quotes hold nothing together", "a=\"x y\"", false, {{"a", "\"x"}}},
};

template <typename Map>
class DeserializeInto : public testing::Test {};
using Maps = testing::Types<HashMap, SortedMap>;
TYPED_TEST_SUITE(DeserializeInto, Maps);

TYPED_TEST(DeserializeInto, InsertsThePairsOfAText) {
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

TEST(DeserializeNVP, ReadsIntoAnEmptyMap) {
    HashMap map;
    EXPECT_TRUE(deserializeNVP(map, "a=1 b=2 c=\\u0033"));
    EXPECT_THAT(map, UnorderedElementsAre(Pair("a", "1"), Pair("b", "2"), Pair("c", "3")));
    HashMap none;
    EXPECT_FALSE(deserializeNVP(none, ""));
    EXPECT_TRUE(none.empty());
}

TEST(DeserializeNVP, AsksTheCLocaleWhatABlankIs) {
    {
        ScopedCLocale const scope("xx_XX.ISO-8859-1");
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

TEST(DeserializeNVP, ReadsBackWhatSerializeNVPWrote) {
    std::mt19937_64 engine = randomEngine();
    for (std::string const& locale : byteLocales()) {
        ScopedCLocale const scope(locale);
        for (int i = 0; i < 3000; ++i) {
            HashMap map;
            for (std::size_t p = engine() % 100 + 1; p > 0; --p) {
                std::string value(engine() % 30, 'v');
                for (char& c : value) {
                    do {
                        c = static_cast<char>(engine());
                    } while (c == '\\');
                }
                map["name" + std::to_string(engine() % 1000)] = value;
            }
            std::string text;
            serializeNVP(text, map);
            HashMap read;
            ASSERT_TRUE(deserializeNVP(read, text));
            ASSERT_EQ(read, map);
        }
    }
}

TEST(DeserializeNVP, BuysNoMoreThanItsPairsNeed) {
    std::string const equals(1'000'000, '=');
    std::string junk;
    std::string repeated;
    for (int i = 0; i < 100'000; ++i) {
        junk += "= x ";
        repeated += "a=1 ";
    }
    for (std::string const& text : {equals, junk}) {
        HashMap map;
        EXPECT_LE(allocationsOf([&] { EXPECT_FALSE(deserializeNVP(map, text)); }), 1);
        EXPECT_LE(watchedBytes(), 64'000U);
    }
    HashMap map;
    EXPECT_TRUE(deserializeNVP(map, repeated));
    EXPECT_EQ(map.size(), 1U);
    EXPECT_LE(map.bucket_count(), 8000U);
}

TEST(DeserializeNVP, MakesRoomOnceAndTakesNoneAway) {
    std::string text;
    for (int i = 0; i < 64; ++i)
        text += "name" + std::to_string(i) + "=value ";
    EXPECT_EQ(allocationsOf([&text] {
                  HashMap map;
                  deserializeNVP(map, text);
              }),
              65);  // the pairs, and one table

    HashMap empty;
    HashMap held = {{"held", "0"}};
    for (HashMap* const map : {&empty, &held}) {
        map->reserve(10'000);
        std::size_t const buckets = map->bucket_count();
        deserializeNVP(*map, text);
        EXPECT_EQ(map->bucket_count(), buckets);
    }

    HashMap grown;
    for (int i = 0; i < 5000; ++i)
        deserializeNVP(grown, "n" + std::to_string(i) + "=1");
    EXPECT_LE(allocationsOf([&grown] { deserializeNVP(grown, "last=1"); }), 2);
}

}  // namespace
