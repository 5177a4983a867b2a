#include <chrono>
#include <cstring>
#include <ctime>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/xtime.h>

// What the compiler knows of xtime_t: sizes, signatures, and which conversions there are.

using com::halvorin::datatypes::xtime_t;
using com::halvorin::datatypes::xtimeNow;

using TimePoint = std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds>;

namespace {

static_assert(sizeof(xtime_t) == 16 && alignof(xtime_t) == 8);
static_assert(std::is_trivially_copyable_v<xtime_t>);
static_assert(std::is_standard_layout_v<xtime_t>);
static_assert(!std::is_polymorphic_v<xtime_t>);
static_assert(std::is_nothrow_default_constructible_v<xtime_t>);
static_assert(std::is_nothrow_constructible_v<xtime_t, long, unsigned int>);
static_assert(std::is_nothrow_constructible_v<xtime_t, long const&>);

// Every member by its exact signature.
template <auto Member, typename Signature>
constexpr bool IS = std::is_same_v<decltype(Member), Signature>;

static_assert(IS<&xtime_t::getDateTime, long (xtime_t::*)() const noexcept>);
static_assert(IS<&xtime_t::putDateTime, void (xtime_t::*)(long) noexcept>);
static_assert(IS<&xtime_t::getNanoseconds, unsigned int (xtime_t::*)() const noexcept>);
static_assert(IS<&xtime_t::putNanoseconds, void (xtime_t::*)(unsigned int) noexcept>);
static_assert(IS<&xtime_t::clear, void (xtime_t::*)() noexcept>);
static_assert(IS<&xtime_t::isSet, bool (xtime_t::*)() const noexcept>);
static_assert(IS<&xtime_t::add, void (xtime_t::*)(float) noexcept>);
static_assert(IS<&xtime_t::difference, float (xtime_t::*)(xtime_t const&) const noexcept>);
static_assert(IS<&xtime_t::now, void (xtime_t::*)()>);
static_assert(IS<&xtime_t::decompose, void (xtime_t::*)(int&, int&, int&, int&, int&, int&,
                                                        unsigned int&) const noexcept>);
static_assert(IS<&xtime_t::fromTime_point, void (xtime_t::*)(TimePoint const&) noexcept>);
static_assert(IS<&xtime_t::toTime_point, TimePoint (xtime_t::*)() const noexcept>);
static_assert(
    IS<static_cast<unsigned long (xtime_t::*)(unsigned long&) const noexcept>(&xtime_t::toVMSTime),
       unsigned long (xtime_t::*)(unsigned long&) const noexcept>);
static_assert(IS<static_cast<double (xtime_t::*)() const noexcept>(&xtime_t::toVMSTime),
                 double (xtime_t::*)() const noexcept>);
static_assert(IS<static_cast<void (xtime_t::*)(unsigned long) noexcept>(&xtime_t::fromVMSTime),
                 void (xtime_t::*)(unsigned long) noexcept>);
static_assert(IS<static_cast<void (xtime_t::*)(double) noexcept>(&xtime_t::fromVMSTime),
                 void (xtime_t::*)(double) noexcept>);
static_assert(IS<&xtimeNow, xtime_t (*)()>);

// What turns into a time: every number, since each turns into a long.
enum Plain { PLAIN };
enum class Scoped { SCOPED };
template <typename From>
constexpr bool BECOMES_A_TIME = std::is_convertible_v<From, xtime_t>;

static_assert(BECOMES_A_TIME<long> && BECOMES_A_TIME<long const&>);
static_assert(BECOMES_A_TIME<int> && BECOMES_A_TIME<short> && BECOMES_A_TIME<char>);
static_assert(BECOMES_A_TIME<unsigned int> && BECOMES_A_TIME<unsigned long>);
static_assert(BECOMES_A_TIME<float> && BECOMES_A_TIME<double> && BECOMES_A_TIME<bool>);
static_assert(BECOMES_A_TIME<Plain> && !BECOMES_A_TIME<Scoped>);
static_assert(BECOMES_A_TIME<xtime_t&> && BECOMES_A_TIME<xtime_t const&>);
static_assert(!BECOMES_A_TIME<std::nullptr_t> && !BECOMES_A_TIME<void*>);
static_assert(!BECOMES_A_TIME<char const*> && !BECOMES_A_TIME<std::string>);
static_assert(!BECOMES_A_TIME<std::timespec> && !BECOMES_A_TIME<std::tm>);
static_assert(!BECOMES_A_TIME<TimePoint> && !BECOMES_A_TIME<std::chrono::seconds>);
static_assert(std::is_constructible_v<xtime_t, int, int>);
static_assert(!std::is_constructible_v<xtime_t, long, unsigned int, int>);
static_assert(!std::is_constructible_v<xtime_t, std::string>);

// What a time turns into: every number, unless it is constant. KEPT(number-of-a-variable-time)
template <typename To>
constexpr bool OF_A_VARIABLE_TIME =
    std::conjunction_v<std::is_convertible<xtime_t&, To>, std::is_convertible<xtime_t, To>>;
template <typename To>
constexpr bool OF_A_CONSTANT_TIME =
    std::is_convertible_v<xtime_t const&, To> || std::is_convertible_v<xtime_t const, To> ||
    std::is_constructible_v<To, xtime_t const&>;

static_assert(OF_A_VARIABLE_TIME<long> && !OF_A_CONSTANT_TIME<long>);
static_assert(OF_A_VARIABLE_TIME<int> && !OF_A_CONSTANT_TIME<int>);
static_assert(OF_A_VARIABLE_TIME<unsigned long> && !OF_A_CONSTANT_TIME<unsigned long>);
static_assert(OF_A_VARIABLE_TIME<double> && !OF_A_CONSTANT_TIME<double>);
static_assert(OF_A_VARIABLE_TIME<bool> && !OF_A_CONSTANT_TIME<bool>);
static_assert(!OF_A_VARIABLE_TIME<char const*> && !OF_A_CONSTANT_TIME<char const*>);
static_assert(!OF_A_VARIABLE_TIME<std::string> && !OF_A_CONSTANT_TIME<std::string>);
static_assert(!OF_A_VARIABLE_TIME<TimePoint> && !OF_A_CONSTANT_TIME<TimePoint>);
static_assert(noexcept(static_cast<long>(std::declval<xtime_t&>())));

// A constant time compares with a number, which becomes a time; for a variable one both could turn
// into the other, and neither is better. KEPT(number-of-a-variable-time)
template <typename... Relations>
struct RelationsOf {
    template <typename Left, typename Right>
    static constexpr bool ALL = (std::is_nothrow_invocable_r_v<bool, Relations, Left, Right> &&
                                 ...);
    template <typename Left, typename Right>
    static constexpr bool ANY = (std::is_invocable_v<Relations, Left, Right> || ...);
};
using SixRelations = RelationsOf<std::equal_to<>, std::not_equal_to<>, std::less<>, std::greater<>,
                                 std::less_equal<>, std::greater_equal<>>;
template <typename Left, typename Right>
constexpr bool COMPARES = SixRelations::ALL<Left, Right>;
template <typename Left, typename Right>
constexpr bool COMPARES_IN_ANY_WAY = SixRelations::ANY<Left, Right>;

static_assert(COMPARES<xtime_t const&, xtime_t const&> && COMPARES<xtime_t&, xtime_t&>);
static_assert(COMPARES<xtime_t&, xtime_t const&> && COMPARES<xtime_t, xtime_t>);
static_assert(COMPARES<xtime_t const&, long> && COMPARES<long, xtime_t const&>);
static_assert(COMPARES<xtime_t const&, int> && COMPARES<int, xtime_t const&>);
static_assert(COMPARES<xtime_t const&, double> && COMPARES<double, xtime_t const&>);
static_assert(!COMPARES_IN_ANY_WAY<xtime_t&, long> && !COMPARES_IN_ANY_WAY<long, xtime_t&>);
static_assert(!COMPARES_IN_ANY_WAY<xtime_t&, int> && !COMPARES_IN_ANY_WAY<int, xtime_t&>);
static_assert(!COMPARES_IN_ANY_WAY<xtime_t, long> && !COMPARES_IN_ANY_WAY<double, xtime_t&>);
static_assert(!COMPARES_IN_ANY_WAY<xtime_t const&, std::string>);

// The layout is part of the contract: the seconds come first.
struct Layout {
    long seconds;
    unsigned int nanoseconds;
};

TEST(XtimeFields, LieSecondsFirst) {
    xtime_t const time(-2, 4294967295);
    Layout layout{};
    static_assert(sizeof layout == sizeof time);
    std::memcpy(&layout, &time, sizeof layout);
    EXPECT_EQ(layout.seconds, -2);
    EXPECT_EQ(layout.nanoseconds, 4294967295);
}

}  // namespace
