#include "support/reading_locales.h"

#include <ios>
#include <stdexcept>

#include "support/host_facets.h"

namespace testing_support {

namespace {

using NumGet = std::num_get<wchar_t>;
using In = NumGet::iter_type;

// ---- num_get

class OrdinaryNumGet : public NumGet {};

class HexadecimalNumGet : public NumGet {
protected:
    In do_get(In from, In end, std::ios_base& stream, std::ios_base::iostate& state,
              long& value) const override {
        stream.setf(std::ios_base::hex, std::ios_base::basefield);
        return NumGet::do_get(from, end, stream, state, value);
    }
};

// What a num_get does in addition to reading, or instead.
enum class Failure {
    throwsInt,
    throwsRuntimeError,
    throwsAfterStoring,
    setsBadbit,
    setsFailbit,
    failsIterator
};

template <Failure FAILURE>
class FailingNumGet : public NumGet {
protected:
    In do_get(In from, In end, std::ios_base& stream, std::ios_base::iostate& state,
              long& value) const override {
        if constexpr (FAILURE == Failure::throwsInt) throw 7;
        if constexpr (FAILURE == Failure::throwsRuntimeError) throw std::runtime_error("of a host");
        In const stop = NumGet::do_get(from, end, stream, state, value);
        if constexpr (FAILURE == Failure::throwsAfterStoring) throw 7;
        if constexpr (FAILURE == Failure::setsBadbit) state |= std::ios_base::badbit;
        if constexpr (FAILURE == Failure::setsFailbit) state |= std::ios_base::failbit;
        if constexpr (FAILURE == Failure::failsIterator) return In(nullptr);
        return stop;
    }
};

// ---- ctype

class OtherWhitespace : public std::ctype<wchar_t> {
protected:
    bool do_is(mask m, wchar_t c) const override { return m == space && (c == L'-' || c == L'4'); }
};

class WhitespaceThatThrows : public std::ctype<wchar_t> {
protected:
    bool do_is(mask /*m*/, wchar_t /*c*/) const override { throw std::runtime_error("of a host"); }
};

}  // namespace

std::vector<ReadingLocale> const& readingLocales() {
    static std::locale const classic = std::locale::classic();
    static std::locale const german("de_DE.UTF-8");
    static std::vector<ReadingLocale> const all = {
        {"the classic locale", classic, true},
        {"a named locale with points between groups", german, true},
        {"a named locale with commas between groups", std::locale("en_US.UTF-8"), true},
        {"a named locale with uneven groups", std::locale("en_IN.UTF-8"), true},
        {"a named locale with spaces between groups", std::locale("fr_FR.ISO-8859-15"), true},
        {"a named locale with separators beyond ASCII", std::locale("ps_AF.UTF-8"), true},
        {"a named locale with a minus between groups", std::locale("mm_MM.ISO-8859-1"), true},
        {"a named locale with digits as separators", std::locale("nn_NN.ISO-8859-1"), true},
        {"a named locale with a plus as decimal point", std::locale("pp_PP.ISO-8859-1"), true},
        {"a named locale in which signs are whitespace", std::locale("ss_SS.ISO-8859-1"), true},
        {"the numbers of a named locale", std::locale(classic, german, std::locale::numeric), true},
        {"the characters of a named locale", std::locale(classic, german, std::locale::ctype),
         true},
        {"all of a named locale but its numbers",
         std::locale(german, classic, std::locale::numeric), true},
        {"numpunct of a named locale, combined into the classic one, whose name stays",
         classic.combine<std::numpunct<wchar_t>>(german), true},
        {"ctype_byname", with(new std::ctype_byname<wchar_t>("ss_SS.ISO-8859-1")), true},
        {"numpunct_byname", with(new std::numpunct_byname<wchar_t>("mm_MM.ISO-8859-1")), true},
        {"num_get that changes nothing", with(new OrdinaryNumGet), false},
        {"num_get that reads hexadecimal digits", with(new HexadecimalNumGet), false},
        {"num_get that throws an int", with(new FailingNumGet<Failure::throwsInt>), false},
        {"num_get that throws std::runtime_error",
         with(new FailingNumGet<Failure::throwsRuntimeError>), false},
        {"num_get that throws after it has stored the value",
         with(new FailingNumGet<Failure::throwsAfterStoring>), false},
        {"num_get that sets badbit", with(new FailingNumGet<Failure::setsBadbit>), false},
        {"num_get that sets failbit", with(new FailingNumGet<Failure::setsFailbit>), false},
        {"num_get that fails its iterator", with(new FailingNumGet<Failure::failsIterator>), false},
        {"a host's num_get, combined into the classic locale",
         classic.combine<NumGet>(with(new HexadecimalNumGet)), false},
        {"numpunct that changes nothing", with(new Punctuation(L'.', L',', "")), false},
        {"numpunct with groups of one", with(new Punctuation(L'.', L',', "\1")), false},
        {"numpunct with a minus between groups", with(new Punctuation(L'.', L'-', "\3")), false},
        {"numpunct with a plus between groups", with(new Punctuation(L'.', L'+', "\3")), false},
        {"numpunct with a digit between groups", with(new Punctuation(L'.', L'3', "\1")), false},
        {"numpunct with a digit as decimal point", with(new Punctuation(L'4', L',', "")), false},
        {"numpunct with a minus as decimal point", with(new Punctuation(L'-', L',', "")), false},
        {"numpunct that throws", ThrowingPunctuation::locale(), false},
        {"ctype that changes nothing", with(new OrdinaryCtype), false},
        {"ctype with digits of another script", with(new OtherCharacters('0', '9', L'\u0660')),
         false},
        {"ctype with another minus", with(new OtherCharacters('-', '-', L'\u2212')), false},
        {"ctype with a digit and a sign as whitespace", with(new OtherWhitespace), false},
        {"ctype that throws when it is asked for whitespace", with(new WhitespaceThatThrows),
         false},
        {"ctype that throws when it widens", with(new WideningThatThrows), false},
    };
    return all;
}

}  // namespace testing_support
