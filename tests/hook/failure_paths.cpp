#include "hook/failure_paths.h"

#include <utillibrary/datatypes/Variant.h>

using com::halvorin::datatypes::Variant;

namespace {

bool printAnImpossibleType() {
    Variant variant(5);
    variant.dataType = 99;
    return variant.convertToString(1033).empty();
}

bool printANegativeType() {
    Variant variant(5);
    variant.dataType = -1;
    return variant.toString().empty();
}

// clang-format off: what is done in one line, and what must be heard in the next
FailurePath const FAILURE_PATHS[] = {
    {"a Variant of type 99 as wide text", printAnImpossibleType, "Variant::convertToString", 3,
     "Cannot convert unknown type",                                                                      0x80004005},
    {"a Variant of type -1 as text",      printANegativeType,    "Variant::convertToString", 3,
     "Cannot convert unknown type",                                                                      0x80004005},
    {nullptr,                             nullptr,               nullptr,                    0, nullptr, 0         },
};
// clang-format on

}  // namespace

FailurePath const* failurePaths() noexcept { return FAILURE_PATHS; }
