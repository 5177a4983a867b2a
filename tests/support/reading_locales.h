#pragma once

#include <locale>
#include <vector>

// Global C++ locales that change, or could change, what a stream reads as an integer.
namespace testing_support {

struct ReadingLocale {
    char const* fact;
    std::locale locale;
    bool standard;  // all facets that take part are the standard library's own
};

/// The classic locale, named ones, combined ones, and ones with a facet of a host.
std::vector<ReadingLocale> const& readingLocales();

}  // namespace testing_support
