#include <bit>
#include <climits>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <random>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include <utillibrary/datatypes/Variant.h>

#include "support/bit_truncation.h"
#include "support/locales.h"
#include "support/random.h"
#include "support/rounding.h"

using com::halvorin::datatypes::Variant;
using testing_support::allLocales;
using testing_support::randomEngine;
using testing_support::ROUNDING_MODES;
using testing_support::ScopedCLocale;
using testing_support::ScopedCppLocale;
using testing_support::ScopedRounding;
using testing_support::signedNumber;
using testing_support::sweepStride;
using testing_support::unsignedNumber;
using testing_support::WholePart;
using testing_support::wholePartOf;

// What a Variant reads for random values of every kind, compared with calls of streams and libc,
// and with bits.
namespace {

using wide = std::wstring;

using namespace std::string_literals;

// Fewer cases if sweeps test a sample only.
int cases(int count) { return sweepStride() == 1 ? count : count / 100; }

std::size_t below(std::mt19937_64& engine, std::size_t end) { return engine() % end; }

// ---- floating values to integers

// Bits with an exponent around the ends of 32 and 64 bits, mostly.
double someDouble(std::mt19937_64& engine) {
    std::uint64_t const bits = engine();
    if (bits % 8 == 0) return std::bit_cast<double>(engine());
    std::uint64_t const exponent = 1023 - 4 + bits % 72;
    return std::bit_cast<double>((bits & 0x800FFFFFFFFFFFFF) | exponent << 52);
}

void expectReadByItsBits(Variant const& variant, WholePart whole) {
    auto const int32 = static_cast<int>(signedNumber(whole, 32));
    long const int64 = signedNumber(whole, 64);
    ASSERT_EQ(variant.toUbyte(), static_cast<unsigned char>(int32));
    ASSERT_EQ(variant.toByte(), static_cast<char>(int32));
    ASSERT_EQ(variant.toInt16(), static_cast<short>(int32));
    ASSERT_EQ(variant.toUint16(), static_cast<unsigned short>(int32));
    ASSERT_EQ(variant.toInt32(), int32);
    ASSERT_EQ(variant.toUint32(), static_cast<unsigned int>(int64));
    ASSERT_EQ(variant.toInt64(), int64);
    ASSERT_EQ(variant.toUint64(), unsignedNumber(whole));
}

TEST(VariantNumbersRandom, ReadsDoublesByTheirBits) {
    auto engine = randomEngine();
    Variant variant;
    Variant dateTime;
    dateTime.dataType = 13;
    for (int i = 0; i < cases(1'000'000); ++i) {
        double const value = someDouble(engine);
        variant = value;
        ASSERT_NO_FATAL_FAILURE(expectReadByItsBits(variant, wholePartOf(value))) << value;
        dateTime.copyUVal(variant);
        ASSERT_NO_FATAL_FAILURE(expectReadByItsBits(dateTime, wholePartOf(value))) << value;
    }
}

// ---- integers to floating values, to the nearest and halves to even

// The bits of a magnitude as a floating value with so many bits in its fraction.
std::uint64_t floatingBits(std::uint64_t magnitude, int fractionBits, int bias) {
    if (magnitude == 0) return 0;
    int const exponent = static_cast<int>(std::bit_width(magnitude)) - 1;
    auto const biased = static_cast<std::uint64_t>(exponent + bias);
    // The format has no bit for the leading one. In these sums it adds one to the exponent.
    if (exponent <= fractionBits) {
        return ((biased - 1) << fractionBits) + (magnitude << (fractionBits - exponent));
    }
    int const dropped = exponent - fractionBits;
    std::uint64_t const kept = magnitude >> dropped;
    std::uint64_t const rest = magnitude - (kept << dropped);
    std::uint64_t const half = std::uint64_t{1} << (dropped - 1);
    bool const up = rest > half || (rest == half && kept % 2 != 0);
    return ((biased - 1) << fractionBits) + kept + (up ? 1 : 0);
}

void expectNearest(Variant const& variant, bool negative, std::uint64_t magnitude) {
    std::uint64_t const doubleBits = floatingBits(magnitude, 52, 1023);
    std::uint64_t const floatBits = floatingBits(magnitude, 23, 127);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(variant.toDouble()),
              doubleBits | (negative ? std::uint64_t{1} << 63 : 0));
    ASSERT_EQ(std::bit_cast<std::uint32_t>(variant.toFloat()),
              floatBits | (negative ? std::uint64_t{1} << 31 : 0));
}

// Numbers of every length, with a run of zeros or ones in the middle: halves, and numbers next to
// them.
std::uint64_t someInteger(std::mt19937_64& engine) {
    std::uint64_t value = engine();
    std::uint64_t const choice = engine();
    std::uint64_t const middle = ((std::uint64_t{1} << (choice % 64)) - 1) >> (choice >> 8) % 3;
    if ((choice >> 16) % 4 == 0) value &= ~middle;
    if ((choice >> 16) % 4 == 1) value |= middle;
    if ((choice >> 16) % 4 == 2) value = (value & ~middle) + (choice >> 18) % 3;
    return value >> (choice >> 24) % 64;
}

TEST(VariantNumbersRandom, ReadsIntegersAsTheNearestFloatingValue) {
    auto engine = randomEngine();
    Variant variant;
    for (int i = 0; i < cases(1'000'000); ++i) {
        std::uint64_t const bits = someInteger(engine);
        variant = bits;
        ASSERT_NO_FATAL_FAILURE(expectNearest(variant, false, bits)) << bits;
        auto const number = static_cast<long>(bits);
        variant = number;
        ASSERT_NO_FATAL_FAILURE(expectNearest(variant, number < 0, number < 0 ? 0 - bits : bits))
            << number;
        variant = static_cast<unsigned int>(bits);
        ASSERT_NO_FATAL_FAILURE(expectNearest(variant, false, bits & 0xFFFFFFFF)) << bits;
        auto const narrow = static_cast<int>(bits);
        variant = narrow;
        ASSERT_NO_FATAL_FAILURE(
            expectNearest(variant, narrow < 0,
                          static_cast<std::uint64_t>(narrow < 0 ? -static_cast<long>(narrow)
                                                                : static_cast<long>(narrow))))
            << narrow;
    }
}

// ---- named members and operators

template <typename Target>
void expectSameBits(Target named, Target converted) {
    ASSERT_EQ(std::memcmp(&named, &converted, sizeof named), 0) << +named << ' ' << +converted;
}

TEST(VariantNumbersRandom, ReadsTheSameByNameAndByOperator) {
    auto engine = randomEngine();
    Variant variant(L"-12.5e1");
    for (int i = 0; i < cases(300'000); ++i) {
        variant.dataType = 1 + static_cast<int>(below(engine, 14));
        variant.uVal.asUint64 = variant.dataType == 12 ? below(engine, 3) : engine();
        Variant const& constant = variant;
        ASSERT_NO_FATAL_FAILURE(expectSameBits<unsigned char>(constant.toUbyte(), constant));
        ASSERT_NO_FATAL_FAILURE(expectSameBits<char>(constant.toByte(), constant));
        ASSERT_NO_FATAL_FAILURE(expectSameBits<short>(constant.toInt16(), constant));
        ASSERT_NO_FATAL_FAILURE(expectSameBits<unsigned short>(constant.toUint16(), constant));
        ASSERT_NO_FATAL_FAILURE(expectSameBits<int>(constant.toInt32(), constant));
        ASSERT_NO_FATAL_FAILURE(expectSameBits<unsigned int>(constant.toUint32(), constant));
        ASSERT_NO_FATAL_FAILURE(expectSameBits<long>(constant.toInt64(), constant));
        ASSERT_NO_FATAL_FAILURE(expectSameBits<unsigned long>(constant.toUint64(), constant));
        ASSERT_NO_FATAL_FAILURE(expectSameBits<float>(constant.toFloat(), constant));
        ASSERT_NO_FATAL_FAILURE(expectSameBits<double>(constant.toDouble(), constant));
        ASSERT_NO_FATAL_FAILURE(expectSameBits<bool>(constant.toBool(), constant));
    }
}

// ---- text

wide someDigits(std::mt19937_64& engine, std::size_t most) {
    wide digits;
    for (std::size_t count = below(engine, most + 1); count > 0; --count)
        digits += static_cast<wchar_t>(L'0' + below(engine, 10));
    return digits;
}

wchar_t oneOf(std::mt19937_64& engine, wide const& characters) {
    return characters[below(engine, characters.size())];
}

// Signs, digits and separators in the usual order, with some changes.
wide someIntegerText(std::mt19937_64& engine) {
    wide text;
    std::size_t const shape = below(engine, 8);
    if (shape >= 6) text += oneOf(engine, L" \t\n\u2003\u00A0x+");
    if (shape % 2 != 0) text += oneOf(engine, L"+-");
    text += someDigits(engine, 21);
    for (std::size_t groups = shape >= 4 ? below(engine, 5) : 0; groups > 0; --groups) {
        text += oneOf(engine, L".,\u066C\u202F");
        text += someDigits(engine, 4);
    }
    if (shape >= 5) text += oneOf(engine, L"xe -+.,5\0"s);
    if (shape == 7) text.insert(below(engine, text.size() + 1), 1, oneOf(engine, L"\0.,-5"s));
    return text;
}

TEST(VariantNumbersRandom, ReadsTextAsAStreamExtractsALong) {
    auto engine = randomEngine();
    Variant variant;
    std::wistringstream stream;
    for (std::string const& name : allLocales()) {
        SCOPED_TRACE(name);
        ScopedCppLocale const cpp(name);
        ScopedCLocale const c(allLocales()[below(engine, allLocales().size())]);
        stream.imbue(std::locale());
        for (int i = 0; i < cases(150'000); ++i) {
            ScopedRounding const rounding(ROUNDING_MODES[below(engine, 4)]);
            wide const text = someIntegerText(engine);
            stream.clear();
            stream.str(text);
            long expected = 0;
            stream >> expected;
            variant.assign(text);
            ASSERT_EQ(variant.toInt64(), expected) << testing::PrintToString(text);
            ASSERT_EQ(variant.toUint64(), static_cast<unsigned long>(expected));
            ASSERT_EQ(variant.toInt32(), static_cast<int>(expected));
            ASSERT_EQ(variant.toUbyte(), static_cast<unsigned char>(expected));
        }
    }
}

// Each character that may be whitespace or a digit, and those that bytes above 0x7F become.
TEST(VariantNumbersRandom, SkipsTheWhitespaceThatAStreamSkips) {
    for (char const* const name : {"C", "en_US.UTF-8"}) {
        ScopedCppLocale const cpp(name);
        std::wistringstream stream;
        for (int code = -0x100; code <= 0x3100; ++code) {
            wide const text = wide(1, static_cast<wchar_t>(code)) + L'7';
            for (wide const& blankOrNot : {text, L' ' + text}) {
                stream.clear();
                stream.str(blankOrNot);
                long expected = 0;
                stream >> expected;
                ASSERT_EQ(Variant(blankOrNot).toInt64(), expected) << name << ' ' << code;
            }
        }
    }
}

wide someFloatingText(std::mt19937_64& engine) {
    wide text;
    std::size_t const shape = below(engine, 16);
    if (shape >= 14) text += oneOf(engine, L" \t\u2003x+-");
    if (shape % 2 != 0) text += oneOf(engine, L"+-");
    if (shape == 13) return text + L"0x" + someDigits(engine, 16) + L".8p" + someDigits(engine, 3);
    if (shape == 12) return text + (below(engine, 2) == 0 ? L"inf" : L"nan(12)");
    text += someDigits(engine, 1 + below(engine, 22));
    if (shape >= 4) {
        text += oneOf(engine, L".....,,\u066B");
        text += someDigits(engine, 1 + below(engine, 20));
    }
    if (shape >= 10) {
        text += oneOf(engine, L"eEx");
        text += oneOf(engine, L"+-0");
        text += someDigits(engine, 3);
    }
    if (shape == 15) text.insert(below(engine, text.size() + 1), 1, oneOf(engine, L"\0.,-5"s));
    return text;
}

// Decimals halfway between two doubles, and next to it.
wide someHalfwayText(std::mt19937_64& engine) {
    std::uint64_t const halfway = (std::uint64_t{1} << 53) + 2 * below(engine, 1UL << 40) + 1;
    wide text = std::to_wstring(halfway << below(engine, 10));
    if (below(engine, 3) == 0) text.back() = static_cast<wchar_t>(L'0' + below(engine, 10));
    if (below(engine, 2) == 0) text.insert(1 + below(engine, text.size()), 1, L'.');
    if (below(engine, 2) == 0) text.insert(0, 1, L'-');
    return text;
}

void expectReadAsByLibc(Variant& variant, wide const& text) {
    variant.assign(text);
    double const expected = std::wcstod(text.c_str(), nullptr);
    double const read = variant.toDouble();
    ASSERT_EQ(std::bit_cast<std::uint64_t>(read), std::bit_cast<std::uint64_t>(expected))
        << testing::PrintToString(text) << ' ' << read << ' ' << expected;
    auto const expectedFloat = static_cast<float>(expected);
    ASSERT_EQ(std::bit_cast<std::uint32_t>(variant.toFloat()),
              std::bit_cast<std::uint32_t>(expectedFloat))
        << testing::PrintToString(text);
}

TEST(VariantNumbersRandom, ReadsTextAsLibcDoesInEveryRoundingMode) {
    auto engine = randomEngine();
    Variant variant;
    for (std::string const& name : allLocales()) {
        SCOPED_TRACE(name);
        ScopedCLocale const c(name);
        ScopedCppLocale const cpp(allLocales()[below(engine, allLocales().size())]);
        for (int const mode : ROUNDING_MODES) {
            SCOPED_TRACE(mode);
            ScopedRounding const rounding(mode);
            for (int i = 0; i < cases(60'000); ++i) {
                ASSERT_NO_FATAL_FAILURE(expectReadAsByLibc(variant, someFloatingText(engine)));
                ASSERT_NO_FATAL_FAILURE(expectReadAsByLibc(variant, someHalfwayText(engine)));
            }
        }
    }
}

TEST(VariantNumbersRandom, ReadsTextAsBooleanAsLibcFindsANumber) {
    auto engine = randomEngine();
    Variant variant;
    for (std::string const& name : allLocales()) {
        SCOPED_TRACE(name);
        ScopedCLocale const c(name);
        for (int i = 0; i < cases(150'000); ++i) {
            wide text = someIntegerText(engine);
            if (below(engine, 2) == 0) text.insert(0, 1, L'0');
            variant.assign(text);
            ASSERT_EQ(variant.toBool(), std::wcstol(text.c_str(), nullptr, 10) != 0)
                << testing::PrintToString(text);
        }
    }
}

}  // namespace
