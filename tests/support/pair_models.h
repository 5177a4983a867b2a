#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

// Name-value pairs once more, by way of sorted maps and of libc, for nothing but to be read.
namespace testing_support {

using SortedMap = std::map<std::string, std::string>;

/// The pairs of a text; none where a field is malformed.
std::optional<SortedMap> modelOfDeserialize(std::string const& text);

/// The pairs of the new average, their values escaped; none where the average stays as it is. NaN is
/// "nan" there: its sign is the processor's own.
std::optional<SortedMap> modelOfAverage(std::vector<std::string> const& names,
                                        std::string const& average, float averageDuration,
                                        std::string const& sample, float sampleDuration);

}  // namespace testing_support
