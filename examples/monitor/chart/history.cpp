#include "chart/history.h"

#include <algorithm>
#include <cmath>

namespace monitor {

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;

namespace {

constexpr long LATEST_SECOND = 253402300799;  // 9999-12-31T23:59:59

double secondsOf(xtime_t const& time) {
    return static_cast<double>(std::clamp(time.getDateTime(), 0L, LATEST_SECOND)) +
           time.getNanoseconds() / 1e9;
}

void add(Values& values, Variant const& number) {
    if (!isKnown(number)) return;
    double const value = number.toDouble();
    values.low = values.count == 0 ? value : std::min(values.low, value);
    values.high = values.count == 0 ? value : std::max(values.high, value);
    values.sum += value;
    values.last = value;
    ++values.count;
}

}  // namespace

History::History(std::chrono::seconds window) : window_(window) {}

void History::add(Reading const& reading) {
    double const time = secondsOf(reading.time);
    double const window = static_cast<double>(window_.count());
    while (!moments_.empty() && moments_.back().time > time)
        moments_.pop_back();
    while (!moments_.empty() && moments_.front().time < time - window)
        moments_.pop_front();

    auto const part = [&](double moment) { return std::floor(moment / window * MOMENTS); };
    if (moments_.empty() || part(moments_.back().time) != part(time)) moments_.emplace_back();
    Moment& moment = moments_.back();
    moment.time = time;
    ++moment.readings;
    monitor::add(moment.values[PROCESSOR], reading.processor);
    monitor::add(moment.values[MEMORY], reading.memory);
    monitor::add(moment.values[DISK], reading.disk);
    latest_ = reading;
}

}  // namespace monitor
