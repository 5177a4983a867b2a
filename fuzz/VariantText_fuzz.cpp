#include <algorithm>
#include <bit>
#include <cwchar>
#include <iterator>
#include <sstream>
#include <string>

#include <utillibrary/datatypes/Variant.h>

#include "input.h"

// Numbers as strings and strings as numbers: the standard library's streams are the model.

using com::halvorin::datatypes::Variant;

namespace {

std::string narrow(std::wstring const& text) {
    std::string result;
    std::transform(text.begin(), text.end(), std::back_inserter(result),
                   [](wchar_t c) { return static_cast<char>(c); });
    return result;
}

template <typename Number>
std::string printed(Number number) {
    std::wostringstream stream;
    stream << number;
    return narrow(stream.str());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    auto const real = input.take<double>();
    auto const number = input.take<long>();
    expectSame(Variant(real).toString() == printed(real), "a Double as a string");
    expectSame(Variant(static_cast<float>(real)).toString() == printed(static_cast<float>(real)),
               "a Float as a string");
    // KEPT(int64-prints-as-double)
    expectSame(Variant(number).toString() == printed(static_cast<double>(number)),
               "an Int64 as a string");
    auto const bits64 = static_cast<unsigned long>(number);
    expectSame(Variant(bits64).toString() == printed(static_cast<double>(bits64)),
               "a Uint64 as a string");
    auto const integer32 = static_cast<int>(number);
    expectSame(Variant(integer32).toString() == printed(integer32), "an Int32 as a string");
    // KEPT(uint32-prints-signed)
    expectSame(Variant(static_cast<unsigned int>(number)).toString() == printed(integer32),
               "a Uint32 as a string");

    std::string const text = input.takeRest();
    std::wstring wide;
    for (char const c : text)
        wide += static_cast<wchar_t>(static_cast<signed char>(c));

    long integer = 0;
    std::wistringstream(wide) >> integer;
    Variant variant;
    variant.assign(wide);
    expectSame(variant.toString() == text, "a String as a string");
    expectSame(variant.toInt64() == integer, "a String as an Int64");

    double const floating = std::wcstod(wide.c_str(), nullptr);
    auto const bits = [](double value) { return std::bit_cast<std::uint64_t>(value); };
    expectSame(bits(variant.toDouble()) == bits(floating), "a String as a Double");
    return 0;
}
