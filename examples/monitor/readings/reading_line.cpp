#include "readings/reading_line.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>
#include <unordered_map>

#include <utillibrary/utilities/StringNVP.h>

namespace monitor {

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;
using com::halvorin::utilities::addToNVPString;
using com::halvorin::utilities::deserializeNVP;

namespace {

constexpr char const* TIME = "time";

// 2024-03-05T06:08:09 .250 Z
constexpr std::size_t SECONDS_END = 19;
constexpr std::size_t ZONE = SECONDS_END + 4;
constexpr unsigned int NANOSECONDS_PER_MILLISECOND = 1'000'000;

// What xtime_t::fromString reads.
constexpr std::string_view EARLIEST_TIME = "1970-01-01T00:00:00.000Z";
constexpr std::string_view LATEST_TIME = "2038-01-19T03:14:07.999Z";

// The smallest and the largest float take fewer characters.
constexpr std::size_t LONGEST_NUMBER = 64;

constexpr bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }

bool isFree(Field const& field) noexcept { return field.value == &Reading::free; }

// The whole string as an unsigned number.
template <typename Number>
std::optional<Number> wholeNumber(std::string_view text) noexcept {
    Number number = 0;
    // from_chars also reads "nan", "inf" and a minus sign.
    if (text.empty() || (!isDigit(text[0]) && text[0] != '.')) return std::nullopt;
    char const* const end = text.data() + text.size();
    auto const [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest != end) return std::nullopt;
    return number;
}

// xtime_t::fromString reads the seconds as a float, which loses milliseconds, and ignores what
// follows the time. So only the whole seconds are given to it. A time is accepted if toString gives
// the same string back.
std::optional<xtime_t> readTime(std::string const& text) {
    if (text.size() != ZONE + 1 || text[SECONDS_END] != '.' || text[ZONE] != 'Z') {
        return std::nullopt;
    }
    unsigned int milliseconds = 0;
    char const* const end = text.data() + ZONE;
    auto const [rest, error] = std::from_chars(text.data() + SECONDS_END + 1, end, milliseconds);
    if (error != std::errc() || rest != end) return std::nullopt;
    std::string const seconds = text.substr(0, SECONDS_END);
    xtime_t time;
    if (!time.fromString(seconds) || time.toString(false, 0, "I") != seconds) return std::nullopt;
    time.putNanoseconds(milliseconds * NANOSECONDS_PER_MILLISECOND);
    return time;
}

// True if a string has the form of a time: "2024-03-05T06:08:09.250Z" with any digits.
bool hasFormOfTime(std::string_view text) noexcept {
    return text.size() == LATEST_TIME.size() &&
           std::equal(text.begin(), text.end(), LATEST_TIME.begin(),
                      [](char c, char form) { return isDigit(form) ? isDigit(c) : c == form; });
}

// Why a string is not a time that can be read. Times of this form compare as strings.
std::string reasonAgainst(std::string_view text) {
    if (hasFormOfTime(text)) {
        if (text < EARLIEST_TIME) return "time is before " + std::string(EARLIEST_TIME);
        if (text > LATEST_TIME) return "time is after " + std::string(LATEST_TIME);
    }
    return "time is not a time such as 2024-03-05T06:08:09.250Z";
}

// The value of a pair, or nothing if the string is not such a number.
std::optional<Variant> readValue(Field const& field, std::string const& text) {
    if (isFree(field)) {
        if (auto const bytes = wholeNumber<unsigned long>(text)) return Variant(*bytes);
    } else {
        if (auto const number = wholeNumber<float>(text)) return Variant(*number);
    }
    return std::nullopt;
}

}  // namespace

std::string valueText(Variant const& value) {
    if (!isKnown(value)) return {};
    char digits[LONGEST_NUMBER];
    char* const end = digits + sizeof digits;
    bool const isCount = value.type() == Variant(0UL).type();
    auto const written =
        isCount ? std::to_chars(digits, end, value.toUint64())
                : std::to_chars(digits, end, value.toFloat(), std::chars_format::fixed);
    return {digits, written.ptr};
}

std::string toLine(Reading const& reading) {
    std::string line;
    addToNVPString(line, TIME, reading.time.toString(true, 0, ""));
    // addToNVPString adds no pair for an empty string: a line without a pair means Null.
    for (Field const& field : FIELDS)
        addToNVPString(line, field.name, valueText(reading.*field.value));
    return line;
}

std::variant<Reading, Malformed> readLine(std::string const& line) {
    std::unordered_map<std::string, std::string> pairs;
    if (!deserializeNVP(pairs, line)) return Malformed{"not a line of name=value pairs"};

    auto const timePair = pairs.find(TIME);
    if (timePair == pairs.end()) return Malformed{"time is missing"};
    auto const time = readTime(timePair->second);
    if (!time) return Malformed{reasonAgainst(timePair->second)};

    Reading reading;
    reading.time = *time;
    for (Field const& field : FIELDS) {
        auto const pair = pairs.find(field.name);
        if (pair == pairs.end()) {
            (reading.*field.value).makeNull();
            continue;
        }
        auto const value = readValue(field, pair->second);
        if (!value) {
            return Malformed{std::string(field.name) + " is not a " +
                             (isFree(field) ? "whole number" : "number")};
        }
        reading.*field.value = *value;
    }
    return reading;
}

}  // namespace monitor
