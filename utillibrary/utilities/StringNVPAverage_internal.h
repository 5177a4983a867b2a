#pragma once

#include <optional>
#include <string>
#include <vector>

// The general path and the fast path of `averageNVP`.
namespace com::halvorin::internal {

/// The factors of the average's values and of the sample's.
struct Weights {
    float average;
    float sample;
};

/// What averaging gives.
struct Averaged {
    bool wellFormed = false;  // if not, the average stays as it is
    std::string pairs;        // the new average
};

/// The general path: the steps of `averageNVP` as its contract states them, for all strings.
Averaged averageGeneral(std::vector<std::string> const& names, std::string const& average,
                        std::string const& sample, Weights weights);

/// The fast path: the same result, its pairs in the order of `average`. It declines if the hashes
/// of too many names collide, see `PairTable`.
std::optional<Averaged> averageByTable(std::vector<std::string> const& names,
                                       std::string const& average, std::string const& sample,
                                       Weights weights);

/// The general path: what `std::stof` returns, NaN where it throws. errno stays as it was.
float readFloatGeneral(std::string const& value) noexcept;

}  // namespace com::halvorin::internal
