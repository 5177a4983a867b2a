#include "program/option_values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <system_error>

#include "program/printable.h"
#include "readings/reading.h"

namespace monitor {

namespace {

constexpr double SHORTEST_SECONDS = 0.001;
constexpr double LONGEST_SECONDS = 86400;
constexpr double NANOSECONDS_PER_SECOND = 1e9;
constexpr unsigned long LARGEST_COUNT = 1'000'000'000;
constexpr long LONGEST_TITLE = 100;
constexpr unsigned long SHORTEST_WINDOW = 5;
constexpr unsigned long LONGEST_WINDOW = 30UL * 86400;

constexpr bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }

bool isFieldName(std::string_view text) noexcept {
    return std::any_of(std::begin(FIELDS), std::end(FIELDS),
                       [text](Field const& field) { return text == field.name; });
}

// "cpu,memory,disk,free,uptime"
std::string fieldNames() {
    std::string names;
    for (Field const& field : FIELDS)
        names += (names.empty() ? "" : ",") + std::string(field.name);
    return names;
}

// The number that two digits write, or -1 if they are not both digits.
constexpr int twoDigits(char tens, char ones) noexcept {
    return isDigit(tens) && isDigit(ones) ? (tens - '0') * 10 + (ones - '0') : -1;
}

}  // namespace

std::optional<std::chrono::nanoseconds> parseInterval(std::string_view text) noexcept {
    char const* const end = text.data() + text.size();
    double seconds = 0;
    auto const [rest, error] = std::from_chars(text.data(), end, seconds, std::chars_format::fixed);
    if (error != std::errc() || rest != end) return std::nullopt;
    // from_chars reads "nan" too. Both comparisons are false for a NaN, so it is refused here.
    if (!(seconds >= SHORTEST_SECONDS && seconds <= LONGEST_SECONDS)) return std::nullopt;
    return std::chrono::nanoseconds(std::llround(seconds * NANOSECONDS_PER_SECOND));
}

std::optional<unsigned long> parseCount(std::string_view text) noexcept {
    char const* const end = text.data() + text.size();
    unsigned long count = 0;
    auto const [rest, error] = std::from_chars(text.data(), end, count);
    if (error != std::errc() || rest != end || count > LARGEST_COUNT) return std::nullopt;
    return count;
}

std::optional<int> parseOffset(std::string_view text) noexcept {
    if (text == "Z") return 0;
    if (text.size() != 6 || (text[0] != '+' && text[0] != '-') || text[3] != ':') {
        return std::nullopt;
    }
    int const hours = twoDigits(text[1], text[2]);
    int const minutes = twoDigits(text[4], text[5]);
    if (hours < 0 || hours > 23 || minutes < 0 || minutes > 59) return std::nullopt;
    int const seconds = hours * 3600 + minutes * 60;
    return text[0] == '-' ? -seconds : seconds;
}

Names parseNames(std::string_view text) {
    Names read;
    for (;;) {
        std::size_t const comma = text.find(',');
        std::string const name(text.substr(0, comma));
        bool const isNew =
            std::find(read.names.begin(), read.names.end(), name) == read.names.end();
        if (name.empty()) return {{}, "a name is missing"};
        if (!isFieldName(name)) return {{}, "\"" + name + "\" is not one of " + fieldNames()};
        if (!isNew) return {{}, "\"" + name + "\" is named twice"};
        read.names.push_back(name);
        if (comma == std::string_view::npos) return read;
        text.remove_prefix(comma + 1);
    }
}

std::optional<std::chrono::seconds> parseWindow(std::string_view text) noexcept {
    auto const seconds = parseCount(text);
    if (!seconds || *seconds < SHORTEST_WINDOW || *seconds > LONGEST_WINDOW) return std::nullopt;
    return std::chrono::seconds(*seconds);
}

std::optional<std::string> parseChartFile(std::string_view text) {
    if (formatOf(text).empty()) return std::nullopt;
    return std::string(text);
}

std::optional<std::string> parseTitle(std::string_view text) {
    // The bytes that do not continue a character are the first bytes of the characters.
    auto const characters = std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0U) != 0x80;
    });
    if (characters < 1 || characters > LONGEST_TITLE || !isPrintable(text)) return std::nullopt;
    return std::string(text);
}

std::optional<Theme> parseTheme(std::string_view text) noexcept {
    if (text == "light") return Theme::LIGHT;
    if (text == "dark") return Theme::DARK;
    return std::nullopt;
}

}  // namespace monitor
