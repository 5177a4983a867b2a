#pragma once

#include <string_view>

#include "utillibrary/internal/byte_class.h"

namespace com::halvorin::internal {

/// `trim` without a copy: the part of the string between the whitespace at its ends.
inline std::string_view trimmed(std::string_view text) noexcept {
    ByteClasses const classes;
    while (!text.empty() && classes.isWhitespace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && classes.isWhitespace(text.back()))
        text.remove_suffix(1);
    return text;
}

}  // namespace com::halvorin::internal
