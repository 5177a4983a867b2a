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

// What a Variant contains after each constructor and assignment, after a copy, and when it is
// cleared. Long for its tables.
namespace {

// ---- every kind of value, by constructor, by `assign` and by `operator=`

struct Given {
    char const* fact;
    VariantType type;
    unsigned long slot;  // all eight bytes
    std::wstring text;
    std::function<Variant*(void*)> construct;
    std::function<void(Variant&)> assign;
    std::function<Variant&(Variant&)> set;  // none for std::string and std::wstring
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

// An object built in memory whose bits are all set, so that no member is zero by chance.
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
    given("the smallest unsigned char", uchar{0}, 1, 0),
    given("the largest unsigned char", uchar{255}, 1, 0xFF),
    given("unsigned short", ushort{0xABCD}, 2, 0xABCD),
    given("unsigned int", 0x89ABCDEFU, 3, 0x89ABCDEF),
    given("char", 'A', 4, 0x41),
    given("a negative char sets one byte", '\xFB', 4, 0xFB),
    given("short", short{0x1234}, 5, 0x1234),
    given("a negative short sets two bytes", short{-2}, 5, 0xFFFE),
    given("int", 0x12345678, 6, 0x12345678),
    given("a negative int sets four bytes", -2, 6, 0xFFFFFFFE),
    given("float", 1.5F, 7, 0x3FC00000),
    given("a negative float sets four bytes", -0.0F, 7, 0x80000000),
    given("double", 3.7, 8, 0x400D99999999999A),
    given("a negative double", -0.0, 8, 0x8000000000000000),
    given("long", 0x0123456789ABCDEFL, 10, 0x0123456789ABCDEF),
    given("a negative long sets eight bytes", -2L, 10, 0xFFFFFFFFFFFFFFFE),
    given("unsigned long", 0xFEDCBA9876543210UL, 11, 0xFEDCBA9876543210),
    given("true", true, 12, 1),
    given("false", false, 12, 0),
    given("a pointer to wide characters", L"wide \u0141", 9, 0, L"wide \u0141"),
    given("a pointer to an empty wide string", L"", 9, 0),
    given("a wide string", wide(L"wide text beyond a short form"), 9, 0,
          L"wide text beyond a short form"),
    given("a wide string keeps its zero characters", wide(L"\0a\0", 3), 9, 0, wide(L"\0a\0", 3)),
    given("an empty wide string", wide(), 9, 0),
    given("a pointer to characters", "text beyond a short form", 9, 0, L"text beyond a short form"),
    given("a pointer to an empty string", "", 9, 0),
    given("digits are stored as a String", "42", 9, 0, L"42"),
    // KEPT(bytes-widen-by-sign): the character -23, and no decoding of two bytes to U+00E9.
    given("a byte above 0x7F", "\xE9", 9, 0, wide(1, static_cast<wchar_t>(-23))),
    given("two bytes that are one character in UTF-8", "\xC3\xA9", 9, 0,
          {static_cast<wchar_t>(-61), static_cast<wchar_t>(-87)}),
    given("a string", std::string("text beyond a short form"), 9, 0, L"text beyond a short form"),
    given("an empty string", std::string(), 9, 0),
    // KEPT(text-ends-at-zero-byte)
    given("a string up to its first zero byte", std::string("ab\0de", 5), 9, 0, L"ab"),
    given("a string that begins with a zero byte is empty", std::string("\0b", 2), 9, 0),
};

xtime_t const EARLIER_TIME(5, 4000000000U);

// Data in every member, and in every byte of the slot.
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

// KEPT(clear-keeps-time): every assignment keeps it too, except of a time or of another Variant.
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
    {"a time with a fraction of a second", 1763164800, 250000000, 5269881600.25},
    {"the epoch, which counts as not set", 0, 0, 3506716800.0},
    {"a time before the epoch", -1, 500000000, 3506716799.5},
    {"a time before the epoch that rounds to it", -1, 999999999, 3506716800.0},
    {"a time before 1858 wraps", -3506716801, 0, 1844674407369.955},
    {"more nanoseconds than a second has", 1763164800, 4294967295, 5269881604.2949677},
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
    {"type 0 is no value", 0, false, false},
    {"type 14 is a value, and null", 14, true, true},
    {"type 13 is a value", 13, false, true},
    {"a number above the types counts as a value", 15, false, true},
    {"a number below the types counts as a value", -1, false, true},
    {"the smallest number counts as a value", INT_MIN, false, true},
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

// Each way to copy.
struct CopyWay {
    char const* fact;
    std::unique_ptr<Variant> (*copy)(Variant const&);
    char const* cacheAfter;
};

CopyWay const COPY_WAYS[] = {
    {"constructor", constructed, ""},
    {"assign", assigned, "cached"},
    {"operator=", set, "cached"},
};

TEST(Variant, CopiesAllButTheNarrowCache) {
    for (CopyWay const& way : COPY_WAYS) {
        for (Given const& row : GIVEN) {
            SCOPED_TRACE(way.fact);
            SCOPED_TRACE(row.fact);
            Variant source;
            row.assign(source);
            source.timeVal = xtime_t(-7, 999999999);
            source.wTextAux = std::wstring(L"of the \0 source", 15);
            source.sbcText = "of the source";
            auto const copy = way.copy(source);
            expectValue(*copy, row.type, row.slot, row.text);
            expectRest(*copy, xtime_t(-7, 999999999), source.wTextAux, way.cacheAfter);
            expectValue(source, row.type, row.slot, row.text);
            expectRest(source, xtime_t(-7, 999999999), std::wstring(L"of the \0 source", 15),
                       "of the source");
        }
    }
}

TEST(Variant, CopiesAnyTypeNumberAndSlot) {
    for (CopyWay const& way : COPY_WAYS) {
        for (VariantType const type : {0, 1, 7, 12, 14, 15, -1, INT_MIN, INT_MAX}) {
            SCOPED_TRACE(way.fact);
            SCOPED_TRACE(type);
            Variant source;
            source.dataType = type;
            source.uVal.asUint64 = 0xFEDCBA9876543210;
            source.wText = L"text of any type";
            auto const copy = way.copy(source);
            EXPECT_EQ(copy->type(), type);
            EXPECT_EQ(copy->uVal.asUint64, 0xFEDCBA9876543210);
            EXPECT_EQ(copy->wText, L"text of any type");
        }
    }
}

TEST(Variant, OwnsWhatItCopied) {
    for (CopyWay const& way : COPY_WAYS) {
        SCOPED_TRACE(way.fact);
        Variant source("text beyond a short form");
        source.wTextAux = L"auxiliary beyond a short form";
        auto const copy = way.copy(source);
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
    {"999999999 ns are less than a second", 10, 999999999, 10, 999999999},
    {"1000000000 ns are a second", 10, 1000000000, 11, 0},
    {"1000000001 ns are a second and 1 ns", 10, 1000000001, 11, 1},
    {"the most nanoseconds of 32 bits are 4 s and a rest", 10, 4294967295, 14, 294967295},
    {"a second is carried before the epoch", -1, 1500000000, 0, 500000000},
    {"a second carried at the end of time wraps", LONG_MAX, 1000000000, LONG_MIN, 0},
};

TEST(Variant, NormalisesTheTimeOfACopyAlone) {
    for (CopyWay const& way : COPY_WAYS) {
        for (CopiedTimeFact const& row : COPIED_TIME_FACTS) {
            SCOPED_TRACE(way.fact);
            SCOPED_TRACE(row.fact);
            xtime_t const time(row.seconds, row.nanoseconds);
            Variant const source(time);
            unsigned long const slot = source.uVal.asUint64;
            auto const copy = way.copy(source);
            EXPECT_EQ(copy->timeVal, xtime_t(row.copiedSeconds, row.copiedNanoseconds));
            EXPECT_EQ(copy->uVal.asUint64, slot);
            EXPECT_EQ(copy->type(), 13);
            EXPECT_EQ(source.timeVal, time);
        }
    }
}

// KEPT(self-assignment-empties)
TEST(Variant, EndsEmptyWhenAssignedToItself) {
    std::vector<std::function<void(Variant&, Variant const&)>> const ways = {
        [](Variant& variant, Variant const& self) { variant.assign(self); },
        [](Variant& variant, Variant const& self) { EXPECT_EQ(&(variant = self), &variant); },
    };
    for (auto const& assignToItself : ways) {
        for (Given const& row : GIVEN) {
            SCOPED_TRACE(row.fact);
            auto const variant = withEverything();
            row.assign(*variant);
            assignToItself(*variant, *variant);
            expectValue(*variant, 0, 0, L"");
            // The time stays. It is copied like the other members, so it is normalised.
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
        // The byte is in many places of the string, because strings are widened in blocks.
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
        // One object, so that longer and shorter strings follow each other.
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
    std::vector<std::function<void(Variant&)>> const ways = {
        [null](Variant&) { Variant const variant(null); },
        [null](Variant& variant) { variant.assign(null); },
        [null](Variant& variant) { variant = null; },
    };
    for (std::size_t i = 0; i < ways.size(); ++i) {
        SCOPED_TRACE(i);
        auto const variant = withEverything();
        try {
            ways[i](*variant);
            ADD_FAILURE() << "nothing was thrown";
        } catch (std::logic_error const& error) {
            EXPECT_STREQ(error.what(), "basic_string::_M_construct null not valid");
            EXPECT_EQ(typeid(error), typeid(std::logic_error));
        }
        if (i == 0) continue;  // no object was made; the other one is unchanged
        expectValue(*variant, 0, 0, L"");
        expectRest(*variant, EARLIER_TIME, L"auxiliary", "cached");
    }
    EXPECT_EQ(testing_support::takeReports(), std::vector<testing_support::Report>());
}

// The first step empties the object's own string, so a pointer to its memory reads an empty string.
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

TEST(Variant, ReadsNothingAfterTheTerminatingZero) {
    Variant const narrow("ab\0cd");
    EXPECT_EQ(narrow.wText, L"ab");
    Variant const characters(L"ab\0cd");
    EXPECT_EQ(characters.wText, L"ab");
    Variant const text(wide(L"ab\0cd", 5));
    EXPECT_EQ(text.wText, wide(L"ab\0cd", 5));
}

}  // namespace
