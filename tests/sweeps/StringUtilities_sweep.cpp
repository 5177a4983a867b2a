#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include <utillibrary/utilities/StringUtilities.h>

#include "support/locales.h"
#include "support/random.h"
#include "support/text_models.h"

using namespace com::halvorin::utilities;
using namespace testing_support;

namespace {

void expectModels(std::string const& text) {
    ASSERT_EQ(escapeString(text, false), modelOfEscape(text, false))
        << testing::PrintToString(text);
    ASSERT_EQ(escapeString(text, true), modelOfEscape(text, true)) << testing::PrintToString(text);
    ASSERT_EQ(unescapeString(text), modelOfUnescape(text)) << testing::PrintToString(text);
}

// All texts of one length, or every so many of them.
void sweep(std::size_t size, std::uint64_t stride) {
    std::string text(size, '\0');
    for (std::uint64_t number = 0; number < 1UL << (8 * size); number += stride) {
        for (std::size_t i = 0; i < size; ++i)
            text[i] = static_cast<char>(number >> (8 * i));
        expectModels(text);
        if (testing::Test::HasFatalFailure()) return;
    }
}

TEST(StringEscapes, EqualTheirModelsOnEveryTextOfUpToThreeBytes) {
    ScopedCLocale const scope("C");
    for (std::size_t size : {0U, 1U, 2U})
        sweep(size, 1);
    sweep(3, sweepStride());
}

TEST(StringEscapes, EqualTheirModelsInLocalesWithMoreGraphicBytes) {
    for (char const* const locale : {"fr_FR.ISO-8859-15", "xx_XX.ISO-8859-1"}) {
        ScopedCLocale const scope(locale);
        for (std::size_t size : {0U, 1U})
            sweep(size, 1);
        sweep(2, sweepStride() == 1 ? 1 : 13);
        sweep(3, 257 * sweepStride());
    }
}

// All texts of a length over the bytes that escapes are made of.
TEST(StringEscapes, EqualTheirModelsOnEveryTextOfEscapeCharacters) {
    ScopedCLocale const scope("C");
    std::string const characters("\\ux04fGn\xFF", 9);
    std::string text(7, '\0');
    for (std::uint64_t number = 0; number < 4'782'969; number += sweepStride()) {  // 9^7
        std::uint64_t rest = number;
        for (char& c : text) {
            c = characters[rest % characters.size()];
            rest /= characters.size();
        }
        ASSERT_EQ(unescapeString(text), modelOfUnescape(text)) << text;
    }
}

}  // namespace
