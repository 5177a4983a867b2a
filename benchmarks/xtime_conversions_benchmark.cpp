#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include <utillibrary/datatypes/xtime.h>
#include <utillibrary/datatypes/xtime_conversions.h>

#include "support/operation.h"
#include "support/pool.h"

#ifdef UTILLIBRARY_PEER_ABSL
#include <absl/time/time.h>
#endif
#ifdef UTILLIBRARY_PEER_BOOST
#include <boost/date_time/posix_time/posix_time.hpp>
#endif
#ifdef UTILLIBRARY_PEER_DATE
#include <date/date.h>
#include <sstream>
#endif
#ifdef UTILLIBRARY_PEER_FMT
#include <fmt/chrono.h>
#include <fmt/format.h>
#endif
#ifdef UTILLIBRARY_PEER_GLIB
#include "support/glib_text.h"
#include "support/glib_time.h"
#endif
#ifdef UTILLIBRARY_PEER_POCO
#include <Poco/DateTime.h>
#include <Poco/DateTimeFormatter.h>
#include <Poco/DateTimeParser.h>
#include <Poco/LocalDateTime.h>
#endif
#ifdef UTILLIBRARY_PEER_QT
#include <QDateTime>
#include <QString>
#include <QTimeZone>
#endif

// Times to strings and back: the ISO form and the fourteen digits. This file is long, because each
// of the four directions is followed by its peers.
namespace {

using namespace benchmarks;
using com::halvorin::datatypes::xtime_t;
using com::halvorin::utilities::timeToYYYYString;
using com::halvorin::utilities::YYYYStringTotime;

constexpr int AN_HOUR = 3600;
constexpr long MILLISECONDS = 1000;

// ---- the pools

// Whole milliseconds, which every library can write.
xtime_t anyTime(Random& random) {
    return {anySecond(random), static_cast<unsigned>(between(random, 0, 999)) * 1'000'000};
}

xtime_t anyNanosecond(Random& random) {
    return {anySecond(random), static_cast<unsigned>(between(random, 0, 999'999'999))};
}

long millisecondsOf(xtime_t const& time) {
    return time.getDateTime() * MILLISECONDS + std::lround(time.getNanoseconds() / 1e6);
}

// ---- what defines the results

std::tm broken(long seconds) {
    std::time_t const count = seconds;
    std::tm fields{};
    gmtime_r(&count, &fields);
    return fields;
}

std::string printedIso(xtime_t const& time, int offsetSeconds, char const* zone) {
    std::tm const t = broken(time.getDateTime() + offsetSeconds);
    char fraction[16];
    std::snprintf(fraction, sizeof fraction, "%f",
                  static_cast<double>(static_cast<float>(time.getNanoseconds())) / 1e9);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d%.4s%s", t.tm_year + 1900,
                  t.tm_mon + 1, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec, fraction + 1, zone);
    return text;
}

std::string printedUtc(xtime_t const& time) { return printedIso(time, 0, "Z"); }

std::string printedEast(xtime_t const& time) { return printedIso(time, AN_HOUR, "+0100"); }

std::string printedFourteen(long seconds) {
    std::tm const t = broken(seconds);
    char text[32];
    std::snprintf(text, sizeof text, "%4d%02d%02d%02d%02d%02d", t.tm_year + 1900, t.tm_mon + 1,
                  t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec);
    return text;
}

// Gives milliseconds, rounded: the seconds are read as a float.
long scannedIso(std::string const& text) {
    std::tm t{};
    float second = 0;
    int zoneHours = 0;
    int zoneMinutes = 0;
    std::sscanf(text.c_str(), "%d-%d-%dT%d:%d:%f%3d:%2d", &t.tm_year, &t.tm_mon, &t.tm_mday,
                &t.tm_hour, &t.tm_min, &second, &zoneHours, &zoneMinutes);
    t.tm_year -= 1900;
    t.tm_mon -= 1;
    return (timegm(&t) - zoneHours * AN_HOUR - zoneMinutes * 60) * MILLISECONDS +
           std::lround(second * 1000);
}

long scannedFourteen(std::string const& text) {
    auto const field = [&text](std::size_t at, std::size_t size) {
        return std::stoi(text.substr(at, size));
    };
    std::tm t{};
    t.tm_year = field(0, 4) - 1900;
    t.tm_mon = field(4, 2) - 1;
    t.tm_mday = field(6, 2);
    t.tm_hour = field(8, 2);
    t.tm_min = field(10, 2);
    t.tm_sec = field(12, 2);
    return timegm(&t);
}

// ---- the time types of the libraries

#ifdef UTILLIBRARY_PEER_ABSL
absl::Time asAbseil(xtime_t const& time) {
    return absl::FromUnixSeconds(time.getDateTime()) + absl::Nanoseconds(time.getNanoseconds());
}

long abseilMilliseconds(absl::Time time) { return absl::ToUnixMillis(time); }
#endif

#ifdef UTILLIBRARY_PEER_BOOST
boost::posix_time::ptime asBoost(xtime_t const& time) {
    return boost::posix_time::from_time_t(time.getDateTime()) +
           boost::posix_time::microseconds(time.getNanoseconds() / 1000);
}
#endif

#ifdef UTILLIBRARY_PEER_DATE
date::sys_time<std::chrono::milliseconds> asDate(xtime_t const& time) {
    return date::sys_time<std::chrono::milliseconds>(
        std::chrono::milliseconds(millisecondsOf(time)));
}
#endif

#ifdef UTILLIBRARY_PEER_GLIB
auto const textOfGLib = [](GLibText const& text) { return textOf(text); };

GLibTime asGLib(xtime_t const& time) { return GLibTime(time); }
#endif

#ifdef UTILLIBRARY_PEER_POCO
Poco::Timestamp asPoco(xtime_t const& time) {
    return Poco::Timestamp(millisecondsOf(time) * MILLISECONDS);
}

long pocoMilliseconds(Poco::Timestamp const& time) {
    return time.epochMicroseconds() / MILLISECONDS;
}

// Poco takes its formats as std::string, so they are made once.
std::string const POCO_ISO = "%Y-%m-%dT%H:%M:%S.%iZ";
std::string const POCO_ISO_EAST = "%Y-%m-%dT%H:%M:%S.%i%Z";
std::string const POCO_ISO_READ = "%Y-%m-%dT%H:%M:%s%z";
std::string const POCO_FOURTEEN = "%Y%m%d%H%M%S";

Poco::Timestamp parsedByPoco(std::string const& format, std::string const& text) {
    int zone = 0;
    Poco::DateTime const time = Poco::DateTimeParser::parse(format, text, zone);
    return time.timestamp() - zone * Poco::Timestamp::resolution();
}
#endif

#ifdef UTILLIBRARY_PEER_QT
QDateTime asQt(xtime_t const& time) {
    return QDateTime::fromMSecsSinceEpoch(millisecondsOf(time), Qt::UTC);
}

std::string inBytes(QString const& text) { return text.toStdString(); }

QString asQString(std::string const& text) { return QString::fromStdString(text); }

long qtMilliseconds(QDateTime const& time) { return time.toMSecsSinceEpoch(); }
#endif

// ---- ISO strings, written

void addIsoOut() {
    auto const operation = Operation("time to ISO string, Z", pool(anyTime), printedUtc).threaded();
    for (auto const& there : {operation, operation.under(GROUPING_LOCALE)}) {
        there.plain("gmtime_r, snprintf", printedUtc);
        there.ours([](xtime_t const& time) { return time.toString(true, 0, ""); });
    }
    operation.floor("std::string of 24", [source = std::string(24, 'x')](xtime_t const& /*time*/) {
        return std::string(source.data(), 24);
    });
    operation.peer("strftime", [](xtime_t const& time) {
        std::tm const t = broken(time.getDateTime());
        char text[32];
        std::size_t const size = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &t);
        std::snprintf(text + size, sizeof text - size, ".%03uZ", time.getNanoseconds() / 1'000'000);
        return std::string(text);
    });
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", prepared(asAbseil, [](absl::Time time) {
                       return absl::FormatTime("%Y-%m-%dT%H:%M:%E3SZ", time, absl::UTCTimeZone());
                   }));
#endif
#ifdef UTILLIBRARY_PEER_BOOST
    operation.otherJob("Boost", "microseconds, no zone", prepared(asBoost, [](auto const& time) {
                           return boost::posix_time::to_iso_extended_string(time);
                       }));
#endif
#ifdef UTILLIBRARY_PEER_DATE
    operation.peer("date",
                   prepared(asDate, [](auto const& time) { return date::format("%FT%TZ", time); }));
#endif
#ifdef UTILLIBRARY_PEER_FMT
    operation.peer("{fmt}", [](xtime_t const& time) {
        return fmt::format("{:%FT%T}.{:03}Z", broken(time.getDateTime()),
                           time.getNanoseconds() / 1'000'000);
    });
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.otherJob("GLib", "microseconds", prepared(asGLib, [](GLibTime const& time) {
                           return GLibText(g_date_time_format_iso8601(time.get()));
                       }));
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer("Poco", prepared(asPoco, [](Poco::Timestamp const& time) {
                       return Poco::DateTimeFormatter::format(time, POCO_ISO);
                   }));
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.peer(
        "Qt",
        prepared(asQt, [](QDateTime const& time) { return time.toString(Qt::ISODateWithMs); }),
        inBytes);
#endif
}

void addIsoOutEast() {
    Operation const operation("time to ISO string, +0100", pool(anyTime), printedEast);
    operation.plain("gmtime_r, snprintf", printedEast);
    operation.ours([](xtime_t const& time) { return time.toString(true, AN_HOUR, ""); });
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil",
                   prepared(asAbseil, [zone = absl::FixedTimeZone(AN_HOUR)](absl::Time time) {
                       return absl::FormatTime("%Y-%m-%dT%H:%M:%E3S%z", time, zone);
                   }));
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer("Poco", prepared(asPoco, [](Poco::Timestamp const& time) {
                       Poco::LocalDateTime const local(AN_HOUR, Poco::DateTime(time), true);
                       return Poco::DateTimeFormatter::format(local, POCO_ISO_EAST);
                   }));
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.otherJob(
        "Qt", "a colon in the zone",
        prepared([](xtime_t const& time) { return asQt(time).toOffsetFromUtc(AN_HOUR); },
                 [](QDateTime const& time) { return time.toString(Qt::ISODateWithMs); }));
#endif
}

void addIsoOutOddities() {
    Operation const nanoseconds("time to ISO string, any nanosecond", pool(anyNanosecond),
                                printedUtc);
    nanoseconds.plain("gmtime_r, snprintf", printedUtc);
    nanoseconds.ours([](xtime_t const& time) { return com::halvorin::utilities::to_string(time); });
#ifdef UTILLIBRARY_PEER_ABSL
    nanoseconds.otherJob(
        "Abseil", "truncates the exact time", prepared(asAbseil, [](absl::Time time) {
            return absl::FormatTime("%Y-%m-%dT%H:%M:%E3SZ", time, absl::UTCTimeZone());
        }));
#endif

    auto const farTimes = pool([](Random& random) {
        return xtime_t(between(random, -400'000'000'000, 400'000'000'000), 250'000'000);
    });
    Operation const farYears("time to ISO string, years -10705 to 14645", farTimes, printedUtc);
    farYears.plain("gmtime_r, snprintf", printedUtc);
    farYears.ours([](xtime_t const& time) { return time.toString(true, 0, ""); });
}

// ---- ISO strings, read

struct ParsedTime {
    xtime_t time;
    bool read;
};

ParsedTime parsedByUs(std::string const& text) {
    ParsedTime parsed{};
    parsed.read = parsed.time.fromString(text);
    return parsed;
}

long readMilliseconds(ParsedTime const& parsed) {
    return parsed.read ? millisecondsOf(parsed.time) : -1;
}

// Takes  utc: true if the zone is "Z"; some libraries need this.
void addIsoIn(std::string const& name, std::vector<std::string> const& texts,
              [[maybe_unused]] bool utc) {
    auto const operation = Operation(name, texts, scannedIso).threaded();
    operation.plain("sscanf, timegm", scannedIso);
    operation.ours(parsedByUs, readMilliseconds);
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer(
        "Abseil",
        [](std::string const& text) {
            absl::Time time;
            absl::ParseTime(absl::RFC3339_full, text, &time, nullptr);
            return time;
        },
        abseilMilliseconds);
#endif
#ifdef UTILLIBRARY_PEER_DATE
    operation.peer(
        "date",
        [format = utc ? "%FT%TZ" : "%FT%T%Ez"](std::string const& text) {
            date::sys_time<std::chrono::milliseconds> time;
            std::istringstream stream(text);
            stream >> date::parse(format, time);
            return time;
        },
        [](auto const& time) { return time.time_since_epoch().count(); });
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.peer(
        "GLib",
        [](std::string const& text) {
            return GLibTime(g_date_time_new_from_iso8601(text.c_str(), nullptr));
        },
        [](GLibTime const& time) { return time.milliseconds(); });
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer(
        "Poco", [](std::string const& text) { return parsedByPoco(POCO_ISO_READ, text); },
        pocoMilliseconds);
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.peer("Qt",
                   prepared(asQString,
                            [](QString const& text) {
                                return QDateTime::fromString(text, Qt::ISODateWithMs);
                            }),
                   qtMilliseconds);
#endif
    if (!utc) return;
    operation.peer("strptime", [](std::string const& text) {
        std::tm t{};
        char const* const rest = strptime(text.c_str(), "%Y-%m-%dT%H:%M:%S", &t);
        return timegm(&t) * MILLISECONDS + std::lround(std::strtod(rest, nullptr) * 1000);
    });
#ifdef UTILLIBRARY_PEER_BOOST
    operation.otherJob(
        "Boost", "no zone",
        prepared([](std::string const& text) { return text.substr(0, text.size() - 1); },
                 [](std::string const& text) {
                     return boost::posix_time::from_iso_extended_string(text);
                 }));
#endif
}

void addIsoInOddities() {
    Operation const loose(
        "ISO string to time, no leading zeros", pool([](Random& random) {
            std::tm const t = broken(anySecond(random));
            return std::to_string(t.tm_year + 1900) + '-' + std::to_string(t.tm_mon + 1) + '-' +
                   std::to_string(t.tm_mday) + 'T' + std::to_string(t.tm_hour) + ':' +
                   std::to_string(t.tm_min) + ':' + std::to_string(t.tm_sec) + ".5Z";
        }),
        scannedIso);
    loose.plain("sscanf, timegm", scannedIso);
    loose.ours(parsedByUs, readMilliseconds);
}

// ---- fourteen digits

void addFourteenOut() {
    auto const operation =
        Operation("time to fourteen digits", pool(anySecond), printedFourteen).threaded();
    operation.plain("gmtime_r, snprintf", printedFourteen);
    operation.ours(timeToYYYYString);
    operation.peer("strftime", [](long seconds) {
        std::tm const t = broken(seconds);
        char text[16];
        return std::string(text, std::strftime(text, sizeof text, "%Y%m%d%H%M%S", &t));
    });
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer("Abseil", prepared(absl::FromUnixSeconds, [](absl::Time time) {
                       return absl::FormatTime("%Y%m%d%H%M%S", time, absl::UTCTimeZone());
                   }));
#endif
#ifdef UTILLIBRARY_PEER_BOOST
    operation.otherJob("Boost", "a T inside",
                       prepared(boost::posix_time::from_time_t, [](auto const& time) {
                           return boost::posix_time::to_iso_string(time);
                       }));
#endif
#ifdef UTILLIBRARY_PEER_DATE
    operation.peer("date", [](long seconds) {
        return date::format("%Y%m%d%H%M%S", date::sys_seconds(std::chrono::seconds(seconds)));
    });
#endif
#ifdef UTILLIBRARY_PEER_FMT
    operation.peer("{fmt}",
                   [](long seconds) { return fmt::format("{:%Y%m%d%H%M%S}", broken(seconds)); });
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.peer("GLib",
                   prepared([](long seconds) { return asGLib(xtime_t(seconds, 0)); },
                            [](GLibTime const& time) {
                                return GLibText(g_date_time_format(time.get(), "%Y%m%d%H%M%S"));
                            }),
                   textOfGLib);
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer("Poco",
                   prepared(Poco::Timestamp::fromEpochTime, [](Poco::Timestamp const& time) {
                       return Poco::DateTimeFormatter::format(time, POCO_FOURTEEN);
                   }));
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.peer("Qt",
                   prepared([](long seconds) { return asQt(xtime_t(seconds, 0)); },
                            [format = QString("yyyyMMddHHmmss")](QDateTime const& time) {
                                return time.toString(format);
                            }),
                   inBytes);
#endif

    Operation const member(
        "time to fourteen digits, rounded", pool(anyNanosecond), [](xtime_t const& time) {
            return printedFourteen(time.getDateTime() +
                                   (time.getNanoseconds() > 500'000'000 ? 1 : 0));
        });
    member.ours([](xtime_t const& time) { return time.toYYYYString(); });
}

void addFourteenIn() {
    auto const texts = pool([](Random& random) { return printedFourteen(anySecond(random)); });
    auto const operation = Operation("fourteen digits to time", texts, scannedFourteen).threaded();
    operation.plain("std::stoi, timegm", scannedFourteen);
    operation.ours(YYYYStringTotime);
    operation.peer("strptime", [](std::string const& text) {
        std::tm t{};
        strptime(text.c_str(), "%Y%m%d%H%M%S", &t);
        return timegm(&t);
    });
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer(
        "Abseil",
        [](std::string const& text) {
            absl::Time time;
            absl::ParseTime("%E4Y%m%d%H%M%S", text, &time, nullptr);
            return time;
        },
        absl::ToUnixSeconds);
#endif
#ifdef UTILLIBRARY_PEER_BOOST
    operation.otherJob(
        "Boost", "a T inside",
        prepared([](std::string const& text) { return text.substr(0, 8) + 'T' + text.substr(8); },
                 [](std::string const& text) { return boost::posix_time::from_iso_string(text); }));
#endif
#ifdef UTILLIBRARY_PEER_DATE
    operation.peer(
        "date",
        [](std::string const& text) {
            date::sys_seconds time;
            std::istringstream stream(text);
            stream >> date::parse("%Y%m%d%H%M%S", time);
            return time;
        },
        [](date::sys_seconds time) { return time.time_since_epoch().count(); });
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.otherJob(
        "GLib", "a T inside and a Z at the end",
        prepared(
            [](std::string const& text) { return text.substr(0, 8) + 'T' + text.substr(8) + 'Z'; },
            [](std::string const& text) {
                return GLibTime(g_date_time_new_from_iso8601(text.c_str(), nullptr));
            }));
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer(
        "Poco", [](std::string const& text) { return parsedByPoco(POCO_FOURTEEN, text); },
        [](Poco::Timestamp const& time) { return time.epochTime(); });
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.otherJob(
        "Qt", "local time",
        prepared(asQString, [format = QString("yyyyMMddHHmmss")](QString const& text) {
            return QDateTime::fromString(text, format);
        }));
#endif
}

std::vector<std::string> isoTexts(int offsetSeconds, char const* zone) {
    return pool([=](Random& random) { return printedIso(anyTime(random), offsetSeconds, zone); });
}

}  // namespace

void benchmarks::addRows() {
    addIsoOut();
    addIsoOutEast();
    addIsoOutOddities();
    addIsoIn("ISO string to time, Z", isoTexts(0, "Z"), true);
    addIsoIn("ISO string to time, +01:00", isoTexts(AN_HOUR, "+01:00"), false);
    addIsoInOddities();
    addFourteenOut();
    addFourteenIn();
}
