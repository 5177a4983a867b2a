#include <map>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/utilities/StringNVP.h>

#include "support/locales.h"
#include "support/pair_models.h"
#include "support/random.h"
#include "support/text_models.h"

using namespace com::halvorin::utilities;
using namespace testing_support;

namespace {

using HashMap = std::unordered_map<std::string, std::string>;

TEST(SplitRandom, EqualsItsModel) {
    std::mt19937_64 engine = randomEngine();
    for (int i = 0; i < 200'000; ++i) {
        std::string separators(engine() % 8, '\0');
        for (char& c : separators)
            c = static_cast<char>(engine() % 6 + 0x7D);
        // Strings with few separators, and strings of little else.
        unsigned const letters = engine() % 2 == 0 ? 8 : 60;
        std::string text(engine() % (i % 20 == 0 ? 400 : 90), '\0');
        for (char& c : text)
            c = static_cast<char>(engine() % letters + 0x7D);
        text.shrink_to_fit();
        std::vector<std::string> fields;
        split(fields, text, separators);
        ASSERT_EQ(fields, modelOfSplit(text, separators));
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

// A map that the exported form writes in a known order: a single pair, or none.
void expectHashMapWrites(std::string const& before, SortedMap const& map) {
    if (map.size() > 1) return;
    std::string out = before;
    serializeNVP(out, HashMap(map.begin(), map.end()));
    ASSERT_EQ(out, modelOfSerialize(before, map));
}

TEST(SerializeNVPRandom, EqualsItsModel) {
    std::mt19937_64 engine = randomEngine();
    std::size_t const sizes[] = {0, 1, 9, 20, 100, 650, 680, 700, 1000, 4096, 20'000};
    for (char const* const locale : {"C", "fr_FR.ISO-8859-15"}) {
        ScopedCLocale const scope(locale);
        for (int i = 0; i < 3000; ++i) {
            SortedMap map;
            std::size_t const pairs = i % 3 == 0 ? engine() % 2 : engine() % 40;
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
            expectHashMapWrites(before, map);
        }
    }
}

TEST(SerializeNVPRandom, WritesEveryPairOfAHashMap) {
    std::mt19937_64 engine = randomEngine();
    ScopedCLocale const scope("C");
    for (int i = 0; i < 500; ++i) {
        HashMap map;
        SortedMap expected;
        for (std::size_t p = engine() % 100 + 1; p > 0; --p) {
            std::string const name = "name" + std::to_string(engine() % 1000);
            std::string value(engine() % (i % 10 == 0 ? 3000 : 30), 'v');
            for (char& c : value) {
                if (engine() % 8 == 0) c = static_cast<char>(engine());
            }
            map[name] = value;
            expected[name] = modelOfEscape(value, false);
        }
        std::string out;
        serializeNVP(out, map);
        ASSERT_EQ(writtenPairs(out), expected);
    }
}

TEST(DeserializeNVPRandom, ReadsBackWhatSerializeNVPWrote) {
    std::mt19937_64 engine = randomEngine();
    int const maps = sweepStride() > 101 ? 300 : 3000;  // a sanitizer makes each of them slower
    for (std::string const& locale : byteLocales()) {
        ScopedCLocale const scope(locale);
        for (int i = 0; i < maps; ++i) {
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
            HashMap hashed;
            ASSERT_TRUE(deserializeNVP(hashed, text));
            ASSERT_EQ(hashed, map);
            SortedMap sorted;
            ASSERT_TRUE(deserializeNVP(sorted, text));
            ASSERT_EQ(sorted, SortedMap(map.begin(), map.end()));
        }
    }
}

TEST(DeserializeNVPRandom, EqualsItsModel) {
    std::mt19937_64 engine = randomEngine();
    std::string const letters = "ab=  \\nu01\t";
    for (int i = 0; i < 100'000; ++i) {
        std::string text(engine() % 60, '\0');
        for (char& c : text)
            c = letters[engine() % letters.size()];
        text.shrink_to_fit();
        HashMap hashed;
        SortedMap sorted;
        bool const wellFormed = deserializeNVP(hashed, text);
        ASSERT_EQ(deserializeNVP(sorted, text), wellFormed) << text;
        ASSERT_EQ(SortedMap(hashed.begin(), hashed.end()), sorted) << text;
        auto const expected = modelOfDeserialize(text);
        ASSERT_EQ(wellFormed, expected.has_value()) << text;
        if (!expected) continue;
        ASSERT_EQ(sorted, *expected) << text;
    }
}

}  // namespace
