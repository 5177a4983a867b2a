#include <climits>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/Variant.h>

#include "support/recorded_reports.h"

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::VariantType;
using com::halvorin::datatypes::xtime_t;

// What a Variant is: how each kind of value comes in and what it leaves of an earlier one, copying,
// clearing, and the names of the types. Long for its tables.
namespace {

// ---- every kind of value, by constructor, by `assign` and by `operator=`

struct Given {
    char const* fact;
    VariantType type;
    unsigned long slot;  // all eight bytes
    std::wstring text;
    std::function<Variant*(void*)> construct;
    std::function<void(Variant&)> assign;
    std::function<Variant&(Variant&)> set;  // none for text objects
};

template <typename Argument>
Given given(char const* fact, Argument argument, VariantType type, unsigned long slot,
            std::wstring text = L"") {
    Given row{fact, type, slot, std::move(text), nullptr, nullptr, nullptr};
    row.construct = [argument](void* storage) { return new (storage) Variant(argument); };
    row.assign = [argument](Variant& variant) { variant.assign(argument); };
    if constexpr (!std::is_class_v<Argument>) {
        row.set = [argument](Variant& variant) -> Variant& { return variant = argument; };
    }
    return row;
}

// An object built where every bit was set, so that nothing is zero by chance.
class Built {
public:
    explicit Built(std::function<Variant*(void*)> const& construct) {
        std::memset(storage_, 0xFF, sizeof storage_);
        variant_ = construct(storage_);
    }
    ~Built() { variant_->~Variant(); }
    Built(Built const&) = delete;
    Built& operator=(Built const&) = delete;
    Variant& operator*() const { return *variant_; }

private:
    alignas(Variant) unsigned char storage_[sizeof(Variant)];
    Variant* variant_;
};

using uchar = unsigned char;
using ushort = unsigned short;
using wide = std::wstring;

std::vector<Given> const GIVEN = {
    given("unsigned char, its least", uchar{0}, 1, 0),
    given("unsigned char, its most", uchar{255}, 1, 0xFF),
    given("unsigned short", ushort{0xABCD}, 2, 0xABCD),
    given("unsigned int", 0x89ABCDEFU, 3, 0x89ABCDEF),
    given("char", 'A', 4, 0x41),
    given("char, negative: one byte alone", '\xFB', 4, 0xFB),
    given("short", short{0x1234}, 5, 0x1234),
    given("short, negative: two bytes alone", short{-2}, 5, 0xFFFE),
    given("int", 0x12345678, 6, 0x12345678),
    given("int, negative: four bytes alone", -2, 6, 0xFFFFFFFE),
    given("float", 1.5F, 7, 0x3FC00000),
    given("float, negative: four bytes alone", -0.0F, 7, 0x80000000),
    given("double", 3.7, 8, 0x400D99999999999A),
    given("double, negative", -0.0, 8, 0x8000000000000000),
    given("long", 0x0123456789ABCDEFL, 10, 0x0123456789ABCDEF),
    given("long, negative: all eight bytes", -2L, 10, 0xFFFFFFFFFFFFFFFE),
    given("unsigned long", 0xFEDCBA9876543210UL, 11, 0xFEDCBA9876543210),
    given("true", true, 12, 1),
    given("false", false, 12, 0),
    given("wide characters", L"wide \u0141", 9, 0, L"wide \u0141"),
    given("no wide characters", L"", 9, 0),
    given("wide text", wide(L"wide text beyond a short form"), 9, 0,
          L"wide text beyond a short form"),
    given("wide text keeps its zeros", wide(L"\0a\0", 3), 9, 0, wide(L"\0a\0", 3)),
    given("no wide text", wide(), 9, 0),
    given("characters", "text beyond a short form", 9, 0, L"text beyond a short form"),
    given("no characters", "", 9, 0),
    given("digits stay text", "42", 9, 0, L"42"),
    // KEPT(bytes-widen-by-sign): the character -23, and no decoding of two bytes to U+00E9.
    given("a byte above 0x7F", "\xE9", 9, 0, wide(1, static_cast<wchar_t>(-23))),
    given("two bytes that are one character in UTF-8", "\xC3\xA9", 9, 0,
          {static_cast<wchar_t>(-61), static_cast<wchar_t>(-87)}),
    given("text", std::string("text beyond a short form"), 9, 0, L"text beyond a short form"),
    given("no text", std::string(), 9, 0),
    // KEPT(text-ends-at-zero-byte)
    given("text up to its first zero byte", std::string("ab\0de", 5), 9, 0, L"ab"),
    given("text of a zero byte first", std::string("\0b", 2), 9, 0),
};

xtime_t const EARLIER_TIME(5, 4000000000U);

// Something in every member, in the slot's every byte.
std::unique_ptr<Variant> withEverything() {
    auto variant = std::make_unique<Variant>();
    variant->dataType = 11;
    variant->uVal.asUint64 = 0x5555555555555555;
    variant->timeVal = EARLIER_TIME;
    variant->wText = L"an earlier text, longer than all that come later";
    variant->wTextAux = L"auxiliary";
    variant->sbcText = "cached";
    return variant;
}

void expectValue(Variant const& variant, VariantType type, unsigned long slot,
                 std::wstring const& text) {
    EXPECT_EQ(variant.dataType, type);
    EXPECT_EQ(variant.type(), type);
    EXPECT_EQ(variant.uVal.asUint64, slot);
    EXPECT_EQ(variant.wText, text);
    EXPECT_EQ(variant.isNull(), type == 14);
    EXPECT_EQ(variant.hasValue(), type != 0);
}

void expectRest(Variant const& variant, xtime_t const& time, std::wstring const& auxiliary,
                std::string const& cache) {
    EXPECT_EQ(variant.timeVal, time);
    EXPECT_EQ(variant.wTextAux, auxiliary);
    EXPECT_EQ(variant.sbcText, cache);
}

TEST(Variant, IsBuiltFromEachKindOfValueAlone) {
    for (Given const& row : GIVEN) {
        SCOPED_TRACE(row.fact);
        Built const variant(row.construct);
        expectValue(*variant, row.type, row.slot, row.text);
        expectRest(*variant, xtime_t(), L"", "");
    }
}

// KEPT(clear-keeps-time): so does every assignment, but that of a time or of another Variant.
TEST(Variant, TakesEachKindOfValueInPlaceOfAnEarlierOne) {
    for (Given const& row : GIVEN) {
        SCOPED_TRACE(row.fact);
        auto const variant = withEverything();
        row.assign(*variant);
        expectValue(*variant, row.type, row.slot, row.text);
        expectRest(*variant, EARLIER_TIME, L"auxiliary", "cached");
    }
}

TEST(Variant, AssignsByOperatorAsByNameAndGivesItselfBack) {
    for (Given const& row : GIVEN) {
        if (!row.set) continue;
        SCOPED_TRACE(row.fact);
        auto const variant = withEverything();
        EXPECT_EQ(&row.set(*variant), variant.get());
        expectValue(*variant, row.type, row.slot, row.text);
        expectRest(*variant, EARLIER_TIME, L"auxiliary", "cached");
    }
}

TEST(Variant, IsUnknownWhenBuiltFromNothing) {
    Built const variant([](void* storage) { return new (storage) Variant; });
    expectValue(*variant, 0, 0, L"");
    expectRest(*variant, xtime_t(), L"", "");
}

struct TimeFact {
    char const* fact;
    long seconds;
    unsigned int nanoseconds;
    double vmsSeconds;
};

TimeFact const TIME_FACTS[] = {
    {"a time of today", 1763164800, 0, 5269881600.0},
    {"a fraction of a second", 1763164800, 250000000, 5269881600.25},
    {"the epoch, which is no set time", 0, 0, 3506716800.0},
    {"before the epoch", -1, 500000000, 3506716799.5},
    {"before the epoch, rounded up to it", -1, 999999999, 3506716800.0},
    {"before 1858 it wraps", -3506716801, 0, 1844674407369.955},
    {"nanoseconds as they were given", 1763164800, 4294967295, 5269881604.2949677},
};

TEST(Variant, KeepsATimeBothAsItIsAndAsOpenVMSSeconds) {
    for (TimeFact const& row : TIME_FACTS) {
        SCOPED_TRACE(row.fact);
        xtime_t const time(row.seconds, row.nanoseconds);
        Built const built([&time](void* storage) { return new (storage) Variant(time); });
        auto const assigned = withEverything();
        assigned->assign(time);
        auto const set = withEverything();
        EXPECT_EQ(&(*set = time), set.get());
        for (Variant const* const variant : {&*built, assigned.get(), set.get()}) {
            EXPECT_EQ(variant->type(), 13);
            EXPECT_EQ(variant->uVal.asDouble, row.vmsSeconds);
            EXPECT_EQ(variant->wText, L"");
        }
        expectRest(*built, time, L"", "");
        expectRest(*assigned, time, L"auxiliary", "cached");
        expectRest(*set, time, L"auxiliary", "cached");
    }
}

// ---- clearing

TEST(Variant, IsClearedOfItsValueAlone) {
    auto const variant = withEverything();
    variant->clear();
    expectValue(*variant, 0, 0, L"");
    expectRest(*variant, EARLIER_TIME, L"auxiliary", "cached");  // KEPT(clear-keeps-time)
}

TEST(Variant, IsMadeNullAfterClearing) {
    auto const variant = withEverything();
    variant->makeNull();
    expectValue(*variant, 14, 0, L"");  // KEPT(null-has-value), in expectValue
    expectRest(*variant, EARLIER_TIME, L"auxiliary", "cached");
}

struct EmptinessFact {
    char const* fact;
    VariantType type;
    bool isNull;
    bool hasValue;
};

// KEPT(null-has-value)
EmptinessFact const EMPTINESS_FACTS[] = {
    {"Unknown is no value", 0, false, false}, {"Null is one", 14, true, true},
    {"data is one", 13, false, true},         {"and a number beyond the types", 15, false, true},
    {"below the types", -1, false, true},     {"the least", INT_MIN, false, true},
};

TEST(Variant, TellsThreeEmptinessesApartByTheTypeAlone) {
    for (EmptinessFact const& row : EMPTINESS_FACTS) {
        SCOPED_TRACE(row.fact);
        Variant variant;
        variant.dataType = row.type;
        EXPECT_EQ(variant.type(), row.type);
        EXPECT_EQ(variant.isNull(), row.isNull);
        EXPECT_EQ(variant.hasValue(), row.hasValue);
    }
}

TEST(Variant, CopiesTheWholeSlotAndNothingElse) {
    auto const source = withEverything();
    Variant receiver(uchar{7});
    receiver.copyUVal(*source);
    expectValue(receiver, 1, 0x5555555555555555, L"");
    expectRest(receiver, xtime_t(), L"", "");
    EXPECT_EQ(source->type(), 11);
    EXPECT_EQ(source->uVal.asUint64, 0x5555555555555555);
    receiver.copyUVal(receiver);
    EXPECT_EQ(receiver.uVal.asUint64, 0x5555555555555555);
}

// ---- copying

std::unique_ptr<Variant> constructed(Variant const& source) {
    return std::make_unique<Variant>(source);
}

std::unique_ptr<Variant> assigned(Variant const& source) {
    auto copy = withEverything();
    copy->assign(source);
    return copy;
}

std::unique_ptr<Variant> set(Variant const& source) {
    auto copy = withEverything();
    EXPECT_EQ(&(*copy = source), copy.get());
    return copy;
}

// Each road that a copy takes.
struct CopyRoad {
    char const* fact;
    std::unique_ptr<Variant> (*copy)(Variant const&);
    char const* cacheAfter;
};

CopyRoad const COPY_ROADS[] = {
    {"constructor", constructed, ""},
    {"assign", assigned, "cached"},
    {"operator=", set, "cached"},
};

TEST(Variant, CopiesAllButTheNarrowCache) {
    for (CopyRoad const& road : COPY_ROADS) {
        for (Given const& row : GIVEN) {
            SCOPED_TRACE(road.fact);
            SCOPED_TRACE(row.fact);
            Variant source;
            row.assign(source);
            source.timeVal = xtime_t(-7, 999999999);
            source.wTextAux = std::wstring(L"of the \0 source", 15);
            source.sbcText = "of the source";
            auto const copy = road.copy(source);
            expectValue(*copy, row.type, row.slot, row.text);
            expectRest(*copy, xtime_t(-7, 999999999), source.wTextAux, road.cacheAfter);
            expectValue(source, row.type, row.slot, row.text);
            expectRest(source, xtime_t(-7, 999999999), std::wstring(L"of the \0 source", 15),
                       "of the source");
        }
    }
}

TEST(Variant, CopiesWhateverStandsInTypeAndSlot) {
    for (CopyRoad const& road : COPY_ROADS) {
        for (VariantType const type : {0, 1, 7, 12, 14, 15, -1, INT_MIN, INT_MAX}) {
            SCOPED_TRACE(road.fact);
            SCOPED_TRACE(type);
            Variant source;
            source.dataType = type;
            source.uVal.asUint64 = 0xFEDCBA9876543210;
            source.wText = L"text of any type";
            auto const copy = road.copy(source);
            EXPECT_EQ(copy->type(), type);
            EXPECT_EQ(copy->uVal.asUint64, 0xFEDCBA9876543210);
            EXPECT_EQ(copy->wText, L"text of any type");
        }
    }
}

TEST(Variant, OwnsWhatItCopied) {
    for (CopyRoad const& road : COPY_ROADS) {
        SCOPED_TRACE(road.fact);
        Variant source("text beyond a short form");
        source.wTextAux = L"auxiliary beyond a short form";
        auto const copy = road.copy(source);
        EXPECT_NE(copy->wText.data(), source.wText.data());
        EXPECT_NE(copy->wTextAux.data(), source.wTextAux.data());
        source.wText[0] = L'T';
        source.wTextAux[0] = L'A';
        EXPECT_EQ(copy->wText, L"text beyond a short form");
        EXPECT_EQ(copy->wTextAux, L"auxiliary beyond a short form");
    }
}

struct CopiedTimeFact {
    char const* fact;
    long seconds;
    unsigned int nanoseconds;
    long copiedSeconds;
    unsigned int copiedNanoseconds;
};

// KEPT(copy-normalises-time)
CopiedTimeFact const COPIED_TIME_FACTS[] = {
    {"the most nanoseconds of a second", 10, 999999999, 10, 999999999},
    {"one more is a second", 10, 1000000000, 11, 0},
    {"and one more goes on", 10, 1000000001, 11, 1},
    {"the most nanoseconds of all", 10, 4294967295, 14, 294967295},
    {"before the epoch as well", -1, 1500000000, 0, 500000000},
    {"at the end of time it wraps", LONG_MAX, 1000000000, LONG_MIN, 0},
};

TEST(Variant, NormalisesTheTimeOfACopyAlone) {
    for (CopyRoad const& road : COPY_ROADS) {
        for (CopiedTimeFact const& row : COPIED_TIME_FACTS) {
            SCOPED_TRACE(road.fact);
            SCOPED_TRACE(row.fact);
            xtime_t const time(row.seconds, row.nanoseconds);
            Variant const source(time);
            unsigned long const slot = source.uVal.asUint64;
            auto const copy = road.copy(source);
            EXPECT_EQ(copy->timeVal, xtime_t(row.copiedSeconds, row.copiedNanoseconds));
            EXPECT_EQ(copy->uVal.asUint64, slot);
            EXPECT_EQ(copy->type(), 13);
            EXPECT_EQ(source.timeVal, time);
        }
    }
}

// KEPT(self-assignment-empties)
TEST(Variant, EndsEmptyWhenAssignedToItself) {
    std::vector<std::function<void(Variant&, Variant const&)>> const roads = {
        [](Variant& variant, Variant const& self) { variant.assign(self); },
        [](Variant& variant, Variant const& self) { EXPECT_EQ(&(variant = self), &variant); },
    };
    for (auto const& assignToItself : roads) {
        for (Given const& row : GIVEN) {
            SCOPED_TRACE(row.fact);
            auto const variant = withEverything();
            row.assign(*variant);
            assignToItself(*variant, *variant);
            expectValue(*variant, 0, 0, L"");
            // What survives is copied like the rest, and so the time is normalised.
            expectRest(*variant, xtime_t(9, 0), L"auxiliary", "cached");
        }
        auto const null = withEverything();
        null->makeNull();
        assignToItself(*null, *null);
        expectValue(*null, 0, 0, L"");
    }
}

// ---- text

TEST(Variant, WidensEachByteByItsSign) {
    for (int byte = 1; byte < 256; ++byte) {
        SCOPED_TRACE(byte);
        int const character = byte < 128 ? byte : byte - 256;  // KEPT(bytes-widen-by-sign)
        // In every place of a text, next to every neighbour that counts.
        std::string narrow(40, 'x');
        std::wstring expected(40, L'x');
        for (std::size_t place = 0; place < narrow.size(); place += 3) {
            narrow[place] = static_cast<char>(byte);
            expected[place] = static_cast<wchar_t>(character);
        }
        EXPECT_EQ(Variant(narrow.c_str()).wText, expected);
        EXPECT_EQ(Variant(narrow).wText, expected);
        Variant variant;
        variant.assign(narrow);
        EXPECT_EQ(variant.wText, expected);
        variant = narrow.c_str();
        EXPECT_EQ(variant.wText, expected);
    }
}

TEST(Variant, TakesTextOfEveryLength) {
    for (std::size_t size = 0; size < 300; ++size) {
        std::string narrow;
        std::wstring expected;
        for (std::size_t i = 0; i < size; ++i) {
            narrow += static_cast<char>('a' + i % 26);
            expected += static_cast<wchar_t>(L'a' + i % 26);
        }
        // Growing and shrinking in one object, with what was before behind the end.
        static Variant variant;
        variant.assign(expected);
        EXPECT_EQ(variant.wText, expected);
        variant.assign(narrow.c_str());
        EXPECT_EQ(variant.wText, expected);
        variant.assign(narrow.c_str() + size / 2);
        EXPECT_EQ(variant.wText, expected.substr(size / 2));
        variant.assign(expected.c_str() + size / 3);
        EXPECT_EQ(variant.wText, expected.substr(size / 3));
    }
}

TEST(Variant, RefusesANullPointerToCharacters) {
    char const* const null = nullptr;
    std::vector<std::function<void(Variant&)>> const roads = {
        [null](Variant&) { Variant const variant(null); },
        [null](Variant& variant) { variant.assign(null); },
        [null](Variant& variant) { variant = null; },
    };
    for (std::size_t i = 0; i < roads.size(); ++i) {
        SCOPED_TRACE(i);
        auto const variant = withEverything();
        try {
            roads[i](*variant);
            ADD_FAILURE() << "nothing was thrown";
        } catch (std::logic_error const& error) {
            EXPECT_STREQ(error.what(), "basic_string::_M_construct null not valid");
            EXPECT_EQ(typeid(error), typeid(std::logic_error));
        }
        if (i == 0) continue;  // no object came to be; the other one is untouched
        expectValue(*variant, 0, 0, L"");
        expectRest(*variant, EARLIER_TIME, L"auxiliary", "cached");
    }
    EXPECT_EQ(testing_support::takeReports(), std::vector<testing_support::Report>());
}

// The first step empties the object's own text, and so whatever points into it.
TEST(Variant, FindsItsOwnWideTextEmptied) {
    for (std::wstring const text : {L"abc", L"a text beyond any short form"}) {
        for (std::size_t const place :
             {std::size_t{0}, std::size_t{1}, text.size() - 1, text.size()}) {
            SCOPED_TRACE(place);
            Variant byPointer(text);
            byPointer.assign(byPointer.wText.c_str() + place);
            expectValue(byPointer, 9, 0, L"");
            Variant byOperator(text);
            byOperator = byOperator.wText.c_str() + place;
            expectValue(byOperator, 9, 0, L"");
        }
        Variant whole(text);
        whole.assign(whole.wText);
        expectValue(whole, 9, 0, L"");
        Variant cleared(text);
        wchar_t const* const left = cleared.wText.c_str() + 1;
        cleared.clear();
        cleared.assign(left);
        expectValue(cleared, 9, 0, L"");
    }
}

TEST(Variant, FindsTheBytesOfItsOwnWideTextEmptied) {
    for (std::wstring const text : {L"abc", L"a text beyond any short form"}) {
        Variant variant(text);
        void const* const memory = variant.wText.data();
        variant.assign(static_cast<char const*>(memory));
        expectValue(variant, 9, 0, L"");
    }
}

TEST(Variant, TakesItsOtherOwnTextsAsTheyAre) {
    Variant variant(L"12");
    char const* const cached = variant;
    variant.assign(cached);
    expectValue(variant, 9, 0, L"12");
    variant = static_cast<char const*>(variant) + 1;
    expectValue(variant, 9, 0, L"2");
    variant.assign(variant.sbcText);
    expectValue(variant, 9, 0, L"12");

    variant.wTextAux = L"auxiliary beyond a short form";
    variant.assign(variant.wTextAux);
    expectValue(variant, 9, 0, L"auxiliary beyond a short form");
    variant = variant.wTextAux.c_str() + 10;
    expectValue(variant, 9, 0, L"beyond a short form");
}

TEST(Variant, TakesNumbersAndTimesFromItsOwnMembers) {
    Variant variant(-5L);
    variant = variant.uVal.asInt64;
    expectValue(variant, 10, 0xFFFFFFFFFFFFFFFB, L"");
    variant = variant.uVal.asUint64;
    expectValue(variant, 11, 0xFFFFFFFFFFFFFFFB, L"");
    variant.timeVal = xtime_t(1763164800, 1000000000);
    variant = variant.timeVal;
    EXPECT_EQ(variant.type(), 13);
    EXPECT_EQ(variant.uVal.asDouble, 5269881601.0);
    EXPECT_EQ(variant.timeVal, xtime_t(1763164800, 1000000000));
}

TEST(Variant, ReadsNothingOfAPointersTextBehindItsZero) {
    Variant const narrow("ab\0cd");
    EXPECT_EQ(narrow.wText, L"ab");
    Variant const characters(L"ab\0cd");
    EXPECT_EQ(characters.wText, L"ab");
    Variant const text(wide(L"ab\0cd", 5));
    EXPECT_EQ(text.wText, wide(L"ab\0cd", 5));
}

// ---- names and numbers of the types

struct TypeFact {
    wchar_t const* name;
    int number;
};

TypeFact const TYPE_FACTS[] = {
    {L"UnsignedByte", 1}, {L"Uint16", 2},   {L"Uint32", 3},    {L"Byte", 4},   {L"Int16", 5},
    {L"Int32", 6},        {L"Float", 7},    {L"Double", 8},    {L"String", 9}, {L"Int64", 10},
    {L"Uint64", 11},      {L"Boolean", 12}, {L"DateTime", 13}, {L"Null", 14},  {L"Unknown", 0},
};

TEST(Variant, ListsNamesAndNumbersSideBySide) {
    std::size_t entry = 0;
    for (TypeFact const& row : TYPE_FACTS) {
        SCOPED_TRACE(row.number);
        EXPECT_STREQ(Variant::typeNames[entry], row.name);
        EXPECT_EQ(Variant::typeNumbers[entry], row.number);
        ++entry;
    }
    EXPECT_EQ(entry, 15U);
    EXPECT_EQ(Variant::typeNames[15], nullptr);
    EXPECT_EQ(Variant::typeNumbers[15], -1);
}

TEST(Variant, TurnsNamesIntoNumbersAndBack) {
    for (TypeFact const& row : TYPE_FACTS) {
        SCOPED_TRACE(row.number);
        std::wstring const copy(row.name);  // by its characters, not by its address
        EXPECT_EQ(Variant::typeName2Number(copy.c_str()), row.number);
        EXPECT_STREQ(Variant::typeNumber2Name(row.number), row.name);
    }
    EXPECT_EQ(Variant::typeNumber2Name(3), Variant::typeNames[2]);
    EXPECT_EQ(Variant::typeNumber2Name(0), Variant::typeNames[14]);
}

TEST(Variant, KnowsNoOtherNames) {
    for (wchar_t const* const name :
         {L"", L"null", L"unknown", L"int32", L"double", L"DOUBLE", L"Int", L"Int3", L"Int320",
          L"Int32 ", L" Int32", L"Uint8", L"Int8", L"UnsignedByte\u0301", L"0", L"8"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(Variant::typeName2Number(name), -1);
    }
}

TEST(Variant, KnowsNoOtherNumbers) {
    for (int const number : {INT_MIN, INT_MIN + 1, -2, -1, 15, 16, 256, INT_MAX - 1, INT_MAX}) {
        SCOPED_TRACE(number);
        EXPECT_EQ(Variant::typeNumber2Name(number), nullptr);
    }
}

TEST(Variant, HasTheTolerancesOfItsComparisons) {
    EXPECT_EQ(Variant::FLT_THRESHOLD, 1e-06);
    EXPECT_EQ(Variant::DBL_THRESHOLD, 1e-12);
}

}  // namespace
