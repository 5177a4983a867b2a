#pragma once

#include <functional>
#include <string>
#include <string_view>

#include <utillibrary/datatypes/ByteStream.h>

#include "readings/reading.h"
#include "readings/reading_line.h"

namespace monitor {

/// All bytes of a file, or of a pipe until its end.
/// Fails    with std::system_error "cannot read PATH: REASON"; with std::runtime_error for 4 GiB
///          and more, which a ByteStream cannot contain.
com::halvorin::datatypes::ByteStream readFile(std::string const& path);

// The lines of a block of bytes, from the first to the last. Each line ends with a newline; the
// last one may lack it.
class Lines {
public:
    /// Takes    bytes: must outlive this object and the lines that it gives.
    /// Fails    never.
    explicit Lines(com::halvorin::datatypes::ByteStream const& bytes) noexcept;

    /// Writes the next line, without its newline, to `line`.
    /// Gives    false if there is no further line; `line` is unchanged then.
    /// Fails    never.
    bool next(std::string_view& line) noexcept;

    /// The number of that line. The first line has the number 1.
    /// Fails    never.
    unsigned long number() const noexcept;

private:
    std::string_view rest_;
    unsigned long number_ = 0;
};

/// Reads a log, and calls a function for each line.
/// Takes    use: is called for each reading; refuse: is called for each malformed line, with the
///          line's number.
/// Fails    as `readFile`, `use` and `refuse` do.
void replay(std::string const& path, std::function<void(Reading const&)> const& use,
            std::function<void(unsigned long, Malformed const&)> const& refuse);

}  // namespace monitor
