#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/String.h>

using com::halvorin::datatypes::String;

namespace {

static_assert(std::is_nothrow_default_constructible_v<String>);
static_assert(std::is_copy_constructible_v<String> && std::is_copy_assignable_v<String>);
static_assert(std::is_nothrow_move_constructible_v<String>);
static_assert(std::is_nothrow_move_assignable_v<String>);
static_assert(!std::is_polymorphic_v<String>);
static_assert(sizeof(String) == sizeof(std::string));
static_assert(std::is_same_v<decltype(std::declval<String const&>()()), std::string>);
static_assert(std::is_same_v<decltype(std::declval<String&>()("")), std::string>);
static_assert(std::is_convertible_v<std::string, String>);

std::string const LONG_TEXT(100, 'x');
std::string const ZEROES("a\0b", 3);

TEST(String, IsEmptyAtFirst) { EXPECT_EQ(String()(), ""); }

TEST(String, HoldsACopyOfItsText) {
    for (std::string const& text : {std::string("x"), std::string(), LONG_TEXT, ZEROES}) {
        std::string source = text;
        String const held(source);
        source += "changed";
        EXPECT_EQ(held(), text);
        EXPECT_EQ(held(), text);
    }
}

TEST(String, IsReplacedByACallWithAText) {
    String held("x");
    EXPECT_EQ(held("y"), "y");
    EXPECT_EQ(held(), "y");
    EXPECT_EQ(held(LONG_TEXT), LONG_TEXT);
    EXPECT_EQ(held(ZEROES), ZEROES);
    EXPECT_EQ(held(), ZEROES);
    EXPECT_EQ(held(""), "");
    EXPECT_EQ(held(), "");
}

TEST(String, GivesTextsThatAreNotItsOwn) {
    String held("x");
    held("y") += "changed";
    held() += "changed";
    EXPECT_EQ(held(), "y");
}

TEST(String, CopiesDeeplyAndMoves) {
    String first("first");
    String second(first);
    second("second");
    EXPECT_EQ(first(), "first");
    first = second;
    second("third");
    EXPECT_EQ(first(), "second");
    String const moved = std::move(second);
    EXPECT_EQ(moved(), "third");
}

}  // namespace
