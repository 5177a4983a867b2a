#pragma once

#include <cstdint>
#include <random>

namespace testing_support {

/// The seed of this run: UTILLIBRARY_TEST_SEED, or a new one each time.
std::uint64_t seed();

/// A fresh engine that starts from the seed.
std::mt19937_64 randomEngine();

/// A sweep tests one value of so many: UTILLIBRARY_TEST_STRIDE, or 1 if that is not set.
std::uint64_t sweepStride();

}  // namespace testing_support
