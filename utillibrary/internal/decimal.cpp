#include "utillibrary/internal/decimal.h"

#include <bit>
#include <cfenv>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <optional>

#include "utillibrary/internal/power_of_ten.h"
#include <utillibrary/export.h>

namespace com::halvorin::internal {

namespace {

constexpr int DIGITS = 6;
constexpr unsigned SMALLEST_COEFFICIENT = 100'000;  // six digits
constexpr unsigned LARGEST_COEFFICIENT = 999'999;

// coefficient * 10^(exponent - 5). The coefficient has six digits.
struct SixDigits {
    unsigned coefficient;
    int exponent;
};

constexpr int MANTISSA_BITS = 52;
constexpr int EXPONENT_BIAS = 1023;
constexpr std::uint64_t SIGN = std::uint64_t{1} << 63;

// floor(log10(mantissa * 2^(binaryExponent - 63))), for a double's mantissa with its highest bit
// set. The binary exponent alone gives the result or one less. The leading 64 bits of the next
// power of ten then decide: no double lies between these bits and the exact power.
int decimalExponentOf(std::uint64_t mantissa, int binaryExponent) noexcept {
    int const estimate = (binaryExponent * 315653) >> 20;  // * log10(2), rounded down
    int const next = estimate + 1;
    bool const reached =
        binaryExponentOf(next) == binaryExponent && mantissa >= leadingBitsOf(next);
    return reached ? next : estimate;
}

// Answers for 0 and for all normal numbers. Declines if the digits that are cut off are too close
// to half of the last digit that stays; also for subnormal numbers, infinity and NaN.
UTILLIBRARY_WRAPS std::optional<SixDigits> sixDigits(std::uint64_t bits) noexcept {
    int const biased = static_cast<int>(bits >> MANTISSA_BITS & 0x7FF);
    if (biased == 0x7FF || biased == 0) {
        return bits << 1 == 0 ? std::optional(SixDigits{0, 0}) : std::nullopt;
    }
    int const binaryExponent = biased - EXPONENT_BIAS;
    std::uint64_t const mantissa = bits << (63 - MANTISSA_BITS) | SIGN;
    int const exponent = decimalExponentOf(mantissa, binaryExponent);
    Scaled const digits = scaled(mantissa, binaryExponent - 63, DIGITS - 1 - exponent);

    int const places = -digits.exponent;  // [43, 47]
    if (mayBeHalfway(digits.bits, places, SCALED_ERROR)) return std::nullopt;
    auto const coefficient = static_cast<unsigned>(rounded(digits.bits, places));
    if (coefficient <= LARGEST_COEFFICIENT) return SixDigits{coefficient, exponent};
    return SixDigits{SMALLEST_COEFFICIENT, exponent + 1};  // 999999.5 has seven digits
}

// Up to eight characters, the first in the lowest byte. They are shifted and stored together, so
// that no load waits for stores of single bytes.
using Characters = std::uint64_t;
static_assert(std::endian::native == std::endian::little);

constexpr Characters ZEROS = 0x303030303030;  // "000000"

Characters twoDigits(unsigned value) noexcept {
    std::uint16_t pair = 0;
    std::memcpy(&pair, &TWO_DIGITS[2 * static_cast<std::size_t>(value)], sizeof pair);
    return pair;
}

// Stores all eight characters. Only the first `count` are part of the result.
char* put(char* out, Characters characters, int count) noexcept {
    std::memcpy(out, &characters, sizeof characters);
    return out + count;
}

char* writeExponent(char* out, int exponent) noexcept {
    *out++ = 'e';
    *out++ = exponent < 0 ? '-' : '+';
    auto const magnitude = static_cast<unsigned>(exponent < 0 ? -exponent : exponent);
    if (magnitude >= 100) *out++ = static_cast<char>('0' + magnitude / 100);
    return writeTwoDigits(out, magnitude % 100);
}

// Writes as "%g" does: without an exponent from 10^-4 to below 10^6, and without trailing zeros.
char* layOut(char* out, SixDigits value) noexcept {
    Characters const digits = twoDigits(value.coefficient / 10000) |
                              twoDigits(value.coefficient / 100 % 100) << 16 |
                              twoDigits(value.coefficient % 100) << 32;
    // The number of digits up to the last one that is not "0"; for zero there is none.
    int const count = (static_cast<int>(std::bit_width(digits ^ ZEROS)) + 7) / 8;

    bool const fixed = value.exponent >= -4 && value.exponent < DIGITS;
    if (fixed && value.exponent < 0) {
        constexpr Characters LEADING = 0x3030302E30;  // "0.000"
        return put(put(out, LEADING, 1 - value.exponent), digits, count);
    }
    int const wholeDigits = fixed ? value.exponent + 1 : 1;
    out = put(out, digits, wholeDigits);  // trailing zeros of the whole part stay
    if (count > wholeDigits) {
        *out++ = '.';
        out = put(out, digits >> (8 * wholeDigits), count - wholeDigits);
    }
    return fixed ? out : writeExponent(out, value.exponent);
}

char* writeByStandardLibrary(char* out, double value) noexcept {
    return std::to_chars(out, out + GENERAL_SIZE, value, std::chars_format::general, DIGITS).ptr;
}

// Tests the bits, because a comparison may take a subnormal number for 0: see below.
bool isSubnormal(double value) noexcept {
    auto const magnitude = std::bit_cast<std::uint64_t>(value) & ~SIGN;
    return magnitude != 0 && magnitude >> MANTISSA_BITS == 0;
}

// A host may have told the processor to take subnormal numbers for 0 (DAZ). std::to_chars would
// then write "0", and printf would not. So it runs in the default environment.
char* writeSubnormal(char* out, double value) noexcept {
    std::fenv_t environment;
    std::fegetenv(&environment);
    std::fesetenv(FE_DFL_ENV);
    char* const end = writeByStandardLibrary(out, value);
    std::fesetenv(&environment);
    return end;
}

// The number of decimal digits.
int digitsOf(unsigned value) noexcept {
    int digits = 1;
    for (unsigned long limit = 10; value >= limit; limit *= 10)
        ++digits;
    return digits;
}

}  // namespace

UTILLIBRARY_WRAPS std::string wholeText(long value) {
    constexpr unsigned long EIGHT_DIGITS = 100'000'000;
    std::array<char, 24> text;
    char* const end = text.data() + text.size();
    bool const minus = value < 0;
    auto rest = static_cast<unsigned long>(value);
    if (minus) rest = 0 - rest;

    // From the last digit to the first: eight at a time, then two at a time, then one or two.
    char* begin = end;
    for (; rest >= EIGHT_DIGITS; rest /= EIGHT_DIGITS) {
        auto const eight = static_cast<unsigned>(rest % EIGHT_DIGITS);
        begin -= 8;
        writeFourDigits(writeFourDigits(begin, eight / 10000), eight % 10000);
    }
    auto first = static_cast<unsigned>(rest);
    for (; first >= 100; first /= 100)
        writeTwoDigits(begin -= 2, first % 100);
    writeTwoDigits(begin - 2, first);
    begin -= first < 10 ? 1 : 2;
    *--begin = '-';
    return {minus ? begin : begin + 1, end};
}

UTILLIBRARY_WRAPS char* writeWhole(char* out, int value) noexcept {
    bool const minus = value < 0;
    auto rest = static_cast<unsigned>(value);
    if (minus) rest = 0 - rest;
    *out = '-';
    out += static_cast<int>(minus);

    char* const end = out + digitsOf(rest);
    char* at = end;
    for (; rest >= 100; rest /= 100)
        writeTwoDigits(at -= 2, rest % 100);
    if (rest >= 10) {
        writeTwoDigits(out, rest);
    } else {
        *out = static_cast<char>('0' + rest);
    }
    return end;
}

std::optional<char*> writeSixDigits(char* out, double value) noexcept {
    auto const bits = std::bit_cast<std::uint64_t>(value);
    auto const digits = sixDigits(bits);
    if (!digits) return std::nullopt;
    *out = '-';
    return layOut(out + (bits >> 63), *digits);
}

char* writeGeneralExactly(char* out, double value) noexcept {
    if (isSubnormal(value)) return writeSubnormal(out, value);
    return writeByStandardLibrary(out, value);
}

char* writeGeneral(char* out, double value) noexcept {
    if (auto const end = writeSixDigits(out, value)) return *end;
    return writeGeneralExactly(out, value);
}

char* printGeneral(char* out, double value, bool plain) noexcept {
    if (plain) return writeGeneral(out, value);
    return out + std::snprintf(out, PRINTED_GENERAL_SIZE, "%g", value);
}

}  // namespace com::halvorin::internal
