#include <string>
#include <unordered_map>
#include <vector>

#include <utillibrary/utilities/StringNVP.h>

#include "input.h"
#include "support/pair_models.h"
#include "support/text_models.h"

// Strings of pairs: split, read, written and read again.

using namespace com::halvorin::utilities;
using namespace testing_support;

using Pairs = std::unordered_map<std::string, std::string>;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    std::string const separators = input.takeLine();
    std::string const text = input.takeRest();

    std::vector<std::string> fields;
    split(fields, text, separators);
    expectSame(fields == modelOfSplit(text, separators), "split");

    Pairs pairs;
    bool const wellFormed = deserializeNVP(pairs, text);
    auto const expected = modelOfDeserialize(text);
    expectSame(wellFormed == expected.has_value(), "deserializeNVP's answer");
    expectSame(!wellFormed || SortedMap(pairs.begin(), pairs.end()) == *expected, "deserializeNVP");

    std::string written;
    serializeNVP(written, pairs);
    SortedMap escaped;
    for (auto const& [name, value] : pairs)
        escaped[name] = modelOfEscape(value, false);
    SortedMap readBack;
    if (!written.empty()) {
        for (std::string const& field : modelOfSplit(written, " ")) {
            std::size_t const equals = field.find('=');
            readBack.emplace(field.substr(0, equals), field.substr(equals + 1));
        }
    }
    expectSame(readBack == escaped, "serializeNVP");

    std::string added = text;
    addToNVPString(added, separators, text);
    bool const isAdded = !separators.empty() && !text.empty();
    expectSame(added == (isAdded ? text + " " + separators + "=" + text : text), "addToNVPString");
    return 0;
}
