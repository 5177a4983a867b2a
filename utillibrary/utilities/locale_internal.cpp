#include "utillibrary/utilities/locale_internal.h"

#include <cfenv>
#include <langinfo.h>
#include <locale>
#include <typeinfo>

namespace com::halvorin::internal {

namespace {

template <typename Facet>
bool hasStandard(std::locale const& locale) {
    return typeid(std::use_facet<Facet>(locale)) == typeid(Facet);
}

}  // namespace

bool decimalPointIsDot() noexcept {
    char const* const point = nl_langinfo(RADIXCHAR);
    return point[0] == '.' && point[1] == '\0';
}

bool wideStreamsWritePlainNumbers() {
    std::locale const global;
    if (global == std::locale::classic()) return true;
    auto const& punctuation = std::use_facet<std::numpunct<wchar_t>>(global);
    return punctuation.decimal_point() == L'.' && punctuation.grouping().empty() &&
           hasStandard<std::num_put<wchar_t>>(global) &&
           (hasStandard<std::ctype<wchar_t>>(global) ||
            typeid(std::use_facet<std::ctype<wchar_t>>(global)) ==
                typeid(std::ctype_byname<wchar_t>));
}

bool roundsToNearest() noexcept { return std::fegetround() == FE_TONEAREST; }

}  // namespace com::halvorin::internal
