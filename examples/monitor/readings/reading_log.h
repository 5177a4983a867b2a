#pragma once

#include <string>

namespace monitor {

// A file to which lines are appended. A line is written whole or not at all. What is already in the
// file is never changed.
//
// Several monitors may append to one file. Each line is written under a lock (flock), so that one
// monitor that takes back a partial line cannot remove another monitor's line.
class ReadingLog {
public:
    /// Opens the file, or creates it. For a pipe, waits until somebody reads from it.
    /// Fails    with std::system_error "cannot open PATH: REASON".
    explicit ReadingLog(std::string path);
    /// Closes the file.
    ~ReadingLog();
    /// Cannot be copied: it owns a descriptor.
    ReadingLog(ReadingLog const&) = delete;
    /// Cannot be assigned: it owns a descriptor.
    ReadingLog& operator=(ReadingLog const&) = delete;

    /// Appends a line. If the file ends in the middle of a line, because its writer was stopped, a
    /// newline is written first, so that only the partial line is lost.
    /// Takes    line: without a newline.
    /// Fails    with std::system_error "cannot append to PATH: REASON". The part that was written
    ///          is removed again, or the message says that it remains. From a device or a pipe
    ///          nothing can be removed.
    ///          With std::runtime_error if the file was removed, renamed or replaced since it was
    ///          opened, or if another program has locked it for a second.
    void append(std::string const& line);

    /// The descriptor that is written to, so that a caller can wait for room.
    /// Fails    never.
    int descriptor() const noexcept;

private:
    void appendToFile(std::string const& line);
    [[noreturn]] void fail(int error, std::string const& more) const;

    std::string path_;
    int descriptor_;
    bool isFile_ = false;  // a regular file, neither a device nor a pipe
};

}  // namespace monitor
