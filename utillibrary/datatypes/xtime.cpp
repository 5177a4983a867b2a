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
#include "utillibrary/internal/wrapping.h"
#include <utillibrary/export.h>

namespace com::halvorin::datatypes {

namespace {

using namespace com::halvorin::internal;

constexpr double NANOSECONDS_IN_A_SECOND = 1e9;
constexpr double MOST_SECONDS_AT_ONCE = INT_MAX;

constexpr unsigned long TICKS_PER_SECOND = 10'000'000;
constexpr unsigned int NANOSECONDS_PER_TICK = 100;
// The Modified Julian Date of 1970-01-01 is 40587.
constexpr unsigned long VMS_EPOCH_TICKS = 35'067'168'000'000'000;
static_assert(VMS_EPOCH_TICKS == 40587UL * 86400UL * TICKS_PER_SECOND);

// KEPT(clock-error-spelling): the text is part of the contract, with its three t in "getttime".
constexpr char const* CLOCK_ERROR = "xtime_t::now - Error returned from clock_getttime: ";

xtime_t realTimeClock() {
    timespec clock{};
    if (clock_gettime(CLOCK_REALTIME, &clock) != 0) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): a known errno has a constant text.
        throw std::runtime_error(CLOCK_ERROR + std::string(std::strerror(errno)));
    }
    return {clock.tv_sec, static_cast<unsigned int>(clock.tv_nsec)};
}

}  // namespace

UTILLIBRARY_WRAPS float xtime_t::difference(xtime_t const& other) const noexcept {
    auto const seconds = static_cast<float>(wrappingDifference(seconds_, other.seconds_));
    auto const nanoseconds =
        static_cast<float>(static_cast<int>(nanoseconds_ - other.nanoseconds_));
    // KEPT(difference-is-a-float): each field's difference is rounded to a float before the sum.
    return static_cast<float>(static_cast<double>(nanoseconds) / NANOSECONDS_IN_A_SECOND +
                              static_cast<double>(seconds));
}

// The results are stored in the order of the parameters: a caller who passes one variable for
// several of them gets the last.
void xtime_t::decompose(int& year, int& month, int& day, int& hour, int& minute, int& second,
                        unsigned int& nanoseconds) const noexcept {
    unsigned int const fraction = nanoseconds_;
    BrokenDownTime const t = breakDown(seconds_);
    year = t.year;
    month = t.month;
    day = t.day;
    hour = t.hour;
    minute = t.minute;
    second = t.second;
    nanoseconds = fraction;
}

UTILLIBRARY_WRAPS void xtime_t::add(float amount) noexcept {
    double whole = 0;
    double const fraction = std::modf(static_cast<double>(amount), &whole);
    // KEPT(add-cuts-nanoseconds): not rounded.
    unsigned int const step = truncateToUint32(std::fabs(fraction) * NANOSECONDS_IN_A_SECOND);

    if (amount >= 0) {
        // KEPT(add-clamps): one call moves by a 32-bit number of seconds at most.
        seconds_ = wrappingSum(seconds_, truncateToInt32(std::min(whole, MOST_SECONDS_AT_ONCE)));
        nanoseconds_ += step;
        if (nanoseconds_ >= NANOSECONDS_PER_SECOND) {
            nanoseconds_ -= NANOSECONDS_PER_SECOND;
            seconds_ = wrappingSum(seconds_, 1);
        }
    } else {
        // The conversion itself clamps: what does not fit, and NaN, gives the most negative number.
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
    // KEPT(time-point-before-1970): no second is borrowed, so the rest of a negative count is
    // negative.
    seconds_ = count / static_cast<long>(NANOSECONDS_PER_SECOND);
    nanoseconds_ = static_cast<unsigned int>(count % static_cast<long>(NANOSECONDS_PER_SECOND));
}

std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds> xtime_t::toTime_point()
    const noexcept {
    long const count = wrappingSum(wrappingProduct(seconds_, NANOSECONDS_PER_SECOND), nanoseconds_);
    return std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds>(
        std::chrono::nanoseconds(count));
}

UTILLIBRARY_WRAPS unsigned long xtime_t::toVMSTime(unsigned long& ticks) const noexcept {
    unsigned long const fraction =
        (nanoseconds_ + NANOSECONDS_PER_TICK / 2UL) / NANOSECONDS_PER_TICK;
    ticks = asUnsigned(seconds_) * TICKS_PER_SECOND + VMS_EPOCH_TICKS + fraction;
    return ticks;
}

double xtime_t::toVMSTime() const noexcept {
    unsigned long ticks = 0;
    return static_cast<double>(toVMSTime(ticks)) / static_cast<double>(TICKS_PER_SECOND);
}

void xtime_t::fromVMSTime(unsigned long ticks) noexcept {
    // KEPT(vms-before-1970-clears): the difference is not taken as a negative number.
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
