#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

// Name-value pairs in the plainest code: sorted maps, strtof and snprintf. Tests compare the
// library with these models.
namespace testing_support {

using SortedMap = std::map<std::string, std::string>;

/// The pairs of a string. Nothing if a field is malformed.
std::optional<SortedMap> modelOfDeserialize(std::string const& text);

/// The pairs of the new average, as `writtenPairs` reads them. Nothing if the average is
/// unchanged.
std::optional<SortedMap> modelOfAverage(std::vector<std::string> const& names,
                                        std::string const& average, float averageDuration,
                                        std::string const& sample, float sampleDuration);

/// The pairs of a string that `serializeNVP` wrote, values still escaped. "-nan" becomes "nan",
/// because the sign of a NaN that arithmetic makes is the processor's choice.
SortedMap writtenPairs(std::string const& text);

}  // namespace testing_support
