#pragma once

#include <cfenv>

namespace testing_support {

inline constexpr int ROUNDING_MODES[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};

/// Sets the rounding mode for a scope.
class ScopedRounding {
public:
    explicit ScopedRounding(int mode) : previous_(std::fegetround()) { std::fesetround(mode); }
    ~ScopedRounding() { std::fesetround(previous_); }
    ScopedRounding(ScopedRounding const&) = delete;
    ScopedRounding& operator=(ScopedRounding const&) = delete;

private:
    int previous_;
};

}  // namespace testing_support
