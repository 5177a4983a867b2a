#include <cmath>
#include <string>
#include <vector>

#include <utillibrary/utilities/StringNVP.h>

#include "input.h"
#include "support/pair_models.h"
#include "support/recorded_reports.h"
#include "support/text_models.h"

// A running average, and the report of a duration that cannot be used.

using namespace com::halvorin::utilities;
using namespace testing_support;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    auto const averageDuration = input.take<float>();
    auto const sampleDuration = input.take<float>();
    std::vector<std::string> const names = modelOfSplit(input.takeLine(), ",");
    std::string const before = input.takeLine();
    std::string const sample = input.takeRest();

    std::string average = before;
    averageNVP(names, average, averageDuration, sample, sampleDuration);
    auto const expected = modelOfAverage(names, before, averageDuration, sample, sampleDuration);
    expectSame(expected ? writtenPairs(average) == *expected : average == before, "averageNVP");

    std::vector<Report> reports;
    if (std::islessequal(sampleDuration, 0.0F) || std::isless(averageDuration, 0.0F)) {
        reports.push_back({"StringNVP::averageNVP", 3, "Invalid duration", 0});
    }
    expectSame(takeReports() == reports, "averageNVP's report");
    return 0;
}
