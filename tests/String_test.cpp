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

std::string const LONG_STRING(100, 'x');
std::string const WITH_A_ZERO_BYTE("a\0b", 3);

TEST(String, IsEmptyAtFirst) { EXPECT_EQ(String()(), ""); }

TEST(String, ContainsACopyOfItsString) {
    for (std::string const& text :
         {std::string("x"), std::string(), LONG_STRING, WITH_A_ZERO_BYTE}) {
        std::string source = text;
        String const string(source);
        source += "changed";
        EXPECT_EQ(string(), text);
        EXPECT_EQ(string(), text);
    }
}

TEST(String, IsReplacedByACallWithAString) {
    String string("x");
    EXPECT_EQ(string("y"), "y");
    EXPECT_EQ(string(), "y");
    EXPECT_EQ(string(LONG_STRING), LONG_STRING);
    EXPECT_EQ(string(WITH_A_ZERO_BYTE), WITH_A_ZERO_BYTE);
    EXPECT_EQ(string(), WITH_A_ZERO_BYTE);
    EXPECT_EQ(string(""), "");
    EXPECT_EQ(string(), "");
}

TEST(String, ReturnsCopies) {
    String string("x");
    string("y") += "changed";
    string() += "changed";
    EXPECT_EQ(string(), "y");
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
