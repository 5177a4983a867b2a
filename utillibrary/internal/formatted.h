#pragma once

#include <exception>
#include <ios>
#include <new>

// Formatted extraction and insertion. Of the exceptions of a host's facet only std::bad_alloc
// passes.
namespace com::halvorin::internal {

/// To call in a handler `catch (...)`: true if the handler has caught the cancellation of the
/// thread, which it must throw again. A cancellation is no C++ exception, so there is no current
/// exception. (A handler for abi::__forced_unwind would bind a reference to no object.)
inline bool threadIsBeingCancelled() noexcept { return std::current_exception() == nullptr; }

/// Runs `operation`, which calls a facet. After an exception the caller uses what is there: the
/// value read so far, or the characters written so far.
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
