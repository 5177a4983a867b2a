#include <algorithm>
#include <array>
#include <cstdio>

#include "utillibrary/datatypes/xtime.h"
#include "utillibrary/datatypes/xtime_conversions.h"
#include "utillibrary/datatypes/xtime_internal.h"
#include "utillibrary/datatypes/xtime_writers_internal.h"
#include "utillibrary/internal/calendar.h"
#include "utillibrary/internal/decimal.h"
#include "utillibrary/internal/wrapping.h"

// The members of xtime_t that write strings.
namespace com::halvorin::datatypes {

namespace {

using namespace com::halvorin::internal;

char* writeZone(char* out, int offsetSeconds) noexcept {
    // KEPT(offset-of-a-day-is-silent): no zone and no report; the time is shifted.
    if (offsetSeconds <= -SECONDS_PER_DAY || offsetSeconds >= SECONDS_PER_DAY) return out;
    if (offsetSeconds == 0) {
        *out++ = 'Z';
        return out;
    }
    bool const west = offsetSeconds < 0;
    unsigned const distance = asUnsigned(west ? -offsetSeconds : offsetSeconds);
    *out++ = west ? '-' : '+';
    out = writeTwoDigits(out, distance / SECONDS_PER_HOUR);
    return writeTwoDigits(out, distance % SECONDS_PER_HOUR / SECONDS_PER_MINUTE);
}

}  // namespace

char* printDateAndTime(char* out, BrokenDownTime const& t) noexcept {
    return out + std::snprintf(out, ISO_BUFFER_SIZE, "%04d-%02d-%02dT%02d:%02d:%02d", t.year,
                               t.month, t.day, t.hour, t.minute, t.second);
}

char* printFraction(char* out, float fraction) noexcept {
    char printed[16];
    // KEPT(fraction-of-six-decimals): the format is "%f" and the characters "1.3", not "%.3f".
    // Those characters come after byte 4.
    std::snprintf(printed, sizeof printed, "%f1.3", static_cast<double>(fraction));
    return std::copy_n(printed + 1, 4, out);
}

std::string xtime_t::toString(bool applyOffset, int offsetSeconds,
                              std::string const& options) const {
    long shown = wrappingSum(seconds_, nanoseconds_ / NANOSECONDS_PER_SECOND);
    if (applyOffset) shown = wrappingSum(shown, offsetSeconds);

    BrokenDownTime const t = breakDown(shown);
    std::array<char, ISO_BUFFER_SIZE> text;
    auto const afterSeconds = writeDateAndTime(text.data(), t);
    char* end = afterSeconds ? *afterSeconds : printDateAndTime(text.data(), t);
    if (options.find('I') == std::string::npos) {
        auto const nanoseconds = static_cast<float>(nanoseconds_ % NANOSECONDS_PER_SECOND);
        auto const fraction = static_cast<float>(static_cast<double>(nanoseconds) / 1e9);
        auto const afterFraction = writeFraction(end, fraction);
        end = afterFraction ? *afterFraction : printFraction(end, fraction);
    }
    if (applyOffset) end = writeZone(end, offsetSeconds);
    return {text.data(), end};
}

std::string xtime_t::toYYYYString() const {
    // KEPT(half-a-second-down): more than half a second goes up; `operator long` needs only half.
    return utilities::timeToYYYYString(wrappingSum(seconds_, nanoseconds_ > HALF_A_SECOND ? 1 : 0));
}

}  // namespace com::halvorin::datatypes
