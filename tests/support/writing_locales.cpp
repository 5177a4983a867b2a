#include "support/writing_locales.h"

#include <ios>
#include <stdexcept>

#include "support/host_facets.h"

namespace testing_support {

namespace {

using Facet = std::num_put<wchar_t>;
using Out = Facet::iter_type;

// ---- num_put

class OrdinaryNumPut : public Facet {};

// Writes brackets around each number.
class BracketingNumPut : public Facet {
protected:
    Out do_put(Out out, std::ios_base& stream, wchar_t fill, long value) const override {
        *out++ = L'[';
        out = Facet::do_put(out, stream, fill, value);
        *out++ = L']';
        return out;
    }
    Out do_put(Out out, std::ios_base& stream, wchar_t fill, double value) const override {
        *out++ = L'<';
        out = Facet::do_put(out, stream, fill, value);
        *out++ = L'>';
        return out;
    }
    Out do_put(Out out, std::ios_base& /*stream*/, wchar_t /*fill*/, bool value) const override {
        *out++ = value ? L'Y' : L'N';
        return out;
    }
};

// What a num_put does after it has written "a", or the number itself.
enum class Failure { throws, throwsFirst, setsBadbit, failsIterator, setsFailbit };

template <Failure FAILURE>
class FailingNumPut : public Facet {
protected:
    Out do_put(Out out, std::ios_base& stream, wchar_t fill, long value) const override {
        return put(out, stream, fill, value);
    }
    Out do_put(Out out, std::ios_base& stream, wchar_t fill, double value) const override {
        return put(out, stream, fill, value);
    }
    Out do_put(Out out, std::ios_base& stream, wchar_t fill, bool value) const override {
        return put(out, stream, fill, value);
    }

private:
    template <typename Value>
    Out put(Out out, std::ios_base& stream, wchar_t fill, Value value) const {
        if constexpr (FAILURE == Failure::throwsFirst) throw std::runtime_error("of a host");
        *out++ = L'a';
        if constexpr (FAILURE == Failure::throws) throw 7;
        auto& whole = dynamic_cast<std::wios&>(stream);
        if constexpr (FAILURE == Failure::setsBadbit) whole.setstate(std::ios_base::badbit);
        if constexpr (FAILURE == Failure::setsFailbit) whole.setstate(std::ios_base::failbit);
        if constexpr (FAILURE == Failure::failsIterator) return Out(nullptr);
        return Facet::do_put(out, stream, fill, value);
    }
};

}  // namespace

std::vector<WritingLocale> const& writingLocales() {
    static std::locale const classic = std::locale::classic();
    static std::locale const german("de_DE.UTF-8");
    static std::vector<WritingLocale> const all = {
        {"the classic locale", classic, true},
        {"a named locale with a comma and groups", german, false},
        {"a named locale with groups alone", std::locale("en_US.UTF-8"), false},
        {"a named locale with a point beyond ASCII", std::locale("ps_AF.UTF-8"), false},
        {"a named locale with a space in numbers", std::locale("fr_FR.ISO-8859-15"), false},
        {"the numbers of a named locale", std::locale(classic, german, std::locale::numeric),
         false},
        {"the characters of a named locale", std::locale(classic, german, std::locale::ctype),
         true},
        {"all of a named locale but its numbers",
         std::locale(german, classic, std::locale::numeric), true},
        {"numpunct of a named locale, combined into the classic one, whose name stays",
         classic.combine<std::numpunct<wchar_t>>(german), false},
        {"ctype_byname", with(new std::ctype_byname<wchar_t>("de_DE.UTF-8")), true},
        {"numpunct_byname", with(new std::numpunct_byname<wchar_t>("C")), true},
        {"num_put that changes nothing", with(new OrdinaryNumPut), false},
        {"num_put that brackets", with(new BracketingNumPut), false},
        {"num_put that throws an int", with(new FailingNumPut<Failure::throws>), false},
        {"num_put that throws before it writes", with(new FailingNumPut<Failure::throwsFirst>),
         false},
        {"num_put that sets badbit", with(new FailingNumPut<Failure::setsBadbit>), false},
        {"num_put that sets failbit", with(new FailingNumPut<Failure::setsFailbit>), false},
        {"num_put that fails its iterator", with(new FailingNumPut<Failure::failsIterator>), false},
        {"numpunct that changes nothing", with(new Punctuation(L'.', L',', "")), false},
        {"numpunct with another point", with(new Punctuation(L';', L',', "")), false},
        {"numpunct with a point beyond ASCII", with(new Punctuation(L'\u066B', L',', "")), false},
        {"numpunct with groups of three", with(new Punctuation(L'.', L'_', "\3")), false},
        {"numpunct with groups of one", with(new Punctuation(L'.', L'_', "\1")), false},
        {"numpunct with a minus between uneven groups", with(new Punctuation(L',', L'-', "\3\2")),
         false},
        {"numpunct that throws", ThrowingPunctuation::locale(), false},
        {"ctype that changes nothing", with(new OrdinaryCtype), false},
        {"ctype with digits of another script", with(new OtherCharacters('0', '9', L'\u0660')),
         false},
        {"ctype with another minus", with(new OtherCharacters('-', '-', L'\u2212')), false},
        {"ctype with another letter of infinity", with(new OtherCharacters('i', 'i', L'I')), false},
        {"ctype that throws", with(new WideningThatThrows), false},
    };
    return all;
}

}  // namespace testing_support
