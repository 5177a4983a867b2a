#pragma once

#include <cfenv>
#include <ostream>
#include <vector>

// The rounding words of the processor, set apart from each other, and its floating-point flags.
namespace testing_support {

// x86-64 has two words: arithmetic obeys SSE's, libc obeys x87's when it converts decimals. Other
// processors have one word for both.
struct RoundingWords {
    int sse;  // FE_TONEAREST, FE_UPWARD, FE_DOWNWARD or FE_TOWARDZERO, as the next one
    int x87;
};

inline std::ostream& operator<<(std::ostream& out, RoundingWords const& words) {
    return out << std::hex << "SSE " << words.sse << ", x87 " << words.x87 << std::dec;
}

/// Every state that the words can have: 16 of them on x86-64, 4 elsewhere.
inline std::vector<RoundingWords> allRoundingWords() {
    std::vector<RoundingWords> all;
    for (int const sse : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
#ifdef __x86_64__
        for (int const x87 : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO})
            all.push_back({sse, x87});
#else
        all.push_back({sse, sse});
#endif
    }
    return all;
}

/// Sets both words for a scope.
class ScopedRoundingWords {
public:
    explicit ScopedRoundingWords(RoundingWords const& words) {
        std::fegetenv(&before_);
        std::fesetround(words.sse);
#ifdef __x86_64__
        unsigned short word = 0;
        __asm__ volatile("fnstcw %0" : "=m"(word));
        word = static_cast<unsigned short>((word & ~0x0C00) | words.x87);
        __asm__ volatile("fldcw %0" : : "m"(word));
#endif
    }
    ~ScopedRoundingWords() { std::fesetenv(&before_); }
    ScopedRoundingWords(ScopedRoundingWords const&) = delete;
    ScopedRoundingWords& operator=(ScopedRoundingWords const&) = delete;

private:
    std::fenv_t before_;
};

/// Makes the processor take subnormal numbers for 0 in a scope, as operands and as results, where
/// it can be told so.
class ScopedNoSubnormals {
public:
    ScopedNoSubnormals() {
        std::fegetenv(&before_);
#ifdef __x86_64__
        constexpr unsigned FLUSH_TO_ZERO = 0x8000;
        constexpr unsigned DENORMALS_ARE_ZERO = 0x0040;
        __builtin_ia32_ldmxcsr(__builtin_ia32_stmxcsr() | FLUSH_TO_ZERO | DENORMALS_ARE_ZERO);
#endif
    }
    ~ScopedNoSubnormals() { std::fesetenv(&before_); }
    ScopedNoSubnormals(ScopedNoSubnormals const&) = delete;
    ScopedNoSubnormals& operator=(ScopedNoSubnormals const&) = delete;

private:
    std::fenv_t before_;
};

/// The floating-point flags that `work` raises: FE_INEXACT and others.
template <typename Work>
int flagsRaisedBy(Work const& work) {
    std::feclearexcept(FE_ALL_EXCEPT);
    work();
    int const raised = std::fetestexcept(FE_ALL_EXCEPT);
    std::feclearexcept(FE_ALL_EXCEPT);
    return raised;
}

}  // namespace testing_support
