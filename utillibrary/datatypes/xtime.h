#pragma once

#include <chrono>
#include <string>

#include <utillibrary/export.h>

// A name after "Kept" is a deliberate surprise; share/doc/utillibrary/kept.md explains each.
namespace com::halvorin::datatypes {

/// A point in time: whole seconds since 1970-01-01T00:00:00 UTC (the epoch), plus nanoseconds.
///
/// A time is a plain value of 16 bytes. It uses no heap, no time zone and no leap seconds. One
/// object belongs to one thread at a time. Sums of seconds wrap at 64 bits, without a report. A
/// time of 0 seconds and 0 nanoseconds is "not set", and the epoch has the same two fields.
///     xtime_t t(1709618889, 250000000);           // 2024-03-05T06:08:09.250Z
///     t.add(1.5f);                                // 2024-03-05T06:08:10.750Z
///     t.toYYYYString()                            // "20240305060811"
///     t.fromString("2024-03-05T07:08:09+01:00")   // true
///     t.getDateTime()                             // 1709618889
///
/// Its members are in three sources: xtime_text.cpp writes strings (toString, toYYYYString),
/// xtime_parse.cpp reads one (fromString), and xtime.cpp has all others.
/// Kept     zero-is-unset
class UTILLIBRARY_EXPORT xtime_t {
public:
    /// A time that is not set: 0 seconds and 0 nanoseconds.
    /// Fails    never.
    UTILLIBRARY_INLINE xtime_t() noexcept = default;

    /// A time of these two numbers, stored as given. `putNanoseconds` carries whole seconds; this
    /// constructor does not.
    /// Fails    never; more than 999999999 nanoseconds are stored unchanged.
    /// Example  xtime_t(7, 2500000000).getDateTime()      // 7
    ///          xtime_t(7, 2500000000).getNanoseconds()   // 2500000000
    /// Kept     constructor-stores-as-given
    UTILLIBRARY_INLINE xtime_t(long seconds, unsigned int nanoseconds) noexcept
        // KEPT(constructor-stores-as-given): nothing is carried; the fields come back as they were.
        : seconds_(seconds), nanoseconds_(nanoseconds) {}

    /// A time of whole seconds since the epoch. Implicit: a number may be passed where a time is
    /// expected.
    /// Fails    never.
    // NOLINTNEXTLINE(google-explicit-constructor): hosts write `xtime_t t = seconds`.
    UTILLIBRARY_INLINE xtime_t(long const& seconds) noexcept : seconds_(seconds) {}

    /// The whole seconds since the epoch; negative before it.
    /// Fails    never.
    UTILLIBRARY_INLINE long getDateTime() const noexcept { return seconds_; }

    /// The nanoseconds after the whole second: 0 to 999999999, unless the constructor or
    /// `fromTime_point` stored more.
    /// Fails    never.
    UTILLIBRARY_INLINE unsigned int getNanoseconds() const noexcept { return nanoseconds_; }

    /// True if the seconds or the nanoseconds are not 0. So the epoch itself is not set.
    /// Fails    never.
    /// Example  xtime_t(0, 0).isSet()   // false
    ///          xtime_t(0, 1).isSet()   // true
    /// Kept     zero-is-unset
    // KEPT(zero-is-unset): no third field says whether a time was given.
    UTILLIBRARY_INLINE bool isSet() const noexcept { return seconds_ != 0 || nanoseconds_ != 0; }

    /// This time minus another, in seconds.
    /// Gives    a float. It has 24 bits: exact to a nanosecond up to about 0.01 s, and to a
    ///          millisecond up to a few hours. The seconds' difference (64 bits, wrapping) and the
    ///          nanoseconds' difference (a signed number of 32 bits) each become a float. Their sum
    ///          is computed in double, and becomes a float.
    /// Fails    never.
    /// Example  xtime_t(12, 0).difference(xtime_t(10, 500000000))   // 1.5
    /// Kept     difference-is-a-float
    float difference(xtime_t const& other) const noexcept;

    /// Breaks this time down into calendar fields in UTC, of the Gregorian calendar throughout.
    /// Gives    year: the full year; month: 1..12; day: 1..31; hour: 0..23; minute: 0..59; second:
    ///          0..59; nanoseconds: the field unchanged, never carried into the seconds. They
    ///          are stored in this order.
    /// Fails    never.
    /// Cost     the same for every time. It takes no lock and does not read TZ.
    /// Like     gmtime_r(3), except: (1) the year is the full year, and months count from 1; (2) no
    ///          leap seconds are counted, whatever TZ says; (3) if the years since 1900 do not fit
    ///          in an int, the result is year 1900, month 1, day 0 and the time of day 00:00:00;
    ///          (4) if they fit and the full year does not, the full year wraps at 32 bits; (5)
    ///          there is no day of the week and no day of the year.
    /// Example  int year, month, day, hour, minute, second;
    ///          unsigned int nanoseconds;
    ///          xtime_t const t(1709618889, 5);
    ///          t.decompose(year, month, day, hour, minute, second, nanoseconds);
    ///          year          // 2024
    ///          second        // 9
    ///          nanoseconds   // 5
    /// Kept     year-wraps-at-32-bits
    void decompose(int& year, int& month, int& day, int& hour, int& minute, int& second,
                   unsigned int& nanoseconds) const noexcept;

    /// Replaces the seconds; the nanoseconds are unchanged.
    /// Fails    never.
    UTILLIBRARY_INLINE void putDateTime(long seconds) noexcept { seconds_ = seconds; }

    /// Replaces the nanoseconds. Whole seconds in them are added to the seconds, unlike in the
    /// constructor.
    /// Fails    never; a sum of seconds beyond 64 bits wraps.
    /// Example  xtime_t t(10, 0);
    ///          t.putNanoseconds(2500000000);   // 1970-01-01T00:00:12.500Z
    UTILLIBRARY_WRAPS UTILLIBRARY_INLINE void putNanoseconds(unsigned int nanoseconds) noexcept {
        // An unsigned sum wraps, where the overflow of a signed one is undefined.
        seconds_ = static_cast<long>(static_cast<unsigned long>(seconds_) +
                                     nanoseconds / NANOSECONDS_PER_SECOND);
        nanoseconds_ = nanoseconds % NANOSECONDS_PER_SECOND;
    }

    /// Makes this time not set: 0 seconds and 0 nanoseconds.
    /// Fails    never.
    UTILLIBRARY_INLINE void clear() noexcept { *this = xtime_t(); }

    /// Moves this time by an amount of seconds; a negative amount moves it back.
    /// Takes    amount: its fraction is cut to whole nanoseconds, and a float's own imprecision is
    ///          not corrected (0.1f adds 100000001).
    /// Range    the whole seconds of the amount are clamped to [-2147483648, 2147483647]. The
    ///          nanoseconds are summed in 32 bits, with at most one second carried or borrowed.
    /// Fails    never; a sum of seconds beyond 64 bits wraps, and NaN counts as -2147483648 s.
    /// Example  xtime_t t(10, 600000000);
    ///          t.add(1.5f);       // 1970-01-01T00:00:12.100Z
    ///          t.add(-0.25f);     // 1970-01-01T00:00:11.850Z
    ///          t.add(3.0e10f);    // 2038-01-19T03:14:18.850Z
    /// Kept     add-cuts-nanoseconds, add-clamps
    void add(float amount) noexcept;

    /// Sets this time to the system's real-time clock.
    /// Fails    with std::runtime_error "xtime_t::now - Error returned from clock_getttime: "
    ///          (three t before "ime"), followed by strerror(errno) in the language of the C
    ///          locale; or with std::bad_alloc if there is no memory for that message. This time
    ///          is then unchanged.
    /// Source   POSIX clock_gettime, CLOCK_REALTIME
    /// Kept     clock-error-spelling
    void now();

    /// Sets this time from a count of nanoseconds since the epoch.
    /// Takes    any count. The seconds are cut toward zero. Before the epoch the nanoseconds are
    ///          the 32-bit pattern of the negative remainder, and `toTime_point` does not give the
    ///          count back.
    /// Fails    never.
    /// Example  std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds> point;
    ///          point -= std::chrono::nanoseconds(1);
    ///          xtime_t t;
    ///          t.fromTime_point(point);
    ///          t.getDateTime()      // 0
    ///          t.getNanoseconds()   // 4294967295
    /// Kept     time-point-before-1970
    void fromTime_point(std::chrono::time_point<std::chrono::system_clock,
                                                std::chrono::nanoseconds> const& point) noexcept;

    /// This time as a count of nanoseconds since the epoch.
    /// Fails    never; beyond 64 bits (before the year 1677, after 2262) the count wraps.
    /// Example  xtime_t(-1, 999999999).toTime_point().time_since_epoch().count()   // -1
    std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds> toTime_point()
        const noexcept;

    /// This time as OpenVMS time, stored in `ticks` and returned.
    /// Gives    ticks of 100 ns since 1858-11-17T00:00:00, rounded to the nearest; half a tick goes
    ///          up.
    /// Fails    never; before 1858-11-17 and after the year 60314 the count wraps at 64 bits.
    /// Source   day zero of the Modified Julian Date, which is the epoch of OpenVMS; docs/time.md
    /// Example  unsigned long ticks;
    ///          xtime_t(0, 49).toVMSTime(ticks)   // 35067168000000000
    ///          xtime_t(0, 50).toVMSTime(ticks)   // 35067168000000001
    unsigned long toVMSTime(unsigned long& ticks) const noexcept;

    /// This time in seconds of OpenVMS time.
    /// Gives    the ticks of `toVMSTime(ticks)`, as an unsigned number that becomes a double,
    ///          divided by 10000000.
    /// Fails    never.
    /// Example  xtime_t(0, 0).toVMSTime()   // 3506716800
    double toVMSTime() const noexcept;

    /// Sets this time from OpenVMS ticks.
    /// Range    ticks before the epoch (below 35067168000000000) clear this time.
    /// Fails    never.
    /// Example  xtime_t t(5, 5);
    ///          t.fromVMSTime(35067168010000001UL);   // 1970-01-01T00:00:01.000Z
    ///          t.getNanoseconds()                    // 100
    ///          t.fromVMSTime(35067167999999999UL);
    ///          t.isSet()                             // false
    /// Kept     vms-before-1970-clears
    void fromVMSTime(unsigned long ticks) noexcept;

    /// Sets this time from seconds of OpenVMS time, which are cut to whole ticks.
    /// Range    seconds from 0 to below 3506716800, which is the epoch, clear this time.
    /// Fails    never. A count of ticks that does not fit converts as `Variant` converts a Double
    ///          to an unsigned 64-bit integer. So a negative count is not an early time: it becomes
    ///          a huge count, and NaN becomes 2^63 ticks.
    /// Example  xtime_t t;
    ///          t.fromVMSTime(3506716800.5);   // 1970-01-01T00:00:00.500Z
    /// Kept     vms-before-1970-clears, uint64-from-floating
    void fromVMSTime(double seconds) noexcept;

    /// Writes this time like ISO 8601: "2024-03-05T07:08:09.250+0100".
    /// Takes    applyOffset: false ignores offsetSeconds; offsetSeconds: seconds east of UTC;
    ///          options: an 'I' anywhere in it leaves out the fraction.
    /// Gives    date, "T", time of day, fraction and zone, at most 35 bytes:
    ///
    ///          part      written
    ///          date      %04d-%02d-%02d of the sum of the seconds, the whole seconds in the
    ///                    nanoseconds field, and the offset; the four characters of a year include
    ///                    its sign, so year -1 is "-001"
    ///          time      %02d:%02d:%02d of the same sum
    ///          fraction  the decimal point of the C locale and three digits; if the decimal point
    ///                    has several bytes, the first four bytes of point and digits
    ///          zone      nothing without applyOffset; "Z" for offset 0; else sign, hours and
    ///                    minutes, without the odd seconds; an offset of 86400 s or more, either
    ///                    way, shifts the time by that amount and writes no zone
    ///
    ///          The digits of the fraction are the first three of the six decimals that
    ///          printf("%f") writes, in the rounding mode that it uses (on x86-64 the x87 word).
    ///          The number is a float: the nanoseconds after the second as a float, divided by
    ///          10^9. So 123999999 ns is ".124". From 999999521 ns on it is ".000", and nothing is
    ///          carried into the seconds.
    /// Fails    with std::bad_alloc only. If `decompose` cannot give the year, this writes the
    ///          fields that `decompose` gives instead.
    /// Source   ISO 8601, extended format of the date and the time, basic format of the zone
    /// Example  xtime_t const t(1709618889, 250000000);
    ///          t.toString(true, 0, "")        // "2024-03-05T06:08:09.250Z"
    ///          t.toString(true, 3600, "")     // "2024-03-05T07:08:09.250+0100"
    ///          t.toString(true, -19800, "")   // "2024-03-05T00:38:09.250-0530"
    ///          t.toString(true, 90000, "I")   // "2024-03-06T07:08:09"
    ///          t.toString(false, 3600, "")    // "2024-03-05T06:08:09.250"
    /// Kept     fraction-of-six-decimals, offset-of-a-day-is-silent, year-wraps-at-32-bits
    std::string toString(bool applyOffset, int offsetSeconds, std::string const& options) const;

    /// Reads a time like ISO 8601: "2024-03-05T07:08:09.25+01:00". True if it was read.
    /// Takes    date, "T", time of day and zone. Each part is read as sscanf(3) reads it, with the
    ///          decimal point of the C locale. Whitespace and a sign may precede a number, and
    ///          leading zeros are not needed.
    ///
    ///          part    accepted                           ignored          refused
    ///          "T"     the first "T" ends the date        -                no "T"; "t" or a space
    ///          date    "%d-%d-%d": year from 1970,        bytes after      a missing number;
    ///                  month 1..12, day 1..31 in any      the day          a number out of range
    ///                  month: 2023-02-31 is 3 March
    ///          time    "%d:%d:%f": hour 0..23,            bytes after      no minutes; a number
    ///                  minute 0..59, second from 0 to     the minutes or   out of range; a leap
    ///                  below 60; no seconds, or seconds   the seconds      second (60)
    ///                  that are not a number, count as 0
    ///          zone    the first 'Z', '+' or '-' of the   bytes after      a sign without hours;
    ///                  time starts it: "Z" or nothing     'Z' or the       "+hh:" without minutes;
    ///                  is UTC; "+hh:mm", "+hhmm", "+hh"   minutes          a number out of range
    ///                  (or '-'): hours to 23, minutes
    ///                  0..59, no minutes count as 0
    ///          length  63 bytes, of which 31 after "T"    bytes after      -
    ///                  and 15 of the zone; a zero byte    these
    ///                  ends the string
    ///
    ///          "%d" keeps the low 32 bits of what it reads: year 4294969321 is 2025.
    /// Gives    the seconds are those of `mktimeEx`. If it refuses the time (after
    ///          2038-01-19T03:14:07 UTC, or before 1970 by its zone), -1 seconds are stored and the
    ///          result is true. The zone's hours have its sign; its minutes are always subtracted.
    ///          So "-05:30" moves the time forward by 4 h 30 min, not by 5 h 30 min. The
    ///          nanoseconds are the fraction of the seconds, which are a float, cut: "09.1" gives
    ///          100000381.
    /// Fails    with false; this time is then cleared. Nothing is thrown or reported.
    /// Source   ISO 8601, in part; POSIX sscanf for the numbers
    /// Example  xtime_t t;
    ///          t.fromString("2024-03-05T07:08:09.25+01:00")   // true
    ///          t                                              // 2024-03-05T06:08:09.250Z
    ///          t.fromString("2024-03-05T07:08")               // true
    ///          t                                              // 2024-03-05T07:08:00.000Z
    ///          t.fromString("2024-03-05")                     // false
    ///          t.isSet()                                      // false
    /// Kept     rest-is-ignored, day-31-of-any-month, digits-wrap-at-32-bits,
    ///          zone-minutes-subtracted, refused-time-is-minus-one
    bool fromString(std::string const& text) noexcept;

    /// Writes this time, rounded to the nearest second, as fourteen digits: "20240305060809".
    /// Exactly half a second goes down here; in `operator long` it goes up.
    /// Gives    what `timeToYYYYString` gives. The nanoseconds add one second at most, where
    ///          `toString` adds all whole seconds that they contain.
    /// Fails    with std::bad_alloc only, and only for a year of six characters or more.
    /// Example  xtime_t(1709618889, 500000000).toYYYYString()   // "20240305060809"
    ///          xtime_t(1709618889, 500000001).toYYYYString()   // "20240305060810"
    /// Kept     half-a-second-down
    std::string toYYYYString() const;

    /// The seconds since the epoch, rounded to the nearest. Half a second goes up here; in
    /// `toYYYYString` it goes down. Not const: a constant time does not convert to a number.
    /// Gives    the seconds, and one more from 500000000 ns on; never two more.
    /// Fails    never; LONG_MAX and half a second wrap to LONG_MIN.
    /// Example  xtime_t half(5, 500000000);
    ///          half.operator long()   // 6
    ///          long const seconds = half;   // 6
    /// Kept     half-a-second-up, number-of-a-variable-time
    // NOLINTNEXTLINE(google-explicit-constructor, readability-make-member-function-const)
    UTILLIBRARY_WRAPS UTILLIBRARY_INLINE operator long() noexcept {
        // KEPT(number-of-a-variable-time): with const, `time == 5L` would be ambiguous for a
        // constant time.
        // KEPT(half-a-second-up): half a second goes up; `toYYYYString` needs 1 ns more for that.
        // An unsigned sum wraps, where the overflow of a signed one is undefined.
        return static_cast<long>(static_cast<unsigned long>(seconds_) +
                                 (nanoseconds_ >= HALF_A_SECOND ? 1 : 0));
    }

private:
    static constexpr unsigned int NANOSECONDS_PER_SECOND = 1'000'000'000;
    static constexpr unsigned int HALF_A_SECOND = 500'000'000;

    long seconds_ = 0;              // since 1970-01-01T00:00:00 UTC
    unsigned int nanoseconds_ = 0;  // 0..999999999, unless a caller stored more
};

// The six comparisons compare the seconds as signed numbers; if these are equal, they compare the
// nanoseconds fields. Nothing is carried: (1 s, 0 ns) differs from (0 s, 1000000000 ns).

/// True if the seconds are equal and the nanoseconds are equal.
/// Fails    never.
UTILLIBRARY_INLINE bool operator==(xtime_t const& left, xtime_t const& right) noexcept {
    return left.getDateTime() == right.getDateTime() &&
           left.getNanoseconds() == right.getNanoseconds();
}

/// True if the seconds differ or the nanoseconds differ: not `==`.
/// Fails    never.
UTILLIBRARY_INLINE bool operator!=(xtime_t const& left, xtime_t const& right) noexcept {
    return !(left == right);
}

/// True if `left` has fewer seconds, or equal seconds and fewer nanoseconds.
/// Fails    never.
UTILLIBRARY_INLINE bool operator<(xtime_t const& left, xtime_t const& right) noexcept {
    if (left.getDateTime() != right.getDateTime()) return left.getDateTime() < right.getDateTime();
    return left.getNanoseconds() < right.getNanoseconds();
}

/// True if `left` is later than `right`: `right < left`.
/// Fails    never.
UTILLIBRARY_INLINE bool operator>(xtime_t const& left, xtime_t const& right) noexcept {
    return right < left;
}

/// True if `left` is not later than `right`: not `>`.
/// Fails    never.
UTILLIBRARY_INLINE bool operator<=(xtime_t const& left, xtime_t const& right) noexcept {
    return !(left > right);
}

/// True if `left` is not earlier than `right`: not `<`.
/// Fails    never.
UTILLIBRARY_INLINE bool operator>=(xtime_t const& left, xtime_t const& right) noexcept {
    return !(left < right);
}

/// The time of the system's real-time clock.
/// Fails    as `xtime_t::now` does.
UTILLIBRARY_EXPORT xtime_t xtimeNow();

}  // namespace com::halvorin::datatypes
