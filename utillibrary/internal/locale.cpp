#include "utillibrary/internal/locale.h"

#include <langinfo.h>
#include <typeinfo>

namespace com::halvorin::internal {

namespace {

// True if the type of the facet is `Facet` or one of `Others`, and not a type that a host derived
// from them.
template <typename Facet, typename... Others>
bool isStandard(Facet const& facet) noexcept {
    auto const& type = typeid(facet);
    return type == typeid(Facet) || (... || (type == typeid(Others)));
}

// Takes  NumberFacet: num_get or num_put. Either takes its separators from numpunct, and its digits
//        from ctype.
template <typename NumberFacet>
std::optional<StandardFacets> standardFacets(std::locale const& locale) {
    using Punctuation = std::numpunct<wchar_t>;
    using Characters = std::ctype<wchar_t>;
    StandardFacets const facets{std::use_facet<Punctuation>(locale),
                                std::use_facet<Characters>(locale)};
    bool const areStandard =
        isStandard(std::use_facet<NumberFacet>(locale)) &&
        isStandard<Punctuation, std::numpunct_byname<wchar_t>>(facets.punctuation) &&
        isStandard<Characters, std::ctype_byname<wchar_t>>(facets.characters);
    return areStandard ? std::optional(facets) : std::nullopt;
}

}  // namespace

char singleDecimalPoint() noexcept {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the string of glibc is part of the locale.
    char const* const point = nl_langinfo(RADIXCHAR);
    return point[0] != '\0' && point[1] != '\0' ? '\0' : point[0];
}

wchar_t wideDecimalPoint() noexcept {
    // For this item glibc gives the character itself, in the first bytes of the pointer.
    // NOLINTNEXTLINE(concurrency-mt-unsafe): as above
    char const* const item = nl_langinfo(_NL_NUMERIC_DECIMAL_POINT_WC);
    wchar_t point = L'\0';
    std::memcpy(&point, &item, sizeof point);
    return point;
}

std::optional<StandardFacets> standardReadingFacets(std::locale const& locale) {
    return standardFacets<std::num_get<wchar_t>>(locale);
}

bool writesPlainNumbers(std::locale const& locale) {
    auto const facets = standardFacets<std::num_put<wchar_t>>(locale);
    return facets && facets->punctuation.decimal_point() == L'.' &&
           facets->punctuation.grouping().empty();
}

}  // namespace com::halvorin::internal
