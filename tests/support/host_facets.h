#pragma once

#include <locale>
#include <stdexcept>
#include <string>
#include <utility>

// Facets that a host defines, which change what a wide stream reads and writes.
namespace testing_support {

class Punctuation : public std::numpunct<wchar_t> {
public:
    Punctuation(wchar_t point, wchar_t separator, std::string grouping)
        : point_(point), separator_(separator), grouping_(std::move(grouping)) {}

protected:
    wchar_t do_decimal_point() const override { return point_; }
    wchar_t do_thousands_sep() const override { return separator_; }
    std::string do_grouping() const override { return grouping_; }
    std::wstring do_truename() const override { return L"yes"; }
    std::wstring do_falsename() const override { return L"no"; }

private:
    wchar_t point_;
    wchar_t separator_;
    std::string grouping_;
};

// Throws when a stream asks it. A std::locale asks once while it is made, so the facet throws only
// after that.
class ThrowingPunctuation : public std::numpunct<wchar_t> {
public:
    static std::locale locale() {
        auto* const facet = new ThrowingPunctuation;
        std::locale result(std::locale::classic(), facet);
        facet->throws_ = true;
        return result;
    }

protected:
    std::string do_grouping() const override {
        if (throws_) throw std::runtime_error("of a host");
        return "";
    }

private:
    bool throws_ = false;
};

class OrdinaryCtype : public std::ctype<wchar_t> {};

// Widens some characters to others.
class OtherCharacters : public std::ctype<wchar_t> {
public:
    OtherCharacters(char first, char last, wchar_t becomes)
        : first_(first), last_(last), becomes_(becomes) {}

protected:
    wchar_t do_widen(char c) const override {
        return c >= first_ && c <= last_ ? becomes_ + (c - first_)
                                         : std::ctype<wchar_t>::do_widen(c);
    }
    char const* do_widen(char const* from, char const* to, wchar_t* out) const override {
        for (; from != to; ++from)
            *out++ = do_widen(*from);
        return to;
    }

private:
    char first_;
    char last_;
    wchar_t becomes_;
};

class WideningThatThrows : public std::ctype<wchar_t> {
protected:
    wchar_t do_widen(char /*c*/) const override { throw std::runtime_error("of a host"); }
    char const* do_widen(char const* /*from*/, char const* /*to*/,
                         wchar_t* /*out*/) const override {
        throw std::runtime_error("of a host");
    }
};

/// The classic locale with one other facet.
template <typename Facet>
std::locale with(Facet* facet) {
    return std::locale(std::locale::classic(), facet);
}

}  // namespace testing_support
