#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace com::halvorin::internal {

/// `escapeString` of any stretch of bytes.
std::string escaped(std::string_view text, bool keepSpace);

/// The room that `writeEscaped` needs for a text of so many bytes: six characters a byte, and the
/// rest of the word that the last one is stored with.
constexpr std::size_t escapedRoom(std::size_t size) noexcept { return 6 * size + 2; }

/// Writes `escaped(text, keepSpace)` and gives the position after it.
char* writeEscaped(char* out, std::string_view text, bool keepSpace) noexcept;

}  // namespace com::halvorin::internal
