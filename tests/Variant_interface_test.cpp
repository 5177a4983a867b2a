#include <any>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/Variant.h>

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::VariantType;
using com::halvorin::datatypes::xtime_t;

// What the compiler knows of a Variant: its members, its overloads, what converts to it, what it
// converts to, and what cannot fail. Most of it is asserted at compile time.
namespace {

// ---- members, in the stated order and without anything between or around them

static_assert(std::is_standard_layout_v<Variant>);
static_assert(!std::is_polymorphic_v<Variant>);
static_assert(sizeof(Variant) == 128 && alignof(Variant) == 8);
static_assert(sizeof(Variant::Slot) == 8);
static_assert(sizeof(wchar_t) == 4);

static_assert(offsetof(Variant, dataType) == 0);
static_assert(offsetof(Variant, uVal) == 8);
static_assert(offsetof(Variant, timeVal) == 16);
static_assert(offsetof(Variant, wText) == 32);
static_assert(offsetof(Variant, wTextAux) == 64);
static_assert(offsetof(Variant, sbcText) == 96);

static_assert(std::is_same_v<VariantType, int>);
static_assert(std::is_same_v<decltype(Variant::dataType), VariantType>);
static_assert(std::is_same_v<decltype(Variant::uVal), Variant::Slot>);
static_assert(std::is_same_v<decltype(Variant::timeVal), xtime_t>);
static_assert(std::is_same_v<decltype(Variant::wText), std::wstring>);
static_assert(std::is_same_v<decltype(Variant::wTextAux), std::wstring>);
static_assert(std::is_same_v<decltype(Variant::sbcText), std::string>);

static_assert(std::is_union_v<Variant::Slot>);
static_assert(std::is_same_v<decltype(Variant::Slot::asUbyte), unsigned char>);
static_assert(std::is_same_v<decltype(Variant::Slot::asUint16), unsigned short>);
static_assert(std::is_same_v<decltype(Variant::Slot::asUint32), unsigned int>);
static_assert(std::is_same_v<decltype(Variant::Slot::asUint64), unsigned long>);
static_assert(std::is_same_v<decltype(Variant::Slot::asByte), char>);
static_assert(std::is_same_v<decltype(Variant::Slot::asInt16), short>);
static_assert(std::is_same_v<decltype(Variant::Slot::asInt32), int>);
static_assert(std::is_same_v<decltype(Variant::Slot::asInt64), long>);
static_assert(std::is_same_v<decltype(Variant::Slot::asFloat), float>);
static_assert(std::is_same_v<decltype(Variant::Slot::asDouble), double>);
static_assert(std::is_same_v<decltype(Variant::Slot::asBool), bool>);

static_assert(std::is_same_v<decltype(Variant::typeNames), wchar_t const* const[16]>);
static_assert(std::is_same_v<decltype(Variant::typeNumbers), int const[16]>);
static_assert(std::is_same_v<decltype(Variant::FLT_THRESHOLD), double const>);
static_assert(std::is_same_v<decltype(Variant::DBL_THRESHOLD), double const>);

// ---- overloads: each by its exact signature, and the ones that must not be there

template <typename Argument>
concept HasAssign = requires {
    static_cast<void (Variant::*)(Argument)>(&Variant::assign);
};

static_assert(HasAssign<Variant const&>);
static_assert(HasAssign<unsigned char> && HasAssign<char>);
static_assert(HasAssign<unsigned short> && HasAssign<short>);
static_assert(HasAssign<unsigned int> && HasAssign<int>);
static_assert(HasAssign<unsigned long> && HasAssign<long>);
static_assert(HasAssign<float> && HasAssign<double> && HasAssign<bool>);
static_assert(HasAssign<wchar_t const*> && HasAssign<std::wstring const&>);
static_assert(HasAssign<char const*> && HasAssign<std::string const&>);
static_assert(HasAssign<xtime_t const&>);
static_assert(!HasAssign<Variant&&> && !HasAssign<std::string&&> && !HasAssign<std::wstring&&>);
static_assert(!HasAssign<long long> && !HasAssign<std::nullptr_t>);

template <typename Argument>
concept HasOperator = requires {
    static_cast<Variant& (Variant::*)(Argument)>(&Variant::operator=);
};

static_assert(HasOperator<wchar_t const*> && HasOperator<char const*>);
static_assert(HasOperator<float> && HasOperator<double>);
static_assert(HasOperator<char> && HasOperator<short> && HasOperator<int>);
static_assert(HasOperator<long const&> && HasOperator<unsigned long const&>);
static_assert(HasOperator<Variant const&> && HasOperator<bool>);
static_assert(HasOperator<unsigned char> && HasOperator<unsigned short>);
static_assert(HasOperator<unsigned int> && HasOperator<xtime_t const&>);
// The 64-bit integers come by reference, not by value.
static_assert(!HasOperator<long> && !HasOperator<unsigned long>);
static_assert(!HasOperator<xtime_t> && !HasOperator<Variant> && !HasOperator<Variant&&>);
// std::string and std::wstring have none; they convert to a temporary Variant.
static_assert(!HasOperator<std::string> && !HasOperator<std::string const&>);
static_assert(!HasOperator<std::wstring> && !HasOperator<std::wstring const&>);

template <typename Result>
using Question = Result (Variant::*)() const;

template <typename Target, Question<Target> NAMED>
constexpr bool conversionExistsTwice() {
    return std::is_same_v<decltype((std::declval<Variant const&>().*NAMED)()), Target> &&
           std::is_same_v<decltype(std::declval<Variant const&>().operator Target()), Target>;
}

static_assert(conversionExistsTwice<unsigned char, &Variant::toUbyte>());
static_assert(conversionExistsTwice<char, &Variant::toByte>());
static_assert(conversionExistsTwice<short, &Variant::toInt16>());
static_assert(conversionExistsTwice<unsigned short, &Variant::toUint16>());
static_assert(conversionExistsTwice<int, &Variant::toInt32>());
static_assert(conversionExistsTwice<unsigned int, &Variant::toUint32>());
static_assert(conversionExistsTwice<long, &Variant::toInt64>());
static_assert(conversionExistsTwice<unsigned long, &Variant::toUint64>());
static_assert(conversionExistsTwice<float, &Variant::toFloat>());
static_assert(conversionExistsTwice<double, &Variant::toDouble>());
static_assert(conversionExistsTwice<bool, &Variant::toBool>());
static_assert(conversionExistsTwice<xtime_t, &Variant::toXtime_t>());
static_assert(
    std::is_same_v<decltype(std::declval<Variant const&>().operator char const*()), char const*>);

template <typename Member, Member>
constexpr bool HAS = true;

static_assert(HAS<std::wstring (Variant::*)(unsigned int) const, &Variant::convertToString>);
static_assert(HAS<std::string (Variant::*)(unsigned int) const, &Variant::convertToStringSBC>);
static_assert(HAS<std::wstring (Variant::*)(unsigned int) const, &Variant::toString>);
static_assert(HAS<std::string (Variant::*)(unsigned int) const, &Variant::toStringSBC>);
static_assert(HAS<std::string (Variant::*)() const, &Variant::toString>);
static_assert(HAS<void (Variant::*)(), &Variant::clear>);
static_assert(HAS<void (Variant::*)(), &Variant::makeNull>);
static_assert(HAS<void (Variant::*)(Variant const&), &Variant::copyUVal>);
static_assert(HAS<VariantType (Variant::*)() const, &Variant::type>);
static_assert(HAS<bool (Variant::*)() const, &Variant::isNull>);
static_assert(HAS<bool (Variant::*)() const, &Variant::hasValue>);
static_assert(HAS<VariantType (*)(wchar_t const*), &Variant::typeName2Number>);
static_assert(HAS<wchar_t const* (*)(int), &Variant::typeNumber2Name>);
static_assert(HAS<int (*)(double, double, double), &Variant::compareDoublesHelper>);
static_assert(HAS<int (*)(double, double), &Variant::compareDoubles>);
static_assert(HAS<int (*)(float, float), &Variant::compareFloats>);

// ---- what turns into a Variant; `v = x` and `v.assign(x)` accept the same as `Variant v = x`

enum Unscoped { UNSCOPED };
enum class Scoped { SCOPED };

template <typename Source>
constexpr bool turnsInto() {
    constexpr bool CONVERTS = std::is_convertible_v<Source, Variant>;
    static_assert(std::is_constructible_v<Variant, Source> == CONVERTS);
    static_assert(std::is_assignable_v<Variant&, Source> == CONVERTS);
    static_assert(requires(Variant v, Source s) { v.assign(s); } == CONVERTS);
    return CONVERTS;
}

template <typename... Sources>
constexpr bool EACH_TURNS_INTO_A_VARIANT = (... && turnsInto<Sources>());
template <typename... Sources>
constexpr bool NONE_TURNS_INTO_A_VARIANT = !(... || turnsInto<Sources>());

static_assert(EACH_TURNS_INTO_A_VARIANT<bool, char, unsigned char, short, unsigned short, int,
                                        unsigned int, long, unsigned long, float, double>);
static_assert(EACH_TURNS_INTO_A_VARIANT<char const*, char*, wchar_t const*, wchar_t*, std::string,
                                        std::wstring, xtime_t, xtime_t&, Variant, Variant&>);
// These are promoted; the tests below say to which type.
static_assert(
    EACH_TURNS_INTO_A_VARIANT<signed char, wchar_t, char8_t, char16_t, char32_t, Unscoped>);
// Any other pointer is a bool, as everywhere in the language.
static_assert(EACH_TURNS_INTO_A_VARIANT<void*, int const*, unsigned char const*, char8_t const*>);

// Ambiguous between several overloads, so they do not compile.
static_assert(
    NONE_TURNS_INTO_A_VARIANT<long long, unsigned long long, long double, std::nullptr_t>);
static_assert(NONE_TURNS_INTO_A_VARIANT<std::string_view, std::wstring_view, std::u16string, Scoped,
                                        std::optional<int>, std::any, std::chrono::seconds>);

// ---- what a Variant turns into: `T x = v`, whether v is constant or not

template <typename Target>
constexpr bool turnsFrom() {
    constexpr bool CONVERTS = std::is_convertible_v<Variant const&, Target>;
    static_assert(std::is_convertible_v<Variant&, Target> == CONVERTS);
    static_assert(std::is_convertible_v<Variant, Target> == CONVERTS);
    return CONVERTS;
}

template <typename... Targets>
constexpr bool A_VARIANT_TURNS_INTO_EACH = (... && turnsFrom<Targets>());
template <typename... Targets>
constexpr bool A_VARIANT_TURNS_INTO_NONE = !(... || turnsFrom<Targets>());

static_assert(
    A_VARIANT_TURNS_INTO_EACH<unsigned char, char, short, unsigned short, int, unsigned int, long,
                              unsigned long, float, double, bool, xtime_t, char const*>);
// Ambiguous between several operators, so they do not compile.
static_assert(A_VARIANT_TURNS_INTO_NONE<signed char, wchar_t, char8_t, char16_t, char32_t,
                                        long long, unsigned long long, long double, Unscoped>);
static_assert(A_VARIANT_TURNS_INTO_NONE<std::string, std::wstring, std::string_view, char*,
                                        wchar_t const*, std::nullptr_t, void*, Scoped>);
// More types accept `T x(v)`: they have a constructor for what a Variant converts to.
static_assert(std::is_constructible_v<xtime_t, Variant const&>);
static_assert(std::is_constructible_v<std::string, Variant const&>);
static_assert(std::is_constructible_v<std::string_view, Variant const&>);
static_assert(!std::is_constructible_v<std::wstring, Variant const&>);
static_assert(!std::is_constructible_v<long long, Variant const&>);

// ---- what cannot fail

template <typename... Arguments>
constexpr bool NOTHING_FAILS = (... &&
                                (std::is_nothrow_constructible_v<Variant, Arguments> &&
                                 std::is_nothrow_assignable_v<Variant&, Arguments>&& noexcept(
                                     std::declval<Variant&>().assign(std::declval<Arguments>()))));
template <typename... Arguments>
constexpr bool EACH_MAY_FAIL =
    !(... || (std::is_nothrow_constructible_v<Variant, Arguments> ||
              std::is_nothrow_assignable_v<Variant&, Arguments> ||
              noexcept(std::declval<Variant&>().assign(std::declval<Arguments>()))));

static_assert(NOTHING_FAILS<unsigned char, unsigned short, unsigned int, unsigned long, char, short,
                            int, long, float, double, bool, xtime_t const&>);
static_assert(EACH_MAY_FAIL<Variant const&, wchar_t const*, char const*, std::wstring const&,
                            std::string const&>);

static_assert(std::is_nothrow_default_constructible_v<Variant>);
static_assert(std::is_nothrow_destructible_v<Variant>);
static_assert(noexcept(std::declval<Variant&>().clear()));
static_assert(noexcept(std::declval<Variant&>().makeNull()));
static_assert(noexcept(std::declval<Variant&>().copyUVal(std::declval<Variant const&>())));
static_assert(noexcept(std::declval<Variant const&>().type()));
static_assert(noexcept(std::declval<Variant const&>().isNull()));
static_assert(noexcept(std::declval<Variant const&>().hasValue()));
static_assert(noexcept(std::declval<Variant const&>().toXtime_t()));
static_assert(noexcept(std::declval<Variant const&>().operator xtime_t()));
static_assert(noexcept(Variant::typeName2Number(L"")));
static_assert(noexcept(Variant::typeNumber2Name(0)));
static_assert(noexcept(Variant::compareDoublesHelper(0, 0, 0)));
static_assert(noexcept(Variant::compareDoubles(0, 0)));
static_assert(noexcept(Variant::compareFloats(0, 0)));

// ---- copies are deep, and a move is a copy

static_assert(!std::is_trivially_copyable_v<Variant>);
static_assert(!std::is_trivially_destructible_v<Variant>);
static_assert(std::is_copy_constructible_v<Variant> && std::is_copy_assignable_v<Variant>);
static_assert(!std::is_nothrow_move_constructible_v<Variant>);
static_assert(!std::is_nothrow_move_assignable_v<Variant>);

TEST(VariantInterface, KeepsTheTextOfAVariantThatIsMovedFrom) {
    Variant from(L"a text beyond any short form");
    Variant const constructed(std::move(from));
    EXPECT_EQ(from.wText, L"a text beyond any short form");
    EXPECT_EQ(constructed.wText, L"a text beyond any short form");
    Variant assigned;
    assigned = std::move(from);
    EXPECT_EQ(from.wText, L"a text beyond any short form");
    EXPECT_EQ(assigned.wText, L"a text beyond any short form");
    Variant given;
    given.assign(std::move(from));
    EXPECT_EQ(from.wText, L"a text beyond any short form");
    EXPECT_EQ(given.wText, L"a text beyond any short form");
}

// wchar_t is signed on x86-64 and unsigned on aarch64.
constexpr VariantType TYPE_OF_WIDE_CHARACTER = std::is_signed_v<wchar_t> ? 6 : 3;

// What the overloads make of types that have none of their own.
struct PromotionFact {
    char const* fact;
    Variant value;
    VariantType type;
    long number;
};

int const* somewhere() {
    static int const VALUE = 0;
    return &VALUE;
}

PromotionFact const PROMOTION_FACTS[] = {
    {"signed char is an Int32", static_cast<signed char>(-5), 6, -5},
    {"a wide character is an Int32 where wchar_t is signed, else a Uint32", L'\u0141',
     TYPE_OF_WIDE_CHARACTER, 0x141},
    {"char8_t is an Int32", u8'A', 6, 65},
    {"char16_t is an Int32", u'\uFFFF', 6, 65535},
    {"char32_t is a Uint32", U'\U0010FFFF', 3, 1114111},
    {"an enumerator is an Int32", UNSCOPED, 6, 0},
    {"a pointer is a Boolean", somewhere(), 12, 1},
    {"a null pointer to void is a Boolean", static_cast<void*>(nullptr), 12, 0},
    {"a character literal is a Byte", 'A', 4, 65},
    {"a literal of digits is an Int32", 2147483647, 6, 2147483647},
    {"a literal beyond int is an Int64", 2147483648, 10, 2147483648},
    {"a string literal is a String and no Boolean", "1", 9, 1},
    {"a wide string literal is a String and no Boolean", L"1", 9, 1},
};

TEST(VariantInterface, TakesWhatHasNoOverloadByTheLanguagesOwnPromotions) {
    for (PromotionFact const& row : PROMOTION_FACTS) {
        SCOPED_TRACE(row.fact);
        EXPECT_EQ(row.value.type(), row.type);
        EXPECT_EQ(row.value.toInt64(), row.number);
    }
}

TEST(VariantInterface, IsTestedInACondition) {
    Variant const yes(0.5);
    Variant no(0.0);
    EXPECT_TRUE(yes ? true : false);
    EXPECT_FALSE(no ? true : false);
    EXPECT_TRUE(yes && !no);
    EXPECT_TRUE(static_cast<bool>(yes));
    EXPECT_FALSE(static_cast<bool>(no));
}

TEST(VariantInterface, GivesATimeByEachSpelling) {
    xtime_t const time(1763164800, 7);
    Variant const constant(time);
    Variant variable(time);
    xtime_t const copied = constant;
    xtime_t const parentheses(constant);
    xtime_t const braces{constant};
    xtime_t const fromVariable = variable;
    xtime_t const parenthesesOfVariable(variable);
    xtime_t assigned;
    assigned = constant;
    for (xtime_t const& given : {copied, parentheses, braces, fromVariable, parenthesesOfVariable,
                                 assigned, static_cast<xtime_t>(constant)}) {
        EXPECT_EQ(given, time);
    }
}

TEST(VariantInterface, GivesTextToWhatIsBuiltFromNarrowText) {
    Variant const value(L"text");
    EXPECT_EQ(std::string(value), "text");
    std::string_view const view(value);
    EXPECT_EQ(view, "text");
    EXPECT_EQ(view.data(), value.sbcText.data());
}

TEST(VariantInterface, TakesTextObjectsThroughATemporary) {
    Variant value;
    EXPECT_EQ(&(value = std::string("text")), &value);
    EXPECT_EQ(value.type(), 9);
    EXPECT_EQ(value.wText, L"text");
    EXPECT_EQ(&(value = std::wstring(L"w\0t", 3)), &value);
    EXPECT_EQ(value.type(), 9);
    EXPECT_EQ(value.wText, std::wstring(L"w\0t", 3));
}

TEST(VariantInterface, WritesTheNarrowCacheOfAConstantVariant) {
    Variant const value(7);
    char const* const text = value;
    EXPECT_EQ(value.sbcText, "7");
    EXPECT_EQ(text, value.sbcText.c_str());
}

}  // namespace
