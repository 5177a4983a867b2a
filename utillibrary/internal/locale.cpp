#include "utillibrary/internal/locale.h"

#include <algorithm>
#include <array>
#include <langinfo.h>
#include <string_view>
#include <typeinfo>

namespace com::halvorin::internal {

namespace {

// A facet of one of these types, and not of a type derived from them, is the standard library's own.
template <typename Facet, typename... Others>
bool isStandard(Facet const& facet) noexcept {
    auto const& type = typeid(facet);
    return type == typeid(Facet) || (... || (type == typeid(Others)));
}

// The characters that a stream reads or writes in numbers: "inf" and "nan" are numbers, too.
bool widensNumbersToThemselves(std::ctype<wchar_t> const& facet) {
    constexpr std::string_view CHARACTERS = "+-.0123456789aefin";
    std::array<wchar_t, CHARACTERS.size()> wide;
    facet.widen(CHARACTERS.data(), CHARACTERS.data() + CHARACTERS.size(), wide.data());
    return std::equal(wide.begin(), wide.end(), CHARACTERS.begin(),
                      [](wchar_t left, char right) { return left == static_cast<wchar_t>(right); });
}

// Takes  NumberFacet: the facet that reads or writes. It takes the separators from numpunct, and
//        the digits from ctype.
template <typename NumberFacet>
bool hasStandardFacets(std::locale const& locale) {
    using Punctuation = std::numpunct<wchar_t>;
    using Characters = std::ctype<wchar_t>;
    if (!isStandard(std::use_facet<NumberFacet>(locale))) return false;
    if (!isStandard<Punctuation, std::numpunct_byname<wchar_t>>(
            std::use_facet<Punctuation>(locale))) {
        return false;
    }
    auto const& characters = std::use_facet<Characters>(locale);
    return isStandard<Characters, std::ctype_byname<wchar_t>>(characters) &&
           widensNumbersToThemselves(characters);
}

}  // namespace

char singleDecimalPoint() noexcept {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the string of glibc is part of the locale.
    char const* const point = nl_langinfo(RADIXCHAR);
    return point[0] != '\0' && point[1] != '\0' ? '\0' : point[0];
}

bool readsByStandardFacets(std::locale const& locale) {
    return hasStandardFacets<std::num_get<wchar_t>>(locale);
}

bool writesPlainNumbers(std::locale const& locale) {
    if (!hasStandardFacets<std::num_put<wchar_t>>(locale)) return false;
    auto const& punctuation = std::use_facet<std::numpunct<wchar_t>>(locale);
    return punctuation.decimal_point() == L'.' && punctuation.grouping().empty();
}

}  // namespace com::halvorin::internal
