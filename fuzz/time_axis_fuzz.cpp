#include <algorithm>
#include <ctime>
#include <stdexcept>

#include <utillibrary/utilities/mktimeEx.h>

#include "input.h"
#include "support/axis_models.h"
#include "support/time_axes.h"
#include "support/time_models.h"

// A range of time, from calendar records or from any numbers, and its scale and its axis.

using com::halvorin::utilities::mktimeEx;
using namespace testing_support;

namespace {

// Each field is ordinary, or any number.
std::tm takeRecord(Input& input) {
    std::tm record{};
    record.tm_wday = 77;
    record.tm_yday = 777;
    unsigned int const anyNumbers = input.takeBelow(64);
    int* const fields[] = {&record.tm_year, &record.tm_mon, &record.tm_mday,
                           &record.tm_hour, &record.tm_min, &record.tm_sec};
    for (unsigned int i = 0; i < std::size(fields); ++i) {
        bool const isAny = (anyNumbers >> i) % 2 != 0;
        *fields[i] = isAny ? input.take<int>() : input.take<signed char>();
    }
    if ((anyNumbers & 1) == 0) record.tm_year += 100;
    return record;
}

long secondsOf(std::tm record, int adjustment) {
    std::tm expectedRecord = record;
    long const expected = modelOfMktimeEx(expectedRecord, adjustment);
    long const seconds = mktimeEx(&record, adjustment);
    expectSame(seconds == expected, "mktimeEx");
    expectSame(
        record.tm_year == expectedRecord.tm_year && record.tm_mon == expectedRecord.tm_mon &&
            record.tm_mday == expectedRecord.tm_mday && record.tm_hour == expectedRecord.tm_hour &&
            record.tm_min == expectedRecord.tm_min && record.tm_sec == expectedRecord.tm_sec &&
            record.tm_wday == expectedRecord.tm_wday && record.tm_yday == expectedRecord.tm_yday,
        "the record that mktimeEx leaves");
    return seconds;
}

// The time of a record, or any number.
long takeTime(Input& input) {
    if (input.takeBool()) return input.take<long>();
    std::tm const record = takeRecord(input);
    int const adjustment = input.takeBool() ? input.take<int>() : 0;
    return secondsOf(record, adjustment);
}

template <typename Result>
void expectRefusal(Result (*call)(long, long, unsigned int), long tMin, long tMax,
                   unsigned int ticks) {
    bool isRefused = false;
    try {
        call(tMin, tMax, ticks);
    } catch (std::invalid_argument const&) {
        isRefused = true;
    }
    expectSame(isRefused, "a range or a number of ticks that is refused");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    long const tMin = takeTime(input);
    bool const isFar = input.takeBool();
    unsigned int const shift = 24 + input.takeBelow(40);
    auto const span = static_cast<long>(input.take<unsigned long>() >> shift);
    long tMax = 0;
    bool const wraps = __builtin_add_overflow(tMin, span, &tMax);
    if (isFar || wraps) tMax = takeTime(input);
    bool const isOrdinary = input.takeBool();
    unsigned int const ticks = isOrdinary ? input.takeBelow(64) : input.take<unsigned int>();
    bool const hasMinStep = input.takeBool();
    unsigned long const minStep = hasMinStep ? input.take<unsigned int>() : 0;

    if (ticks < 3 || tMax < tMin) {
        expectRefusal<Axis>(axisOf, tMin, tMax, ticks);
        expectRefusal<Scale>(
            [](long from, long to, unsigned int n) { return scaleOf(from, to, n, 0); }, tMin, tMax,
            ticks);
        return 0;
    }
    expectSame(scaleOf(tMin, tMax, ticks, minStep) == modelOfScale(tMin, tMax, ticks, minStep),
               "MovingTimeScale");
    // An axis has about as many ticks as are asked for, or a tick for each second.
    auto const range = static_cast<unsigned long>(tMax) - static_cast<unsigned long>(tMin);
    if (std::min<unsigned long>(range, ticks) > 500) return 0;
    expectSame(axisOf(tMin, tMax, ticks) == modelOfAxis(tMin, tMax, ticks), "MovingTimeAxis");
    return 0;
}
