#include "support/locales.h"

#include <clocale>
#include <stdexcept>

namespace testing_support {

namespace {

class GroupingPunctuation : public std::numpunct<wchar_t> {
protected:
    wchar_t do_thousands_sep() const override { return L'_'; }
    std::string do_grouping() const override { return "\3"; }
};

}  // namespace

std::locale freshLocale() { return {std::locale::classic(), new GroupingPunctuation}; }

std::vector<std::string> const& allLocales() {
    static std::vector<std::string> const names = {
        "C", "de_DE.UTF-8", "en_US.UTF-8", "fr_FR.ISO-8859-15", "ps_AF.UTF-8", "tr_TR.UTF-8"};
    return names;
}

std::vector<std::string> const& byteLocales() {
    static std::vector<std::string> const names = {"C",
                                                   "de_DE.UTF-8",
                                                   "fr_FR.ISO-8859-15",
                                                   "tr_TR.UTF-8",
                                                   "uu_UU.ISO-8859-1",
                                                   "vv_VV.ISO-8859-1",
                                                   "ww_WW.ISO-8859-1",
                                                   "xx_XX.ISO-8859-1",
                                                   "yy_YY.ISO-8859-1",
                                                   "zz_ZZ.ISO-8859-1"};
    return names;
}

ScopedCLocale::ScopedCLocale(std::string const& name) : previous_(std::setlocale(LC_ALL, nullptr)) {
    if (std::setlocale(LC_ALL, name.c_str()) == nullptr) {
        throw std::runtime_error("the locale " + name + " is not there");
    }
}

ScopedCLocale::~ScopedCLocale() { std::setlocale(LC_ALL, previous_.c_str()); }

// std::locale::global sets the C locale too when the locale has a name; here it is put back.
ScopedCppLocale::ScopedCppLocale(std::locale const& locale)
    : previousC_(std::setlocale(LC_ALL, nullptr)), previous_(std::locale::global(locale)) {
    std::setlocale(LC_ALL, previousC_.c_str());
}

ScopedCppLocale::~ScopedCppLocale() {
    std::string const c = std::setlocale(LC_ALL, nullptr);
    std::locale::global(previous_);
    std::setlocale(LC_ALL, c.c_str());
}

}  // namespace testing_support
