#include <algorithm>
#include <any>
#include <cctype>
#include <deque>
#include <forward_list>
#include <iterator>
#include <list>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include <gmock/gmock.h>

#include <utillibrary/datatypes/String.h>
#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/utilities/StringNVP.h>

// Lists and maps that a host may write, given to the templates. Each has only what the steps of the
// contract use: push_back of a string; find, end and insert of a pair of strings; entries with
// first and second.

using namespace com::halvorin::utilities;
using com::halvorin::datatypes::String;
using com::halvorin::datatypes::Variant;
using testing::ElementsAre;
using testing::Pair;

namespace {

using Strings = std::vector<std::string>;
using StringOrInt = std::variant<int, std::string>;

// ---- elements and values

// A string type of a host, made from a std::string and from nothing else.
struct Name : std::string {
    Name(std::string const& text) : std::string(text) {}  // NOLINT(google-explicit-constructor)
};

// The string that an element is, if it was given a std::string.
std::string textOf(std::string const& text) { return text; }
std::string textOf(Variant const& value) { return value.toString(); }
std::string textOf(String const& value) { return value(); }
std::string textOf(StringOrInt const& value) { return std::get<std::string>(value); }
std::string textOf(std::any const& value) { return std::any_cast<std::string>(value); }

// ---- lists

template <typename List>
Strings stringsOf(List const& list) {
    Strings strings;
    for (auto const& element : list)
        strings.push_back(textOf(element));
    return strings;
}

// A push_back that does more than append: it counts and changes what it gets.
struct CountingList : Strings {
    void push_back(std::string const& field) { Strings::push_back(std::to_string(size()) + field); }
};

struct SortedList : std::set<std::string> {
    void push_back(std::string field) { insert(std::move(field)); }
};

// Nothing but push_back, for an rvalue alone, and with a result.
class RvalueList {
public:
    int push_back(std::string&& field) {
        fields_.push_back(std::move(field));
        return 1;
    }
    auto begin() const { return fields_.begin(); }
    auto end() const { return fields_.end(); }

private:
    Strings fields_;
};

// Each push_back empties the elements that are there.
struct ForgetfulList : std::list<std::string> {
    void push_back(std::string field) {
        for (std::string& element : *this)
            element.clear();
        std::list<std::string>::push_back(std::move(field));
    }
};

// Each push_back moves all elements to new places.
struct MovingList : std::vector<Name> {
    void push_back(std::string const& field) {
        std::vector<Name> moved(begin(), end());
        moved.emplace_back(field);
        moved.shrink_to_fit();
        swap(moved);
    }
};

template <typename List>
class SplitForHosts : public testing::Test {};
using Lists = testing::Types<std::list<std::string>, std::deque<std::string>, std::vector<Name>,
                             MovingList, std::vector<Variant>, std::vector<String>,
                             std::vector<StringOrInt>, std::vector<std::any>, RvalueList>;
TYPED_TEST_SUITE(SplitForHosts, Lists);

TYPED_TEST(SplitForHosts, AppendsTheFieldsInOrder) {
    TypeParam fields;
    split(fields, "a,,bc;" + std::string(100, 'd') + ",", ",;");
    EXPECT_THAT(stringsOf(fields), ElementsAre("a", "bc", std::string(100, 'd'), ""));
    split(fields, "", ",");
    EXPECT_EQ(stringsOf(fields).size(), 5U);
}

TEST(SplitForHostsOf, AListWithItsOwnPushBackCallsIt) {
    CountingList counting;
    split(counting, "a,b,", ",");
    EXPECT_THAT(stringsOf(counting), ElementsAre("0a", "1b", "2"));
    SortedList sorted;
    split(sorted, "b,a,b", ",");
    EXPECT_THAT(stringsOf(sorted), ElementsAre("a", "b"));
}

TEST(SplitForHostsOf, AListThatMovesItsElementsMayGiveOneAsStringAndOneAsSeparators) {
    MovingList moving;
    moving.push_back("a,b,c");
    moving.push_back(",");
    split(moving, moving[0], moving[1]);
    EXPECT_THAT(stringsOf(moving), ElementsAre("a,b,c", ",", "a", "b", "c"));
}

TEST(SplitForHostsOf, AListThatChangesItsElementsMayGiveOneAsStringAndOneAsSeparators) {
    ForgetfulList forgetful;
    forgetful.push_back("");
    forgetful.push_back("");
    forgetful.front() = "a,b,c";
    forgetful.back() = ",";
    split(forgetful, forgetful.front(), forgetful.back());
    EXPECT_THAT(forgetful, ElementsAre("", "", "", "", "c"));
}

// ---- maps

template <typename Map>
std::vector<std::pair<std::string, std::string>> pairsOf(Map const& map) {
    std::vector<std::pair<std::string, std::string>> pairs;
    for (auto const& entry : map)
        pairs.emplace_back(textOf(entry.first), textOf(entry.second));
    std::sort(pairs.begin(), pairs.end());
    return pairs;
}

// An entry with more than two members.
struct Entry {
    std::string first;
    std::string second;
    int times = 0;
};

// A map with begin, end, find and insert alone. It moves its entries when it grows, and sorts them.
class FlatMap {
public:
    auto begin() const { return entries_.begin(); }
    auto end() const { return entries_.end(); }
    auto find(std::string const& name) const {
        return std::find_if(begin(), end(),
                            [&](Entry const& entry) { return entry.first == name; });
    }
    void insert(std::pair<std::string, std::string> const& pair) {
        std::vector<Entry> moved(begin(), end());
        moved.insert(moved.begin(), {pair.first, pair.second});
        moved.shrink_to_fit();
        entries_.swap(moved);
    }

private:
    std::vector<Entry> entries_;
};

// insert takes an entry of the map, as that of std::map does. Iterators can only be told apart by
// !=.
class EntryMap {
    using Base = std::map<std::string, std::string>;

public:
    class Iterator {
    public:
        explicit Iterator(Base::const_iterator at) : at_(at) {}
        bool operator!=(Iterator const& other) const { return at_ != other.at_; }
        Base::value_type const& operator*() const { return *at_; }
        Iterator& operator++() {
            ++at_;
            return *this;
        }

    private:
        Base::const_iterator at_;
    };

    Iterator begin() const { return Iterator(map_.begin()); }
    Iterator end() const { return Iterator(map_.end()); }
    Iterator find(std::string const& name) const { return Iterator(map_.find(name)); }
    void insert(Base::value_type const& entry) { map_.insert(entry); }

private:
    Base map_;
};

// insert assigns. So only `find` keeps the first value.
struct AssigningMap : std::map<std::string, std::string> {
    void insert(std::pair<std::string, std::string> pair) {
        (*this)[pair.first] = std::move(pair.second);
    }
};

template <typename Map>
class PairsForHosts : public testing::Test {};
using Maps = testing::Types<
    std::map<std::string, std::string>, std::map<std::string, std::string, std::less<>>,
    std::map<Name, Name>, std::unordered_map<std::string, Name>,
    std::unordered_map<std::string, Variant>, std::map<std::string, String>,
    std::map<std::string, StringOrInt>, std::unordered_map<std::string, std::any>,
    std::multimap<std::string, std::string>, std::unordered_multimap<std::string, std::string>,
    FlatMap, EntryMap, AssigningMap>;
TYPED_TEST_SUITE(PairsForHosts, Maps);

TYPED_TEST(PairsForHosts, AreInsertedOnceForEachName) {
    TypeParam map;
    EXPECT_TRUE(deserializeNVP(map, " b=2 a=1 a=3 c=two\\u0020words d= "));
    EXPECT_FALSE(deserializeNVP(map, "a=4 junk e==5 =6"));
    EXPECT_THAT(pairsOf(map), ElementsAre(Pair("a", "1"), Pair("b", "2"), Pair("c", "two words"),
                                          Pair("d", ""), Pair("e", "=5")));
}

TEST(PairsForHostsOf, AMapThatMovesItsEntriesMayGiveAValueAsTheString) {
    FlatMap map;
    map.insert({"text", "a=1 b=2 text=3 " + std::string(100, 'n') + "=4"});
    EXPECT_TRUE(deserializeNVP(map, map.find("text")->second));
    EXPECT_EQ(pairsOf(map).size(), 4U);
    EXPECT_EQ(map.find("a")->second, "1");
    EXPECT_EQ(map.find(std::string(100, 'n'))->second, "4");
}

TEST(PairsForHostsOf, AMapThatIgnoresCaseKeepOneEntry) {
    struct IgnoringCase {
        bool operator()(std::string const& left, std::string const& right) const {
            return std::lexicographical_compare(
                left.begin(), left.end(), right.begin(), right.end(),
                [](unsigned char a, unsigned char b) { return std::tolower(a) < std::tolower(b); });
        }
    };
    std::map<std::string, std::string, IgnoringCase> map;
    EXPECT_TRUE(deserializeNVP(map, "Name=1 NAME=2"));
    EXPECT_THAT(pairsOf(map), ElementsAre(Pair("Name", "1")));
}

// ---- maps that are written

// Converts to a constant string and to nothing else.
class Label {
public:
    explicit Label(std::string text) : text_(std::move(text)) {}
    operator std::string const&() const { return text_; }  // NOLINT(google-explicit-constructor)

private:
    std::string text_;
};

// Converts to a string and to other types, so that some overloads could not choose.
struct Anything {
    std::string text;
    operator std::string() const { return text; }        // NOLINT(google-explicit-constructor)
    operator char const*() const { return "not this"; }  // NOLINT(google-explicit-constructor)
    operator int() const { return 65; }                  // NOLINT(google-explicit-constructor)
};

template <typename Map>
std::string written(Map const& map) {
    std::string out = "x=1";
    serializeNVP(out, map);
    return out;
}

TEST(PairsForHostsOf, AnyIterableTypeAreWritten) {
    using List = std::vector<std::pair<std::string, std::string>>;
    EXPECT_EQ(written(List{{"b", "two words"}, {"a", ""}}), "x=1 b=two\\u0020words a=");
    EXPECT_EQ(written(List()), "x=1");
    EXPECT_EQ(written(std::forward_list<Entry>{{"a", "1"}, {"a", "2"}}), "x=1 a=1 a=2");
    EXPECT_EQ(written(std::multimap<std::string, std::string>{{"a", "1"}, {"a", "2"}}),
              "x=1 a=1 a=2");
    EXPECT_EQ(written(std::map<Name, Name>{{std::string("a"), std::string("1 2")}}),
              "x=1 a=1\\u00202");
    EXPECT_EQ(written(std::map<char const*, char const*>{{"a", "1 2"}}), "x=1 a=1\\u00202");
    EXPECT_EQ(written(std::vector<std::pair<Label, Label>>{{Label("a"), Label("1 2")}}),
              "x=1 a=1\\u00202");
    EXPECT_EQ(written(std::vector<std::pair<Anything, Anything>>{{{"a"}, {"1 2"}}}),
              "x=1 a=1\\u00202");
}

// Makes its entries while it is read.
class MadeMap {
public:
    class Iterator {
    public:
        explicit Iterator(int at) : at_(at) {}
        bool operator!=(Iterator const& other) const { return at_ != other.at_; }
        Entry operator*() const { return {"n" + std::to_string(at_), std::string(50, 'v')}; }
        Iterator& operator++() {
            ++at_;
            return *this;
        }

    private:
        int at_;
    };

    static Iterator begin() { return Iterator(0); }
    static Iterator end() { return Iterator(2); }
};

TEST(PairsForHostsOf, AMapThatMakesItsEntriesAreWritten) {
    std::string const value(50, 'v');
    EXPECT_EQ(written(MadeMap()), "x=1 n0=" + value + " n1=" + value);
}

}  // namespace
