#include <bit>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <utillibrary/utilities/StringUtilities.h>

#include "input.h"

// Strings as numbers, and numbers as strings: libc's own functions are the model.

using namespace com::halvorin::utilities;

namespace {

template <typename Number>
std::string printed(char const* format, Number number) {
    char text[32];
    std::snprintf(text, sizeof text, format, number);
    return text;
}

// Each has one conversion of a double.
char const* const FORMATS[] = {"%g",  "%f",    "%e",   "%.3f",  "%.17g", "%.9g",
                               "%a",  "%G",    "%.0f", "%5.1f", "%+g",   "%-30g|",
                               "%#g", "%015g", "x%gy", "%%%g",  "% g",   "%.15g"};

void expectRead(std::string const& text) {
    char* end = nullptr;
    double const expected = std::strtod(text.c_str(), &end);
    bool const isNumber = end != text.c_str();
    double value = 77;
    expectSame(strtodEx(text, value) == isNumber, "strtodEx's answer");
    double const wanted = isNumber ? expected : 77;
    expectSame(std::bit_cast<long>(value) == std::bit_cast<long>(wanted), "strtodEx");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    auto const number = input.take<double>();
    char const* const format = FORMATS[input.takeBelow(std::size(FORMATS))];
    expectSame(to_string(number, format) == printed(format, number), "a double as a string");
    auto const narrow = static_cast<float>(number);
    expectSame(to_string(narrow, format) == printed(format, static_cast<double>(narrow)),
               "a float as a string");
    expectRead(to_string(number, "%.17g"));

    auto const integer = std::bit_cast<long>(number);
    expectSame(to_string(integer) == printed("%ld", integer), "a long as a string");
    auto const low = static_cast<int>(integer);
    expectSame(to_string(low) == printed("%d", low), "an int as a string");
    auto const lowBits = static_cast<unsigned int>(integer);
    expectSame(to_string(lowBits) == printed("%u", lowBits), "an unsigned int as a string");
    expectSame(convertToHex(lowBits) == printed("0x%08x", lowBits), "convertToHex");

    expectRead(input.takeRest());
    return 0;
}
