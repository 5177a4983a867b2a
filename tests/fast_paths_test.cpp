#include <array>
#include <cfenv>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <locale>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "utillibrary/datatypes/Variant.h"
#include "utillibrary/datatypes/xtime.h"
#include "utillibrary/datatypes/xtime_conversions.h"
#include "utillibrary/utilities/StringNVP.h"
#include "utillibrary/utilities/StringUtilities.h"

#include "support/counted_calls.h"
#include "support/host_facets.h"
#include "support/locales.h"
#include "support/rounding.h"

// Which inputs the fast paths answer. A fast path and its general path give the same result, so
// only the calls tell them apart: the general paths call libc or make a wide stream.
using namespace com::halvorin::datatypes;
using namespace com::halvorin::utilities;
using namespace testing_support;

namespace {

struct Operation {
    char const* fact;
    std::function<std::string()> work;
    std::string result;
    std::string calls;
};

void expectCalls(std::vector<Operation> const& operations) {
    for (Operation const& operation : operations) {
        SCOPED_TRACE(operation.fact);
        std::string result;
        std::string calls;
        {
            CallWatch const watch;
            result = operation.work();
            calls = watch.names();
        }
        EXPECT_EQ(result, operation.result);
        EXPECT_EQ(calls, operation.calls);
    }
}

// ---- operations, each with its result as a string that no counted function writes

std::string shown(bool value) { return value ? "true" : "false"; }

// Whether a string becomes exactly this number.
std::function<std::string()> readByStrtodEx(std::string const& text, double expected) {
    return [=] {
        double value = 0;
        return shown(strtodEx(text, value) && value == expected);
    };
}

std::function<std::string()> readByVariant(std::string const& text, double expected) {
    Variant const variant(text);
    return [=] { return shown(variant.toDouble() == expected); };
}

std::function<std::string()> readWholeByVariant(std::string const& text, long expected) {
    Variant const variant(text);
    return [=] { return shown(variant.toInt64() == expected); };
}

std::function<std::string()> writtenByVariant(Variant const& variant) {
    return [=] { return variant.toString(); };
}

std::function<std::string()> writtenWideByVariant(Variant const& variant) {
    return [=] {
        std::wstring const wide = variant.toString(1033);
        return std::string(wide.begin(), wide.end());
    };
}

std::function<std::string()> printed(double value, std::string const& format) {
    return [=] { return to_string(value, format); };
}

std::function<std::string()> averaged(std::string const& average, std::string const& sample) {
    return [=] {
        std::string result = average;
        averageNVP({"a"}, result, 1, sample, 1);
        return result;
    };
}

std::function<std::string()> averagedWithItself(std::string const& number) {
    return averaged("a=" + number, "a=" + number);
}

// What libc gives for it in this rounding mode.
std::string averageWithItself(std::string const& number) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "a=%g",
                  static_cast<double>(std::strtof(number.c_str(), nullptr)));
    return text.data();
}

std::function<std::string()> readTime(std::string const& text, long seconds) {
    return [=] {
        xtime_t time;
        return shown(time.fromString(text) && static_cast<long>(time) == seconds);
    };
}

// The tests begin under "C". Those that need another locale set it.
class FastPaths : public testing::Test {
    ScopedLocale const plain_{"C"};
};

// ---- numbers under the locale "C"

TEST_F(FastPaths, ReadNumbersOfUpToNineteenDigits) {
    expectCalls({
        {"a whole number", readByStrtodEx("42", 42), "true", ""},
        {"a decimal point", readByStrtodEx("-42.5", -42.5), "true", ""},
        {"an exponent", readByStrtodEx("4.25e-3", 4.25e-3), "true", ""},
        {"nineteen digits", readByStrtodEx("1.234567890123456789", 1.234567890123456789), "true",
         ""},
        {"twenty digits", readByStrtodEx("1.2345678901234567891", 1.2345678901234567891), "true",
         "strtod"},
        {"hexadecimal digits", readByStrtodEx("0x10", 16), "true", "strtod"},
        {"a number with a rest", readByStrtodEx("42.5 km/h", 42.5), "true", "strtod"},
        {"no number", readByStrtodEx("km/h", 0), "false", "strtod"},
        {"a wide whole number", readByVariant("42", 42), "true", ""},
        {"a wide number", readByVariant("-42.5e3", -42.5e3), "true", ""},
        {"a wide number of nineteen digits",
         readByVariant("1.234567890123456789", 1.234567890123456789), "true", ""},
        {"a wide number of hexadecimal digits", readByVariant("0x10", 16), "true", "wcstod"},
    });
}

// The leading bits of a power of ten are too small by less than 1, and so is their product with the
// digits after its lowest bits are cut off. So a number is undecided if it seems to be less than 2
// below a halfway point.
TEST_F(FastPaths, LeaveNumbersNearAHalfwayPointToLibc) {
    expectCalls({
        {"1 below halfway", readByStrtodEx("101277e-30", 101277e-30), "true", "strtod"},
        {"2 below halfway", readByStrtodEx("100301e-30", 100301e-30), "true", ""},
        {"3 below halfway", readByStrtodEx("101594e-30", 101594e-30), "true", ""},
    });
}

// Then the digits and the power of ten must be exact, so that one operation rounds once.
TEST_F(FastPaths, ReadSmallNumbersInEveryRoundingMode) {
    for (int const mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        SCOPED_TRACE(mode);
        ScopedRounding const rounding(mode);
        expectCalls({
            {"10^22", readByStrtodEx("3e22", 3e22), "true", ""},
            {"10^23", readByStrtodEx("2048e23", std::stod("2048e23")), "true", "strtod"},
            {"10^-22", readByStrtodEx("3e-22", std::stod("3e-22")), "true", ""},
            {"10^-23", readByStrtodEx("3e-23", std::stod("3e-23")), "true", "strtod"},
            {"2^53", readByStrtodEx("9007199254740992e1", 9007199254740992e1), "true", ""},
            {"2^53 + 2", readByStrtodEx("9007199254740994e1", std::stod("9007199254740994e1")),
             "true", "strtod"},
            {"10^10 as a float", averagedWithItself("3e10"), averageWithItself("3e10"), "snprintf"},
            {"10^11 as a float", averagedWithItself("3e11"), averageWithItself("3e11"),
             "snprintf strtof"},
            {"10^-10 as a float", averagedWithItself("3e-10"), averageWithItself("3e-10"),
             "snprintf"},
            {"10^-11 as a float", averagedWithItself("3e-11"), averageWithItself("3e-11"),
             "snprintf strtof"},
        });
    }
}

TEST_F(FastPaths, WriteNumbersOfSixDigits) {
    expectCalls({
        {"a short form", printed(1.5, "%g"), "1.5", ""},
        {"a short form at a halfway point", printed(100000.5, "%g"), "100000", "to_chars"},
        {"a fixed form", printed(1.5, "%.2f"), "1.50", "to_chars"},
        {"a fixed form of ten places", printed(1.5, "%.10f"), "1.5000000000", "snprintf"},
        {"another form", printed(1.5, "%e"), "1.500000e+00", "snprintf"},
        {"a double in a Variant", writtenByVariant(Variant(1.5)), "1.5", ""},
        {"an int in a Variant", writtenByVariant(Variant(-42)), "-42", ""},
        {"a Boolean in a Variant", writtenByVariant(Variant(true)), "1", ""},
        {"a double in a Variant, wide", writtenWideByVariant(Variant(1.5)), "1.5", ""},
        {"an int in a Variant, wide", writtenWideByVariant(Variant(-42)), "-42", ""},
        {"a Boolean in a Variant, wide", writtenWideByVariant(Variant(true)), "1", ""},
        {"an average", averaged("a=1.5", "a=2.5"), "a=2", ""},
        {"an average of hexadecimal digits", averaged("a=1.5", "a=0x2"), "a=1.75", "strtof"},
    });
    ScopedRounding const rounding(FE_UPWARD);
    expectCalls({
        {"a short form, rounded up", printed(1.0000001, "%g"), "1.00001", "snprintf"},
        {"a fixed form, rounded up", printed(1.5, "%.0f"), "2", "snprintf"},
        {"a double in a Variant, rounded up", writtenByVariant(Variant(1.0000001)), "1.00001",
         "wide_stream"},
        {"an int in a Variant does not round", writtenByVariant(Variant(-42)), "-42", ""},
    });
}

// ---- other locales

TEST_F(FastPaths, NeedAPointInTheCLocale) {
    ScopedCLocale const comma("de_DE.UTF-8");
    expectCalls({
        {"a whole number", readByStrtodEx("42", 42), "true", ""},
        {"a comma", readByStrtodEx("42,5", 42.5), "true", "strtod"},
        {"a point ends the number", readByStrtodEx("42.5", 42), "true", "strtod"},
        {"a wide whole number", readByVariant("42", 42), "true", ""},
        {"a wide comma", readByVariant("42,5", 42.5), "true", "wcstod"},
        {"a short form", printed(1.5, "%g"), "1,5", "snprintf"},
        {"a fixed form", printed(1.5, "%.2f"), "1,50", "snprintf"},
        {"an average", averaged("a=1", "a=2"), "a=1,5", "snprintf"},
        {"a double in a Variant follows the C++ locale", writtenByVariant(Variant(1.5)), "1.5", ""},
    });
}

TEST_F(FastPaths, ReadAndWriteIntegersUnderTheFacetsOfTheStandardLibrary) {
    expectCalls({
        {"the classic locale", readWholeByVariant("42 km", 42), "true", ""},
        {"nineteen digits", readWholeByVariant("1234567890123456789", 1234567890123456789), "true",
         ""},
    });
    {
        ScopedCppLocale const german("de_DE.UTF-8");
        expectCalls({
            {"a named locale", readWholeByVariant(" 42", 42), "true", ""},
            {"a separator after the digits", readWholeByVariant("1.234", 1234), "true",
             "wide_stream"},
            {"a number that may be grouped", writtenByVariant(Variant(1234)), "1.234",
             "wide_stream"},
        });
    }
    ScopedCppLocale const own(with(new Punctuation(L',', L'.', "\3")));
    expectCalls({
        {"a facet of the host reads", readWholeByVariant("42", 42), "true", "wide_stream"},
        {"a facet of the host writes", writtenByVariant(Variant(1234)), "1.234", "wide_stream"},
        {"a facet of the host writes, wide", writtenWideByVariant(Variant(1234)), "1.234",
         "wide_stream"},
    });
}

// ---- searches

// std::string::find is the fastest for short strings, but may take the product of both lengths.
TEST_F(FastPaths, SearchWithoutLibcForStringsOfUpTo63Bytes) {
    auto const found = [](std::size_t size) {
        std::vector<std::string> const list = {"a", std::string(100, 'x')};
        std::string const part(size, 'x');
        return [=] { return shown(searchVector(list, part, true) == list.begin() + 1); };
    };
    expectCalls({
        {"62 bytes", found(62), "true", ""},
        {"63 bytes", found(63), "true", ""},
        {"64 bytes", found(64), "true", "memmem"},
    });
}

// ---- times

TEST_F(FastPaths, ReadAndWriteTimesOfFourDigitYears) {
    auto const written = [](long seconds) {
        return [=] { return xtime_t(seconds, 250000000).toString(true, 0, ""); };
    };
    auto const fourteenDigits = [](long seconds) {
        return [=] { return timeToYYYYString(seconds); };
    };
    auto const fromFourteen = [](std::string const& text, long seconds) {
        return [=] { return shown(YYYYStringTotime(text) == seconds); };
    };
    constexpr long YEAR_10000 = 253402300800;
    expectCalls({
        {"an ISO string", readTime("2024-03-05T06:08:09Z", 1709618889), "true", ""},
        {"one with a fraction and a zone", readTime("2024-03-05T06:08:09.25+01:00", 1709615289),
         "true", ""},
        {"one without leading zeros", readTime("2024-3-5T6:8:9Z", 1709618889), "true", "sscanf"},
        {"no time", readTime("TODAY", 0), "false", "sscanf"},
        {"fourteen digits", fromFourteen("20240305060809", 1709618889), "true", ""},
        {"fourteen digits with a space", fromFourteen("2024 305060809", 1709618889), "true",
         "strtol"},
        {"the year 9999 as an ISO string", written(YEAR_10000 - 1), "9999-12-31T23:59:59.250Z", ""},
        {"the year 10000 as an ISO string", written(YEAR_10000), "10000-01-01T00:00:00.250Z",
         "snprintf"},
        {"the year 9999 as digits", fourteenDigits(YEAR_10000 - 1), "99991231235959", ""},
        {"the year 10000 as digits", fourteenDigits(YEAR_10000), "100000101000000", "snprintf"},
    });
}

}  // namespace
