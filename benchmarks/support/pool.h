#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

// Inputs: pools of random values, so that neither the optimiser nor the branch predictor knows what
// comes next. The seed is fixed, so that two runs measure the same work.
namespace benchmarks {

using Random = std::mt19937_64;

inline constexpr std::size_t POOL_SIZE = 256;
inline constexpr std::size_t KIBIBYTE = 1024;
inline constexpr std::size_t MEBIBYTE = 1024 * KIBIBYTE;

/// The sizes at which what grows is looked at.
inline constexpr std::array<std::size_t, 4> SIZES = {KIBIBYTE, 16 * KIBIBYTE, 64 * KIBIBYTE,
                                                     MEBIBYTE};

/// "1 KiB"; the table knows the sizes by their unit.
std::string sizeName(std::size_t bytes);

/// As many values as `make` is called for, each time with the same random numbers.
template <typename Make>
auto pool(Make make, std::size_t size = POOL_SIZE) {
    Random random;
    std::vector<decltype(make(random))> values;
    values.reserve(size);
    while (values.size() < size)
        values.push_back(make(random));
    return values;
}

/// From `least` to `most`, each as likely as the others.
long between(Random& random, long least, long most);

/// A number of 1 to `mostDigits` digits, each length as likely as the others, and either sign.
long numberOf(Random& random, int mostDigits);

/// A double of full 53 bits between 1e-5 and 1e9, each decade as likely as the others, either sign.
double anyDouble(Random& random);

/// Below a million, with three decimals, either sign.
double threeDecimals(Random& random);

/// Printable ASCII without blanks, `least` to `most` characters.
std::string anyText(Random& random, std::size_t least, std::size_t most);

/// A whole pool of texts of this size, or, of long ones, as many as a processor keeps near; these
/// are hundreds of random values each.
/// Takes  make: makes a text from random numbers and the size.
template <typename Make>
auto textPool(std::size_t size, Make make) {
    constexpr std::size_t NEAR = 256 * KIBIBYTE;
    constexpr std::size_t LEAST = 2;
    return pool([&](Random& random) { return make(random, size); },
                std::clamp(NEAR / size, LEAST, POOL_SIZE));
}

/// A pool of texts of exactly this size, as `anyText` makes them.
std::vector<std::string> textsOf(std::size_t size);

/// A second of the years 1970 to 2037.
long anySecond(Random& random);

}  // namespace benchmarks
