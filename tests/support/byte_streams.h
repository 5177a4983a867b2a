#pragma once

#include <functional>
#include <new>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <utillibrary/datatypes/ByteStream.h>

#include "support/recorded_reports.h"

// Byte streams and the outcomes of their calls, as values that can be compared and printed.
namespace testing_support {

using com::halvorin::datatypes::ByteStream;

/// What a stream contains: no block, or a block, which may have length 0.
using Contents = std::optional<std::string>;

inline Contents const EMPTY = std::nullopt;
inline Contents const NO_LENGTH = "";

inline ByteStream streamOf(std::string const& bytes) {
    return ByteStream(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

inline void fill(ByteStream& stream, Contents const& contents) {
    stream.clear();
    if (!contents) return;
    // Twice, because `allocate(0)` leaves an empty stream without a block.
    stream.allocate(static_cast<unsigned int>(contents->size() + 1));
    stream.allocate(static_cast<unsigned int>(contents->size()));
    contents->copy(stream.buffer(), contents->size());
}

inline Contents contentsOf(ByteStream const& stream) {
    if (stream.buffer() == nullptr) return EMPTY;
    return std::string(stream.buffer(), stream.size());
}

/// The outcome of a call: its result, or what it threw.
struct Outcome {
    std::optional<unsigned int> result;
    std::optional<long> thrown;

    bool operator==(Outcome const&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, Outcome const& outcome) {
    if (outcome.result) return out << "result " << *outcome.result;
    if (outcome.thrown) return out << "thrown long " << *outcome.thrown;
    return out << "bad_alloc";
}

inline Outcome gives(unsigned int result) { return {result, std::nullopt}; }

inline Outcome const REFUSED = {std::nullopt, 2147942487L};  // the long that is 0x80070057
inline Outcome const NO_MEMORY = {std::nullopt, std::nullopt};

inline Outcome outcomeOf(std::function<unsigned int()> const& call) {
    try {
        return gives(call());
    } catch (long code) {  // matches nothing but a long
        return {std::nullopt, code};
    } catch (std::bad_alloc const&) {
        return NO_MEMORY;
    }
}

inline char const* const NO_POINTER = "NULL == V";
inline char const* const NO_BYTES = "0 == Sz";
inline char const* const PAST_THE_SOURCE = "SrcStart+Num > Src.size()";

/// The report of a refusal; no report for a null pointer.
inline std::vector<Report> reportOf(char const* message) {
    if (message == nullptr) return {};
    return {{"ByteStream::copy", 3, message, 0x80070057}};
}

}  // namespace testing_support
