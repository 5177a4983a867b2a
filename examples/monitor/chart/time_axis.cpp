#include "chart/time_axis.h"

#include <array>

#include <utillibrary/datatypes/xtime.h>
#include <utillibrary/utilities/MovingTimeScale.h>

namespace monitor {

using com::halvorin::datatypes::xtime_t;
using com::halvorin::utilities::MovingTimeAxis;

namespace {

constexpr unsigned long MINUTE = 60;
constexpr unsigned long DAY = 86400;

// In the widest of the usual fonts a digit takes 0.64 of the font's size.
constexpr double WIDEST_DIGIT = 0.65;

constexpr unsigned int FEWEST_TICKS = 3;
constexpr unsigned int MOST_TICKS = 12;

constexpr std::array<char const*, 12> MONTHS = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

struct Date {
    int year, month, day;
};

Date dateOf(long localTime) noexcept {
    Date date{};
    int hour = 0;
    int minute = 0;
    int second = 0;
    unsigned int nanoseconds = 0;
    xtime_t(localTime).decompose(date.year, date.month, date.day, hour, minute, second,
                                 nanoseconds);
    return date;
}

std::string dayText(long localTime) {
    Date const date = dateOf(localTime);
    return std::to_string(date.day) + " " + MONTHS[static_cast<std::size_t>(date.month) - 1];
}

std::string yearText(long localTime) { return std::to_string(dateOf(localTime).year); }

// "13:50:40" out of "2026-11-21T13:50:40".
std::string clockText(long localTime) {
    std::string const text = xtime_t(localTime).toString(false, 0, "I");
    return text.substr(text.find('T') + 1);
}

std::string labelFor(long localTime, unsigned long step) {
    if (step >= DAY) return dayText(localTime);
    std::string const text = clockText(localTime);
    return step < MINUTE ? text : text.substr(0, text.rfind(':'));
}

std::string contextFor(long localTime, unsigned long step) {
    std::string const year = yearText(localTime);
    return step >= DAY ? year : dayText(localTime) + " " + year;
}

// Ticks at one distance, in the local time of the zone.
struct LocalTicks {
    unsigned long step = 0;
    std::vector<long> majors;
    std::vector<long> minors;
};

// Minor ticks between major ticks of whole days must be at midnight, or divide each day equally.
// For example, three minor ticks do not suit a step of three days.
bool minorsSuitDays(unsigned long step, unsigned int minor) noexcept {
    if (step < DAY) return true;
    unsigned long const spacing = step / (minor + 1);
    return spacing % DAY == 0 || DAY % spacing == 0;
}

// The closest ticks whose labels have room. A step of 0 means that more ticks were wanted than
// there are seconds; it never has room.
LocalTicks closestTicks(long from, long to, double unitsPerSecond) {
    LocalTicks ticks;
    for (unsigned int wanted = MOST_TICKS; wanted >= FEWEST_TICKS; --wanted) {
        unsigned int minor = 0;
        MovingTimeAxis(from, to, wanted, ticks.step, minor, ticks.majors, ticks.minors);
        double const label = estimatedWidth(labelFor(0, ticks.step), AXIS_FONT_SIZE);
        // labelFor(0) is "1 Jan", which is not the longest label of a day.
        double const longest = ticks.step < DAY ? label : estimatedWidth("21 Nov", AXIS_FONT_SIZE);
        double const room = static_cast<double>(ticks.step) * unitsPerSecond;
        if (minorsSuitDays(ticks.step, minor) && room >= longest + LABEL_GAP) break;
    }
    return ticks;
}

// Removes each context that is too close to the next one.
void thinContexts(std::vector<MajorTick>& ticks, double unitsPerSecond) {
    MajorTick const* next = nullptr;
    for (auto tick = ticks.rbegin(); tick != ticks.rend(); ++tick) {
        if (tick->context.empty()) continue;
        if (next != nullptr) {
            double const distance = static_cast<double>(next->time - tick->time) * unitsPerSecond;
            double const needed = (estimatedWidth(tick->context, AXIS_FONT_SIZE) +
                                   estimatedWidth(next->context, AXIS_FONT_SIZE)) /
                                      2 +
                                  LABEL_GAP;
            if (distance < needed) {
                tick->context.clear();
                continue;
            }
        }
        next = &*tick;
    }
}

}  // namespace

double estimatedWidth(std::string_view text, double fontSize) noexcept {
    return static_cast<double>(text.size()) * fontSize * WIDEST_DIGIT;
}

TimeAxis timeAxis(long from, long to, double unitsPerSecond, int offsetSeconds) {
    LocalTicks const local = closestTicks(from + offsetSeconds, to + offsetSeconds, unitsPerSecond);
    TimeAxis axis;
    std::string context;
    for (long const time : local.majors) {
        std::string const now = contextFor(time, local.step);
        axis.majors.push_back(
            {time - offsetSeconds, labelFor(time, local.step), now == context ? "" : now});
        context = now;
    }
    for (long const time : local.minors)
        axis.minors.push_back(time - offsetSeconds);
    thinContexts(axis.majors, unitsPerSecond);
    return axis;
}

std::string timeOfDay(long time, int offsetSeconds) { return clockText(time + offsetSeconds); }

std::string dayAndYear(long time, int offsetSeconds) { return contextFor(time + offsetSeconds, 0); }

}  // namespace monitor
