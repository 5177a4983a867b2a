#pragma once

#include <functional>
#include <string>
#include <string_view>

#include <utillibrary/datatypes/ByteStream.h>

#include "reading.h"

namespace monitor {

/// All that a file holds, or that comes through a pipe until its end.
/// Fails    with std::system_error "cannot read PATH", and what the system says; with
///          std::runtime_error for 4 GiB and more, which a ByteStream cannot hold.
com::halvorin::datatypes::ByteStream readFile(std::string const& path);

// The lines of a text, from the first to the last. A newline ends a line; the last may lack it.
class Lines {
public:
    /// Takes    text: it must outlive this object and what it gives.
    explicit Lines(com::halvorin::datatypes::ByteStream const& text) noexcept;

    /// The next line without its newline, written to `line`. False where there is none.
    bool next(std::string_view& line) noexcept;

    /// The number of that line; the first is 1.
    unsigned long number() const noexcept;

private:
    std::string_view rest_;
    unsigned long number_ = 0;
};

/// Hands the readings of a log to `use`, one by one. Each malformed line is told of by `say`, as
/// "PATH:NUMBER: REASON", and left out.
/// Gives    the number of malformed lines.
/// Fails    as `readFile` and `use` do.
unsigned long replay(std::string const& path, std::function<void(Reading const&)> const& use);

}  // namespace monitor
