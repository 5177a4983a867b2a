#include "utillibrary/datatypes/xtime.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstring>
#include <ctime>
#include <stdexcept>

#include "utillibrary/internal/calendar.h"
#include "utillibrary/internal/truncation.h"

namespace com::halvorin::datatypes {

namespace {

using namespace com::halvorin::internal;

constexpr double NANOSECONDS = 1e9;
constexpr double LARGEST_STEP = INT_MAX;

constexpr unsigned long TICKS_PER_SECOND = 10'000'000;
constexpr unsigned int NANOSECONDS_PER_TICK = 100;
// The Modified Julian Date of 1970-01-01 is 40587.
constexpr unsigned long VMS_EPOCH_TICKS = 35'067'168'000'000'000;
static_assert(VMS_EPOCH_TICKS == 40587UL * 86400UL * TICKS_PER_SECOND);

// KEPT(clock-error-spelling): three t in the name; the text is compared by hosts.
constexpr char const* CLOCK_ERROR = "xtime_t::now - Error returned from clock_getttime: ";

constexpr long wrappingSum(long left, long right) noexcept {
    return static_cast<long>(static_cast<unsigned long>(left) + static_cast<unsigned long>(right));
}

constexpr long wrappingDifference(long left, long right) noexcept {
    return static_cast<long>(static_cast<unsigned long>(left) - static_cast<unsigned long>(right));
}

xtime_t realTimeClock() {
    timespec clock{};
    if (clock_gettime(CLOCK_REALTIME, &clock) != 0) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): a known errno has a constant text.
        throw std::runtime_error(CLOCK_ERROR + std::string(std::strerror(errno)));
    }
    return {clock.tv_sec, static_cast<unsigned int>(clock.tv_nsec)};
}

}  // namespace

float xtime_t::difference(xtime_t const& other) const noexcept {
    auto const seconds = static_cast<float>(wrappingDifference(seconds_, other.seconds_));
    auto const nanoseconds =
        static_cast<float>(static_cast<int>(nanoseconds_ - other.nanoseconds_));
    // KEPT(difference-is-a-float): a double would show more digits than hosts have stored.
    return static_cast<float>(static_cast<double>(nanoseconds) / NANOSECONDS +
                              static_cast<double>(seconds));
}

void xtime_t::decompose(int& year, int& month, int& day, int& hour, int& minute, int& second,
                        unsigned int& nanoseconds) const noexcept {
    nanoseconds = nanoseconds_;
    if (!isRecorded(seconds_)) {
        year = ALL_ZERO_RECORD.year;
        month = ALL_ZERO_RECORD.month;
        day = hour = minute = second = 0;
        return;
    }
    // As breakDown does it, but the clock is stored before the date is made: with so many
    // references there are no registers left to keep all six fields in.
    SecondOfCentury const place = secondOfCentury(seconds_);
    ClockTime const clock = clockOf(place.secondOfDay);
    hour = clock.hour;
    minute = clock.minute;
    second = clock.second;
    CivilDate const date = dateOf(place.day);
    year = static_cast<int>(date.year);  // KEPT(year-wraps-at-32-bits)
    month = date.month;
    day = date.day;
}

void xtime_t::add(float amount) noexcept {
    double whole = 0;
    double const fraction = std::modf(static_cast<double>(amount), &whole);
    // KEPT(add-cuts-nanoseconds): not rounded.
    unsigned int const step = truncateToUint32(std::fabs(fraction) * NANOSECONDS);

    if (amount >= 0) {
        // KEPT(add-clamps): one call moves by a 32-bit number of seconds at most.
        seconds_ = wrappingSum(seconds_, truncateToInt32(std::min(whole, LARGEST_STEP)));
        nanoseconds_ += step;
        if (nanoseconds_ >= NANOSECONDS_PER_SECOND) {
            nanoseconds_ -= NANOSECONDS_PER_SECOND;
            seconds_ = wrappingSum(seconds_, 1);
        }
    } else {
        // What does not fit is the most negative number: that is the clamp, and the rule for NaN.
        seconds_ = wrappingSum(seconds_, truncateToInt32(whole));
        if (step > nanoseconds_) {
            nanoseconds_ += NANOSECONDS_PER_SECOND;
            seconds_ = wrappingDifference(seconds_, 1);
        }
        nanoseconds_ -= step;
    }
}

void xtime_t::now() { *this = realTimeClock(); }

void xtime_t::fromTime_point(
    std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds> const&
        point) noexcept {
    long const count = point.time_since_epoch().count();
    // KEPT(time-point-before-1970): no borrow; the rest of a negative count stays negative.
    seconds_ = count / static_cast<long>(NANOSECONDS_PER_SECOND);
    nanoseconds_ = static_cast<unsigned int>(count % static_cast<long>(NANOSECONDS_PER_SECOND));
}

std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds> xtime_t::toTime_point()
    const noexcept {
    unsigned long const count =
        static_cast<unsigned long>(seconds_) * NANOSECONDS_PER_SECOND + nanoseconds_;
    return std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds>(
        std::chrono::nanoseconds(static_cast<long>(count)));
}

unsigned long xtime_t::toVMSTime(unsigned long& ticks) const noexcept {
    unsigned long const fraction =
        (nanoseconds_ + NANOSECONDS_PER_TICK / 2UL) / NANOSECONDS_PER_TICK;
    ticks = static_cast<unsigned long>(seconds_) * TICKS_PER_SECOND + VMS_EPOCH_TICKS + fraction;
    return ticks;
}

double xtime_t::toVMSTime() const noexcept {
    unsigned long ticks = 0;
    return static_cast<double>(toVMSTime(ticks)) / static_cast<double>(TICKS_PER_SECOND);
}

void xtime_t::fromVMSTime(unsigned long ticks) noexcept {
    // KEPT(vms-before-1970-clears): a negative time would be exact, and is not wanted.
    if (ticks < VMS_EPOCH_TICKS) {
        clear();
        return;
    }
    unsigned long const sinceEpoch = ticks - VMS_EPOCH_TICKS;
    seconds_ = static_cast<long>(sinceEpoch / TICKS_PER_SECOND);
    nanoseconds_ = static_cast<unsigned int>(sinceEpoch % TICKS_PER_SECOND) * NANOSECONDS_PER_TICK;
}

void xtime_t::fromVMSTime(double seconds) noexcept {
    fromVMSTime(truncateToUint64(seconds * static_cast<double>(TICKS_PER_SECOND)));
}

xtime_t xtimeNow() { return realTimeClock(); }

}  // namespace com::halvorin::datatypes
