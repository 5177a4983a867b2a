#pragma once

// The version of the library that these headers belong to: the library's soname is
// libutillibrary.so.UTILLIBRARY_VERSION_MAJOR. docs/abi.md says what each number means.
#define UTILLIBRARY_VERSION_MAJOR 1
#define UTILLIBRARY_VERSION_MINOR 0
#define UTILLIBRARY_VERSION_PATCH 0

/// The version as one number, 10000 for 1.0.0, to compare in #if.
#define UTILLIBRARY_VERSION                                                \
    (UTILLIBRARY_VERSION_MAJOR * 10000 + UTILLIBRARY_VERSION_MINOR * 100 + \
     UTILLIBRARY_VERSION_PATCH)
