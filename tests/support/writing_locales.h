#pragma once

#include <locale>
#include <string>
#include <vector>

// Global C++ locales that change, or could change, what a stream writes for a number.
namespace testing_support {

struct WritingLocale {
    char const* fact;
    std::locale locale;
    bool plain;  // numbers as in the classic locale, by facets of the standard library alone
};

/// The classic locale, named ones, combined ones, and ones with a facet of a host.
std::vector<WritingLocale> const& writingLocales();

}  // namespace testing_support
