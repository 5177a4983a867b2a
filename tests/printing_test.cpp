#include <climits>
#include <iomanip>
#include <sstream>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>

#include <gmock/gmock.h>

#include <utillibrary/datatypes/ByteStream.h>
#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime.h>
#include <utillibrary/printing.h>

// The header that a host may include to print times and Variants, and to use times as keys.

using namespace com::halvorin::datatypes;

namespace {

template <typename Value>
std::string printed(Value&& value) {
    std::ostringstream out;
    out << std::forward<Value>(value);
    return out.str();
}

template <typename Value, typename = void>
inline constexpr bool PRINTS = false;
template <typename Value>
inline constexpr bool
    PRINTS<Value, std::void_t<decltype(std::declval<std::ostream&>() << std::declval<Value>())>> =
        true;

struct ConvertsToVariant {
    operator Variant() const { return Variant(1); }
};

TEST(PrintedTime, IsIsoTextWhetherTheTimeIsConstantOrNot) {
    xtime_t variable(1709618889, 250000000);
    xtime_t const constant = variable;
    EXPECT_EQ(printed(variable), "2024-03-05T06:08:09.250Z");
    EXPECT_EQ(printed(constant), "2024-03-05T06:08:09.250Z");
    EXPECT_EQ(printed(xtime_t()), "1970-01-01T00:00:00.000Z");
}

TEST(PrintedTime, ObeysWidthAndFillOfTheStream) {
    std::ostringstream out;
    out << std::setw(26) << std::setfill('*') << xtime_t(1709618889, 250000000) << '|';
    EXPECT_EQ(out.str(), "**2024-03-05T06:08:09.250Z|");
}

TEST(PrintedTime, IsWhatAFailedComparisonShows) {
    EXPECT_EQ(testing::PrintToString(xtime_t(1709618889, 250000000)), "2024-03-05T06:08:09.250Z");
}

TEST(PrintedTime, LeavesNumbersOfSecondsAsTheyAre) {
    EXPECT_EQ(printed(1709618889L), "1709618889");
}

TEST(PrintedVariant, IsItsText) {
    Variant null;
    null.makeNull();
    EXPECT_EQ(printed(Variant()), "unknown");
    EXPECT_EQ(printed(null), "null");
    EXPECT_EQ(printed(Variant(2.5)), "2.5");
    EXPECT_EQ(printed(Variant("42 km")), "42 km");
    EXPECT_EQ(printed(Variant(xtime_t(1709618889, 250000000))), "2024-03-05T06:08:09.250Z");
}

TEST(PrintedVariant, IsWhatAFailedComparisonShows) {
    EXPECT_EQ(testing::PrintToString(Variant(2.5)), "2.5");
}

TEST(PrintedVariant, IsNotMadeOfWhatMerelyConverts) {
    static_assert(PRINTS<Variant>);
    static_assert(PRINTS<Variant const&>);
    static_assert(!PRINTS<ConvertsToVariant>);
    EXPECT_EQ(printed(200), "200");
    EXPECT_EQ(printed('a'), "a");
    EXPECT_EQ(printed(true), "1");
}

TEST(HashOfATime, FindsEqualTimesInAnUnorderedMap) {
    std::unordered_map<xtime_t, int> map;
    map[xtime_t(10, 1)] = 1;
    map[xtime_t(10, 2)] = 2;
    map[xtime_t(11, 1)] = 3;
    map[xtime_t(10, 1)] = 4;
    EXPECT_EQ(map.size(), 3U);
    EXPECT_EQ(map.at(xtime_t(10, 1)), 4);
    EXPECT_EQ(map.at(xtime_t(10, 2)), 2);
    EXPECT_EQ(map.count(xtime_t(10, 3)), 0U);
}

TEST(HashOfATime, DiffersForTimesThatDifferInOneField) {
    std::hash<xtime_t> const hash;
    EXPECT_EQ(hash(xtime_t(10, 1)), hash(xtime_t(10, 1)));
    EXPECT_NE(hash(xtime_t(10, 1)), hash(xtime_t(10, 2)));
    EXPECT_NE(hash(xtime_t(10, 1)), hash(xtime_t(11, 1)));
    EXPECT_NE(hash(xtime_t(-1)), hash(xtime_t(0)));
    EXPECT_NE(hash(xtime_t(LONG_MAX)), hash(xtime_t(LONG_MIN)));
    static_assert(noexcept(hash(xtime_t())));
}

#ifdef __cpp_lib_format
TEST(FormattedValues, AreTheSameAsPrintedOnes) {
    EXPECT_EQ(std::format("{:>26}|", xtime_t(1709618889, 250000000)),
              "  2024-03-05T06:08:09.250Z|");
    EXPECT_EQ(std::format("{}", Variant(2.5)), "2.5");
}
#endif

}  // namespace
