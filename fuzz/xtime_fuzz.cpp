#include <bit>
#include <chrono>
#include <cmath>
#include <ctime>
#include <optional>

#include <utillibrary/datatypes/xtime.h>

#include "input.h"
#include "utc.h"

// A time through a sequence of changes, in the library's arithmetic and in exact arithmetic.

using com::halvorin::datatypes::xtime_t;

namespace {

// 128 bits, where no sum overflows.
__extension__ typedef __int128 Exact;

constexpr Exact SECOND = 1000000000;                 // nanoseconds
constexpr Exact TICKS = 10000000;                    // in a second
constexpr Exact VMS_EPOCH = 40587L * 86400 * TICKS;  // 1970, in ticks

xtime_t timeOf(Exact seconds, Exact nanoseconds) {
    return {static_cast<long>(seconds), static_cast<unsigned int>(nanoseconds)};
}

// The nanoseconds of a float's fraction, cut. A float is mantissa / 2^shift.
Exact fractionOf(float amount) {
    int exponent = 0;
    float const mantissa = std::frexp(std::fabs(amount), &exponent);  // [0.5, 1)
    int const shift = 24 - exponent;
    if (!std::isfinite(amount) || shift <= 0 || shift > 60) return 0;
    Exact const bits = static_cast<long>(std::ldexp(mantissa, 24));
    Exact const fraction = bits & ((Exact(1) << shift) - 1);
    return (fraction * SECOND) >> shift;
}

xtime_t modelOfAdd(xtime_t const& time, float amount) {
    Exact const limit = Exact(1) << 31;
    Exact whole = -limit;  // of a NaN
    if (std::fabs(amount) < 1e20F) whole = static_cast<Exact>(amount);
    if (std::isinf(amount) || std::fabs(amount) >= 1e20F) whole = amount > 0 ? limit : -limit;
    whole = std::max(-limit, std::min(whole, limit - 1));
    Exact const step = fractionOf(amount);
    Exact seconds = time.getDateTime() + whole;
    Exact nanoseconds = time.getNanoseconds();
    if (amount >= 0) {
        nanoseconds = static_cast<unsigned int>(nanoseconds + step);
        if (nanoseconds >= SECOND) {
            nanoseconds -= SECOND;
            ++seconds;
        }
    } else {
        nanoseconds -= step;
        if (nanoseconds < 0) {
            nanoseconds += SECOND;
            --seconds;
        }
    }
    return timeOf(seconds, nanoseconds);
}

xtime_t modelOfPutNanoseconds(xtime_t const& time, unsigned int nanoseconds) {
    return timeOf(time.getDateTime() + nanoseconds / SECOND, nanoseconds % SECOND);
}

Exact ticksOf(xtime_t const& time) {
    return time.getDateTime() * TICKS + VMS_EPOCH + (Exact(time.getNanoseconds()) + 50) / 100;
}

xtime_t modelOfFromTicks(unsigned long ticks) {
    if (ticks < VMS_EPOCH) return {};
    return timeOf((ticks - VMS_EPOCH) / TICKS, (ticks - VMS_EPOCH) % TICKS * 100);
}

// What a processor's conversion gives: 2^63 for what does not fit.
unsigned long truncated(double value) {
    Exact const top = Exact(1) << 63;
    if (!(std::fabs(value) < 1e30)) return static_cast<unsigned long>(top);
    auto const whole = static_cast<Exact>(value);
    return static_cast<unsigned long>(whole < -top || whole >= 2 * top ? top : whole);
}

xtime_t modelOfFromCount(long count) { return timeOf(count / SECOND, count % SECOND); }

void expectQuestions(xtime_t time) {
    Exact const seconds = time.getDateTime();
    Exact const nanoseconds = time.getNanoseconds();
    expectSame(time.isSet() == (seconds != 0 || nanoseconds != 0), "isSet");
    expectSame(time.operator long() == static_cast<long>(seconds + (2 * nanoseconds >= SECOND)),
               "operator long");

    unsigned long stored = 0;
    auto const ticks = static_cast<unsigned long>(ticksOf(time));
    expectSame(time.toVMSTime(stored) == ticks && stored == ticks, "toVMSTime in ticks");
    double const inSeconds = static_cast<double>(ticks) / static_cast<double>(TICKS);
    expectSame(time.toVMSTime() == inSeconds, "toVMSTime in seconds");
    auto const count = static_cast<long>(seconds * SECOND + nanoseconds);
    expectSame(time.toTime_point().time_since_epoch().count() == count, "toTime_point");

    std::tm expected{};
    long const asLibc = time.getDateTime();
    bool const fits = gmtime_r(&asLibc, &expected) != nullptr;
    if (!fits) expected = {};
    int year, month, day, hour, minute, second;
    unsigned int fraction = 0;
    time.decompose(year, month, day, hour, minute, second, fraction);
    auto const fullYear = static_cast<int>(expected.tm_year + 1900L);
    expectSame(year == fullYear && month == expected.tm_mon + 1 && day == expected.tm_mday &&
                   hour == expected.tm_hour && minute == expected.tm_min &&
                   second == expected.tm_sec && fraction == time.getNanoseconds(),
               "decompose");
}

void expectOrder(xtime_t const& left, xtime_t const& right) {
    auto const key = [](xtime_t const& time) {
        return Exact(time.getDateTime()) * (Exact(1) << 32) + time.getNanoseconds();
    };
    Exact const a = key(left);
    Exact const b = key(right);
    expectSame((left == right) == (a == b) && (left != right) == (a != b), "== and !=");
    expectSame((left < right) == (a < b) && (left <= right) == (a <= b), "< and <=");
    expectSame((left > right) == (a > b) && (left >= right) == (a >= b), "> and >=");

    // The seconds' difference as a float, plus the nanoseconds' difference as a float.
    auto const wholes = static_cast<float>(
        static_cast<long>(Exact(left.getDateTime()) - Exact(right.getDateTime())));
    auto const parts =
        static_cast<float>(static_cast<int>(left.getNanoseconds() - Exact(right.getNanoseconds())));
    double const sum =
        static_cast<double>(parts) / static_cast<double>(SECOND) + static_cast<double>(wholes);
    expectSame(left.difference(right) == static_cast<float>(sum), "difference");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) { return useUtc(); }

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    auto const start = input.take<long>();
    xtime_t time(start, input.take<unsigned int>());
    expectQuestions(time);
    for (int steps = 0; steps < 8 && !input.isEmpty(); ++steps) {
        xtime_t const before = time;
        xtime_t expected;
        switch (input.takeBelow(6)) {
            case 0: {
                auto const amount = input.take<float>();
                time.add(amount);
                expected = modelOfAdd(before, amount);
                break;
            }
            case 1: {
                auto const nanoseconds = input.take<unsigned int>();
                time.putNanoseconds(nanoseconds);
                expected = modelOfPutNanoseconds(before, nanoseconds);
                break;
            }
            case 2: {
                auto const ticks = input.take<unsigned long>();
                time.fromVMSTime(ticks);
                expected = modelOfFromTicks(ticks);
                break;
            }
            case 3: {
                auto const seconds = input.take<double>();
                time.fromVMSTime(seconds);
                expected = modelOfFromTicks(truncated(seconds * static_cast<double>(TICKS)));
                break;
            }
            case 4: {
                std::chrono::nanoseconds const count(input.take<long>());
                using Point =
                    std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds>;
                time.fromTime_point(Point(count));
                expected = modelOfFromCount(count.count());
                break;
            }
            default: {
                auto const seconds = input.take<long>();
                time.putDateTime(seconds);
                expected = timeOf(seconds, before.getNanoseconds());
            }
        }
        expectSame(time.getDateTime() == expected.getDateTime() &&
                       time.getNanoseconds() == expected.getNanoseconds(),
                   "a change");
        expectQuestions(time);
        expectOrder(time, before);
    }
    return 0;
}
