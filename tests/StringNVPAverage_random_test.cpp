#include <array>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <utillibrary/utilities/StringNVP.h>

#include "support/locales.h"
#include "support/pair_models.h"
#include "support/random.h"
#include "support/recorded_reports.h"
#include "support/rounding_words.h"

using namespace com::halvorin::utilities;
using namespace testing_support;

namespace {

using Strings = std::vector<std::string>;

float const NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
float const INFINITE = std::numeric_limits<float>::infinity();

class AnyInput {
public:
    explicit AnyInput(std::mt19937_64& engine) : engine_(engine) {}

    std::string name() {
        static Strings const names = {"t",         "u",        "tt",       "longname1", "longname2",
                                      "1longname", "exactly8", "exactly9", "a\tb"};
        return names[engine_() % names.size()];
    }

    std::string value() {
        static Strings const values = {"",
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

    Strings names() {
        Strings names(engine_() % 6);
        for (std::string& each : names)
            each = name();
        return names;
    }

private:
    std::mt19937_64& engine_;
};

void expectModelOfAverage(AnyInput& any) {
    Strings const names = any.names();
    std::string const before = any.text();
    std::string const sample = any.text();
    float const averageDuration = any.duration();
    float const sampleDuration = any.duration();
    std::string average = before;
    averageNVP(names, average, averageDuration, sample, sampleDuration);
    auto const expected = modelOfAverage(names, before, averageDuration, sample, sampleDuration);
    if (expected) {
        ASSERT_EQ(writtenPairs(average), *expected) << before << '\n' << sample;
    } else {
        ASSERT_EQ(average, before) << sample;
    }
    ASSERT_EQ(takeReports().size(), sampleDuration <= 0 || averageDuration < 0 ? 1U : 0U);
}

TEST(AverageNVPRandom, EqualsItsModel) {
    takeReports();
    std::mt19937_64 engine = randomEngine();
    AnyInput any(engine);
    for (char const* const locale : {"C", "de_DE.UTF-8", "ps_AF.UTF-8", "fr_FR.ISO-8859-15"}) {
        ScopedCLocale const scope(locale);
        for (int i = 0; i < 6'000; ++i) {
            expectModelOfAverage(any);
            if (HasFatalFailure()) return;
        }
    }
}

// strtof and "%g" obey one rounding word, float arithmetic obeys the other.
TEST(AverageNVPRandom, EqualsItsModelInEveryStateOfTheRoundingWords) {
    takeReports();
    ScopedCLocale const scope("C");
    std::mt19937_64 engine = randomEngine();
    AnyInput any(engine);
    for (RoundingWords const& words : allRoundingWords()) {
        SCOPED_TRACE(testing::PrintToString(words));
        ScopedRoundingWords const rounding(words);
        for (int i = 0; i < 2'000; ++i) {
            expectModelOfAverage(any);
            if (HasFatalFailure()) return;
        }
    }
}

TEST(AverageNVPRandom, RaisesNoFlagThatItsModelDoesNotRaise) {
    takeReports();
    ScopedCLocale const scope("C");
    std::mt19937_64 engine = randomEngine();
    AnyInput any(engine);
    for (RoundingWords const& words : allRoundingWords()) {
        SCOPED_TRACE(testing::PrintToString(words));
        ScopedRoundingWords const rounding(words);
        for (int i = 0; i < 1'000; ++i) {
            Strings const names = any.names();
            std::string const before = any.text();
            std::string const sample = any.text();
            float const averageDuration = any.duration();
            float const sampleDuration = any.duration();
            std::string average = before;
            int const expected = flagsRaisedBy(
                [&] { modelOfAverage(names, before, averageDuration, sample, sampleDuration); });
            int const raised = flagsRaisedBy(
                [&] { averageNVP(names, average, averageDuration, sample, sampleDuration); });
            ASSERT_EQ(raised & ~expected, 0) << before << '\n' << sample;
        }
    }
}

}  // namespace
