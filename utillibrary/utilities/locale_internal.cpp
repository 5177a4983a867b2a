#include "utillibrary/utilities/locale_internal.h"

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

// Asked for once: the library initialises itself anew at each question.
std::locale const& classic() noexcept {
    static std::locale const& locale = std::locale::classic();
    return locale;
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

bool globalLocaleIsClassic() noexcept { return std::locale() == classic(); }

bool wideStreamsWritePlainNumbers() {
    std::locale const global;
    return global == classic() || writesPlainNumbers(global);
}

}  // namespace com::halvorin::internal
