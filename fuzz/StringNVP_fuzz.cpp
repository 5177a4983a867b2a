#include <string>
#include <unordered_map>
#include <vector>

#include <utillibrary/utilities/StringNVP.h>

#include "input.h"
#include "support/pair_models.h"
#include "support/text_models.h"

using namespace com::halvorin::utilities;
using namespace testing_support;

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
    expectSame(expected ? writtenPairs(average) == *expected : average == before, "averageNVP");
    return 0;
}
