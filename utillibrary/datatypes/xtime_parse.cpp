#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "utillibrary/datatypes/xtime.h"
#include "utillibrary/datatypes/xtime_internal.h"
#include "utillibrary/datatypes/xtime_readers_internal.h"
#include "utillibrary/internal/calendar.h"

// The member of xtime_t that reads a string.
namespace com::halvorin::datatypes {

namespace {

using namespace com::halvorin::internal;

// The bytes that are read: of the whole string, of the time of day with its zone, and of the zone.
// The others are ignored.
constexpr std::size_t MOST_BYTES = 63;
constexpr std::size_t MOST_BYTES_OF_TIME = 31;
constexpr std::size_t MOST_BYTES_OF_ZONE = 15;

// The first bytes of a part, with the zero byte after them that sscanf needs.
template <std::size_t MOST>
class ZeroTerminated {
public:
    explicit ZeroTerminated(std::string_view part) noexcept {
        characters_[part.copy(characters_.data(), MOST)] = '\0';
    }
    char const* text() const noexcept { return characters_.data(); }

private:
    std::array<char, MOST + 1> characters_;
};

bool scanZone(char const* zone, IsoNumbers& numbers) noexcept {
    if (*zone != '+' && *zone != '-') return true;
    if (std::strchr(zone, ':') != nullptr) {
        return std::sscanf(zone, "%d:%d", &numbers.zoneHours, &numbers.zoneMinutes) == 2;
    }
    return std::sscanf(zone, "%3d%2d", &numbers.zoneHours, &numbers.zoneMinutes) >= 1;
}

bool areInRange(IsoNumbers const& n) noexcept {
    // The ordinary comparisons would raise FE_INVALID for seconds that are "nan".
    bool const secondInRange = std::isgreaterequal(n.second, 0.0F) && std::isless(n.second, 60.0F);
    // KEPT(day-31-of-any-month): the length of the month is not checked; the calendar carries.
    return n.year >= 1970 && n.month >= 1 && n.month <= 12 && n.day >= 1 && n.day <= 31 &&
           n.hour >= 0 && n.hour <= 23 && n.minute >= 0 && n.minute <= 59 && secondInRange &&
           n.zoneHours >= -23 && n.zoneHours <= 23 && n.zoneMinutes >= 0 && n.zoneMinutes <= 59;
}

}  // namespace

std::optional<IsoNumbers> scanIsoNumbers(std::string const& text) noexcept {
    std::string_view const whole(text.c_str(), strnlen(text.c_str(), MOST_BYTES));
    std::size_t const letterT = whole.find('T');
    if (letterT == std::string_view::npos) return std::nullopt;
    std::string_view const clock = whole.substr(letterT + 1, MOST_BYTES_OF_TIME);
    std::size_t const zoneStart = std::min(clock.find_first_of("Z+-"), clock.size());

    ZeroTerminated<MOST_BYTES> const date(whole.substr(0, letterT));
    ZeroTerminated<MOST_BYTES_OF_TIME> const time(clock.substr(0, zoneStart));
    ZeroTerminated<MOST_BYTES_OF_ZONE> const zone(clock.substr(zoneStart));
    IsoNumbers n;
    // KEPT(rest-is-ignored): numbers are counted; where the last one ended is not checked.
    // KEPT(digits-wrap-at-32-bits): "%d" reads a long and keeps its low 32 bits.
    bool const complete =
        std::sscanf(date.text(), "%d-%d-%d", &n.year, &n.month, &n.day) == 3 &&
        std::sscanf(time.text(), "%d:%d:%f", &n.hour, &n.minute, &n.second) >= 2 &&
        scanZone(zone.text(), n);
    if (!complete) return std::nullopt;
    return n;
}

bool xtime_t::fromString(std::string const& text) noexcept {
    clear();
    auto numbers = readIsoNumbers(text);
    if (!numbers) numbers = scanIsoNumbers(text);
    if (!numbers || !areInRange(*numbers)) return false;

    IsoNumbers const& n = *numbers;
    FixedPoint const second(n.second);
    ClockTime const clock = {n.hour, n.minute, static_cast<int>(second.whole())};
    // KEPT(zone-minutes-subtracted): the sign belongs to the hours alone.
    int const adjustment = -(n.zoneHours * SECONDS_PER_HOUR) - n.zoneMinutes * SECONDS_PER_MINUTE;
    // KEPT(refused-time-is-minus-one): the calendar's -1 is stored, and the result is true.
    seconds_ = secondsOf(daysToDate(n.year, n.month, n.day), clock, adjustment);
    nanoseconds_ = static_cast<unsigned int>(second.fractionTimes(NANOSECONDS_PER_SECOND));
    return true;
}

}  // namespace com::halvorin::datatypes
