#pragma once

#include <cstdint>
#include <random>

namespace testing_support {

/// The seed of this run: UTILLIBRARY_TEST_SEED, or a new one each time.
std::uint64_t seed();

/// A fresh engine that starts from the seed.
std::mt19937_64 randomEngine();

/// Every how many values a sweep looks: 1 for a full one. UTILLIBRARY_TEST_STRIDE.
std::uint64_t sweepStride();

}  // namespace testing_support
