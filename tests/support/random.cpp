#include "support/random.h"

#include <cstdlib>
#include <string>

namespace testing_support {

namespace {

std::uint64_t fromEnvironment(char const* name, std::uint64_t otherwise) {
    char const* const text = std::getenv(name);
    return text == nullptr ? otherwise : std::stoull(text);
}

}  // namespace

std::uint64_t seed() {
    static std::uint64_t const value =
        fromEnvironment("UTILLIBRARY_TEST_SEED", std::random_device()());
    return value;
}

std::mt19937_64 randomEngine() { return std::mt19937_64(seed()); }

std::uint64_t sweepStride() { return fromEnvironment("UTILLIBRARY_TEST_STRIDE", 1); }

}  // namespace testing_support
