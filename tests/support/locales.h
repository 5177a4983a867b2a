#pragma once

#include <locale>
#include <string>
#include <vector>

namespace testing_support {

/// "C" and the real locales that the tests build.
std::vector<std::string> const& allLocales();

/// The locales in which bytes have different classes; some are made up (tests/support/locales).
std::vector<std::string> const& byteLocales();

/// Sets the C locale (setlocale) for a scope.
class ScopedCLocale {
public:
    explicit ScopedCLocale(std::string const& name);
    ~ScopedCLocale();
    ScopedCLocale(ScopedCLocale const&) = delete;
    ScopedCLocale& operator=(ScopedCLocale const&) = delete;

private:
    std::string previous_;
};

/// Sets the global C++ locale for a scope, and leaves the C locale alone.
class ScopedCppLocale {
public:
    explicit ScopedCppLocale(std::locale const& locale);
    explicit ScopedCppLocale(std::string const& name) : ScopedCppLocale(std::locale(name)) {}
    ~ScopedCppLocale();
    ScopedCppLocale(ScopedCppLocale const&) = delete;
    ScopedCppLocale& operator=(ScopedCppLocale const&) = delete;

private:
    std::string previousC_;
    std::locale previous_;
};

/// A new locale: the classic one, but a host's own facet groups digits by "_". So a stream must
/// read and write each number. The first stream that does so allocates, to store what the facet
/// says.
std::locale freshLocale();

/// Sets both locales for a scope.
struct ScopedLocale {
    explicit ScopedLocale(std::string const& name) : cpp(name), c(name) {}
    ScopedCppLocale cpp;
    ScopedCLocale c;
};

}  // namespace testing_support
