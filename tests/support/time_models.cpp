#include "support/time_models.h"

#include <array>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace testing_support {

using com::halvorin::datatypes::xtime_t;

namespace {

std::tm brokenDownByLibc(long seconds) {
    std::tm record{};
    if (gmtime_r(&seconds, &record) == nullptr) return {};
    return record;
}

int fullYear(std::tm const& record) {
    return static_cast<int>(static_cast<unsigned>(record.tm_year) + 1900);
}

// The seconds of a date by libc's timegm; -1 outside 0 to INT_MAX, before or after the adjustment.
long countedByLibc(int year, int month, int day, int hour, int minute, int second, int adjustment) {
    std::tm record{};
    record.tm_year = year - 1900;
    record.tm_mon = month - 1;
    record.tm_mday = day;
    record.tm_hour = hour;
    record.tm_min = minute;
    record.tm_sec = second;
    long const seconds = timegm(&record);
    if (seconds < 0 || seconds > INT_MAX) return -1;
    long const adjusted = seconds + adjustment;
    return adjusted < 0 || adjusted > INT_MAX ? -1 : adjusted;
}

}  // namespace

std::string modelOfToString(xtime_t const& time, bool applyOffset, int offsetSeconds,
                            bool fraction) {
    auto shown = static_cast<unsigned long>(time.getDateTime());
    shown += time.getNanoseconds() / 1000000000;
    if (applyOffset) shown += static_cast<unsigned long>(static_cast<long>(offsetSeconds));
    std::tm const t = brokenDownByLibc(static_cast<long>(shown));

    char suffix[64] = "";
    if (applyOffset && offsetSeconds == 0) {
        std::strcpy(suffix, "Z");
    } else if (applyOffset && offsetSeconds >= -86399 && offsetSeconds <= 86399) {
        int const distance = std::abs(offsetSeconds);
        std::snprintf(suffix, sizeof suffix, "%c%02d%02d", offsetSeconds > 0 ? '+' : '-',
                      distance / 3600, distance % 3600 / 60);
    }

    auto const part = static_cast<float>(
        static_cast<double>(static_cast<float>(time.getNanoseconds() % 1000000000)) / 1000000000.0);
    char printed[64];
    std::snprintf(printed, sizeof printed, "%f1.3", static_cast<double>(part));
    std::string const digits = fraction ? std::string(printed).substr(1, 4) : "";

    char text[256];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d%s%s", fullYear(t), t.tm_mon + 1,
                  t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec, digits.c_str(), suffix);
    return text;
}

IsoReading modelOfFromString(std::string const& text) {
    std::string const whole = std::string(text.c_str()).substr(0, 63);
    std::size_t const split = whole.find('T');
    std::string const date = whole.substr(0, split);
    std::string time = split == std::string::npos ? "" : whole.substr(split + 1, 31);
    std::size_t const end = std::strcspn(time.c_str(), "Z+-");
    std::string const zone = time.substr(end, 15);
    time.resize(end);

    int year = 0;
    int month = 0;
    int day = 0;
    if (std::sscanf(date.c_str(), "%d-%d-%d", &year, &month, &day) != 3) return {};
    if (year < 1970 || month < 1 || month > 12 || day < 1 || day > 31) return {};

    int hour = 0;
    int minute = 0;
    float second = 0;
    if (std::sscanf(time.c_str(), "%d:%d:%f", &hour, &minute, &second) < 2) return {};
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59) return {};
    if (!(second >= 0 && second < 60)) return {};

    int hours = 0;
    int minutes = 0;
    if (zone.starts_with('+') || zone.starts_with('-')) {
        if (zone.find(':') != std::string::npos) {
            if (std::sscanf(zone.c_str(), "%d:%d", &hours, &minutes) != 2) return {};
        } else {
            if (std::sscanf(zone.c_str(), "%3d%2d", &hours, &minutes) < 1) return {};
        }
        if (hours < -23 || hours > 23 || minutes < 0 || minutes > 59) return {};
    }

    int const whole_ = static_cast<int>(second);
    double const fraction = static_cast<double>(second - static_cast<float>(whole_));
    long const seconds =
        countedByLibc(year, month, day, hour, minute, whole_, -(hours * 3600) - minutes * 60);
    return {true, xtime_t(seconds, static_cast<unsigned>(fraction * 1000000000))};
}

std::string modelOfFourteenDigits(long seconds) {
    std::tm const t = brokenDownByLibc(seconds);
    char text[128];
    std::snprintf(text, sizeof text, "%4d%02d%02d%02d%02d%02d", fullYear(t), t.tm_mon + 1,
                  t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec);
    return text;
}

// A field has at most four bytes, so its number fits an int, and strtol reads it as stoi does.
std::optional<long> modelOfFourteenDigitsRead(std::string const& text) {
    std::array<int, 6> fields{};
    std::size_t at = 0;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        std::string const field = text.substr(at, i == 0 ? 4 : 2);
        at += field.size();
        char* end = nullptr;
        fields[i] = static_cast<int>(std::strtol(field.c_str(), &end, 10));
        if (end == field.c_str()) return std::nullopt;
    }
    return countedByLibc(fields[0], fields[1], fields[2], fields[3], fields[4], fields[5], 0);
}

// ---- mktimeEx

namespace {

bool isLeapYear(long year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

long daysOf(long year, long month) {
    long const days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 1 && isLeapYear(year) ? 29 : days[month];
}

long daysIn(long year) { return isLeapYear(year) ? 366 : 365; }

// Carries whole `limit`s of one field into the next larger one.
void carry(long& field, long limit, long& larger) {
    larger += field / limit;
    field %= limit;
    if (field < 0) {
        field += limit;
        --larger;
    }
}

}  // namespace

long modelOfMktimeEx(std::tm& record, int adjustment) {
    long year = record.tm_year + 1900L;
    long month = record.tm_mon;
    long day = record.tm_mday - 1L;  // from 0
    long hour = record.tm_hour;
    long minute = record.tm_min;
    long second = record.tm_sec;
    carry(second, 60, minute);
    carry(minute, 60, hour);
    carry(hour, 24, day);
    carry(month, 12, year);

    // 400 years have 146097 days, and the calendar repeats after them. So the loop is short.
    long eras = 0;
    carry(day, 146097, eras);
    year += eras * 400;
    for (; month > 0; --month)
        day += daysOf(year, month - 1);
    while (day >= daysIn(year))
        day -= daysIn(year++);
    while (day >= daysOf(year, month))
        day -= daysOf(year, month++);
    record.tm_year = static_cast<int>(year - 1900);
    record.tm_mon = static_cast<int>(month);
    record.tm_mday = static_cast<int>(day + 1);
    record.tm_hour = static_cast<int>(hour);
    record.tm_min = static_cast<int>(minute);
    record.tm_sec = static_cast<int>(second);
    if (year < 1970) return -1;

    // Later years do not fit the result, and have the calendar of an earlier one.
    long const counted = year < 2400 ? year : 2000 + year % 400;
    long days = 0;
    for (long y = 1970; y < counted; ++y)
        days += daysIn(y);
    long dayOfYear = day;
    for (long m = 0; m < month; ++m)
        dayOfYear += daysOf(year, m);
    record.tm_wday = static_cast<int>((days + dayOfYear + 4) % 7);
    record.tm_yday = static_cast<int>(dayOfYear);
    long const seconds = (days + dayOfYear) * 86400 + hour * 3600 + minute * 60 + second;
    if (year >= 2400 || seconds > INT_MAX) return -1;
    long const adjusted = seconds + adjustment;
    return adjusted < 0 || adjusted > INT_MAX ? -1 : adjusted;
}

}  // namespace testing_support
