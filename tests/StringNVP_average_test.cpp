#include <array>
#include <cerrno>
#include <cfenv>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <utillibrary/utilities/StringNVP.h>

#include "support/failing_allocations.h"
#include "support/locales.h"
#include "support/pair_models.h"
#include "support/random.h"
#include "support/recorded_reports.h"
#include "support/rounding.h"
#include "support/text_models.h"

using namespace com::halvorin::utilities;
using namespace testing_support;
using testing::ElementsAre;

namespace {

using Texts = std::vector<std::string>;

std::string const NUL(1, '\0');
std::string const LONG_FIELD(100, 'l');

float const NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
float const INFINITE = std::numeric_limits<float>::infinity();
Report const INVALID_DURATION = {"StringNVP::averageNVP", 3, "Invalid duration", 0};

// The pairs of a text without escapes in its names, values as they stand.
SortedMap rawPairs(std::string const& text) {
    SortedMap pairs;
    for (std::string const& field : modelOfSplit(text, " ")) {
        std::size_t const equals = field.find('=');
        EXPECT_NE(equals, std::string::npos) << text;
        std::string value = field.substr(equals + 1);
        if (value == "-nan") value = "nan";  // the processor's own sign
        EXPECT_TRUE(pairs.emplace(field.substr(0, equals), value).second) << text;
    }
    return pairs;
}

// Averages of equal times.
struct AverageFact {
    char const* fact;
    Texts names;
    std::string average;
    std::string sample;
    std::string result;  // its pairs, in any order
};

AverageFact const AVERAGE_FACTS[] = {
    {"the middle of two numbers", {"t"}, "t=10", "t=20", "t=15"},
    {"several names", {"t", "u"}, "t=1 u=2", "t=3 u=4", "t=2 u=3"},
    {"names that are not listed stay", {"t", "u"}, "t=1 u=2 v=x", "t=3", "t=2 u=2 v=x"},
    {"whatever the sample says", {"t"}, "t=1 u=2", "t=3 u=4", "t=2 u=2"},
    // KEPT(averaging-adds-no-name)
    {"no name is added", {"t", "u"}, "t=1", "t=3 u=4", "t=2"},
    {"none at all", {}, "t=1.50", "t=3", "t=1.50"},
    {"a name nobody knows", {"x", ""}, "t=1.50", "t=3", "t=1.50"},
    // KEPT(listed-twice-averaged-twice)
    {"a name listed twice is mixed twice", {"t", "t"}, "t=0", "t=8", "t=6"},
    {"then from rounded text", {"t", "t"}, "t=1234567", "t=1234567", "t=1.23457e+06"},
    {"names of one end",
     {"1name678", "2name678"},
     "1name678=1 2name678=9",
     "2name678=3 1name678=5",
     "1name678=3 2name678=6"},
    {"names of one long end",
     {"1name6789", "2name6789"},
     "1name6789=1 2name6789=9",
     "2name6789=3 1name6789=5",
     "1name6789=3 2name6789=6"},
    {"names of one front",
     {"longname1", "longname2"},
     "longname1=1 longname2=9",
     "longname2=3 longname1=5",
     "longname1=3 longname2=6"},
    {"short ones and long ones",
     {"a", "aaaaaaaa", "aaaaaaaaa"},
     "a=1 aaaaaaaaa=2 aaaaaaaa=3",
     "a=3 aaaaaaaa=5 aaaaaaaaa=4",
     "a=2 aaaaaaaaa=3 aaaaaaaa=4"},
    // KEPT(empty-text-is-malformed)
    {"an empty average stays empty", {"t"}, "", "t=20", ""},
    {"a malformed average stays", {"t"}, "t=10.0 x", "t=20", "t=10.0 x"},
    {"also beside a malformed sample", {"t"}, "t=10.0", "t=20 x", "t=10.0"},
    {"or an empty one", {"t"}, "t=10.0", "", "t=10.0"},
    // KEPT(unreadable-values-are-silent)
    {"a sample without a number is left", {"t"}, "t=5.0", "t=abc", "t=5.0"},
    {"an empty one", {"t"}, "t=5.0", "t=", "t=5.0"},
    {"NaN", {"t"}, "t=5.0", "t=nan", "t=5.0"},
    {"too large a one", {"t"}, "t=5.0", "t=1e39", "t=5.0"},
    {"the largest that is not", {"t"}, "t=0", "t=3.40282e38", "t=1.70141e+38"},
    {"with all its digits", {"t"}, "t=0", "t=3.40282356e38", "t=1.70141e+38"},
    {"one that is rounded past it", {"t"}, "t=5.0", "t=3.40282357e38", "t=5.0"},
    {"a subnormal one", {"t"}, "t=5.0", "t=1e-40", "t=5.0"},
    {"unless it is exact", {"t"}, "t=10", "t=0x1p-149", "t=5"},
    {"the smallest that is not", {"t"}, "t=0", "t=1.17550e-38", "t=5.8775e-39"},
    {"with all its digits", {"t"}, "t=0", "t=1.17549435e-38", "t=5.87747e-39"},
    {"one that is rounded up to it", {"t"}, "t=5.0", "t=1.1754943e-38", "t=5.0"},
    {"one that vanishes", {"t"}, "t=5.0", "t=1e-60", "t=5.0"},
    {"but the next name is averaged", {"t", "u"}, "t=5.0 u=1", "t=abc u=3", "t=5.0 u=2"},
    // KEPT(unreadable-values-are-silent)
    {"an average without one goes", {"t"}, "t=abc", "t=20", "t=20"},
    {"an empty one too", {"t"}, "t=", "t=20", "t=20"},
    {"NaN too", {"t"}, "t=nan", "t=20", "t=20"},
    {"too large a one too", {"t"}, "t=1e39", "t=20", "t=20"},
    {"a subnormal one too", {"t"}, "t=1e-40", "t=20", "t=20"},
    {"infinity is a number", {"t"}, "t=1", "t=inf", "t=inf"},
    {"also a negative one", {"t"}, "t=-inf", "t=1", "t=-inf"},
    {"their middle is none", {"t"}, "t=-inf", "t=inf", "t=nan"},
    {"what follows a number is ignored", {"t"}, "t=10kg", "t=20x", "t=15"},
    {"also behind an escaped space", {"t"}, "t=10\\u0020kg", "t=20\\u0020kg", "t=15"},
    {"a blank before it too", {"t"}, "t=\\u002010", "t=\\t20", "t=15"},
    {"a raw tab as well", {"t"}, "t=\t10", "t=\v20", "t=15"},
    {"a zero byte ends it", {"t"}, "t=10" + NUL + "5", "t=20\\u00005", "t=15"},
    {"a hexadecimal number is one", {"t"}, "t=0x10", "t=0x20", "t=24"},
    {"signs and points", {"t"}, "t=+.5", "t=-1.", "t=-0.25"},
    {"17 * 10^11 is no exact float", {"t"}, "t=17e11", "t=-1700000038912", "t=0"},
    {"nor is 16777217 / 10", {"t"}, "t=1677721.7", "t=-1677721.75", "t=0"},
    {"more digits than a float has", {"t"}, "t=16777217", "t=16777217", "t=1.67772e+07"},
    {"six digits are written", {"t"}, "t=1234567", "t=1234567", "t=1.23457e+06"},
    {"small numbers have an exponent", {"t"}, "t=0.00001", "t=0.00001", "t=1e-05"},
    {"which is read again", {"t"}, "t=1e-05", "t=1.5e+06", "t=750000"},
    {"other values are escaped again",
     {"t"},
     "t=1 v=\"\t\xC3 w=a=b",
     "t=3",
     "t=2 v=\\\"\\t\\uffc3 w=a=b"},
    {"and unescaped before", {"t"}, "t=1 v=\\u0020\\u0041\\'", "t=3", "t=2 v=\\u0020A'"},
    // KEPT(backslash-starts-over)
    {"a backslash starts a value over", {"t"}, "t=1 v=ab\\\\cd", "t=3", "t=2 v=\\\\cd"},
    {"blanks between pairs go", {"t"}, "  t=1   v=x\n", " t=3 ", "t=2 v=x"},
    // KEPT(first-value-wins)
    {"of two pairs the first stays", {"t"}, "t=1 v=x t=7 v=y", "t=3 t=9", "t=2 v=x"},
};

// Averages of t over times of any length.
struct DurationFact {
    char const* fact;
    std::string average;
    float averageDuration;
    std::string sample;
    float sampleDuration;
    std::string result;
    bool reported;
};

DurationFact const DURATION_FACTS[] = {
    {"times are weights", "t=10", 3, "t=20", 1, "t=12.5", false},
    {"the other way round", "t=10", 1, "t=20", 3, "t=17.5", false},
    {"long times", "t=21", 60, "t=24", 30, "t=22", false},
    {"in any unit", "t=10", 1e-30F, "t=20", 1e-30F, "t=15", false},
    {"a new average is the sample", "t=10", 0, "t=20", 1, "t=20", false},
    {"also of a negative zero", "t=10", -0.0F, "t=20", 1, "t=20", false},
    // KEPT(invalid-duration-goes-on)
    {"a sample of no time is invalid", "t=10.0", 1, "t=20", 0, "t=10", true},
    {"of negative time too", "t=10.0", 1, "t=20", -1, "t=10", true},
    {"of a negative zero", "t=10.0", 1, "t=20", -0.0F, "t=10", true},
    {"an average of negative time is", "t=10.0", -1, "t=20", 1, "t=10", true},
    {"be it ever so little", "t=10.0", -1e-30F, "t=20", 1, "t=10", true},
    {"both at once are one report", "t=10.0", -1, "t=20", -1, "t=10", true},
    {"other pairs are written again too", "v=\t t=10.0", 1, "t=20", 0, "t=10 v=\\t", true},
    {"and an unreadable average goes", "t=abc", 1, "t=20", 0, "t=20", true},
    {"no weight times infinity is NaN", "t=10", 1, "t=inf", 0, "t=nan", true},
    {"malformed texts are left then too", "t=10.0 x", 1, "t=20", 0, "t=10.0 x", true},
    // KEPT(nan-duration-is-silent)
    {"a time that is NaN makes NaN", "t=10 u=1", NOT_A_NUMBER, "t=20", 1, "t=nan u=1", false},
    {"the sample's too", "t=10 u=1", 1, "t=20", NOT_A_NUMBER, "t=nan u=1", false},
    {"both", "t=10 u=1", NOT_A_NUMBER, "t=20", NOT_A_NUMBER, "t=nan u=1", false},
    {"but no time is invalid beside it", "t=10.0", NOT_A_NUMBER, "t=20", 0, "t=10", true},
    {"and negative time", "t=10.0", -1, "t=20", NOT_A_NUMBER, "t=10", true},
    {"endless time divides to NaN", "t=10", INFINITE, "t=20", 1, "t=nan", false},
    {"an endless sample is all", "t=10", 1, "t=20", INFINITE, "t=20", false},
    {"every step is of single precision", "t=100000.3", 1, "t=-50000.1", 2, "t=0.0351562", false},
    {"the weights' division", "t=1e9", 0.1F, "t=-1e9", 0.1000001F, "t=-480", false},
    {"their difference", "t=0.1", 1, "t=12345678901234567890", 0.000001F, "t=1.17738e+13", false},
};

void expectAverage(Texts const& names, DurationFact const& row, std::string const& more) {
    takeReports();
    std::string average = row.average + more;
    averageNVP(names, average, row.averageDuration, row.sample, row.sampleDuration);
    if (!modelOfDeserialize(row.average) || !modelOfDeserialize(row.sample)) {
        EXPECT_EQ(row.result, row.average);
        EXPECT_EQ(average, row.result + more);
    } else {
        EXPECT_EQ(rawPairs(average), rawPairs(row.result + more));
    }
    EXPECT_EQ(takeReports(), std::vector<Report>(row.reported ? 1 : 0, INVALID_DURATION));
}

// Alone, and beside more pairs than a short text has.
void expectAverage(Texts const& names, DurationFact const& row) {
    std::string more;
    for (int i = 0; i < 40; ++i)
        more += " other" + std::to_string(i) + "=o";
    for (char const* const locale : {"C", "en_US.UTF-8"}) {
        SCOPED_TRACE(std::string(locale) + ": " + row.fact);
        ScopedLocale const scope(locale);
        expectAverage(names, row, "");
        bool const mayGoOn = !row.average.empty() && row.average.back() != '\n';
        if (mayGoOn) expectAverage(names, row, more);
    }
}

TEST(AverageNVP, MixesTheNumbersOfASample) {
    for (AverageFact const& row : AVERAGE_FACTS) {
        expectAverage(row.names, {row.fact, row.average, 1, row.sample, 1, row.result, false});
    }
}

TEST(AverageNVP, WeighsThemByTheirTimes) {
    for (DurationFact const& row : DURATION_FACTS)
        expectAverage({"t"}, row);
}

TEST(AverageNVP, ReadsAndWritesTheDecimalPointOfTheCLocale) {
    struct {
        char const* locale;
        char const* average;
        char const* sample;
        char const* result;
    } const rows[] = {
        {"C", "t=1.5", "t=2", "t=1.75"},
        {"C", "t=1,5", "t=2", "t=1.5"},
        {"de_DE.UTF-8", "t=1,5", "t=2", "t=1,75"},
        {"de_DE.UTF-8", "t=1.5", "t=2", "t=1,5"},
        {"fr_FR.ISO-8859-15", "t=1,5", "t=2,0", "t=1,75"},
        {"ps_AF.UTF-8", "t=1\xD9\2535", "t=2", "t=1\\uffd9\\uffab75"},
        {"ps_AF.UTF-8", "t=1.5", "t=2", "t=1\\uffd9\\uffab5"},
    };
    for (auto const& row : rows) {
        ScopedCLocale const c(row.locale);
        ScopedCppLocale const cpp("C");
        std::string average = row.average;
        averageNVP({"t"}, average, 1, row.sample, 1);
        EXPECT_EQ(average, row.result) << row.locale;
    }
    ScopedCLocale const c("C");
    ScopedCppLocale const cpp("de_DE.UTF-8");
    std::string average = "t=1.5";
    averageNVP({"t"}, average, 1, "t=2", 1);
    EXPECT_EQ(average, "t=1.75");
}

TEST(AverageNVP, MayBeGivenOneObjectForAll) {
    std::string both = "t=10.0 u=abc";
    averageNVP({"t", "u"}, both, 3, both, 1);
    EXPECT_EQ(rawPairs(both), rawPairs("t=10 u=abc"));

    std::string same = "t=10.0 u=1\\n";
    averageNVP({"t"}, same, 3, same, 1);
    EXPECT_EQ(rawPairs(same), rawPairs("t=10 u=1\\n"));

    Texts names = {"t", "t=10", "u"};
    averageNVP(names, names[1], 1, "t=20", 1);
    EXPECT_THAT(names, ElementsAre("t", "t=15", "u"));

    Texts list = {"a=1.0"};
    averageNVP(list, list[0], 1, list[0], 1);
    EXPECT_THAT(list, ElementsAre("a=1.0"));
}

TEST(AverageNVP, KeepsItsAverageWhereMemoryRunsOut) {
    std::string few = "temperature=10.00000000000000000001 pressure=1013.25 place=" + LONG_FIELD;
    std::string many = few;
    for (int i = 0; i < 50; ++i)
        many += " other" + std::to_string(i) + "=o";
    std::string const sample = "temperature=20.00000000000000000001 pressure=1000";
    for (std::string const& text : {few, many, few + " path=\\\\dir"}) {
        for (float const duration : {1.0F, 0.0F}) {
            Texts const names = {"temperature", "pressure"};
            std::string average = text;
            long failing = 0;
            while (
                failsWithout(failing, [&] { averageNVP(names, average, 1, sample, duration); })) {
                ASSERT_EQ(average, text);
                ++failing;
            }
            EXPECT_NE(average, text);
            EXPECT_GT(failing, 0);
        }
    }
    takeReports();
}

TEST(AverageNVP, AllocatesLittleForAFewNames) {
    ScopedCLocale const scope("C");
    Texts names;
    std::string average;
    std::string sample;
    for (int i = 0; i < 8; ++i) {
        names.push_back("value" + std::to_string(i));
        addToNVPString(average, names.back(), "10.125");
        addToNVPString(sample, names.back(), "20.5");
    }
    EXPECT_EQ(allocationsOf([&] { averageNVP(names, average, 3, sample, 1); }), 1);
    EXPECT_EQ(average.substr(0, 14), "value0=12.7188");
}

TEST(AverageNVP, LeavesErrnoAsItWas) {
    ScopedCLocale const scope("C");
    for (char const* const sample : {"t=1e39", "t=1e-40", "t=abc", "t=0x10", "t=5"}) {
        for (int const before : {0, ERANGE, E2BIG}) {
            std::string average = "t=1e99";
            errno = before;
            averageNVP({"t"}, average, 1, sample, 1);
            EXPECT_EQ(errno, before);
        }
    }
    errno = ERANGE;  // left behind by somebody else
    std::string average = "t=0x10";
    averageNVP({"t"}, average, 1, "t=0x20", 1);
    EXPECT_EQ(average, "t=24");
    errno = 0;
}

// ---- averageNVP against its model

class AnyTexts {
public:
    explicit AnyTexts(std::mt19937_64& engine) : engine_(engine) {}

    std::string name() {
        static Texts const names = {"t",         "u",        "tt",       "longname1", "longname2",
                                    "1longname", "exactly8", "exactly9", "a\tb"};
        return names[engine_() % names.size()];
    }

    std::string value() {
        static Texts const values = {"",
                                     "abc",
                                     "nan",
                                     "inf",
                                     "-inf",
                                     "1e39",
                                     "1e-40",
                                     "1e-50",
                                     "12kg",
                                     "0x1f",
                                     "1e5",
                                     "1e+05",
                                     "1e-05",
                                     "1E5",
                                     "1e",
                                     "+5",
                                     "-.5",
                                     "5.",
                                     ".",
                                     "-",
                                     "1,5",
                                     "16777216",
                                     "16777217",
                                     "0.1",
                                     "\t7",
                                     "\\u00207",
                                     "7\\n",
                                     "\\q7",
                                     "7\\\\8",
                                     "3\"4",
                                     "\xE9",
                                     "\xFF",
                                     "1e10",
                                     "1e-10",
                                     "123456789e-5",
                                     "0.000000001",
                                     "1.17549e-38",
                                     "1.4e-45",
                                     "340282356779733661637539395458142568447",
                                     "340282366920938463463374607431768211456",
                                     "99999999999999999999999999"};
        if (engine_() % 3 == 0) return values[engine_() % values.size()];
        std::array<char, 64> text;
        double const number =
            static_cast<double>(static_cast<long>(engine_() % 2'000'001) - 1'000'000) /
            std::pow(10, engine_() % 8);
        int const digits = static_cast<int>(engine_() % 12);
        std::snprintf(text.data(), text.size(), engine_() % 2 == 0 ? "%.*f" : "%.*g", digits,
                      number);
        return text.data();
    }

    std::string text() {
        std::string text(engine_() % 8 == 0 ? " \t" : "");
        std::size_t fields = engine_() % 8 == 0 ? engine_() % 100 : engine_() % 8;
        if (engine_() % 8 == 0) fields = 31 + engine_() % 4;
        for (; fields > 0; --fields) {
            if (engine_() % 1000 == 0) {
                text += engine_() % 2 == 0 ? "junk " : "=5 ";
            } else {
                bool const filler = engine_() % 4 == 0;
                text +=
                    (filler ? "f" + std::to_string(engine_() % 200) : name()) + "=" + value() + " ";
            }
            if (engine_() % 8 == 0) text += ' ';
        }
        if (!text.empty() && engine_() % 4 != 0) text.pop_back();
        return text;
    }

    float duration() {
        static float const durations[] = {
            0, -0.0F, 1, 3, 0.1F, 1e-30F, 1e30F, -1, 60, INFINITE, NOT_A_NUMBER, FLT_MAX, FLT_MIN};
        return durations[engine_() % std::size(durations)];
    }

    Texts names() {
        Texts names(engine_() % 6);
        for (std::string& each : names)
            each = name();
        return names;
    }

private:
    std::mt19937_64& engine_;
};

void expectModelOfAverage(AnyTexts& any) {
    Texts const names = any.names();
    std::string const before = any.text();
    std::string const sample = any.text();
    float const averageDuration = any.duration();
    float const sampleDuration = any.duration();
    std::string average = before;
    averageNVP(names, average, averageDuration, sample, sampleDuration);
    auto const expected = modelOfAverage(names, before, averageDuration, sample, sampleDuration);
    if (expected) {
        ASSERT_EQ(rawPairs(average), *expected) << before << '\n' << sample;
    } else {
        ASSERT_EQ(average, before) << sample;
    }
    ASSERT_EQ(takeReports().size(), sampleDuration <= 0 || averageDuration < 0 ? 1U : 0U);
}

TEST(AverageNVP, EqualsItsModelOnAnyTexts) {
    takeReports();
    std::mt19937_64 engine = randomEngine();
    AnyTexts any(engine);
    for (char const* const locale : {"C", "de_DE.UTF-8", "ps_AF.UTF-8", "fr_FR.ISO-8859-15"}) {
        ScopedCLocale const scope(locale);
        for (int i = 0; i < 6'000; ++i) {
            expectModelOfAverage(any);
            if (HasFatalFailure()) return;
        }
    }
    ScopedCLocale const scope("C");
    for (int const mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        ScopedRounding const rounding(mode);
        for (int i = 0; i < 3'000 && !HasFatalFailure(); ++i)
            expectModelOfAverage(any);
    }
}

}  // namespace
