#include <utillibrary/utilities/StringNVP.h>
#include <utillibrary/utilities/StringTrim.h>
#include <utillibrary/utilities/StringUtilities.h>

#include "input.h"
#include "support/text_models.h"

using namespace com::halvorin::utilities;
using namespace testing_support;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    bool const keepSpace = input.takeBool();
    std::string const line = input.takeLine();
    std::string const text = input.takeRest();

    std::string const escaped = escapeString(text, keepSpace);
    expectSame(escaped == modelOfEscape(text, keepSpace), "escapeString");
    expectSame(unescapeString(text) == modelOfUnescape(text), "unescapeString");
    bool const comesBack = text.find('\\') == std::string::npos;
    expectSame(!comesBack || unescapeString(escaped) == text, "escaped and unescaped");
    expectSame(trim(text) == modelOfTrim(text), "trim");
    expectSame(iequals(line, text) == modelOfIequals(line, text), "iequals");

    std::vector<std::string> fields;
    split(fields, text, line);
    expectSame(fields == modelOfSplit(text, line), "split");
    return 0;
}
