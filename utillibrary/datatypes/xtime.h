#pragma once

#include <chrono>
#include <string>

#include <utillibrary/export.h>

namespace com::halvorin::datatypes {

// A point in time: whole seconds since 1970-01-01T00:00:00 UTC, plus nanoseconds.
//
// A plain value of 16 bytes: no heap, no time zone, no leap seconds. One object belongs to one
// thread at a time. Sums of seconds wrap at 64 bits, without a report.
// All zero means "not set"; the epoch itself cannot be told from it. KEPT(zero-is-unset)
//     xtime_t t(1709618889, 250000000);   // 2024-03-05T06:08:09.250Z
//     t.add(1.5f);                        // 2024-03-05T06:08:10.750Z
class UTILLIBRARY_EXPORT xtime_t {
public:
    /// Not set.
    UTILLIBRARY_INLINE xtime_t() noexcept = default;

    /// Stores both as given: more than 999999999 nanoseconds stay as they are, unlike with
    /// `putNanoseconds`. KEPT(constructor-stores-as-given)
    UTILLIBRARY_INLINE xtime_t(long seconds, unsigned int nanoseconds) noexcept
        // KEPT(constructor-stores-as-given): nothing is carried; the fields come back as they were.
        : seconds_(seconds), nanoseconds_(nanoseconds) {}

    /// Whole seconds; implicit, so that a number of seconds may stand where a time is wanted.
    // NOLINTNEXTLINE(google-explicit-constructor): hosts write `xtime_t t = seconds;`.
    UTILLIBRARY_INLINE xtime_t(long const& seconds) noexcept : seconds_(seconds) {}

    /// Seconds since 1970, and the fraction of a second: 0 to 999999999 unless more was stored.
    UTILLIBRARY_INLINE long getDateTime() const noexcept { return seconds_; }
    UTILLIBRARY_INLINE unsigned int getNanoseconds() const noexcept { return nanoseconds_; }

    /// False for the all-zero value only.
    // KEPT(zero-is-unset): no third field says so; the epoch reads as unset, as in hosts' data.
    UTILLIBRARY_INLINE bool isSet() const noexcept { return seconds_ != 0 || nanoseconds_ != 0; }

    /// This time less another.
    /// Gives    seconds as a float: its 24 bits hold nanoseconds for hundredths of a second, and
    ///          milliseconds for a few hours. KEPT(difference-is-a-float) Each field's difference
    ///          is made a float by itself, that of the nanoseconds as a signed 32-bit number; the
    ///          two are added as doubles.
    /// Fails    never.
    /// Example  (12 s, 0 ns) less (10 s, 500000000 ns) is 1.5
    float difference(xtime_t const& other) const noexcept;

    /// This time as calendar fields in UTC, of the Gregorian calendar throughout.
    /// Gives    year: the full year; month: 1..12; day: 1..31; hour: 0..23; minute: 0..59; second:
    ///          0..59; nanoseconds: the field as it is, never carried into the seconds.
    /// Fails    never. The result equals that of POSIX `gmtime_r`: where its years since 1900 leave
    ///          an int, all its fields are zero, which reads as year 1900, month 1, day 0; where
    ///          they just fit, the full year wraps at 32 bits. KEPT(year-wraps-at-32-bits)
    /// Cost     takes no lock, looks at no TZ, and is the same for every time.
    void decompose(int& year, int& month, int& day, int& hour, int& minute, int& second,
                   unsigned int& nanoseconds) const noexcept;

    /// Replaces the seconds alone.
    UTILLIBRARY_INLINE void putDateTime(long seconds) noexcept { seconds_ = seconds; }

    /// Replaces the nanoseconds; whole seconds in them are added to the seconds.
    /// Example  2500000000 at 10 s gives (12 s, 500000000 ns)
    UTILLIBRARY_INLINE void putNanoseconds(unsigned int nanoseconds) noexcept {
        seconds_ = static_cast<long>(static_cast<unsigned long>(seconds_) +
                                     nanoseconds / NANOSECONDS_PER_SECOND);
        nanoseconds_ = nanoseconds % NANOSECONDS_PER_SECOND;
    }

    /// Back to not set.
    UTILLIBRARY_INLINE void clear() noexcept { *this = xtime_t(); }

    /// Moves this time; a negative amount moves it back.
    /// Takes    seconds; the fraction is cut to whole nanoseconds, and a float's own imprecision
    ///          passes through (0.1f adds 100000001). KEPT(add-cuts-nanoseconds)
    /// Range    whole seconds are clamped to [-2147483648, 2147483647]. KEPT(add-clamps)
    ///          Nanoseconds are summed in 32 bits, and at most one second is carried.
    /// Fails    never; NaN counts as -2147483648 s.
    /// Example  (10 s, 600000000 ns).add(1.5f) gives (12 s, 100000000 ns)
    void add(float amount) noexcept;

    /// Sets this time to the system's real-time clock.
    /// Fails    with std::runtime_error "xtime_t::now - Error returned from clock_getttime: "
    ///          followed by the text of errno, in the language of the C locale; this time is
    ///          unchanged then. Three t stand in the name: hosts compare the text.
    ///          KEPT(clock-error-spelling)
    /// Source   POSIX clock_gettime, CLOCK_REALTIME
    void now();

    /// The fields of a count of nanoseconds since 1970.
    /// Takes    any count. Before 1970 the seconds are cut toward zero and the nanoseconds field
    ///          holds the negative rest's 32-bit pattern. KEPT(time-point-before-1970)
    /// Fails    never.
    /// Example  -1 ns gives (0 s, 4294967295 ns)
    void fromTime_point(std::chrono::time_point<std::chrono::system_clock,
                                                std::chrono::nanoseconds> const& point) noexcept;

    /// This time as a count of nanoseconds since 1970.
    /// Fails    never; beyond 64 bits (the years 1677 and 2262) the count wraps.
    std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds> toTime_point()
        const noexcept;

    /// This time as OpenVMS time, written to `ticks` and returned.
    /// Gives    ticks of 100 ns since 1858-11-17T00:00:00, rounded to the nearest, halves up.
    /// Fails    never; before 1858-11-17 and from the year 60314 on it wraps to another count.
    /// Source   day zero of the Modified Julian Date, which is OpenVMS's; docs/time.md
    /// Example  (0 s, 50 ns) gives 35067168000000001
    unsigned long toVMSTime(unsigned long& ticks) const noexcept;

    /// OpenVMS time in seconds: the ticks, read as unsigned, as a double divided by 10000000.
    /// Fails    never.
    double toVMSTime() const noexcept;

    /// Sets this time from OpenVMS ticks.
    /// Range    ticks before 1970 (below 35067168000000000) clear this time: they cannot be told
    ///          from "not set". KEPT(vms-before-1970-clears)
    /// Fails    never.
    void fromVMSTime(unsigned long ticks) noexcept;

    /// Sets this time from seconds of OpenVMS time, cut to whole ticks, and then as from ticks:
    /// before 1970 this clears it. KEPT(vms-before-1970-clears)
    /// Fails    never. A tick count that does not fit is converted as `Variant` converts a Double
    ///          to an unsigned 64-bit integer, so a negative or NaN one is a huge count, not an
    ///          early time. KEPT(uint64-from-floating)
    void fromVMSTime(double seconds) noexcept;

    /// ISO 8601-like text, "2024-03-05T07:08:09.250+0100".
    /// Takes    applyOffset: whether the offset takes part at all; offsetSeconds: east of UTC,
    ///          ignored without applyOffset; options: with 'I' anywhere in it no fraction is shown.
    /// Gives    date, "T" and time of day, shifted by the offset; a year is padded with zeros to
    ///          four characters, a sign included (-1 reads "-001"). Nanoseconds beyond a second are
    ///          carried. Then the fraction: the decimal point of the C locale and three digits,
    ///          which are the first three of six rounded decimals of a float; so 123999999 ns reads
    ///          ".124", and from 999999521 ns on ".000" without a carry.
    ///          KEPT(fraction-of-six-decimals) Of a longer decimal point and its digits four bytes
    ///          are kept. Then, with applyOffset: "Z" for 0, else sign, hours and minutes, seconds
    ///          dropped; and nothing for an offset of a day or more, which shifts the time all the
    ///          same. KEPT(offset-of-a-day-is-silent)
    /// Fails    never, but for std::bad_alloc.
    std::string toString(bool applyOffset, int offsetSeconds, std::string const& options) const;

    /// Reads ISO 8601-like text: "2024-03-05T07:08:09.25+01:00".
    /// Takes    date "T" time [zone]; numbers as `sscanf` reads them under the C locale, leading
    ///          zeros not required. Date: year from 1970, month 1..12, day 1..31 in any month, so
    ///          that 2023-02-31 is 3 March. KEPT(day-31-of-any-month) Time: hour 0..23, minute
    ///          0..59 and, if given, seconds from 0 to below 60, read as a float; a leap second is
    ///          refused. Zone: after '+' or '-' "hh:mm", "hhmm" or "hh", hours to 23, minutes to
    ///          59; else UTC. At most 63 bytes count, 31 of them after the "T", 15 in the zone; a
    ///          zero byte ends the text. What stands behind the day, the minutes, the seconds or
    ///          the zone's digits is ignored, and seconds that are no number are 0: true does not
    ///          say that the whole text was a time. KEPT(rest-is-ignored)
    /// Gives    true when the text was read. The zone's minutes are subtracted whatever the sign of
    ///          its hours, so -05:30 moves by 4 h 30 min. KEPT(zone-minutes-subtracted) A time that
    ///          `mktimeEx` refuses, after 2038-01-19T03:14:07 UTC or moved before 1970 by its zone,
    ///          is stored as -1 seconds, and the result is true. KEPT(refused-time-is-minus-one)
    ///          Nanoseconds are the float's fraction, cut.
    /// Fails    with false; this time is not set then. Nothing is thrown.
    bool fromString(std::string const& text) noexcept;

    /// "20240305060809", of the time rounded to the nearest second: exactly half a second goes
    /// down, where `operator long` goes up. KEPT(half-a-second-down) Nanoseconds beyond a second
    /// count as one second here and there, unlike in `toString`.
    /// Gives    what `timeToYYYYString` gives.
    /// Fails    as `timeToYYYYString` does.
    std::string toYYYYString() const;

    /// Seconds since 1970, rounded to the nearest: half a second goes up, where `toYYYYString` goes
    /// down. KEPT(half-a-second-up) Not const: a constant time does not turn into a number.
    /// KEPT(number-of-a-variable-time)
    /// Example  (5 s, 500000000 ns) gives 6
    // NOLINTNEXTLINE(google-explicit-constructor, readability-make-member-function-const)
    UTILLIBRARY_INLINE operator long() noexcept {
        // KEPT(number-of-a-variable-time): const would fit, and would make `time == 5L` ambiguous
        // for a constant time. KEPT(half-a-second-up): unlike in the fourteen-digit text.
        return static_cast<long>(static_cast<unsigned long>(seconds_) +
                                 (nanoseconds_ >= HALF_A_SECOND ? 1 : 0));
    }

private:
    static constexpr unsigned int NANOSECONDS_PER_SECOND = 1'000'000'000;
    static constexpr unsigned int HALF_A_SECOND = 500'000'000;

    long seconds_ = 0;              // since 1970-01-01T00:00:00 UTC
    unsigned int nanoseconds_ = 0;  // 0..999999999, unless a caller stored more
};

/// Order in time: seconds first, as signed numbers, then nanoseconds as they are stored. Two times
/// are equal when both fields are, so (1 s, 0 ns) differs from (0 s, 1000000000 ns).
UTILLIBRARY_INLINE bool operator==(xtime_t const& left, xtime_t const& right) noexcept {
    return left.getDateTime() == right.getDateTime() &&
           left.getNanoseconds() == right.getNanoseconds();
}

UTILLIBRARY_INLINE bool operator!=(xtime_t const& left, xtime_t const& right) noexcept {
    return !(left == right);
}

UTILLIBRARY_INLINE bool operator<(xtime_t const& left, xtime_t const& right) noexcept {
    if (left.getDateTime() != right.getDateTime()) return left.getDateTime() < right.getDateTime();
    return left.getNanoseconds() < right.getNanoseconds();
}

UTILLIBRARY_INLINE bool operator>(xtime_t const& left, xtime_t const& right) noexcept {
    return right < left;
}

UTILLIBRARY_INLINE bool operator<=(xtime_t const& left, xtime_t const& right) noexcept {
    return !(left > right);
}

UTILLIBRARY_INLINE bool operator>=(xtime_t const& left, xtime_t const& right) noexcept {
    return !(left < right);
}

/// The system's real-time clock.
/// Fails    as `xtime_t::now` does.
UTILLIBRARY_EXPORT xtime_t xtimeNow();

}  // namespace com::halvorin::datatypes
