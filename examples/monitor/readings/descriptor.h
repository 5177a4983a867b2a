#pragma once

#include <string_view>

namespace monitor {

/// Writes all bytes to a descriptor, by one call if the descriptor takes all of them at once.
/// Gives    0, or the errno of the call that failed. Some of the bytes may be written then.
/// Fails    never.
int writeWhole(int descriptor, std::string_view bytes) noexcept;

}  // namespace monitor
