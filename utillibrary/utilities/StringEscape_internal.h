#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace com::halvorin::internal {

// How a text is escaped, for as long as the locale stays as it is.
struct Escaping {
    bool keepSpace;
    bool usual;  // `ByteClasses::graphicIsUsual`, asked once for many texts
};

/// `escapeString` of any stretch of bytes.
std::string escaped(std::string_view text, Escaping const& escaping);

/// The room that `writeEscaped` needs for a text of so many bytes: six characters a byte, and the
/// rest of the word that the last one is stored with.
constexpr std::size_t escapedRoom(std::size_t size) noexcept { return 6 * size + 2; }

/// Writes `escaped(text, escaping)` and gives the position after it.
char* writeEscaped(char* out, std::string_view text, Escaping const& escaping) noexcept;

}  // namespace com::halvorin::internal
