#pragma once

namespace benchmarks {

/// The allocations of the calling thread so far: calls of `malloc`, `calloc`, `realloc` and their
/// kin, from whatever library they come. Linking this in puts a count before libc's own functions;
/// `new` reaches them too.
unsigned long allocations() noexcept;

}  // namespace benchmarks
