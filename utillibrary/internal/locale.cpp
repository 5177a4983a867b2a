#include "utillibrary/internal/locale.h"

#include <cstring>
#include <langinfo.h>
#include <locale>
#include <typeinfo>

namespace com::halvorin::internal {

namespace {

// Whether a locale's facet is the one that stands first, or one of the others, and none of a host's
// making.
template <typename Facet, typename... Others>
bool hasStandard(std::locale const& locale) {
    auto const& facet = std::use_facet<Facet>(locale);
    return typeid(facet) == typeid(Facet) || (... || (typeid(facet) == typeid(Others)));
}

// Whether a locale is the classic one itself. Locales' own == takes an equal name for enough, which
// one keeps that `combine` has given a foreign facet; a locale is a pointer to what it is.
bool isClassic(std::locale const& locale) noexcept {
    // Asked for once: the library initialises itself anew at each question.
    static std::locale const& classic = std::locale::classic();
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison,cert-*): its own == says less.
    return std::memcmp(&locale, &classic, sizeof locale) == 0;
}

// Kept out of the way of those who ask about the classic locale.
[[gnu::noinline]] bool writesPlainNumbers(std::locale const& locale) {
    auto const& punctuation = std::use_facet<std::numpunct<wchar_t>>(locale);
    return punctuation.decimal_point() == L'.' && punctuation.grouping().empty() &&
           hasStandard<std::num_put<wchar_t>>(locale) &&
           hasStandard<std::ctype<wchar_t>, std::ctype_byname<wchar_t>>(locale);
}

}  // namespace

char singleDecimalPoint() noexcept {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): glibc's points into the locale, which stays.
    char const* const point = nl_langinfo(RADIXCHAR);
    return point[0] != '\0' && point[1] != '\0' ? '\0' : point[0];
}

bool globalLocaleIsClassic() noexcept { return isClassic(std::locale()); }

bool wideStreamsWritePlainNumbers() {
    std::locale const global;
    return isClassic(global) || writesPlainNumbers(global);
}

}  // namespace com::halvorin::internal
