#pragma once

#include <string>
#include <string_view>

namespace monitor {

/// A text that is safe to show on a terminal: file names, and the words of a loader or a plugin,
/// may contain control sequences.
/// Takes    text: UTF-8.
/// Gives    the text, with "\xNN" in place of each byte of a control character (U+0000 to U+001F,
///          U+007F to U+009F), and in place of each byte that is not part of valid UTF-8.
/// Fails    with std::bad_alloc only.
std::string printable(std::string_view text);

/// True if a text is valid UTF-8 without control characters.
/// Fails    never.
bool isPrintable(std::string_view text) noexcept;

}  // namespace monitor
