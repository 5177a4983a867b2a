#include <cstring>
#include <string>
#include <vector>

#include <utillibrary/utilities/StringTrim.h>
#include <utillibrary/utilities/StringUtilities.h>

#include "input.h"
#include "support/text_models.h"

// A string that is trimmed, compared with another, and searched for in a list.

using namespace com::halvorin::utilities;
using namespace testing_support;

namespace {

// The index of the first element that matches; the length of the list without one.
std::size_t modelOfSearch(std::vector<std::string> const& list, std::string const& text,
                          bool partial) {
    std::size_t i = 0;
    while (i < list.size()) {
        std::string const& element = list[i];
        bool const isInside =
            memmem(element.data(), element.size(), text.data(), text.size()) != nullptr;
        if (partial ? isInside : element == text) break;
        ++i;
    }
    return i;
}

bool modelOfEndsWith(std::string const& text, std::string const& suffix) {
    return text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    bool const partial = input.takeBool();
    std::string const line = input.takeLine();
    std::string const text = input.takeRest();

    expectSame(trim(text) == modelOfTrim(text), "trim");
    expectSame(iequals(line, text) == modelOfIequals(line, text), "iequals");
    expectSame(endsWith(text, line) == modelOfEndsWith(text, line), "endsWith");

    std::vector<std::string> list = modelOfSplit(text, "\n");
    auto const expected = static_cast<std::ptrdiff_t>(modelOfSearch(list, line, partial));
    expectSame(searchVector(list, line, partial) - list.begin() == expected, "searchVector");
    std::vector<std::string> const& constant = list;
    expectSame(searchVector(constant, line, partial) - constant.begin() == expected,
               "searchVector of a constant list");
    return 0;
}
