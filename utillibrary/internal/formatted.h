#pragma once

#include <exception>
#include <ios>
#include <new>

// Formatted extraction and insertion that keep what a facet of the host throws inside.
namespace com::halvorin::internal {

/// In a handler `catch (...)`, which must then throw again: true if it has caught the cancellation
/// of the thread. That is no C++ exception, so there is no current one. (To catch
/// abi::__forced_unwind would bind a reference to nothing.)
inline bool threadIsBeingCancelled() noexcept { return std::current_exception() == nullptr; }

/// Runs `operation`, which calls a facet. Afterwards the caller uses what the stream then has: the
/// value read so far, the characters written so far.
/// Fails  std::bad_alloc and the cancellation of the thread pass. All else is caught here.
template <typename Operation>
void runFacet(Operation operation) {
    try {
        operation();
    } catch (std::bad_alloc const&) {
        throw;
    } catch (...) {
        if (threadIsBeingCancelled()) throw;
    }
}

/// Runs `operation`, which reads from or writes to `stream`, in the same way.
///
/// A stream catches what a facet throws, std::bad_alloc included, and sets badbit. The mask below
/// makes the stream rethrow, so that a failed allocation never passes for a result.
/// Fails  std::bad_alloc and the cancellation of the thread pass. All else is caught here: other
///        exceptions of a facet, and std::ios_base::failure if a facet sets badbit or its iterator
///        fails.
template <typename Stream, typename Operation>
void runFormatted(Stream& stream, Operation operation) {
    stream.exceptions(std::ios_base::badbit);
    runFacet([&] { operation(stream); });
}

}  // namespace com::halvorin::internal
