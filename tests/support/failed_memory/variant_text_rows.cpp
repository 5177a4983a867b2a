#include <locale>

#include <utillibrary/datatypes/Variant.h>

#include "support/failed_memory/rows.h"
#include "support/locales.h"

// A Variant as a string.
namespace testing_support {

namespace {

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;

struct TextFact {
    char const* fact;
    Variant value;
    std::string text;
    bool ownLocale;  // a host's own locale is in force, so that a stream writes
    Memory narrow;
    Memory wide;
};

Variant unsupported() {
    Variant variant;
    variant.dataType = 99;
    return variant;
}

std::vector<TextFact> textFacts() {
    using enum Memory;
    return {
        {"no value", Variant(), "unknown", false, NONE, NEEDED},
        {"a type outside the table is reported", unsupported(), "", false, NEEDED, NEEDED},
        {"an int", -123, "-123", false, NONE, NEEDED},
        {"a double", 123456.0, "123456", false, NONE, NEEDED},
        {"a Boolean", true, "1", false, NONE, NONE},
        {"a String", LONG_TEXT, LONG_TEXT, false, NEEDED, NEEDED},
        {"a DateTime", xtime_t(1709618889, 250000000), "2024-03-05T06:08:09.250Z", false, NEEDED,
         NEEDED},
        {"an int that a stream writes", -1234567890, "-1_234_567_890", true, NEEDED, NEEDED},
        {"a double that a stream writes", 123456.0, "123_456", true, NEEDED, NEEDED},
        {"a Boolean that a stream writes", false, "0", true, NEEDED, NEEDED},
    };
}

// Runs under the locale of a fact.
template <typename Work>
void underLocaleOf(TextFact const& fact, Work const& work) {
    std::optional<ScopedCppLocale> scope;
    if (fact.ownLocale) {
        scope.emplace(freshLocale());
    }
    work();
}

template <typename Read>
Row narrowRow(char const* symbol, TextFact const& fact, Read const& read) {
    return {symbol, fact.fact, fact.narrow, [=](Trial& trial) {
                underLocaleOf(fact, [&] {
                    trial.expectWholeOrNone([&] { return read(fact.value); }, fact.text);
                });
            }};
}

template <typename Read>
Row wideRow(char const* symbol, TextFact const& fact, Read const& read) {
    return {symbol, fact.fact, fact.wide, [=](Trial& trial) {
                std::wstring const whole(fact.text.begin(), fact.text.end());
                underLocaleOf(fact, [&] {
                    trial.expectWholeOrNone([&] { return read(fact.value); }, whole);
                });
            }};
}

// On std::bad_alloc `sbcText` is unchanged.
Row cachedRow(TextFact const& fact) {
    return {"Variant::operator char const*() const", fact.fact, fact.narrow, [fact](Trial& trial) {
                Variant const variant = fact.value;
                variant.sbcText = "cached";
                underLocaleOf(fact, [&] {
                    char const* characters = nullptr;
                    End const end =
                        trial.run([&] { characters = static_cast<char const*>(variant); });
                    if (end == End::DONE) {
                        EXPECT_EQ(characters, variant.sbcText.c_str());
                    }
                    EXPECT_EQ(variant.sbcText, end == End::DONE ? fact.text : "cached");
                });
            }};
}

}  // namespace

Rows variantTextRows() {
    Rows rows;
    for (TextFact const& fact : textFacts()) {
        rows.push_back(narrowRow("Variant::toString() const", fact,
                                 [](Variant const& v) { return v.toString(); }));
        rows.push_back(narrowRow("Variant::toStringSBC(unsigned int) const", fact,
                                 [](Variant const& v) { return v.toStringSBC(1033); }));
        rows.push_back(narrowRow("Variant::convertToStringSBC(unsigned int) const", fact,
                                 [](Variant const& v) { return v.convertToStringSBC(1033); }));
        rows.push_back(wideRow("Variant::toString(unsigned int) const", fact,
                               [](Variant const& v) { return v.toString(1033); }));
        rows.push_back(wideRow("Variant::convertToString(unsigned int) const", fact,
                               [](Variant const& v) { return v.convertToString(1033); }));
        rows.push_back(cachedRow(fact));
    }
    return rows;
}

}  // namespace testing_support
