#include <string>
#include <unordered_map>
#include <vector>

#include <utillibrary/utilities/StringNVP.h>

#include "input.h"
#include "support/pair_models.h"
#include "support/text_models.h"

using namespace com::halvorin::utilities;
using namespace testing_support;

namespace {

// The pairs of a text, values as they stand, and the sign of a NaN, which is the processor's, left out.
SortedMap rawPairs(std::string const& text) {
    SortedMap pairs;
    if (text.empty()) return pairs;
    for (std::string const& field : modelOfSplit(text, " ")) {
        std::size_t const equals = field.find('=');
        std::string const value = field.substr(equals + 1);
        pairs.emplace(field.substr(0, equals), value == "-nan" ? "nan" : value);
    }
    return pairs;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    auto const averageDuration = input.take<float>();
    auto const sampleDuration = input.take<float>();
    std::vector<std::string> names;
    split(names, input.takeLine(), ",");
    std::string const before = input.takeLine();
    std::string const sample = input.takeRest();

    std::unordered_map<std::string, std::string> pairs;
    bool const wellFormed = deserializeNVP(pairs, sample);
    auto const expectedPairs = modelOfDeserialize(sample);
    expectSame(wellFormed == expectedPairs.has_value(), "deserializeNVP's answer");
    SortedMap const sorted(pairs.begin(), pairs.end());
    expectSame(!wellFormed || sorted == *expectedPairs, "deserializeNVP");

    std::string average = before;
    averageNVP(names, average, averageDuration, sample, sampleDuration);
    auto const expected = modelOfAverage(names, before, averageDuration, sample, sampleDuration);
    expectSame(expected ? rawPairs(average) == *expected : average == before, "averageNVP");
    return 0;
}
