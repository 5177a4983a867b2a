#include <chrono>
#include <ctime>
#include <sys/time.h>

#include <utillibrary/datatypes/xtime.h>

#include "support/operation.h"
#include "support/pool.h"

#ifdef UTILLIBRARY_PEER_ABSL
#include <absl/time/clock.h>
#include <absl/time/time.h>
#endif
#ifdef UTILLIBRARY_PEER_BOOST
#include <boost/date_time/posix_time/posix_time.hpp>
#endif
#ifdef UTILLIBRARY_PEER_DATE
#include <date/date.h>
#endif
#ifdef UTILLIBRARY_PEER_GLIB
#include <glib.h>
#endif
#ifdef UTILLIBRARY_PEER_POCO
#include <Poco/DateTime.h>
#include <Poco/Timestamp.h>
#endif
#ifdef UTILLIBRARY_PEER_QT
#include <QDateTime>
#endif

// A time as a value: the clock, its fields, its arithmetic, and OpenVMS time. This file
// is long, because each operation is followed by its peers.
namespace {

using namespace benchmarks;
using com::halvorin::datatypes::xtime_t;
using com::halvorin::datatypes::xtimeNow;
using Nanoseconds = std::chrono::nanoseconds;
using TimePoint = std::chrono::sys_time<Nanoseconds>;

constexpr long NANOSECONDS = 1'000'000'000;

// Whole microseconds, which every library can store.
xtime_t anyTime(Random& random) {
    return {anySecond(random), static_cast<unsigned>(between(random, 0, 999'999)) * 1000};
}

[[maybe_unused]] long microsecondsOf(xtime_t const& time) {
    return time.getDateTime() * 1'000'000 + time.getNanoseconds() / 1000;
}

TimePoint asTimePoint(xtime_t const& time) {
    return TimePoint(Nanoseconds(time.getDateTime() * NANOSECONDS + time.getNanoseconds()));
}

// ---- the clock

// A clock is right when it shows the second that libc's shows, or the next.
struct Now {
    long second;
    bool operator==(Now const& wanted) const { return wanted.second - second <= 1; }
};

void addClock() {
    Operation const clock("clock", std::vector<int>(POOL_SIZE),
                          [](int /*unused*/) { return Now{std::time(nullptr)}; });
    clock.plain(
        "clock_gettime",
        [](int /*unused*/) {
            timespec now{};
            clock_gettime(CLOCK_REALTIME, &now);
            return now;
        },
        [](timespec const& now) { return Now{now.tv_sec}; });
    clock.ours([](int /*unused*/) { return xtimeNow(); },
               [](xtime_t const& now) { return Now{now.getDateTime()}; });
    clock.peer(
        "std::chrono", [](int /*unused*/) { return std::chrono::system_clock::now(); },
        [](auto const& now) { return Now{std::chrono::system_clock::to_time_t(now)}; });
    clock.peer(
        "gettimeofday",
        [](int /*unused*/) {
            timeval now{};
            gettimeofday(&now, nullptr);
            return now;
        },
        [](timeval const& now) { return Now{now.tv_sec}; });
#ifdef UTILLIBRARY_PEER_ABSL
    clock.otherJob("Abseil", "computed from processor cycles",
                   [](int /*unused*/) { return absl::Now(); });
#endif
#ifdef UTILLIBRARY_PEER_BOOST
    clock.peer(
        "Boost", [](int /*unused*/) { return boost::posix_time::microsec_clock::universal_time(); },
        [](auto const& now) { return Now{boost::posix_time::to_time_t(now)}; });
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    clock.peer(
        "GLib", [](int /*unused*/) { return g_get_real_time(); },
        [](gint64 now) { return Now{now / 1'000'000}; });
#endif
#ifdef UTILLIBRARY_PEER_POCO
    clock.peer(
        "Poco", [](int /*unused*/) { return Poco::Timestamp(); },
        [](Poco::Timestamp const& now) { return Now{now.epochTime()}; });
#endif
#ifdef UTILLIBRARY_PEER_QT
    clock.peer(
        "Qt", [](int /*unused*/) { return QDateTime::currentMSecsSinceEpoch(); },
        [](qint64 now) { return Now{now / 1000}; });
#endif
}

// ---- calendar fields

struct Fields {
    int year;
    int month;
    int day;
    int hour;
    int minute;
    int second;
    bool operator==(Fields const&) const = default;
};

Fields libcFields(xtime_t const& time) {
    std::time_t const seconds = time.getDateTime();
    std::tm fields{};
    if (gmtime_r(&seconds, &fields) == nullptr) fields = {};
    return {fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday,
            fields.tm_hour,        fields.tm_min,     fields.tm_sec};
}

Fields ourFields(xtime_t const& time) {
    Fields f{};
    unsigned nanoseconds = 0;
    time.decompose(f.year, f.month, f.day, f.hour, f.minute, f.second, nanoseconds);
    benchmark::DoNotOptimize(nanoseconds);
    return f;
}

template <typename Date, typename Clock>
Fields chronoFields(Date const& date, Clock const& clock) {
    return {static_cast<int>(date.year()),
            static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day())),
            static_cast<int>(clock.hours().count()),
            static_cast<int>(clock.minutes().count()),
            static_cast<int>(clock.seconds().count())};
}

Fields standardFields(TimePoint time) {
    auto const day = std::chrono::floor<std::chrono::days>(time);
    return chronoFields(std::chrono::year_month_day(day), std::chrono::hh_mm_ss(time - day));
}

void addFieldPeers(Operation<xtime_t, Fields> const& operation) {
    operation.peer("std::chrono", prepared(asTimePoint, standardFields));
#ifdef UTILLIBRARY_PEER_ABSL
    operation.peer(
        "Abseil",
        prepared([](xtime_t const& time) { return absl::FromUnixMicros(microsecondsOf(time)); },
                 [](absl::Time time) {
                     absl::CivilSecond const s = absl::ToCivilSecond(time, absl::UTCTimeZone());
                     return Fields{static_cast<int>(s.year()),
                                   s.month(),
                                   s.day(),
                                   s.hour(),
                                   s.minute(),
                                   s.second()};
                 }));
#endif
#ifdef UTILLIBRARY_PEER_BOOST
    operation.peer(
        "Boost",
        prepared(
            [](xtime_t const& time) { return boost::posix_time::from_time_t(time.getDateTime()); },
            [](boost::posix_time::ptime const& time) {
                auto const day = time.date().year_month_day();
                auto const clock = time.time_of_day();
                return Fields{static_cast<int>(day.year),        static_cast<int>(day.month),
                              static_cast<int>(day.day),         static_cast<int>(clock.hours()),
                              static_cast<int>(clock.minutes()), static_cast<int>(clock.seconds())};
            }));
#endif
#ifdef UTILLIBRARY_PEER_DATE
    operation.peer("date", prepared(asTimePoint, [](TimePoint time) {
                       auto const day = date::floor<date::days>(time);
                       return chronoFields(date::year_month_day(day), date::hh_mm_ss(time - day));
                   }));
#endif
#ifdef UTILLIBRARY_PEER_GLIB
    operation.peer("GLib", prepared(microsecondsOf, [](long microseconds) {
                       GDateTime* const time =
                           g_date_time_new_from_unix_utc(microseconds / 1'000'000);
                       Fields f{};
                       g_date_time_get_ymd(time, &f.year, &f.month, &f.day);
                       f.hour = g_date_time_get_hour(time);
                       f.minute = g_date_time_get_minute(time);
                       f.second = g_date_time_get_second(time);
                       g_date_time_unref(time);
                       return f;
                   }));
#endif
#ifdef UTILLIBRARY_PEER_POCO
    operation.peer(
        "Poco", prepared([](xtime_t const& time) { return Poco::Timestamp(microsecondsOf(time)); },
                         [](Poco::Timestamp const& stamp) {
                             Poco::DateTime const time(stamp);
                             return Fields{time.year(), time.month(),  time.day(),
                                           time.hour(), time.minute(), time.second()};
                         }));
#endif
#ifdef UTILLIBRARY_PEER_QT
    operation.peer("Qt", prepared(
                             [](xtime_t const& time) {
                                 return QDateTime::fromMSecsSinceEpoch(microsecondsOf(time) / 1000,
                                                                       Qt::UTC);
                             },
                             [](QDateTime const& time) {
                                 Fields f{};
                                 time.date().getDate(&f.year, &f.month, &f.day);
                                 QTime const clock = time.time();
                                 f.hour = clock.hour();
                                 f.minute = clock.minute();
                                 f.second = clock.second();
                                 return f;
                             }));
#endif
}

void addFields() {
    auto const operation = Operation("decompose", pool(anyTime), libcFields).threaded();
    operation.plain("gmtime_r", libcFields);
    operation.ours(ourFields);
    addFieldPeers(operation);

    // If libc has no year for a second, all fields are zero.
    Operation const far("decompose, any 64-bit second", pool([](Random& random) {
                            return xtime_t(static_cast<long>(random()) >> (random() % 40), 0);
                        }),
                        libcFields);
    far.plain("gmtime_r", libcFields);
    far.ours(ourFields);
}

// ---- arithmetic

struct Span {
    xtime_t first;
    xtime_t second;
};

Span anySpan(Random& random) { return {anyTime(random), anyTime(random)}; }

struct Step {
    xtime_t from;
    float seconds;
};

Step anyStep(Random& random) {
    return {anyTime(random), static_cast<float>(between(random, -1'000'000, 1'000'000)) / 64};
}

void addArithmetic() {
    auto const spans = pool(anySpan);
    Operation const difference("difference", spans, [](Span const& span) {
        long const seconds = span.first.getDateTime() - span.second.getDateTime();
        auto const rest = static_cast<float>(static_cast<int>(span.first.getNanoseconds()) -
                                             static_cast<int>(span.second.getNanoseconds()));
        return static_cast<float>(static_cast<double>(rest) / 1e9 +
                                  static_cast<double>(static_cast<float>(seconds)));
    });
    difference.ours([](Span const& span) { return span.first.difference(span.second); });
    Operation const order("less than", spans, [](Span const& span) {
        return asTimePoint(span.first) < asTimePoint(span.second);
    });
    order.ours([](Span const& span) { return span.first < span.second; });
    Operation const add("add", pool(anyStep), [](Step const& step) {
        return asTimePoint(step.from) +
               std::chrono::round<Nanoseconds>(std::chrono::duration<double>(step.seconds));
    });
    add.ours(
        [](Step const& step) {
            xtime_t time = step.from;
            time.add(step.seconds);
            return time;
        },
        asTimePoint);

    order.peer("std::chrono", prepared(
                                  [](Span const& span) {
                                      return std::pair(asTimePoint(span.first),
                                                       asTimePoint(span.second));
                                  },
                                  [](auto const& pair) { return pair.first < pair.second; }));
    difference.otherJob(
        "std::chrono", "exact, as a double",
        prepared(
            [](Span const& span) {
                return std::pair(asTimePoint(span.first), asTimePoint(span.second));
            },
            [](auto const& pair) {
                return std::chrono::duration<double>(pair.first - pair.second).count();
            }));
    auto const asChronoStep = [](Step const& step) {
        return std::pair(asTimePoint(step.from), step.seconds);
    };
    add.peer("std::chrono", prepared(asChronoStep, [](auto const& step) {
                 return step.first + std::chrono::duration_cast<Nanoseconds>(
                                         std::chrono::duration<double>(step.second));
             }));
#ifdef UTILLIBRARY_PEER_ABSL
    auto const asAbseil = [](xtime_t const& time) {
        return absl::FromUnixMicros(microsecondsOf(time));
    };
    order.peer("Abseil", prepared(
                             [asAbseil](Span const& span) {
                                 return std::pair(asAbseil(span.first), asAbseil(span.second));
                             },
                             [](auto const& pair) { return pair.first < pair.second; }));
    difference.otherJob(
        "Abseil", "exact, as a double",
        prepared(
            [asAbseil](Span const& span) {
                return std::pair(asAbseil(span.first), asAbseil(span.second));
            },
            [](auto const& pair) { return absl::ToDoubleSeconds(pair.first - pair.second); }));
    add.peer(
        "Abseil",
        prepared(
            [asAbseil](Step const& step) { return std::pair(asAbseil(step.from), step.seconds); },
            [](auto const& step) { return step.first + absl::Seconds(step.second); }),
        [](absl::Time time) { return TimePoint(Nanoseconds(absl::ToUnixNanos(time))); });
#endif
#ifdef UTILLIBRARY_PEER_QT
    auto const asQt = [](xtime_t const& time) {
        return QDateTime::fromMSecsSinceEpoch(microsecondsOf(time) / 1000, Qt::UTC);
    };
    difference.otherJob(
        "Qt", "whole milliseconds",
        prepared(
            [asQt](Span const& span) { return std::pair(asQt(span.first), asQt(span.second)); },
            [](auto const& pair) { return pair.second.msecsTo(pair.first); }));
    add.otherJob("Qt", "whole milliseconds",
                 prepared(
                     [asQt](Step const& step) {
                         return std::pair(asQt(step.from),
                                          static_cast<qint64>(step.seconds * 1000));
                     },
                     [](auto const& step) { return step.first.addMSecs(step.second); }));
#endif
}

// ---- other counts

void addTimePoints() {
    auto const times = pool(anyTime);
    Operation const to("to a time_point", times, asTimePoint);
    to.ours([](xtime_t const& time) { return time.toTime_point(); });
    Operation const from("from a time_point", times, AsItIs());
    from.ours(prepared(asTimePoint, [](TimePoint point) {
        xtime_t time;
        time.fromTime_point(point);
        return time;
    }));
#ifdef UTILLIBRARY_PEER_ABSL
    to.peer("Abseil",
            prepared([](xtime_t const& time) { return absl::FromUnixMicros(microsecondsOf(time)); },
                     [](absl::Time time) { return absl::ToChronoTime(time); }));
    from.peer("Abseil",
              prepared(asTimePoint, [](TimePoint point) { return absl::FromChrono(point); }),
              [](absl::Time time) {
                  long const nanoseconds = absl::ToUnixNanos(time);
                  return xtime_t(nanoseconds / NANOSECONDS,
                                 static_cast<unsigned>(nanoseconds % NANOSECONDS));
              });
#endif
}

// OpenVMS counts 100 ns from 1858-11-17. Two other libraries count 100 ns from other years.
void addVmsTime() {
    [[maybe_unused]] constexpr char const* OTHER_EPOCH = "counts from another year";
    constexpr long VMS_EPOCH_SECONDS = -3'506'716'800;
    auto const ticksOf = [](xtime_t const& time) {
        return static_cast<unsigned long>((time.getDateTime() - VMS_EPOCH_SECONDS) * 10'000'000 +
                                          time.getNanoseconds() / 100);
    };
    auto const secondsOf = [ticksOf](xtime_t const& time) {
        return static_cast<double>(ticksOf(time)) / 1e7;
    };
    auto const times = pool(anyTime);

    Operation const toTicks("to OpenVMS ticks", times, ticksOf);
    toTicks.ours([](xtime_t const& time) {
        unsigned long ticks = 0;
        return time.toVMSTime(ticks);
    });
    Operation const fromTicks("from OpenVMS ticks", times, AsItIs());
    fromTicks.ours(prepared(ticksOf, [](unsigned long ticks) {
        xtime_t time;
        time.fromVMSTime(ticks);
        return time;
    }));
    Operation const toSeconds("to OpenVMS seconds", times, secondsOf);
    toSeconds.ours([](xtime_t const& time) { return time.toVMSTime(); });
    // Whole seconds: a double cannot count the ticks of a present-day time exactly.
    Operation const fromSeconds("from OpenVMS seconds",
                                pool([](Random& random) { return xtime_t(anySecond(random), 0); }),
                                AsItIs());
    fromSeconds.ours(prepared(secondsOf, [](double seconds) {
        xtime_t time;
        time.fromVMSTime(seconds);
        return time;
    }));
#ifdef UTILLIBRARY_PEER_ABSL
    toTicks.otherJob(
        "Abseil", OTHER_EPOCH,
        prepared([](xtime_t const& time) { return absl::FromUnixMicros(microsecondsOf(time)); },
                 [](absl::Time time) { return absl::ToUniversal(time); }));
    fromTicks.otherJob("Abseil", OTHER_EPOCH, prepared(ticksOf, [](unsigned long ticks) {
                           return absl::FromUniversal(static_cast<long>(ticks));
                       }));
#endif
#ifdef UTILLIBRARY_PEER_POCO
    toTicks.otherJob(
        "Poco", OTHER_EPOCH,
        prepared([](xtime_t const& time) { return Poco::Timestamp(microsecondsOf(time)); },
                 [](Poco::Timestamp const& time) { return time.utcTime(); }));
    fromTicks.otherJob("Poco", OTHER_EPOCH, prepared(ticksOf, [](unsigned long ticks) {
                           return Poco::Timestamp::fromUtcTime(static_cast<long>(ticks));
                       }));
#endif
}

}  // namespace

void benchmarks::addRows() {
    addClock();
    addFields();
    addArithmetic();
    addTimePoints();
    addVmsTime();
}
