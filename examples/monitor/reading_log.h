#pragma once

#include <string>

namespace monitor {

// A file to which lines are appended. A line is written whole or not at all, and what stands in the
// file stays as it is.
//
// Several monitors may append to one file: each line is written under a lock (flock), so that none
// comes between another's line and its being taken back.
class ReadingLog {
public:
    /// Opens the file, and makes it if it is not there; a pipe waits for its reader here.
    /// Fails    with std::system_error "cannot open PATH", and what the system says.
    explicit ReadingLog(std::string path);
    ~ReadingLog();
    ReadingLog(ReadingLog const&) = delete;
    ReadingLog& operator=(ReadingLog const&) = delete;

    /// Appends a line. Where a half line ends the file, from a writer that was stopped, a newline
    /// goes before, so that only the half line is lost.
    /// Takes    line: without a newline.
    /// Fails    with std::system_error "cannot append to PATH", and what the system says; what was
    ///          written of the line has been taken back, or the text says that it could not. Of a
    ///          device or a pipe nothing can be taken back. With std::runtime_error where the file
    ///          was removed, renamed or replaced since it was opened, or has been locked by another
    ///          program for a second.
    void append(std::string const& line);

    /// What is written to, to be waited for.
    int descriptor() const noexcept;

private:
    void appendToFile(std::string const& line);
    [[noreturn]] void fail(int error, std::string const& more) const;

    std::string path_;
    int descriptor_;
    bool isFile_ = false;  // a regular one, neither a device nor a pipe
};

}  // namespace monitor
