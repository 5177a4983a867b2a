#include "utillibrary/datatypes/xtime_conversions.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string_view>

#include "utillibrary/internal/calendar.h"
#include "utillibrary/internal/decimal.h"
#include "utillibrary/internal/locale.h"

namespace com::halvorin {

namespace {

using namespace com::halvorin::internal;

constexpr int SECONDS_PER_HOUR = 3600;
constexpr int SECONDS_PER_MINUTE = 60;

// The longest time text: a year of 11 characters, 15 of date and time, 4 of fraction, 5 of zone.
constexpr std::size_t TEXT_SIZE = 64;

constexpr unsigned natural(int value) noexcept { return static_cast<unsigned>(value); }

// ---- times to text

char* writeDateAndTime(char* out, BrokenDownTime const& t) noexcept {
    if (t.year < 0 || t.year > 9999) {
        return out + std::snprintf(out, TEXT_SIZE, "%04d-%02d-%02dT%02d:%02d:%02d", t.year, t.month,
                                   t.day, t.hour, t.minute, t.second);
    }
    out = writeFourDigits(out, natural(t.year));
    *out++ = '-';
    out = writeTwoDigits(out, natural(t.month));
    *out++ = '-';
    out = writeTwoDigits(out, natural(t.day));
    *out++ = 'T';
    out = writeTwoDigits(out, natural(t.hour));
    *out++ = ':';
    out = writeTwoDigits(out, natural(t.minute));
    *out++ = ':';
    return writeTwoDigits(out, natural(t.second));
}

// The rule itself: the fraction as printf shows it, four bytes from the second on. Of a decimal
// point of several bytes they are what is seen.
// KEPT(fraction-of-six-decimals): the format says six decimals, then "1.3", and stays that way.
char* writePrintedFraction(char* out, float fraction) noexcept {
    char printed[16];
    std::snprintf(printed, sizeof printed, "%f1.3", static_cast<double>(fraction));
    std::memcpy(out, printed + 1, 4);
    return out + 4;
}

// Takes  nanoseconds: below one second
char* writeFraction(char* out, unsigned int nanoseconds) noexcept {
    auto const fraction =
        static_cast<float>(static_cast<double>(static_cast<float>(nanoseconds)) / 1e9);
    char const point = singleDecimalPoint();
    if (point == '\0') return writePrintedFraction(out, fraction);

    // A float's 24 bits times a million's 14 are exact in a double, so that this rounds the true
    // value as "%f" does, in the same rounding mode.
    // KEPT(fraction-of-six-decimals): 1000000 shows three zeros, and nothing is carried.
    auto const microseconds =
        static_cast<unsigned>(std::lrint(static_cast<double>(fraction) * 1e6));
    unsigned const milliseconds = microseconds / 1000 % 1000;
    *out++ = point;
    *out++ = static_cast<char>('0' + milliseconds / 100);
    return writeTwoDigits(out, milliseconds % 100);
}

char* writeZone(char* out, int offsetSeconds) noexcept {
    // KEPT(offset-of-a-day-is-silent): no zone lies that far away; the shift was asked for.
    if (offsetSeconds <= -SECONDS_PER_DAY || offsetSeconds >= SECONDS_PER_DAY) return out;
    if (offsetSeconds == 0) {
        *out++ = 'Z';
        return out;
    }
    unsigned const distance = natural(offsetSeconds < 0 ? -offsetSeconds : offsetSeconds);
    *out++ = offsetSeconds < 0 ? '-' : '+';
    out = writeTwoDigits(out, distance / SECONDS_PER_HOUR);
    return writeTwoDigits(out, distance % SECONDS_PER_HOUR / SECONDS_PER_MINUTE);
}

// ---- text to times

// What the ISO text says, before anyone asks whether it makes sense.
struct WrittenTime {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    float second = 0;
    int zoneHours = 0;  // with their sign
    int zoneMinutes = 0;
};

// A piece of a text as the zero-terminated copy that sscanf wants.
class Piece {
public:
    Piece(std::string_view text, std::size_t limit) noexcept {
        characters_[text.copy(characters_.data(), limit)] = '\0';
    }
    char const* text() const noexcept { return characters_.data(); }

private:
    std::array<char, TEXT_SIZE> characters_;
};

bool scanZone(char const* zone, WrittenTime& written) noexcept {
    if (*zone != '+' && *zone != '-') return true;
    if (std::strchr(zone, ':') != nullptr) {
        return std::sscanf(zone, "%d:%d", &written.zoneHours, &written.zoneMinutes) == 2;
    }
    return std::sscanf(zone, "%3d%2d", &written.zoneHours, &written.zoneMinutes) >= 1;
}

// The rule itself: what sscanf makes of the pieces. Any text may come here.
bool scanWritten(std::string const& text, WrittenTime& written) noexcept {
    std::string_view const whole(text.c_str(), strnlen(text.c_str(), 63));
    std::size_t const split = whole.find('T');
    if (split == std::string_view::npos) return false;
    std::string_view const clock = whole.substr(split + 1, 31);
    std::size_t const zone = std::min(clock.find_first_of("Z+-"), clock.size());

    Piece const date(whole.substr(0, split), 63);
    Piece const time(clock.substr(0, zone), 31);
    // KEPT(rest-is-ignored): numbers are counted; nobody asks where the last one ended.
    return std::sscanf(date.text(), "%d-%d-%d", &written.year, &written.month, &written.day) == 3 &&
           std::sscanf(time.text(), "%d:%d:%f", &written.hour, &written.minute, &written.second) >=
               2 &&
           scanZone(Piece(clock.substr(zone), 15).text(), written);
}

// Eight characters held against a pattern at once: '0' in it stands for any digit, any other
// character for itself. Little-endian: the first character is the lowest byte.
class EightCharacters {
public:
    EightCharacters(char const* text, char const (&pattern)[9]) noexcept {
        std::uint64_t wanted = 0;
        std::memcpy(&differences_, text, 8);
        std::memcpy(&wanted, pattern, 8);
        differences_ ^= wanted;
        // What must be added to a byte of the differences to reach its top bit when it is too
        // large: more than 9 for a digit, more than 0 for itself.
        std::uint64_t margins = 0;
        for (unsigned i = 0; i < 8; ++i) {
            std::uint64_t const margin = pattern[i] == '0' ? 0x76 : 0x7F;
            margins |= margin << (8 * i);
        }
        constexpr std::uint64_t TOP_BITS = 0x8080808080808080;
        matched_ = (((differences_ + margins) | differences_) & TOP_BITS) == 0;
    }

    bool matched() const noexcept { return matched_; }

    /// The number that the two digits from a position on make; each byte has room for 99.
    int pair(unsigned position) const noexcept {
        std::uint64_t const pairs = 10 * differences_ + (differences_ >> 8);
        return static_cast<int>(pairs >> (8 * position) & 0xFF);
    }

private:
    std::uint64_t differences_ = 0;
    bool matched_ = false;
};

static_assert(std::endian::native == std::endian::little);

constexpr bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }

// Reads a text from left to right. Each step answers whether the text goes on as it says.
class Reader {
public:
    explicit Reader(std::string_view text) noexcept
        : cursor_(text.data()), end_(text.data() + text.size()) {}

    bool atEnd() const noexcept { return cursor_ == end_; }

    bool skip(char expected) noexcept {
        if (atEnd() || *cursor_ != expected) return false;
        ++cursor_;
        return true;
    }

    bool digit(int& value) noexcept {
        if (atEnd() || !isDigit(*cursor_)) return false;
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

constexpr std::array<double, 10> POWERS_OF_TEN = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};

// "ss" or "ss.f", with one to nine digits after a point that libc reads as one.
//
// libc rounds such a text to a float once. Here digits and power are exact, their quotient is
// rounded to a double, and that to a float. The two give the same, since no such text comes near a
// middle between two floats: a middle is an odd multiple of a power of two from 2^-18 down, which
// nine decimals never are, and the nearest of them stay 2^28 / 5^9 = 137 last places of a double
// away. So the first rounding neither reaches nor crosses one.
bool readSeconds(Reader& reader, float& value) noexcept {
    int whole = 0;
    if (!reader.twoDigits(whole)) return false;
    value = static_cast<float>(whole);
    if (!reader.skip('.')) return true;

    long digits = whole;
    std::size_t places = 0;
    for (int digit = 0; reader.digit(digit); ++places) {
        if (places + 1 == POWERS_OF_TEN.size()) return false;
        digits = 10 * digits + digit;
    }
    value = static_cast<float>(static_cast<double>(digits) / POWERS_OF_TEN[places]);
    return places > 0 && decimalPointIsDot();
}

bool readZone(Reader& reader, WrittenTime& written) noexcept {
    if (reader.atEnd() || reader.skip('Z')) return reader.atEnd();
    bool const west = reader.skip('-');
    if (!west && !reader.skip('+')) return false;
    if (!reader.twoDigits(written.zoneHours)) return false;
    if (west) written.zoneHours = -written.zoneHours;
    if (reader.atEnd()) return true;
    reader.skip(':');
    return reader.twoDigits(written.zoneMinutes) && reader.atEnd();
}

// Owns one form: "dddd-dd-ddTdd:dd", then ":dd" and a fraction or not, then "Z", "+dd", "+dddd",
// "+dd:dd" or nothing. Each number has the digits that its sscanf conversion would take, so the two
// read the same. Anything else: no answer.
bool readCanonical(std::string_view text, WrittenTime& written) noexcept {
    constexpr std::size_t FRAME = 16;
    if (text.size() < FRAME) return false;
    EightCharacters const date(text.data(), "0000-00-");
    EightCharacters const time(text.data() + FRAME / 2, "00T00:00");
    if (!date.matched() || !time.matched()) return false;

    written.year = 100 * date.pair(0) + date.pair(2);
    written.month = date.pair(5);
    written.day = time.pair(0);
    written.hour = time.pair(3);
    written.minute = time.pair(6);
    Reader reader(text.substr(FRAME));
    if (reader.skip(':') && !readSeconds(reader, written.second)) return false;
    return readZone(reader, written);
}

bool readWritten(std::string const& text, WrittenTime& written) noexcept {
    if (readCanonical(text, written)) return true;
    written = WrittenTime();
    return scanWritten(text, written);
}

bool makesSense(WrittenTime const& t) noexcept {
    // KEPT(day-31-of-any-month): the month's own length is not asked for; the calendar carries.
    return t.year >= 1970 && t.month >= 1 && t.month <= 12 && t.day >= 1 && t.day <= 31 &&
           t.hour >= 0 && t.hour <= 23 && t.minute >= 0 && t.minute <= 59 &&  //
           t.second >= 0 && t.second < 60 &&                                  //
           t.zoneHours >= -23 && t.zoneHours <= 23 && t.zoneMinutes >= 0 && t.zoneMinutes <= 59;
}

// What mktimeEx gives for a record of these fields, which here need not be kept.
long secondsOf(int year, int month, int day, int hour, int minute, int second,
               int adjustment) noexcept {
    long const days = daysToDate(year, month, day);
    long const secondOfDay = hour * 3600L + minute * 60L + second;
    return adjustedSeconds(days * SECONDS_PER_DAY + secondOfDay, adjustment);
}

// ---- fourteen digits

constexpr std::size_t FOURTEEN = 14;

// The rule itself, for texts of fourteen bytes. Throws what std::stoi throws.
long convertFourteen(std::string const& text) {
    auto const field = [&text](std::size_t at, std::size_t size) {
        return std::stoi(text.substr(at, size));
    };
    int const year = field(0, 4);
    int const month = field(4, 2);
    int const day = field(6, 2);
    int const hour = field(8, 2);
    int const minute = field(10, 2);
    int const second = field(12, 2);
    return secondsOf(year, month, day, hour, minute, second, 0);
}

// Owns fourteen decimal digits, of which std::stoi takes each field whole.
std::optional<long> readFourteen(std::string_view text) noexcept {
    EightCharacters const date(text.data(), "00000000");
    EightCharacters const time(text.data() + FOURTEEN - 8, "00000000");
    if (!date.matched() || !time.matched()) return std::nullopt;
    return secondsOf(100 * date.pair(0) + date.pair(2), date.pair(4), date.pair(6), time.pair(2),
                     time.pair(4), time.pair(6), 0);
}

}  // namespace

namespace datatypes {

std::string xtime_t::toString(bool applyOffset, int offsetSeconds,
                              std::string const& options) const {
    unsigned long shown =
        static_cast<unsigned long>(seconds_) + nanoseconds_ / NANOSECONDS_PER_SECOND;
    if (applyOffset) shown += static_cast<unsigned long>(static_cast<long>(offsetSeconds));

    std::array<char, TEXT_SIZE> text;
    char* end = writeDateAndTime(text.data(), breakDown(static_cast<long>(shown)));
    if (options.find('I') == std::string::npos) {
        end = writeFraction(end, nanoseconds_ % NANOSECONDS_PER_SECOND);
    }
    if (applyOffset) end = writeZone(end, offsetSeconds);
    return {text.data(), end};
}

bool xtime_t::fromString(std::string const& text) noexcept {
    clear();
    WrittenTime written;
    if (!readWritten(text, written) || !makesSense(written)) return false;

    auto const whole = static_cast<int>(written.second);
    float const fraction = written.second - static_cast<float>(whole);
    // KEPT(zone-minutes-subtracted): the hours' sign is theirs alone.
    int const adjustment =
        -(written.zoneHours * SECONDS_PER_HOUR) - written.zoneMinutes * SECONDS_PER_MINUTE;
    // KEPT(refused-time-is-minus-one): the calendar's -1 is stored, and the text was read.
    seconds_ = secondsOf(written.year, written.month, written.day, written.hour, written.minute,
                         whole, adjustment);
    nanoseconds_ = static_cast<unsigned int>(static_cast<double>(fraction) * 1e9);
    return true;
}

std::string xtime_t::toYYYYString() const {
    // KEPT(half-a-second-down): one nanosecond more than half, unlike `operator long`.
    unsigned long const up = nanoseconds_ > HALF_A_SECOND ? 1 : 0;
    return utilities::timeToYYYYString(
        static_cast<long>(static_cast<unsigned long>(seconds_) + up));
}

}  // namespace datatypes

namespace utilities {

std::string timeToYYYYString(long seconds) {
    BrokenDownTime const t = breakDown(seconds);
    std::string text(FOURTEEN, '\0');
    if (t.year >= 1000 && t.year <= 9999) {
        writeFourDigits(text.data(), natural(t.year));
    } else {
        // KEPT(blank-padded-year): "%4d" here, "%04d" in the ISO form.
        std::array<char, TEXT_SIZE> year;
        std::snprintf(year.data(), year.size(), "%4d", t.year);
        text.replace(0, 4, year.data());
    }
    char* out = text.data() + text.size() - 10;
    for (int const field : {t.month, t.day, t.hour, t.minute, t.second}) {
        out = writeTwoDigits(out, natural(field));
    }
    return text;
}

long YYYYStringTotime(std::string const& text) {
    if (text.size() != FOURTEEN) return 0;
    // KEPT(fourteen-digits-unchecked): no range is tested; the calendar carries.
    if (auto const seconds = readFourteen(text)) return *seconds;
    return convertFourteen(text);
}

std::string to_string(datatypes::xtime_t const& time) { return time.toString(true, 0, ""); }

}  // namespace utilities

}  // namespace com::halvorin
