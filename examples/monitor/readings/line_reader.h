#pragma once

#include <functional>
#include <string>
#include <string_view>

#include <utillibrary/datatypes/ByteStream.h>

namespace monitor {

// The lines of a file or a pipe, from the first to the last. The file is read in pieces, so its
// size does not matter. A newline ends a line; the last line may lack it.
class LineReader {
public:
    /// A longer line is read to its end, but not kept.
    static constexpr unsigned int LONGEST_LINE = 65536;

    /// Opens the file.
    /// Takes    beforeReading: is called before each piece is read, which may take long.
    /// Fails    with std::system_error "cannot read PATH: REASON".
    explicit LineReader(std::string path, std::function<void()> beforeReading = {});
    /// Closes the file.
    ~LineReader();
    /// Cannot be copied: it owns a descriptor.
    LineReader(LineReader const&) = delete;
    /// Cannot be assigned: it owns a descriptor.
    LineReader& operator=(LineReader const&) = delete;

    /// Reads the next line.
    /// Gives    false if there is no further line.
    /// Fails    with std::system_error "cannot read PATH: REASON".
    bool next();

    /// The line that was read last, without its newline. It is empty if the line is too long.
    /// Gives    a view that the following `next` makes invalid.
    /// Fails    never.
    std::string_view line() const noexcept { return line_; }

    /// True if that line has more than LONGEST_LINE bytes.
    /// Fails    never.
    bool isTooLong() const noexcept { return isTooLong_; }

    /// The number of that line. The first line has the number 1.
    /// Fails    never.
    unsigned long number() const noexcept { return number_; }

    /// The bytes that were read so far.
    /// Fails    never.
    unsigned long bytesRead() const noexcept { return bytesRead_; }
    /// The size of the file, or 0 if it has none, like a pipe.
    /// Fails    never.
    unsigned long size() const noexcept;

private:
    bool readMore();
    void take(unsigned int size) noexcept;

    std::string path_;
    std::function<void()> beforeReading_;
    int descriptor_;
    com::halvorin::datatypes::ByteStream buffer_;
    unsigned int begin_ = 0;  // of the bytes in the buffer that no line has taken
    unsigned int end_ = 0;
    bool isSkipping_ = false;  // the bytes before `begin_` belong to the same line, and are dropped
    std::string_view line_;
    bool isTooLong_ = false;
    unsigned long number_ = 0;
    unsigned long bytesRead_ = 0;
};

}  // namespace monitor
