#include "support/pair_models.h"

#include <array>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "support/text_models.h"

namespace testing_support {

namespace {

std::optional<float> modelOfStof(std::string const& text) {
    char* end = nullptr;
    errno = 0;
    float const value = std::strtof(text.c_str(), &end);
    if (end == text.c_str() || errno == ERANGE || std::isnan(value)) return std::nullopt;
    return value;
}

}  // namespace

std::optional<SortedMap> modelOfDeserialize(std::string const& text) {
    SortedMap map;
    bool wellFormed = true;
    for (std::string const& field : modelOfSplit(modelOfTrim(text), " ")) {
        std::size_t const equals = field.find('=');
        if (equals == std::string::npos || equals == 0) {
            wellFormed = false;
        } else {
            map.emplace(field.substr(0, equals), modelOfUnescape(field.substr(equals + 1)));
        }
    }
    if (!wellFormed) return std::nullopt;
    return map;
}

std::optional<SortedMap> modelOfAverage(std::vector<std::string> const& names,
                                        std::string const& average, float averageDuration,
                                        std::string const& sample, float sampleDuration) {
    // Volatile, so that the compiler does each step separately and in this order.
    float volatile weight = 1;
    float volatile sampleWeight = 0;
    // These comparisons raise no flag for NaN, unlike <= and <.
    if (!std::islessequal(sampleDuration, 0.0F) && !std::isless(averageDuration, 0.0F)) {
        float const volatile sum = averageDuration + sampleDuration;
        weight = averageDuration / sum;
        sampleWeight = 1 - weight;
    }
    std::optional<SortedMap> const samples = modelOfDeserialize(sample);
    std::optional<SortedMap> averages = modelOfDeserialize(average);
    if (!samples || !averages) return std::nullopt;
    for (std::string const& name : names) {
        if (!samples->contains(name) || !averages->contains(name)) continue;
        std::optional<float> const number = modelOfStof(samples->at(name));
        if (!number) continue;
        std::optional<float> const old = modelOfStof(averages->at(name));
        float value = *number;
        if (old) {
            float const volatile oldPart = *old * weight;
            float const volatile newPart = *number * sampleWeight;
            float const volatile sum = oldPart + newPart;
            value = sum;
        }
        std::array<char, 32> text;
        std::snprintf(text.data(), text.size(), "%g", static_cast<double>(value));
        (*averages)[name] = text.data();
    }
    for (auto& [name, value] : *averages) {
        value = modelOfEscape(value, false);
        if (value == "-nan") value = "nan";
    }
    return averages;
}

SortedMap writtenPairs(std::string const& text) {
    SortedMap pairs;
    if (text.empty()) return pairs;
    for (std::string const& field : modelOfSplit(text, " ")) {
        std::size_t const equals = field.find('=');
        std::string const value = equals == std::string::npos ? "" : field.substr(equals + 1);
        pairs.emplace(field.substr(0, equals), value == "-nan" ? "nan" : value);
    }
    return pairs;
}

}  // namespace testing_support
