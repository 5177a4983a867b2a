#pragma once

#include <string>
#include <string_view>

// What leaves the program: the table on standard output, messages and progress on standard error.
namespace monitor {

/// Call it first. Occupies standard descriptors that the parent has closed, so that no other file
/// takes their place. Has a write to a closed pipe, or to a file that may not grow, fail with an
/// error in place of a deadly signal.
void prepareOutput() noexcept;

/// Writes a text to a descriptor: by one call where all of it is taken at once.
/// Gives    0, or the errno of what failed; a part of the text may have been written then.
int writeWhole(int descriptor, std::string_view text) noexcept;

/// Writes to standard output, at once and whole.
/// Fails    with std::system_error "cannot write to standard output", and what the system says.
void print(std::string const& text);

/// Shows a line on standard error, "monitor: " before it. There is no one to tell of a failure.
void say(std::string const& text);

/// The progress line, on standard error and only where that is a terminal. It is shown in place of
/// the one before; what else goes to the terminal erases it first.
void showProgress(std::string const& text);
void eraseProgress();

}  // namespace monitor
