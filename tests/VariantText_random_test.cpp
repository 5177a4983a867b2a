#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/Variant.h>

#include "support/locales.h"
#include "support/random.h"
#include "support/rounding.h"

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;
using testing_support::allLocales;
using testing_support::randomEngine;
using testing_support::ROUNDING_MODES;
using testing_support::ScopedCLocale;
using testing_support::ScopedCppLocale;
using testing_support::ScopedLocale;
using testing_support::ScopedRounding;
using testing_support::sweepStride;

// What a Variant prints for random numbers of every kind, compared with a wide stream.
namespace {

// Fewer cases if sweeps test a sample only.
int cases(int count) { return sweepStride() == 1 ? count : count / 100; }

int between(std::mt19937_64& engine, int first, int last) {
    return first + static_cast<int>(engine() % static_cast<std::uint64_t>(last - first + 1));
}

double decimal(std::string const& digits, int exponent) {
    return std::strtod((digits + "e" + std::to_string(exponent)).c_str(), nullptr);
}

// A double at most two steps away.
double nudged(std::mt19937_64& engine, double value) {
    int const steps = between(engine, -2, 2);
    double const target = std::copysign(std::numeric_limits<double>::infinity(), steps);
    for (int i = std::abs(steps); i > 0; --i)
        value = std::nextafter(value, target);
    return value;
}

double someDouble(std::mt19937_64& engine) {
    double value = 0;
    switch (engine() % 8) {
        case 0:  // any bits
            return std::bit_cast<double>(engine());
        case 1:  // any bits within the range that needs no large powers of ten
            value = std::ldexp(static_cast<double>(engine() >> 11), between(engine, -120, 20));
            break;
        case 2:  // a short decimal
            value = decimal(std::to_string(between(engine, 0, 9'999'999)), between(engine, -12, 6));
            break;
        case 3:  // halfway between two texts of six digits
            value = nudged(engine, decimal(std::to_string(between(engine, 100'000, 999'999)) + "5",
                                           between(engine, -25, 25)));
            break;
        case 4:  // the same anywhere
            value = nudged(engine, decimal(std::to_string(between(engine, 100'000, 999'999)) + "5",
                                           between(engine, -330, 302)));
            break;
        case 5:  // a power of ten
            value = nudged(engine, decimal("1", between(engine, -323, 308)));
            break;
        case 6:  // whole numbers and halves
            value = static_cast<double>(engine() >> between(engine, 1, 63)) / 2;
            break;
        default:  // a carry through all digits
            value = nudged(engine, decimal("9999995", between(engine, -30, 20)));
            break;
    }
    return engine() % 2 == 0 ? value : -value;
}

// A stream with default settings under the global locale.
class Printer {
public:
    template <typename Value>
    std::wstring print(Value value) {
        stream_.str(L"");
        stream_ << value;
        return stream_.str();
    }

private:
    std::wostringstream stream_;
};

void expectPrinted(Variant const& variant, std::wstring const& expected) {
    ASSERT_EQ(variant.convertToString(1033), expected);
    std::string const narrow = variant.toString();
    ASSERT_EQ(narrow.size(), expected.size());
    for (std::size_t i = 0; i < narrow.size(); ++i) {
        ASSERT_EQ(narrow[i], static_cast<char>(expected[i] & 0xFF));
    }
}

void expectDoublePrinted(Variant& variant, Printer& printer, double value) {
    variant = value;
    ASSERT_NO_FATAL_FAILURE(expectPrinted(variant, printer.print(value))) << std::hexfloat << value;
}

void expectOthersPrinted(Variant& variant, Printer& printer, std::uint64_t bits) {
    auto const single = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
    variant = single;
    ASSERT_NO_FATAL_FAILURE(expectPrinted(variant, printer.print(static_cast<double>(single))));
    variant = static_cast<long>(bits);
    ASSERT_NO_FATAL_FAILURE(
        expectPrinted(variant, printer.print(static_cast<double>(static_cast<long>(bits)))));
    variant = bits;
    ASSERT_NO_FATAL_FAILURE(expectPrinted(variant, printer.print(static_cast<double>(bits))));
    variant = static_cast<int>(bits);
    ASSERT_NO_FATAL_FAILURE(expectPrinted(variant, printer.print(static_cast<int>(bits))));
    variant = static_cast<unsigned int>(bits);
    ASSERT_NO_FATAL_FAILURE(expectPrinted(variant, printer.print(static_cast<int>(bits))));
    variant = static_cast<short>(bits);
    ASSERT_NO_FATAL_FAILURE(expectPrinted(variant, printer.print(static_cast<short>(bits))));
    variant = static_cast<unsigned short>(bits);
    ASSERT_NO_FATAL_FAILURE(
        expectPrinted(variant, printer.print(static_cast<unsigned short>(bits))));
    variant = static_cast<unsigned char>(bits);
    ASSERT_NO_FATAL_FAILURE(expectPrinted(variant, printer.print(static_cast<int>(bits & 0xFF))));
    variant = static_cast<char>(bits);
    ASSERT_NO_FATAL_FAILURE(
        expectPrinted(variant, printer.print(int{static_cast<signed char>(bits)})));
    variant = bits % 2 != 0;
    ASSERT_NO_FATAL_FAILURE(expectPrinted(variant, printer.print(bits % 2 != 0)));
}

TEST(VariantTextRandom, PrintsDoublesAsAStreamDoes) {
    auto engine = randomEngine();
    Variant variant;
    ScopedLocale const classic("C");
    Printer printer;
    for (int i = 0; i < cases(1'000'000); ++i) {
        ASSERT_NO_FATAL_FAILURE(expectDoublePrinted(variant, printer, someDouble(engine)));
    }
}

TEST(VariantTextRandom, PrintsNumbersAsAStreamDoesInEveryLocale) {
    auto engine = randomEngine();
    Variant variant;
    ScopedCLocale const c("C");  // for the decimals that the doubles are made of
    for (std::string const& name : allLocales()) {
        SCOPED_TRACE(name);
        ScopedCppLocale const cpp(name);
        Printer printer;
        for (int i = 0; i < cases(60'000); ++i) {
            ASSERT_NO_FATAL_FAILURE(expectDoublePrinted(variant, printer, someDouble(engine)));
        }
        for (int i = 0; i < cases(10'000); ++i) {
            std::uint64_t const bits = engine() >> (engine() % 64);
            ASSERT_NO_FATAL_FAILURE(expectOthersPrinted(variant, printer, bits)) << bits;
        }
    }
}

TEST(VariantTextRandom, PrintsNumbersAsAStreamDoesInEveryRoundingMode) {
    auto engine = randomEngine();
    Variant variant;
    ScopedCLocale const c("C");
    for (int const mode : ROUNDING_MODES) {
        SCOPED_TRACE(mode);
        ScopedRounding const rounding(mode);
        for (std::string const& name : {std::string("C"), std::string("de_DE.UTF-8")}) {
            SCOPED_TRACE(name);
            ScopedCppLocale const cpp(name);
            Printer printer;
            for (int i = 0; i < cases(50'000); ++i) {
                ASSERT_NO_FATAL_FAILURE(expectDoublePrinted(variant, printer, someDouble(engine)));
            }
            for (int i = 0; i < cases(5'000); ++i) {
                ASSERT_NO_FATAL_FAILURE(expectOthersPrinted(variant, printer, engine()));
            }
        }
    }
}

TEST(VariantTextRandom, PrintsADateTimeAsTheTimeDoes) {
    auto engine = randomEngine();
    Variant variant;
    for (std::string const& name : allLocales()) {
        SCOPED_TRACE(name);
        ScopedCLocale const c(name);
        for (int i = 0; i < cases(60'000); ++i) {
            xtime_t const time(static_cast<long>(engine() >> (engine() % 64)),
                               static_cast<unsigned int>(engine()));
            variant = time;
            std::string const expected = time.toString(true, 0, "");
            ASSERT_EQ(variant.toString(), expected);
            std::wstring widened;
            for (char const byte : expected)
                widened += static_cast<wchar_t>(static_cast<signed char>(byte));
            ASSERT_EQ(variant.toString(1033), widened);
        }
    }
}

}  // namespace
