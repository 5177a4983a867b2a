#pragma once

// The library is compiled with hidden visibility; this marks what a host may link against.
#define UTILLIBRARY_EXPORT __attribute__((visibility("default")))

// A private member of such a class, which nothing outside can call.
#define UTILLIBRARY_LOCAL __attribute__((visibility("hidden")))

// Hot accessors are inline in the headers. The library itself keeps a copy of each all the same, so
// that a host in another language, or one built without inlining, finds them among the exports.
#ifdef UTILLIBRARY_BUILDING
#define UTILLIBRARY_INLINE __attribute__((visibility("default"), used)) inline
#else
#define UTILLIBRARY_INLINE UTILLIBRARY_EXPORT inline
#endif
