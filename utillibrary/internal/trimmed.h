#pragma once

#include <string_view>

#include "utillibrary/internal/byte_class.h"

namespace com::halvorin::internal {

/// `trim` without the copy: the stretch of the text between its blank ends.
inline std::string_view trimmed(std::string_view text) noexcept {
    ByteClasses const classes;
    while (!text.empty() && classes.isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && classes.isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

}  // namespace com::halvorin::internal
