#pragma once

namespace benchmarks {

/// The allocations of the calling thread so far: calls of `malloc`, `calloc`, `realloc` and
/// similar functions, in any library. A program that links this file counts them; `new` calls
/// `malloc`, so it is counted, too.
unsigned long allocations() noexcept;

}  // namespace benchmarks
