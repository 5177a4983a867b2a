#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/utilities/StringNVP.h>

#include "support/failing_allocations.h"
#include "support/locales.h"

using namespace com::halvorin::utilities;
using namespace testing_support;

namespace {

using HashMap = std::unordered_map<std::string, std::string>;
using SortedMap = std::map<std::string, std::string>;

std::string repeated(std::string const& text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

// "name0=value name1=value ..."
std::string distinctPairs(int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        addToNVPString(text, "name" + std::to_string(i), "value");
    return text;
}

// ---- split

TEST(SplitAllocations, GrowAVectorOnce) {
    std::string const text = repeated("field,,", 1000);
    EXPECT_EQ(allocationsOf([&text] {
                  std::vector<std::string> fields;
                  split(fields, text, ",");
              }),
              1);
    EXPECT_EQ(watchedBytes(), 1001 * sizeof(std::string));

    std::string const separators(1'000'000, ',');  // only the last field is appended
    EXPECT_EQ(allocationsOf([&separators] {
                  std::vector<std::string> fields;
                  split(fields, separators, ",");
              }),
              1);
    EXPECT_EQ(watchedBytes(), sizeof(std::string));
}

TEST(SplitAllocations, AreNoneInAVectorWithRoom) {
    std::vector<std::string> fields;
    fields.reserve(4);
    EXPECT_EQ(allocationsOf([&fields] { split(fields, "a,b,c,d", ","); }), 0);
    EXPECT_EQ(fields.capacity(), 4U);
}

TEST(SplitAllocations, DoubleAVector) {
    std::vector<std::string> fields;
    EXPECT_LE(allocationsOf([&fields] {
                  for (int i = 0; i < 10'000; ++i)
                      split(fields, "a,b,c", ",");
              }),
              16);
    EXPECT_EQ(fields.size(), 30'000U);  // below 3 * 2^14
}

// The vector moves to other memory, and what was there is overwritten.
TEST(SplitAllocations, KeepAnElementThatIsSplit) {
    for (std::size_t const position : {0U, 1U, 2U}) {
        std::vector<std::string> fields(3, "x");
        fields[position] = "a,b,c";
        std::vector<std::string> expected = fields;
        expected.insert(expected.end(), {"a", "b", "c"});
        ASSERT_EQ(fields.capacity(), fields.size());
        split(fields, fields[position], ",");
        EXPECT_EQ(fields, expected);
    }
}

TEST(SplitAllocations, CopyNoStringFromOutside) {
    std::string const text = std::string(1'000'000, 'x') + ",";
    std::vector<std::string> fields;
    EXPECT_EQ(allocationsOf([&] { split(fields, text, ","); }), 2);  // the list and one field
}

TEST(SplitAllocations, LeaveTheFieldsBeforeOneThatFails) {
    std::string const longField(100, 'l');
    for (long const failing : {1, 2, 3}) {
        std::vector<std::string> fields;
        fields.reserve(10);
        EXPECT_TRUE(failsWithout(failing, [&] {
            split(fields, "a," + longField + "," + longField + ",b", ",");
        })) << failing;
        EXPECT_LE(fields.size(), 3U);
    }
}

// ---- addToNVPString

TEST(AddToNVPStringAllocations, DoubleTheString) {
    std::string nvp;
    EXPECT_LE(allocationsOf([&nvp] {
                  for (int i = 0; i < 10'000; ++i)
                      addToNVPString(nvp, "name", "value");
              }),
              20);
    EXPECT_EQ(nvp.size(), 10'000 * 11 - 1U);
}

TEST(AddToNVPStringAllocations, LeaveTheStringIfTheyFail) {
    std::string full = "seven=7 eight=8";  // a std::string has no room for more in itself
    EXPECT_TRUE(failsWithout(0, [&full] { addToNVPString(full, "nine", "9"); }));
    EXPECT_EQ(full, "seven=7 eight=8");
}

// If only the bytes of the string before the call were reserved, the second allocation could fail
// when the name is appended already: "a name of its own a name of its own =" stayed in the string.
TEST(AddToNVPStringAllocations, AreOneForAStringThatIsItsOwnNameAndValue) {
    std::string own = "a name of its own";
    EXPECT_TRUE(failsWithout(0, [&own] { addToNVPString(own, own, own); }));
    EXPECT_EQ(own, "a name of its own");
    EXPECT_EQ(allocationsOf([&own] { addToNVPString(own, own, own); }), 1);
    EXPECT_EQ(own, "a name of its own a name of its own =a name of its own a name of its own =");
}

// ---- serializeNVP

TEST(SerializeNVPAllocations, AreOneForPairsOfLessThan4096Bytes) {
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

template <typename Map>
void expectUnchangedOnFailure() {
    Map map;
    for (int i = 0; i < 20; ++i)
        map["name" + std::to_string(i)] = std::string(1000, ' ');
    std::string expected = "x=1";
    serializeNVP(expected, map);

    std::string out = "x=1";
    long failing = 0;
    while (failsWithout(failing, [&] { serializeNVP(out, map); })) {
        ASSERT_EQ(out, "x=1");
        ++failing;
    }
    EXPECT_EQ(out, expected);
    EXPECT_GT(failing, 1);
}

TEST(SerializeNVPAllocations, LeaveTheStringIfTheyFail) {
    expectUnchangedOnFailure<HashMap>();
    expectUnchangedOnFailure<SortedMap>();
}

// ---- deserializeNVP

TEST(DeserializeNVPAllocations, AreOneForEachPairAndOneForTheBuckets) {
    std::string const text = distinctPairs(64);
    EXPECT_EQ(allocationsOf([&text] {
                  HashMap map;
                  deserializeNVP(map, text);
              }),
              65);
    HashMap map = {{"held", "0"}};
    EXPECT_EQ(allocationsOf([&] { deserializeNVP(map, text); }), 65);
}

TEST(DeserializeNVPAllocations, BuyFewBucketsForFewPairs) {
    for (std::string const& text : {std::string(1'000'000, '='), repeated("= x ", 100'000)}) {
        HashMap map;
        EXPECT_LE(allocationsOf([&] { EXPECT_FALSE(deserializeNVP(map, text)); }), 1);
        EXPECT_LE(watchedBytes(), 72'000U);
    }
    HashMap map;
    EXPECT_TRUE(deserializeNVP(map, repeated("a=1 ", 100'000)));
    EXPECT_EQ(map.size(), 1U);
    EXPECT_LE(map.bucket_count(), 9000U);

    // 5000 pairs, and then one of them 200,000 times.
    HashMap more;
    EXPECT_TRUE(deserializeNVP(more, distinctPairs(5000) + repeated(" name0=1", 200'000)));
    EXPECT_EQ(more.size(), 5000U);
    EXPECT_LE(more.bucket_count(), 5000U * 16);

    // 10,000 pairs, and then one of them 300,000 times.
    HashMap most;
    EXPECT_TRUE(deserializeNVP(most, distinctPairs(10'000) + repeated(" name0=1", 300'000)));
    EXPECT_EQ(most.size(), 10'000U);
    EXPECT_LE(most.bucket_count(), 10'000U * 18);
}

TEST(DeserializeNVPAllocations, AreFewForTheBucketsOfManyPairs) {
    std::string const text = distinctPairs(100'000);
    HashMap map;
    EXPECT_EQ(allocationsOf([&] { deserializeNVP(map, text); }), 100'000 + 2);
    EXPECT_EQ(map.size(), 100'000U);
}

TEST(DeserializeNVPAllocations, AreOneForTheBucketsOf8192Pairs) {
    std::string const text = distinctPairs(8192);
    HashMap map = {{"held", "0"}};
    EXPECT_EQ(allocationsOf([&] { deserializeNVP(map, text); }), 8192 + 1);
}

TEST(DeserializeNVPAllocations, TakeNoBucketsAway) {
    HashMap empty;
    HashMap held = {{"held", "0"}};
    for (HashMap* const map : {&empty, &held}) {
        map->reserve(10'000);
        std::size_t const buckets = map->bucket_count();
        deserializeNVP(*map, distinctPairs(64));
        EXPECT_EQ(map->bucket_count(), buckets);
    }
}

TEST(DeserializeNVPAllocations, GrowAMapByDoublingOverManyCalls) {
    HashMap map;
    long moves = 0;
    for (int i = 0; i < 5000; ++i) {
        std::size_t const buckets = map.bucket_count();
        deserializeNVP(map, "n" + std::to_string(i) + "=1");
        if (map.bucket_count() != buckets) ++moves;
    }
    EXPECT_LE(moves, 12);
}

TEST(DeserializeNVPAllocations, LeaveThePairsBeforeOneThatFails) {
    std::string const value(100, 'v');
    std::string const text = "a=" + value + " b=" + value + " c=\\n" + value;
    HashMap whole;
    deserializeNVP(whole, text);
    long failing = 0;
    for (;; ++failing) {
        HashMap map;
        if (!failsWithout(failing, [&] { deserializeNVP(map, text); })) break;
        for (auto const& [name, read] : map)
            ASSERT_EQ(read, whole.at(name));
    }
    EXPECT_GE(failing, 6);
}

}  // namespace
