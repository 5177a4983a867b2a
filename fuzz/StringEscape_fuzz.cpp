#include <string>

#include <utillibrary/utilities/StringUtilities.h>

#include "input.h"
#include "support/text_models.h"

// Escaping, unescaping, and the one after the other.

using namespace com::halvorin::utilities;
using namespace testing_support;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    bool const keepSpace = input.takeBool();
    std::string const text = input.takeRest();

    std::string const escaped = escapeString(text, keepSpace);
    expectSame(escaped == modelOfEscape(text, keepSpace), "escapeString");
    expectSame(unescapeString(text) == modelOfUnescape(text), "unescapeString");
    bool const comesBack = text.find('\\') == std::string::npos;
    expectSame(!comesBack || unescapeString(escaped) == text, "escaped and unescaped");
    return 0;
}
