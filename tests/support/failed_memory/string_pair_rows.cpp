#include <utillibrary/utilities/StringNVP.h>

#include "support/failed_memory/rows.h"

namespace testing_support {

namespace {

using namespace com::halvorin::utilities;

using Map = std::unordered_map<std::string, std::string>;
using Strings = std::vector<std::string>;

char const* const SPLIT =
    "void split<std::vector<std::string>>(std::vector<std::string>&, std::string const&, "
    "std::string const&)";
char const* const ADD = "addToNVPString(std::string&, std::string const&, std::string const&)";
char const* const SERIALIZE = "void serializeNVP<Map>(std::string&, Map const&)";
char const* const DESERIALIZE = "bool deserializeNVP<Map>(Map&, std::string const&)";
char const* const AVERAGE =
    "averageNVP(std::vector<std::string> const&, std::string&, float, std::string const&, float)";

// The list is the beginning of the whole result, and contains at least what it contained.
void expectBeginning(Strings const& list, std::size_t before, Strings const& whole) {
    ASSERT_LE(list.size(), whole.size());
    EXPECT_GE(list.size(), before);
    EXPECT_EQ(list, Strings(whole.begin(), whole.begin() + static_cast<long>(list.size())));
}

Rows splits() {
    return {
        {SPLIT, "the fields before stay", Memory::NEEDED,
         [](Trial& trial) {
             Strings out = {"old"};
             std::string const text = LONG_TEXT + "," + LONG_TEXT + ",c,";
             End const end = trial.run([&] { split(out, text, ","); });
             Strings const whole = {"old", LONG_TEXT, LONG_TEXT, "c", ""};
             expectBeginning(out, 1, whole);
             if (end == End::DONE) {
                 EXPECT_EQ(out, whole);
             }
         }},
        {SPLIT, "the string and the separators are elements of the list", Memory::NEEDED,
         [](Trial& trial) {
             std::string const text = LONG_TEXT + "," + LONG_TEXT;
             Strings out = {text, ","};
             End const end = trial.run([&] { split(out, out[0], out[1]); });
             Strings const whole = {text, ",", LONG_TEXT, LONG_TEXT};
             expectBeginning(out, 2, whole);
             if (end == End::DONE) {
                 EXPECT_EQ(out, whole);
             }
         }},
    };
}

Rows writers() {
    return {
        {ADD, "the string is unchanged", Memory::NEEDED,
         [](Trial& trial) {
             std::string text = "a=1";
             End const end = trial.run([&] { addToNVPString(text, "b", LONG_TEXT); });
             EXPECT_EQ(text, end == End::DONE ? "a=1 b=" + LONG_TEXT : "a=1");
         }},
        {ADD, "the string is its own name and value", Memory::NEEDED,
         [](Trial& trial) {
             std::string text = LONG_TEXT;
             End const end = trial.run([&] { addToNVPString(text, text, text); });
             std::string const spaced = LONG_TEXT + " ";
             if (end == End::DONE) {
                 EXPECT_EQ(text, spaced + spaced + "=" + spaced + spaced + "=");
             } else {
                 EXPECT_EQ(text, LONG_TEXT);
             }
         }},
        {SERIALIZE, "the string is unchanged", Memory::NEEDED,
         [](Trial& trial) {
             Map const map = {{"b", "two words and more of them"}};
             std::string out = "x=1";
             End const end = trial.run([&] { serializeNVP(out, map); });
             EXPECT_EQ(out, end == End::DONE
                                ? "x=1 b=two\\u0020words\\u0020and\\u0020more\\u0020of\\u0020them"
                                : "x=1");
         }},
        {SERIALIZE, "many pairs", Memory::NEEDED,
         [](Trial& trial) {
             Map map;
             for (int i = 0; i < 200; ++i)
                 map[std::to_string(i)] = LONG_TEXT;
             std::string const whole = [&] {
                 std::string text = "x=1";
                 for (auto const& [name, value] : map) {
                     text += " " + name + "=" + escapeString(value, false);
                 }
                 return text;
             }();
             std::string out = "x=1";
             End const end = trial.run([&] { serializeNVP(out, map); });
             EXPECT_EQ(out, end == End::DONE ? whole : "x=1");
         }},
        {SERIALIZE, "the string is a value of the map", Memory::NEEDED,
         [](Trial& trial) {
             Map map = {{"a", LONG_TEXT}};
             End const end = trial.run([&] { serializeNVP(map["a"], map); });
             std::string const whole = LONG_TEXT + " a=" + escapeString(LONG_TEXT, false);
             EXPECT_EQ(map["a"], end == End::DONE ? whole : LONG_TEXT);
         }},
    };
}

Rows readers() {
    return {
        {DESERIALIZE, "the pairs before are inserted", Memory::NEEDED,
         [](Trial& trial) {
             Map map = {{"old", LONG_TEXT}};
             std::string const value = escapeString(LONG_TEXT, false);
             std::string text;
             for (int i = 0; i < 30; ++i)
                 text += "a" + std::to_string(i) + "=" + value + " ";
             bool wellFormed = false;
             End const end = trial.run([&] { wellFormed = deserializeNVP(map, text); });
             EXPECT_EQ(wellFormed, end == End::DONE);
             if (end == End::DONE) {
                 EXPECT_EQ(map.size(), 31U);
             }
             EXPECT_EQ(map["old"], LONG_TEXT);
             for (std::size_t i = 0; i + 1 < map.size(); ++i) {
                 auto const pair = map.find("a" + std::to_string(i));
                 ASSERT_NE(pair, map.end());
                 EXPECT_EQ(pair->second, LONG_TEXT);
             }
         }},
        {DESERIALIZE, "the string is a value of the map", Memory::NEEDED,
         [](Trial& trial) {
             Map map = {{"old", " a=" + LONG_TEXT.substr(0, 8) + " b=2 junk c=3"}};
             bool wellFormed = true;
             End const end = trial.run([&] { wellFormed = deserializeNVP(map, map["old"]); });
             if (end == End::DONE) {
                 EXPECT_FALSE(wellFormed);
                 EXPECT_EQ(map.size(), 4U);  // "old", "a", "b", "c"
             }
         }},
    };
}

struct AverageFact {
    char const* fact;
    Strings names;
    std::string average;
    std::string sample;
    float duration;
    std::string result;
    long reports;
    Memory memory;
};

std::string numbered(std::string const& prefix, int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += " " + prefix + std::to_string(i) + "=o";
    return text;
}

std::vector<AverageFact> averageFacts() {
    std::string const place = " place=" + std::string(100, 'p');
    std::string const many = numbered("other", 100);
    return {
        {"a few names", {"t"}, "t=10" + place, "t=20", 1, "t=12.5" + place, 0, Memory::NEEDED},
        {"numbers that libc reads",
         {"t"},
         "t=10.000000000000000000000" + place,
         "t=20.000000000000000000000",
         1,
         "t=12.5" + place,
         0,
         Memory::NEEDED},
        {"a value with escapes",
         {"t"},
         "t=10" + place,
         "t=\\u0032\\u0030",
         1,
         "t=12.5" + place,
         0,
         Memory::NEEDED},
        {"an invalid duration is reported",
         {"t"},
         "t=10" + place,
         "t=20",
         0,
         "t=10" + place,
         1,
         Memory::NEEDED},
        {"a malformed field leaves the average",
         {"t"},
         "t=10 junk" + place,
         "t=20",
         1,
         "t=10 junk" + place,
         0,
         Memory::NONE},
        {"a malformed sample of many names leaves the average",
         {"t"},
         "t=10" + place,
         "t=20 junk" + many,
         1,
         "t=10" + place,
         0,
         Memory::NEEDED},
    };
}

Row average(AverageFact const& fact) {
    return {AVERAGE, fact.fact, fact.memory, [fact](Trial& trial) {
                std::string text = fact.average;
                End const end =
                    trial.run([&] { averageNVP(fact.names, text, 3, fact.sample, fact.duration); });
                EXPECT_EQ(text, end == End::DONE ? fact.result : fact.average);
                long const reports = takeReportCount();
                if (end == End::DONE) {
                    EXPECT_EQ(reports, fact.reports);
                }
            }};
}

// The order of the result has no meaning, so its pairs are compared.
Row averageOfMany(char const* fact, std::string const& value, std::string const& kept) {
    return {AVERAGE, fact, Memory::NEEDED, [=](Trial& trial) {
                std::string const before = "path=" + value + " t=10" + numbered("other", 100);
                std::string text = before;
                std::string const sample = "t=20" + numbered("more", 100);
                Strings const names = {"t", "other7"};
                End const end = trial.run([&] { averageNVP(names, text, 3, sample, 1); });
                if (end != End::DONE) {
                    EXPECT_EQ(text, before);
                    return;
                }
                Map pairs;
                EXPECT_TRUE(deserializeNVP(pairs, text));
                EXPECT_EQ(pairs.size(), 102U);
                EXPECT_EQ(pairs["t"], "12.5");
                EXPECT_EQ(pairs["path"], kept);
            }};
}

}  // namespace

Rows stringPairRows() {
    Rows rows;
    for (Rows const& more : {splits(), writers(), readers()}) {
        rows.insert(rows.end(), more.begin(), more.end());
    }
    for (AverageFact const& fact : averageFacts())
        rows.push_back(average(fact));
    rows.push_back(averageOfMany("many names", "p", "p"));
    // Of a value with a backslash, only the end is written: two backslashes and what follows.
    rows.push_back(averageOfMany("a value with a backslash", "a\\\\dir", "\\dir"));
    return rows;
}

}  // namespace testing_support
