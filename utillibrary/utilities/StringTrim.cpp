#include "utillibrary/utilities/StringTrim.h"

#include "utillibrary/internal/trimmed.h"

namespace com::halvorin::utilities {

std::string trim(std::string const& text) { return std::string(internal::trimmed(text)); }

}  // namespace com::halvorin::utilities
