#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <random>
#include <string>

#include <gmock/gmock.h>

#include "utillibrary/utilities/StringNumbers_internal.h"
#include <utillibrary/utilities/StringUtilities.h>

#include "support/locales.h"
#include "support/random.h"
#include "support/rounding.h"

using com::halvorin::internal::readWithLibc;
using namespace com::halvorin::utilities;
using namespace testing_support;

// What `strtodEx` reads, through its general path and the public function.
namespace {

std::string const NUL(1, '\0');

struct NumberFact {
    std::string text;
    double value;
};

NumberFact const NUMBER_FACTS[] = {
    {"0", 0},
    {"7", 7},
    {"12abc", 12},  // KEPT(number-at-the-front)
    {"  -1e3", -1000},
    {"\t\n\v\f\r +5", 5},
    {"+.5", 0.5},
    {"5.", 5},
    {"1.5.5", 1.5},
    {"1e", 1},
    {"1e+", 1},
    {"1e5", 100000},
    {"1E5", 100000},
    {"1e-05", 0.00001},
    {"1e22", 1e22},
    {"1e23", 1e23},
    {"0e99", 0},
    {"1e99", 1e99},
    {"1e100", 1e100},
    {"1,5", 1},
    {"0x10", 16},
    {"0x1.8p1", 3},
    {"0x", 0},
    {"inf", HUGE_VAL},
    {"-INFINITY", -HUGE_VAL},
    {"1e400", HUGE_VAL},    // KEPT(range-error-is-silent)
    {"-1e400", -HUGE_VAL},  // KEPT(range-error-is-silent)
    {"1e-400", 0},          // KEPT(range-error-is-silent)
    {"5e-324", 5e-324},
    {"9007199254740991", 9007199254740991},
    {"9007199254740992", 9007199254740992},
    {"9007199254740993", 9007199254740992},
    {"9007199254740995", 9007199254740996},
    {"-9007199254740993", -9007199254740992},
    {"9999999999999999999", 9999999999999999999.0},
    {"99999999999999999999", 99999999999999999999.0},
    {"0.1234567890123456789", 0.1234567890123456789},
    {"226310368047.991745", 226310368047.991745},
    {"1857948916520727.875", 1857948916520727.875},
    {"00000000000000000000007", 7},
    {"5" + NUL + "7", 5},
    {"123 456", 123},
};

TEST(StrtodEx, ReadsTheNumberAtTheFront) {
    ScopedCLocale const scope("C");
    for (NumberFact const& row : NUMBER_FACTS) {
        double value = 99;
        EXPECT_TRUE(strtodEx(row.text, value)) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
        EXPECT_EQ(readWithLibc(row.text), row.value) << row.text;
    }
}

TEST(StrtodEx, KeepsTheSignOfAZeroAndReadsNaN) {
    ScopedCLocale const scope("C");
    for (char const* const text : {"-0", "-0.0", "-0e5", "-.0"}) {
        double value = 99;
        EXPECT_TRUE(strtodEx(text, value));
        EXPECT_EQ(value, 0);
        EXPECT_TRUE(std::signbit(value)) << text;
    }
    double value = 99;
    EXPECT_TRUE(strtodEx("nan", value));
    EXPECT_TRUE(std::isnan(value));
}

TEST(StrtodEx, LeavesTheValueWhereThereIsNoNumber) {
    ScopedCLocale const scope("C");
    std::string const texts[] = {"",    "abc", " ",  "-",  "+", ".",    "-.",     "e5",
                                 "+-1", "--1", "x1", ",5", "?", "\xB2", NUL + "1"};
    for (std::string const& text : texts) {
        double value = 99;
        EXPECT_FALSE(strtodEx(text, value)) << text;
        EXPECT_EQ(value, 99) << text;
        EXPECT_EQ(readWithLibc(text), std::nullopt) << text;
    }
}

TEST(StrtodEx, ReadsTheDecimalPointOfTheCLocale) {
    struct {
        char const* locale;
        char const* text;
        double value;
    } const rows[] = {
        {"C", "1.5", 1.5},           {"C", "1,5", 1},
        {"de_DE.UTF-8", "1.5", 1},   {"de_DE.UTF-8", "1,5", 1.5},
        {"de_DE.UTF-8", "1.234", 1}, {"ps_AF.UTF-8", "1\xD9\2535", 1.5},
        {"ps_AF.UTF-8", "1.5", 1},
    };
    for (auto const& row : rows) {
        ScopedCLocale const c(row.locale);
        double value = 99;
        EXPECT_TRUE(strtodEx(row.text, value));
        EXPECT_EQ(value, row.value) << row.locale << ' ' << row.text;
    }
    ScopedCLocale const c("C");
    ScopedCppLocale const cpp("de_DE.UTF-8");
    double value = 99;
    EXPECT_TRUE(strtodEx("1.5", value));
    EXPECT_EQ(value, 1.5);
}

// Texts that are numbers, or nearly.
std::string anyNumberText(std::mt19937_64& engine) {
    static std::string const characters = "00112233445566778899..,eE+-x \t";
    if (engine() % 2 == 0) {
        std::array<char, 64> text;
        int const digits = static_cast<int>(engine() % 21);
        char const* const format = engine() % 2 == 0 ? "%.*f" : "%.*e";
        double const value = static_cast<double>(static_cast<long>(engine())) *
                             std::pow(10, -static_cast<int>(engine() % 40));
        std::snprintf(text.data(), text.size(), format, digits, value);
        return text.data();
    }
    std::string text(engine() % 24, '0');
    for (char& c : text)
        c = characters[engine() % characters.size()];
    return text;
}

void expectStrtod(std::string const& text) {
    char* end = nullptr;
    double const expected = std::strtod(text.c_str(), &end);
    ASSERT_EQ(readWithLibc(text).has_value(), end != text.c_str()) << text;
    double value = 99;
    bool const read = strtodEx(text, value);
    ASSERT_EQ(read, end != text.c_str()) << text;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(value),
              std::bit_cast<std::uint64_t>(read ? expected : 99.0))
        << text;
}

TEST(StrtodEx, ReadsAsStrtodDoes) {
    std::mt19937_64 engine = randomEngine();
    for (char const* const locale : {"C", "de_DE.UTF-8", "ps_AF.UTF-8"}) {
        ScopedCLocale const scope(locale);
        for (int i = 0; i < 60'000; ++i)
            expectStrtod(anyNumberText(engine));
    }
    ScopedCLocale const scope("C");
    for (int const mode : ROUNDING_MODES) {
        ScopedRounding const rounding(mode);
        for (int i = 0; i < 40'000; ++i)
            expectStrtod(anyNumberText(engine));
    }
}

}  // namespace
