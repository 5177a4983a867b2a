#pragma once

#include <cfenv>

// The rounding modes in force on the calling thread.
//
// x86-64 has two rounding words. Arithmetic in float and double obeys the SSE word (MXCSR). glibc's
// conversions between decimal text and binary numbers (strtod, printf and all that calls them) obey
// the x87 control word. `fesetround` sets both; `_MM_SET_ROUNDING_MODE` and `_FPU_SETCW` set one.
// Other processors have one word for both.
//
// The questions here read the words. A trial sum would raise FE_INEXACT, which a host may trap.
namespace com::halvorin::internal {

#ifdef __x86_64__

/// The two bits of the x87 control word that libc obeys. Both zero: to the nearest.
inline unsigned decimalRounding() noexcept {
    unsigned short word = 0;
    // Volatile: the word may change between two calls, which the compiler does not know.
    __asm__ volatile("fnstcw %0" : "=m"(word));
    return word >> 10 & 3U;
}

/// The two bits of the SSE word that arithmetic obeys. They mean the same as those above.
inline unsigned arithmeticRounding() noexcept { return __builtin_ia32_stmxcsr() >> 13 & 3U; }

/// True if libc rounds to the nearest when it converts decimal text to a number or a number to
/// text.
inline bool decimalsRoundToNearest() noexcept { return decimalRounding() == 0; }

/// True if libc and arithmetic round in the same direction. Then an operation on exact operands
/// gives what libc gives, since both round the same exact result once.
inline bool arithmeticRoundsAsDecimals() noexcept {
    return decimalRounding() == arithmeticRounding();
}

#else

/// True if libc rounds to the nearest when it converts decimal text to a number or a number to
/// text.
inline bool decimalsRoundToNearest() noexcept { return std::fegetround() == FE_TONEAREST; }

/// True, because there is one word.
inline bool arithmeticRoundsAsDecimals() noexcept { return true; }

#endif

}  // namespace com::halvorin::internal
