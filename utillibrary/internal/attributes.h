#pragma once

// Attributes of the compiler that the language has no words for.

// For a large buffer on the stack that is written before it is read. Releases are built with
// -ftrivial-auto-var-init=zero, which would otherwise fill the whole buffer first.
#define UTILLIBRARY_UNINITIALIZED __attribute__((uninitialized))
