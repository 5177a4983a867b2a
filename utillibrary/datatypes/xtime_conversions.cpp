#include "utillibrary/datatypes/xtime_conversions.h"

#include <array>
#include <cstdio>

#include "utillibrary/datatypes/xtime_internal.h"
#include "utillibrary/datatypes/xtime_readers_internal.h"
#include "utillibrary/datatypes/xtime_writers_internal.h"
#include "utillibrary/internal/calendar.h"
#include "utillibrary/internal/decimal.h"
#include "utillibrary/internal/wrapping.h"

namespace com::halvorin::datatypes {

using namespace com::halvorin::internal;

std::string printFourteenDigits(BrokenDownTime const& t) {
    // A year of 11 characters, and ten digits.
    std::array<char, 24> text;
    // KEPT(space-padded-year): "%4d" here, "%04d" in the ISO form.
    int const length = std::snprintf(text.data(), text.size(), "%4d%02d%02d%02d%02d%02d", t.year,
                                     t.month, t.day, t.hour, t.minute, t.second);
    return {text.data(), static_cast<std::size_t>(length)};
}

long convertFourteenDigits(std::string const& text) {
    auto const field = [&text](std::size_t at, std::size_t size) {
        return std::stoi(text.substr(at, size));
    };
    int const year = field(0, 4);
    int const month = field(4, 2);
    int const day = field(6, 2);
    int const hour = field(8, 2);
    int const minute = field(10, 2);
    int const second = field(12, 2);
    return secondsOf(daysToDate(year, month, day), {hour, minute, second}, 0);
}

}  // namespace com::halvorin::datatypes

namespace com::halvorin::utilities {

using namespace com::halvorin::datatypes;

std::string timeToYYYYString(long seconds) {
    internal::BrokenDownTime const t = internal::breakDown(seconds);
    std::string digits(FOURTEEN_DIGITS, '\0');
    if (!writeFourteenDigits(digits.data(), t)) digits = printFourteenDigits(t);
    return digits;
}

long YYYYStringTotime(std::string const& text) {
    if (text.size() != FOURTEEN_DIGITS) return 0;
    // KEPT(fourteen-digits-unchecked): no range is checked; the calendar carries.
    if (auto const seconds = readFourteenDigits(text)) return *seconds;
    return convertFourteenDigits(text);
}

std::string to_string(xtime_t const& time) { return time.toString(true, 0, ""); }

}  // namespace com::halvorin::utilities
