#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <map>
#include <utility>

#include "utillibrary/application/ORUsyslog.h"
#include "utillibrary/internal/attributes.h"
#include "utillibrary/internal/plain_number.h"
#include "utillibrary/internal/result_codes.h"
#include "utillibrary/utilities/StringNVP.h"
#include "utillibrary/utilities/StringNVPAverage_internal.h"
#include "utillibrary/utilities/StringNVPTable_internal.h"

// The running average of name-value pairs. StringNVP.cpp reads and writes the pairs.
namespace com::halvorin::internal {

namespace {

using utilities::deserializeNVP;
using utilities::serializeNVP;
using utilities::to_string;
using utilities::unescapeString;

// ---- numbers

// KEPT(unreadable-values-are-silent): NaN stands in for each value that is not a number, and is
// never mixed in.
bool isReadable(float number) noexcept { return !std::isnan(number); }

float mixed(float average, float sample, Weights weights) noexcept {
    if (!isReadable(average)) return sample;
    return average * weights.average + sample * weights.sample;
}

// A value that is still escaped, as a number.
float readEscaped(std::string_view value, NumberRules const& rules) {
    // A plain number contains no backslash: unescaping would not change it.
    auto const plain = readPlain<float>(value, [&rules] { return rules.decimalPoint; });
    return plain ? *plain : readFloatGeneral(unescapeString(std::string(value)));
}

}  // namespace

float readFloatGeneral(std::string const& value) noexcept {
    int const before = std::exchange(errno, 0);
    char* end = nullptr;
    float const number = std::strtof(value.c_str(), &end);
    bool const refused = end == value.c_str() || errno == ERANGE;
    errno = before;
    return refused ? std::numeric_limits<float>::quiet_NaN() : number;
}

// ---- the average

Averaged averageGeneral(std::vector<std::string> const& names, std::string const& average,
                        std::string const& sample, Weights weights) {
    std::map<std::string, std::string> samples;
    std::map<std::string, std::string> averages;
    if (!deserializeNVP(samples, sample) || !deserializeNVP(averages, average)) return {};
    // KEPT(listed-twice-averaged-twice): no name of the list is skipped.
    for (std::string const& name : names) {
        auto const sampled = samples.find(name);
        auto const averaged = averages.find(name);
        // KEPT(averaging-adds-no-name): a name that only the sample has takes no part.
        if (sampled == samples.end() || averaged == averages.end()) continue;
        float const number = readFloatGeneral(sampled->second);
        if (!isReadable(number)) continue;
        averaged->second =
            to_string(mixed(readFloatGeneral(averaged->second), number, weights), "%g");
    }
    Averaged result{true, {}};
    serializeNVP(result.pairs, averages);
    return result;
}

std::optional<Averaged> averageByTable(std::vector<std::string> const& names,
                                       std::string const& average, std::string const& sample,
                                       Weights weights) {
    UTILLIBRARY_UNINITIALIZED PairTable samples;
    UTILLIBRARY_UNINITIALIZED PairTable averages;
    auto const sampleIsWellFormed = samples.read(sample);
    auto const averageIsWellFormed = averages.read(average);
    if (!sampleIsWellFormed || !averageIsWellFormed) return std::nullopt;
    if (!*sampleIsWellFormed || !*averageIsWellFormed) return Averaged{};

    NumberRules const rules;
    for (std::string const& name : names) {
        auto const* const sampled = samples.find(name);
        auto* const averaged = averages.find(name);
        if (sampled == nullptr || averaged == nullptr) continue;
        float const number = readEscaped(sampled->value, rules);
        if (!isReadable(number)) continue;
        // A number that is mixed again counts as its six digits.
        float const old = averaged->number
                              ? readEscaped(NumberText(*averaged->number, rules).view(), rules)
                              : readEscaped(averaged->value, rules);
        averaged->number = mixed(old, number, weights);
    }
    return Averaged{true, averages.written(rules)};
}

}  // namespace com::halvorin::internal

namespace com::halvorin::utilities {

namespace {

using namespace com::halvorin::internal;

Weights weightsOf(float averageDuration, float sampleDuration) {
    // KEPT(nan-duration-is-silent): both comparisons are false for NaN. These two functions raise
    // no floating-point exception for it, unlike <= and <.
    if (std::islessequal(sampleDuration, 0.0F) || std::isless(averageDuration, 0.0F)) {
        application::oru::writelog(NVP_AVERAGE, LEVEL_ERROR, INVALID_DURATION, NO_CODE);
        return {1, 0};  // KEPT(invalid-duration-goes-on): `averageNVP` does not return here
    }
    float const average = averageDuration / (averageDuration + sampleDuration);
    return {average, 1 - average};
}

}  // namespace

void averageNVP(std::vector<std::string> const& names, std::string& average, float averageDuration,
                std::string const& sample, float sampleDuration) {
    Weights const weights = weightsOf(averageDuration, sampleDuration);
    std::optional<Averaged> fast = averageByTable(names, average, sample, weights);
    Averaged result = fast ? *std::move(fast) : averageGeneral(names, average, sample, weights);
    if (result.wellFormed) average.swap(result.pairs);
}

}  // namespace com::halvorin::utilities
