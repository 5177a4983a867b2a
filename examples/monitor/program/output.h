#pragma once

#include <string>

// What the program writes: rows to standard output; messages and the progress line to standard
// error.
namespace monitor {

/// Prepares the standard descriptors. The program calls it first.
///
/// A standard descriptor that the parent has closed is replaced, so that no file that is opened
/// later takes its number. A write to a closed pipe, or to a file that must not grow, then fails
/// with an error and does not kill the program.
/// Fails    never.
void prepareOutput() noexcept;

/// Writes all bytes to standard output at once.
/// Fails    with std::system_error "cannot write to standard output: REASON".
void print(std::string const& text);

/// Writes "monitor: ", a message and a newline to standard error, as `printable` shows the message.
/// If that fails, nothing can report it.
/// Fails    with std::bad_alloc only.
void say(std::string const& message);

/// Writes a message, and a second line that says how the program is used.
/// Fails    with std::bad_alloc only.
void sayWithUsage(std::string const& message);

/// Shows a progress line in place of the one before, if standard error is a terminal. Whatever else
/// is written to the terminal must erase it first.
/// Fails    with std::bad_alloc only.
void showProgress(std::string const& text);

/// Erases the progress line.
/// Fails    never.
void eraseProgress() noexcept;

}  // namespace monitor
