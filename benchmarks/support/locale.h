#pragma once

#include <locale>
#include <string>

namespace benchmarks {

/// The two named locales. The first has a point and no grouping, so that numbers
/// read as in the classic one; the second has a comma, and groups of three.
inline constexpr char const* PLAIN_LOCALE = "C.UTF-8";
inline constexpr char const* GROUPING_LOCALE = "de_DE.UTF-8";

/// True if this machine has the locale.
bool hasLocale(std::string const& name);

/// Sets a locale for a scope, as the C++ and as the C locale.
class ScopedLocale {
public:
    explicit ScopedLocale(std::string const& name)
        : previous_(std::locale::global(std::locale(name))) {}
    ~ScopedLocale() { std::locale::global(previous_); }
    ScopedLocale(ScopedLocale const&) = delete;
    ScopedLocale& operator=(ScopedLocale const&) = delete;

private:
    std::locale previous_;
};

}  // namespace benchmarks
