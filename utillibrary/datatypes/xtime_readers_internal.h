#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

#include "utillibrary/datatypes/xtime_internal.h"
#include "utillibrary/internal/calendar.h"
#include "utillibrary/internal/locale.h"
#include "utillibrary/internal/plain_number.h"
#include "utillibrary/internal/rounding.h"
#include <utillibrary/export.h>

// The fast paths that read time strings, and the readers of digits that they use. Their general
// paths are declared in xtime_internal.h. All are inline, so that a call costs nothing.
namespace com::halvorin::datatypes {

static_assert(std::endian::native == std::endian::little);

// Eight characters, compared with a pattern at once: '0' in the pattern matches any digit, any
// other character matches itself. The first character is the lowest byte.
class EightCharacters {
public:
    UTILLIBRARY_WRAPS EightCharacters(char const* text, char const (&pattern)[9]) noexcept {
        std::uint64_t wanted = 0;
        std::memcpy(&differences_, text, sizeof differences_);
        std::memcpy(&wanted, pattern, sizeof wanted);
        differences_ ^= wanted;
        // A margin makes a byte reach its top bit if the difference is too large: more than 9 for a
        // digit, more than 0 for another character.
        std::uint64_t margins = 0;
        for (unsigned i = 0; i < 8; ++i) {
            std::uint64_t const margin = pattern[i] == '0' ? 0x76 : 0x7F;
            margins |= margin << (8 * i);
        }
        constexpr std::uint64_t TOP_BITS = 0x8080808080808080;
        matched_ = (((differences_ + margins) | differences_) & TOP_BITS) == 0;
    }

    bool matched() const noexcept { return matched_; }

    /// The number of two digits, the first of them at `position`. Each byte of the sum has room for
    /// 99.
    int pair(unsigned position) const noexcept {
        std::uint64_t const pairs = 10 * differences_ + (differences_ >> 8);
        return static_cast<int>(pairs >> (8 * position) & 0xFF);
    }

private:
    std::uint64_t differences_ = 0;
    bool matched_ = false;
};

// Reads a string from left to right. Each step returns false if the next characters are others.
class StringReader {
public:
    explicit StringReader(std::string_view text) noexcept
        : cursor_(text.data()), end_(text.data() + text.size()) {}

    bool atEnd() const noexcept { return cursor_ == end_; }

    bool skip(char expected) noexcept {
        if (atEnd() || *cursor_ != expected) return false;
        ++cursor_;
        return true;
    }

    bool digit(int& value) noexcept {
        if (atEnd() || !internal::isDecimalDigit(*cursor_)) return false;
        value = *cursor_++ - '0';
        return true;
    }

    bool twoDigits(int& value) noexcept {
        int units = 0;
        if (!digit(value) || !digit(units)) return false;
        value = 10 * value + units;
        return true;
    }

private:
    char const* cursor_;
    char const* end_;
};

// A double rounded to the 24 bits of a float, to the nearest, whatever the SSE rounding word says.
// Takes    value: 0, or in the range of normal floats; not halfway between two floats
inline float roundedToFloat(double value) noexcept {
    constexpr std::uint64_t DROPPED_BITS = (1UL << 29) - 1;
    auto const bits = std::bit_cast<std::uint64_t>(value) + (1UL << 28);
    return static_cast<float>(std::bit_cast<double>(bits & ~DROPPED_BITS));
}

// "ss", or "ss." and one to nine digits, as sscanf("%f") reads them.
//
// libc rounds the decimal number to a float once, and obeys the x87 rounding word. Here digits and
// power are exact. Their quotient is rounded to a double, which obeys the SSE word, and then to a
// float. Both give the same float, because no such number is near a halfway point of two floats. A
// halfway point is an odd multiple of a power of two from 2^-18 down. No number with nine decimals
// is a halfway point. The nearest such number is 2^28 / 5^9 = 137 last places of a double away from
// it, and the quotient has an error of at most one last place. FE_INEXACT is raised for the same
// numbers: a number that is exact in a double has at most 16 bits, so it is exact in a float.
inline bool readSeconds(StringReader& reader, float& value) noexcept {
    int whole = 0;
    if (!reader.twoDigits(whole)) return false;
    value = static_cast<float>(whole);
    if (!reader.skip('.')) return true;

    constexpr std::size_t MOST_PLACES = 9;
    long digits = whole;
    std::size_t places = 0;
    for (int digit = 0; reader.digit(digit); ++places) {
        if (places == MOST_PLACES) return false;
        digits = 10 * digits + digit;
    }
    if (places == 0 || !internal::decimalPointIsDot() || !internal::decimalsRoundToNearest())
        return false;
    value = roundedToFloat(static_cast<double>(digits) / internal::EXACT_POWERS_OF_TEN[places]);
    return true;
}

// Reads a zone in one of the forms that `readIsoNumbers` accepts, up to the end of the string.
inline bool readZone(StringReader& reader, IsoNumbers& numbers) noexcept {
    if (reader.atEnd() || reader.skip('Z')) return reader.atEnd();
    bool const west = reader.skip('-');
    if (!west && !reader.skip('+')) return false;
    // sscanf skips a sign that is whitespace in the C locale.
    if (internal::isSkipped(west ? '-' : '+')) return false;
    if (!reader.twoDigits(numbers.zoneHours)) return false;
    if (west) numbers.zoneHours = -numbers.zoneHours;
    if (reader.atEnd()) return true;
    reader.skip(':');
    return reader.twoDigits(numbers.zoneMinutes) && reader.atEnd();
}

inline bool readWholeIso(std::string_view text, IsoNumbers& numbers) noexcept {
    constexpr std::size_t FRAME = 16;  // "dddd-dd-ddTdd:dd"
    if (text.size() < FRAME) return false;
    EightCharacters const date(text.data(), "0000-00-");
    EightCharacters const time(text.data() + FRAME / 2, "00T00:00");
    if (!date.matched() || !time.matched()) return false;

    numbers.year = 100 * date.pair(0) + date.pair(2);
    numbers.month = date.pair(5);
    numbers.day = time.pair(0);
    numbers.hour = time.pair(3);
    numbers.minute = time.pair(6);
    StringReader reader(text.substr(FRAME));
    if (reader.skip(':') && !readSeconds(reader, numbers.second)) return false;
    return readZone(reader, numbers);
}

/// "dddd-dd-ddTdd:dd"; then ":dd", or ":dd." and 1 to 9 digits, or nothing; then "Z", "+dd",
/// "+dddd", "+dd:dd" (or with '-'), or nothing. Seconds with a fraction need a decimal point ".",
/// and that libc rounds decimals to the nearest. Each number has exactly the digits that its sscanf
/// conversion takes, so both paths read the same.
inline std::optional<IsoNumbers> readIsoNumbers(std::string_view text) noexcept {
    std::optional<IsoNumbers> numbers(std::in_place);
    if (!readWholeIso(text, *numbers)) numbers.reset();
    return numbers;
}

/// Decimal digits only: std::stoi takes all digits of each field, so both paths read the same.
/// Takes    text: FOURTEEN_DIGITS bytes
inline std::optional<long> readFourteenDigits(std::string_view text) noexcept {
    EightCharacters const first(text.data(), "00000000");
    EightCharacters const last(text.data() + FOURTEEN_DIGITS - 8, "00000000");
    if (!first.matched() || !last.matched()) return std::nullopt;
    long const days =
        internal::daysToDate(100 * first.pair(0) + first.pair(2), first.pair(4), first.pair(6));
    return internal::secondsOf(days, {last.pair(2), last.pair(4), last.pair(6)}, 0);
}

}  // namespace com::halvorin::datatypes
