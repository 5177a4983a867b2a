#include <algorithm>
#include <cerrno>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "utillibrary/utilities/StringNVPAverage_internal.h"
#include "utillibrary/utilities/StringNVPTable_internal.h"
#include <utillibrary/utilities/StringNVP.h>

#include "support/locales.h"
#include "support/pair_models.h"
#include "support/recorded_reports.h"

// Long, because one table of facts runs through averageNVP, its general path and its fast path.

using namespace com::halvorin::internal;
using namespace com::halvorin::utilities;
using namespace testing_support;
using testing::ElementsAre;

namespace {

using Strings = std::vector<std::string>;

std::string const NUL(1, '\0');

// The mean of 0 and 1.17549435e-38. This number is just below the least normal float, and is
// rounded up to it. glibc then reports a range error if the processor looks for underflow before it
// rounds.
#ifdef __x86_64__
char const* const HALF_OF_LEAST_NORMAL = "t=5.87747e-39";
#else
char const* const HALF_OF_LEAST_NORMAL = "t=0";  // aarch64 looks before
#endif
float const NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
float const INFINITE = std::numeric_limits<float>::infinity();
Report const INVALID_DURATION = {"StringNVP::averageNVP", 3, "Invalid duration", 0};

// Averages over equal durations.
struct AverageFact {
    char const* fact;
    Strings names;
    std::string average;
    std::string sample;
    std::string result;  // in any order
};

AverageFact const AVERAGE_FACTS[] = {
    {"equal weights give the mean of two numbers", {"t"}, "t=10", "t=20", "t=15"},
    {"each listed name is averaged", {"t", "u"}, "t=1 u=2", "t=3 u=4", "t=2 u=3"},
    {"a pair that is not listed stays", {"t", "u"}, "t=1 u=2 v=x", "t=3", "t=2 u=2 v=x"},
    {"a pair that is not listed stays though the sample has it",
     {"t"},
     "t=1 u=2",
     "t=3 u=4",
     "t=2 u=2"},
    // KEPT(averaging-adds-no-name)
    {"a name that only the sample has is not added", {"t", "u"}, "t=1", "t=3 u=4", "t=2"},
    {"an empty list of names changes no value", {}, "t=1.50", "t=3", "t=1.50"},
    {"a listed name that neither string has changes nothing", {"x", ""}, "t=1.50", "t=3", "t=1.50"},
    // KEPT(listed-twice-averaged-twice)
    {"a name that is listed twice is averaged twice", {"t", "t"}, "t=0", "t=8", "t=6"},
    {"the second average of a name starts from the six digits of the first",
     {"t", "t"},
     "t=1234567",
     "t=1234567",
     "t=1.23457e+06"},
    {"two names of eight bytes that differ in their first byte are two names",
     {"1name678", "2name678"},
     "1name678=1 2name678=9",
     "2name678=3 1name678=5",
     "1name678=3 2name678=6"},
    {"two names of nine bytes that differ in their first byte are two names",
     {"1name6789", "2name6789"},
     "1name6789=1 2name6789=9",
     "2name6789=3 1name6789=5",
     "1name6789=3 2name6789=6"},
    {"two names that differ in their last byte are two names",
     {"longname1", "longname2"},
     "longname1=1 longname2=9",
     "longname2=3 longname1=5",
     "longname1=3 longname2=6"},
    {"names of one, eight and nine equal bytes are three names",
     {"a", "aaaaaaaa", "aaaaaaaaa"},
     "a=1 aaaaaaaaa=2 aaaaaaaa=3",
     "a=3 aaaaaaaa=5 aaaaaaaaa=4",
     "a=2 aaaaaaaaa=3 aaaaaaaa=4"},
    // KEPT(empty-text-is-malformed)
    {"an empty average stays empty", {"t"}, "", "t=20", ""},
    {"an average with a malformed field is unchanged", {"t"}, "t=10.0 x", "t=20", "t=10.0 x"},
    {"a sample with a malformed field leaves the average unchanged",
     {"t"},
     "t=10.0",
     "t=20 x",
     "t=10.0"},
    {"an empty sample leaves the average unchanged", {"t"}, "t=10.0", "", "t=10.0"},
    // KEPT(unreadable-values-are-silent)
    {"a sample value without a number is ignored", {"t"}, "t=5.0", "t=abc", "t=5.0"},
    {"an empty sample value is ignored", {"t"}, "t=5.0", "t=", "t=5.0"},
    {"a sample value that is NaN is ignored", {"t"}, "t=5.0", "t=nan", "t=5.0"},
    {"a sample value too large for a float is ignored", {"t"}, "t=5.0", "t=1e39", "t=5.0"},
    {"3.40282e38 is not too large for a float", {"t"}, "t=0", "t=3.40282e38", "t=1.70141e+38"},
    {"3.40282356e38 is not too large for a float",
     {"t"},
     "t=0",
     "t=3.40282356e38",
     "t=1.70141e+38"},
    {"a sample value that would round to 2^128 is ignored",
     {"t"},
     "t=5.0",
     "t=3.40282357e38",
     "t=5.0"},
    {"a sample value that loses digits as a subnormal float is ignored",
     {"t"},
     "t=5.0",
     "t=1e-40",
     "t=5.0"},
    {"a sample value that is exactly a subnormal float counts", {"t"}, "t=10", "t=0x1p-149", "t=5"},
    {"1.17550e-38 is not subnormal", {"t"}, "t=0", "t=1.17550e-38", "t=5.8775e-39"},
    {"1.17549435e-38 counts unless strtof reports a range error",
     {"t"},
     "t=0",
     "t=1.17549435e-38",
     HALF_OF_LEAST_NORMAL},
    {"a sample value that is rounded up to the least normal float is ignored",
     {"t"},
     "t=5.0",
     "t=1.1754943e-38",
     "t=5.0"},
    {"a sample value that rounds to zero is ignored", {"t"}, "t=5.0", "t=1e-60", "t=5.0"},
    {"the name after an ignored sample value is averaged",
     {"t", "u"},
     "t=5.0 u=1",
     "t=abc u=3",
     "t=5.0 u=2"},
    // KEPT(unreadable-values-are-silent)
    {"an average value without a number is replaced by the sample value",
     {"t"},
     "t=abc",
     "t=20",
     "t=20"},
    {"an empty average value is replaced by the sample value", {"t"}, "t=", "t=20", "t=20"},
    {"an average value that is NaN is replaced by the sample value",
     {"t"},
     "t=nan",
     "t=20",
     "t=20"},
    {"an average value too large for a float is replaced by the sample value",
     {"t"},
     "t=1e39",
     "t=20",
     "t=20"},
    {"an average value that loses digits as a subnormal float is replaced",
     {"t"},
     "t=1e-40",
     "t=20",
     "t=20"},
    {"infinity in the sample counts as a number", {"t"}, "t=1", "t=inf", "t=inf"},
    {"negative infinity in the average counts as a number", {"t"}, "t=-inf", "t=1", "t=-inf"},
    {"the mean of the two infinities is NaN", {"t"}, "t=-inf", "t=inf", "t=nan"},
    {"bytes after a number are ignored", {"t"}, "t=10kg", "t=20x", "t=15"},
    {"an escaped space ends a number", {"t"}, "t=10\\u0020kg", "t=20\\u0020kg", "t=15"},
    {"escaped whitespace before a number is ignored", {"t"}, "t=\\u002010", "t=\\t20", "t=15"},
    {"whitespace before a number is ignored", {"t"}, "t=\t10", "t=\v20", "t=15"},
    {"a zero byte ends a number", {"t"}, "t=10" + NUL + "5", "t=20\\u00005", "t=15"},
    {"a hexadecimal number counts", {"t"}, "t=0x10", "t=0x20", "t=24"},
    {"a number may have a sign, and no digits on one side of its point",
     {"t"},
     "t=+.5",
     "t=-1.",
     "t=-0.25"},
    {"17e11 is rounded to the nearest float, -1700000038912 is one",
     {"t"},
     "t=17e11",
     "t=-1700000038912",
     "t=0"},
    {"1677721.7 is rounded to the nearest float, -1677721.75 is one",
     {"t"},
     "t=1677721.7",
     "t=-1677721.75",
     "t=0"},
    {"16777217 is rounded to the nearest float",
     {"t"},
     "t=16777217",
     "t=16777217",
     "t=1.67772e+07"},
    {"a new value has six digits", {"t"}, "t=1234567", "t=1234567", "t=1.23457e+06"},
    {"a new value below 0.0001 has an exponent", {"t"}, "t=0.00001", "t=0.00001", "t=1e-05"},
    {"a number with an exponent is read", {"t"}, "t=1e-05", "t=1.5e+06", "t=750000"},
    {"a pair that is not listed is escaped again",
     {"t"},
     "t=1 v=\"\t\xC3 w=a=b",
     "t=3",
     "t=2 v=\\\"\\t\\uffc3 w=a=b"},
    {"a pair that is not listed is unescaped before it is escaped",
     {"t"},
     "t=1 v=\\u0020\\u0041\\'",
     "t=3",
     "t=2 v=\\u0020A'"},
    // KEPT(backslash-starts-over)
    {"a backslash in a pair that is not listed drops what comes before it",
     {"t"},
     "t=1 v=ab\\\\cd",
     "t=3",
     "t=2 v=\\\\cd"},
    {"extra spaces between pairs are dropped", {"t"}, "  t=1   v=x\n", " t=3 ", "t=2 v=x"},
    // KEPT(first-value-wins)
    {"the first value of a name stays, with and without averaging",
     {"t"},
     "t=1 v=x t=7 v=y",
     "t=3 t=9",
     "t=2 v=x"},
};

// Averages of t over any durations.
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
    {"the durations are the weights", "t=10", 3, "t=20", 1, "t=12.5", false},
    {"a longer sample weighs more", "t=10", 1, "t=20", 3, "t=17.5", false},
    {"durations of 60 and 30 weigh two to one", "t=21", 60, "t=24", 30, "t=22", false},
    {"tiny equal durations give the mean", "t=10", 1e-30F, "t=20", 1e-30F, "t=15", false},
    {"an average of no duration gives the sample", "t=10", 0, "t=20", 1, "t=20", false},
    {"an average of the duration -0 gives the sample, without a report", "t=10", -0.0F, "t=20", 1,
     "t=20", false},
    // KEPT(invalid-duration-goes-on)
    {"a sample of no duration is reported and weighs nothing", "t=10.0", 1, "t=20", 0, "t=10",
     true},
    {"a sample of negative duration is reported", "t=10.0", 1, "t=20", -1, "t=10", true},
    {"a sample of the duration -0 is reported", "t=10.0", 1, "t=20", -0.0F, "t=10", true},
    {"an average of negative duration is reported", "t=10.0", -1, "t=20", 1, "t=10", true},
    {"an average of the duration -1e-30 is reported", "t=10.0", -1e-30F, "t=20", 1, "t=10", true},
    {"two invalid durations are one report", "t=10.0", -1, "t=20", -1, "t=10", true},
    {"an invalid duration still rewrites the pairs that are not listed", "v=\t t=10.0", 1, "t=20",
     0, "t=10 v=\\t", true},
    {"an invalid duration still replaces an average value without a number", "t=abc", 1, "t=20", 0,
     "t=20", true},
    {"weight 0 times infinity gives NaN after a report", "t=10", 1, "t=inf", 0, "t=nan", true},
    {"a malformed average is unchanged after a report", "t=10.0 x", 1, "t=20", 0, "t=10.0 x", true},
    // KEPT(nan-duration-is-silent)
    {"an average of NaN duration gives NaN without a report", "t=10 u=1", NOT_A_NUMBER, "t=20", 1,
     "t=nan u=1", false},
    {"a sample of NaN duration gives NaN without a report", "t=10 u=1", 1, "t=20", NOT_A_NUMBER,
     "t=nan u=1", false},
    {"two NaN durations give NaN without a report", "t=10 u=1", NOT_A_NUMBER, "t=20", NOT_A_NUMBER,
     "t=nan u=1", false},
    {"a sample of no duration is reported beside a NaN duration", "t=10.0", NOT_A_NUMBER, "t=20", 0,
     "t=10", true},
    {"an average of negative duration is reported beside a NaN duration", "t=10.0", -1, "t=20",
     NOT_A_NUMBER, "t=10", true},
    {"an average of infinite duration gives NaN", "t=10", INFINITE, "t=20", 1, "t=nan", false},
    {"a sample of infinite duration gives the sample", "t=10", 1, "t=20", INFINITE, "t=20", false},
    {"the mean is computed in single precision", "t=100000.3", 1, "t=-50000.1", 2, "t=0.0351562",
     false},
    {"the weight of the average is computed in single precision", "t=1e9", 0.1F, "t=-1e9",
     0.1000001F, "t=-480", false},
    {"the weight of the sample is computed in single precision", "t=0.1", 1,
     "t=12345678901234567890", 0.000001F, "t=1.17738e+13", false},
};

bool isWellFormed(std::string const& text) { return modelOfDeserialize(text).has_value(); }

// 40 more pairs than a table searches without places, or nothing where they would change the
// string.
std::string morePairs(std::string const& average) {
    std::string more;
    if (average.empty() || average.back() == '\n') return more;
    for (int i = 0; i < 40; ++i)
        more += " other" + std::to_string(i) + "=o";
    return more;
}

void expectAverage(Strings const& names, DurationFact const& row, std::string const& more) {
    takeReports();
    std::string average = row.average + more;
    averageNVP(names, average, row.averageDuration, row.sample, row.sampleDuration);
    if (isWellFormed(row.average) && isWellFormed(row.sample)) {
        EXPECT_EQ(writtenPairs(average), writtenPairs(row.result + more));
    } else {
        EXPECT_EQ(row.result, row.average);
        EXPECT_EQ(average, row.result + more);
    }
    EXPECT_EQ(takeReports(), std::vector<Report>(row.reported ? 1 : 0, INVALID_DURATION));
}

void expectAverage(Strings const& names, DurationFact const& row) {
    for (char const* const locale : {"C", "en_US.UTF-8"}) {
        SCOPED_TRACE(std::string(locale) + ": " + row.fact);
        ScopedLocale const scope(locale);
        expectAverage(names, row, "");
        expectAverage(names, row, morePairs(row.average));
    }
}

TEST(AverageNVP, MixesTheNumbersOfASample) {
    for (AverageFact const& row : AVERAGE_FACTS) {
        expectAverage(row.names, {row.fact, row.average, 1, row.sample, 1, row.result, false});
    }
}

TEST(AverageNVP, WeighsThemByTheirDurations) {
    for (DurationFact const& row : DURATION_FACTS)
        expectAverage({"t"}, row);
}

// ---- the two paths

constexpr Weights EQUAL = {0.5F, 0.5F};

void expectResult(Averaged const& averaged, AverageFact const& row, std::string const& more) {
    bool const wellFormed = isWellFormed(row.average) && isWellFormed(row.sample);
    EXPECT_EQ(averaged.wellFormed, wellFormed);
    if (wellFormed) {
        EXPECT_EQ(writtenPairs(averaged.pairs), writtenPairs(row.result + more));
    } else {
        EXPECT_EQ(averaged.pairs, "");
    }
}

TEST(AveragePaths, GiveTheSameForEveryRow) {
    for (char const* const locale : {"C", "en_US.UTF-8"}) {
        ScopedLocale const scope(locale);
        for (AverageFact const& row : AVERAGE_FACTS) {
            SCOPED_TRACE(row.fact);
            for (std::string const& more : {std::string(), morePairs(row.average)}) {
                std::string const average = row.average + more;
                expectResult(averageGeneral(row.names, average, row.sample, EQUAL), row, more);
                auto const fast = averageByTable(row.names, average, row.sample, EQUAL);
                ASSERT_TRUE(fast.has_value());
                expectResult(*fast, row, more);
            }
        }
    }
}

TEST(AveragePaths, TheFastOneKeepsTheOrderOfTheAverage) {
    auto const fast = averageByTable({"b", "a"}, "c=x b=1 a=2", "a=4 b=3", EQUAL);
    ASSERT_TRUE(fast.has_value());
    EXPECT_EQ(fast->pairs, "c=x b=2 a=3");
    EXPECT_EQ(averageGeneral({"b", "a"}, "c=x b=1 a=2", "a=4 b=3", EQUAL).pairs, "a=3 b=2 c=x");
}

struct Strung {
    Strings names;
    std::string pairs;
};

Strung numbered(std::vector<std::string> names) {
    Strung result;
    for (std::size_t i = 0; i < names.size(); ++i)
        addToNVPString(result.pairs, names[i], std::to_string(i));
    result.names = std::move(names);
    return result;
}

// Names whose hashes have the same 12 low bits, so that they collide in tables of up to 4096
// places.
Strings collidingNames(std::size_t count) {
    Strings names;
    for (int i = 0; names.size() < count; ++i) {
        std::string name = "n" + std::to_string(i);
        if (PairTable::hashOf(name) % 4096 == 0) names.push_back(name);
    }
    return names;
}

Strings differentNames(int count) {
    Strings names;
    for (int i = 0; i < count; ++i)
        names.push_back("value" + std::to_string(i));
    return names;
}

// Averages zeros, which do not count, with the pairs: the result is the pairs if every name was
// found. A name that does not follow the one before it is found by its hash.
void expectEachNameFound(Strung const& strung) {
    auto const pairs = modelOfDeserialize(strung.pairs);
    ASSERT_TRUE(pairs.has_value());
    std::string zeros;
    for (auto const& [name, value] : *pairs)
        addToNVPString(zeros, name, "0");
    Strings const reversed(strung.names.rbegin(), strung.names.rend());
    for (Strings const& names : {strung.names, reversed}) {
        std::string average = zeros;
        averageNVP(names, average, 0, strung.pairs, 1);
        EXPECT_EQ(writtenPairs(average), writtenPairs(strung.pairs));
    }
}

TEST(AveragePaths, TheFastOneAnswersForAnyNumberOfNames) {
    // Below, at and above the numbers of pairs at which a table changes.
    for (int const count : {1, 7, 8, 9, 31, 32, 33, 63, 64, 65, 128, 129, 10'000}) {
        Strung const strung = numbered(differentNames(count));
        EXPECT_TRUE(averageByTable(strung.names, strung.pairs, strung.pairs, EQUAL)) << count;
        expectEachNameFound(strung);
    }
}

// A hash takes eight bytes at a time.
TEST(AveragePaths, TheFastOneFindsNamesOfEachSize) {
    Strings names;
    for (std::size_t size = 1; size <= 40; ++size) {
        names.insert(names.begin(), std::string(size, 'n'));
        names.push_back('m' + std::string(size, 'n'));
    }
    Strung const strung = numbered(names);
    EXPECT_TRUE(averageByTable(strung.names, strung.pairs, strung.pairs, EQUAL));
    expectEachNameFound(strung);
}

TEST(AveragePaths, TheFastOneDeclinesManyNamesThatCollide) {
    // 129 places are near enough for 129 names.
    for (std::size_t const count : {9U, 128U, 129U}) {
        Strung const strung = numbered(collidingNames(count));
        EXPECT_TRUE(averageByTable(strung.names, strung.pairs, strung.pairs, EQUAL)) << count;
        expectEachNameFound(strung);
    }
    Strings const names = collidingNames(400);
    for (std::size_t const count : {130U, 256U, 257U, 400U}) {
        Strung const strung =
            numbered(Strings(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(count)));
        EXPECT_FALSE(averageByTable(strung.names, strung.pairs, strung.pairs, EQUAL)) << count;
        EXPECT_FALSE(averageByTable(strung.names, strung.pairs, "a=1", EQUAL)) << count;
        EXPECT_FALSE(averageByTable(strung.names, "a=1", strung.pairs, EQUAL)) << count;
        expectEachNameFound(strung);
    }
}

// The hash is of the first eight bytes, combined with the size: 7 XOR 'A' is 8 XOR 'N'.
TEST(AveragePaths, TellNamesOfEqualHashesApart) {
    std::string const seven = "Abcdefg";
    std::string const eight("Nbcdefg\0", 8);
    ASSERT_EQ(PairTable::hashOf(seven), PairTable::hashOf(eight));
    for (int const others : {0, 20}) {
        Strings names = differentNames(others);
        names.insert(names.end(), {seven, eight});
        Strung const strung = numbered(names);
        auto const fast = averageByTable(strung.names, strung.pairs, strung.pairs, EQUAL);
        ASSERT_TRUE(fast.has_value());
        EXPECT_EQ(fast->pairs, strung.pairs) << others;
        expectEachNameFound(strung);
    }
}

TEST(AveragePaths, TheFastOneDeclinesAsATableDoubles) {
    // The 257th pair doubles the places; it is the 130th name that collides.
    Strings const colliding = collidingNames(130);
    Strings names(colliding.begin(), colliding.begin() + 129);
    for (std::string const& name : differentNames(1000)) {
        bool const isFar = PairTable::hashOf(name) % 256 >= 140;
        if (isFar && names.size() < 256) names.push_back(name);
    }
    ASSERT_EQ(names.size(), 256U);
    Strung const fitting = numbered(names);
    EXPECT_TRUE(averageByTable(fitting.names, fitting.pairs, fitting.pairs, EQUAL));
    names.push_back(colliding.back());
    Strung const strung = numbered(names);
    EXPECT_FALSE(averageByTable(strung.names, strung.pairs, strung.pairs, EQUAL));
    expectEachNameFound(strung);
}

TEST(AveragePaths, FindNamesInAnyOrder) {
    for (int const count : {8, 20, 200}) {
        Strung const strung = numbered(differentNames(count));
        expectEachNameFound(strung);
        Strings twice = strung.names;
        twice.insert(twice.end(), strung.names.begin(), strung.names.end());
        twice.push_back("unknown");
        twice.push_back(strung.names.back());
        expectEachNameFound({twice, strung.pairs});
    }
}

// ---- what surrounds a call

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
    EXPECT_EQ(writtenPairs(both), writtenPairs("t=10 u=abc"));

    std::string same = "t=10.0 u=1\\n";
    averageNVP({"t"}, same, 3, same, 1);
    EXPECT_EQ(writtenPairs(same), writtenPairs("t=10 u=1\\n"));

    Strings names = {"t", "t=10", "u"};
    averageNVP(names, names[1], 1, "t=20", 1);
    EXPECT_THAT(names, ElementsAre("t", "t=15", "u"));

    Strings list = {"a=1.0"};
    averageNVP(list, list[0], 1, list[0], 1);
    EXPECT_THAT(list, ElementsAre("a=1.0"));
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
    errno = ERANGE;  // from an earlier call
    std::string average = "t=0x10";
    averageNVP({"t"}, average, 1, "t=0x20", 1);
    EXPECT_EQ(average, "t=24");
    errno = 0;
}

}  // namespace
