#pragma once

// Every public header includes this one. It refuses compilers and standard libraries that the
// library does not fit, and marks what a host may link against.

#if __cplusplus < 201703L
#error "utillibrary needs C++17 or later: compile with -std=c++17"
#endif

#include <cstddef>

// The interface contains strings, lists and maps of the standard library, so the host and the
// library must agree on them. Without these lines a difference ends in undefined references. A host
// that builds the library itself, with the same flags, defines
// UTILLIBRARY_BUILT_WITH_THE_SAME_FLAGS.
#if !defined(UTILLIBRARY_BUILDING) && !defined(UTILLIBRARY_BUILT_WITH_THE_SAME_FLAGS)
#if defined(_LIBCPP_VERSION)
#error "utillibrary is built for libstdc++: compile without -stdlib=libc++"
#elif defined(_GLIBCXX_USE_CXX11_ABI) && !_GLIBCXX_USE_CXX11_ABI
#error \
    "utillibrary is built with _GLIBCXX_USE_CXX11_ABI=1: compile without _GLIBCXX_USE_CXX11_ABI=0"
#elif defined(_GLIBCXX_DEBUG)
#error "utillibrary is built without _GLIBCXX_DEBUG: use _GLIBCXX_ASSERTIONS instead"
#endif
#endif

// Marks a class or function that a host may link against. Everything else is hidden.
#define UTILLIBRARY_EXPORT __attribute__((visibility("default")))

// Marks a function whose sums or products of unsigned integers wrap on purpose, or whose shifts
// drop bits, for clang++'s -fsanitize=integer.
#ifdef __clang__
#define UTILLIBRARY_WRAPS \
    __attribute__((no_sanitize("unsigned-integer-overflow", "unsigned-shift-base")))
#else
#define UTILLIBRARY_WRAPS
#endif

// Marks a member function that returns a pointer into the object. clang++ then warns of a pointer
// that outlives a temporary object.
#ifdef __clang__
#define UTILLIBRARY_LIFETIMEBOUND [[clang::lifetimebound]]
#else
#define UTILLIBRARY_LIFETIMEBOUND
#endif

// Marks a private member of an exported class; nothing outside the library can call it.
#define UTILLIBRARY_LOCAL __attribute__((visibility("hidden")))

// Marks a short member function that a host compiles inline. The library exports a copy of it, for
// a host in another language or one that is built without inlining.
#ifdef UTILLIBRARY_BUILDING
#define UTILLIBRARY_INLINE __attribute__((visibility("default"), used)) inline
#else
#define UTILLIBRARY_INLINE UTILLIBRARY_EXPORT inline
#endif
