#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

// Inputs: pools of random values, so that neither the optimiser nor the branch predictor can
// predict them. The seed is fixed, so that two runs measure the same work.
namespace benchmarks {

using Random = std::mt19937_64;

inline constexpr std::size_t POOL_SIZE = 256;
inline constexpr std::size_t KIBIBYTE = 1024;
inline constexpr std::size_t MEBIBYTE = 1024 * KIBIBYTE;

/// The sizes at which every library is measured.
inline constexpr std::array<std::size_t, 3> MAIN_SIZES = {KIBIBYTE, 64 * KIBIBYTE, MEBIBYTE};

/// All sizes, for operations whose time depends on the size.
inline constexpr std::array<std::size_t, 9> SIZES = {
    16, 64, 256, KIBIBYTE, 4 * KIBIBYTE, 16 * KIBIBYTE, 64 * KIBIBYTE, 256 * KIBIBYTE, MEBIBYTE,
};

/// True for a size of `SIZES` that is not in `MAIN_SIZES`: only the fastest libraries are measured.
bool isStep(std::size_t bytes);

/// "16 bytes" or "1 KiB", for example. The table finds sizes by these units.
std::string sizeName(std::size_t bytes);

/// A pool of `make`'s results; the random numbers are the same in each run.
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

/// Printable ASCII without spaces, `least` to `most` characters.
std::string anyText(Random& random, std::size_t least, std::size_t most);

/// A pool of strings of this size; fewer long ones, so that the processor's cache contains all.
/// Takes  make: makes a string from random numbers and the size.
template <typename Make>
auto textPool(std::size_t size, Make make) {
    constexpr std::size_t CACHED = 256 * KIBIBYTE;
    constexpr std::size_t LEAST = 2;
    return pool([&](Random& random) { return make(random, size); },
                std::clamp(CACHED / size, LEAST, POOL_SIZE));
}

/// A pool of strings of exactly this size, as `anyText` makes them.
std::vector<std::string> textsOf(std::size_t size);

/// A second of the years 1970 to 2037.
long anySecond(Random& random);

}  // namespace benchmarks
