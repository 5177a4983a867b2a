#pragma once

#include <vector>

#include <utillibrary/export.h>

// Steps and ticks for a time axis whose window moves with the data. Times are whole seconds since
// 1970; no time zone takes part.
//
// The steps are 1, 2, 5, 10, 15 and 30 seconds; 1, 2, 5, 10, 15, 20 and 30 minutes; 1, 2, 4, 6, 8,
// 12 and 24 hours. With each goes the number of minor ticks between two major ones, 0 to 4.
namespace com::halvorin::utilities {

/// Widens a range to a scale: `ticks` major ticks, the first at `start`, the last at `end`.
/// Takes    tMin, tMax: the range; ticks: from 3; minStep: the least step wanted, in seconds.
/// Gives    the smallest step, and for it the latest start, with which the scale covers the range,
///          and the step's minor ticks. A start lies on a multiple of the step, or, from 10 s on,
///          on a finer grid of 5 seconds to 1 hour. For tMin = tMax the scale is start, start + 1
///          ..., with 3 minor ticks and whatever minStep says. KEPT(instant-has-seconds)
/// Range    made for times from 1970 on. Before, multiples are those of the unsigned 64-bit number
///          that the time's bits make. KEPT(scale-is-unsigned)
///          Where a step of a day is too small, or below minStep, the scale starts at the day's
///          beginning, and its step is whole days: the low 32 bits of the distance from start to
///          tMax, divided by ticks - 1, cut, and only then rounded up to days. So minStep takes no
///          part, the end may lie before tMax, and the step may be 0. KEPT(days-in-32-bits)
/// Fails    with std::invalid_argument "MovingTimeScale - invalid arguments" for fewer than 3 ticks
///          or tMax < tMin; nothing is written then. Sums wrap at 64 bits, and a scale that wraps
///          is not chosen from the table.
/// Example  (7, 35, 5, 0) gives start 5, end 45, step 10, minor 4
UTILLIBRARY_EXPORT void MovingTimeScale(long tMin, long tMax, unsigned int ticks,
                                        unsigned long minStep, long& start, long& end,
                                        unsigned long& step, unsigned int& minor);

/// Lists the major and minor ticks that lie within a range.
/// Takes    tMin, tMax: the range; ticks: how many major ticks are wanted about, from 3.
/// Gives    in `majors` the multiples of the step from tMin to tMax, and in `minors` the times
///          between, without tMin and tMax; both in order, in place of what the lists held. If one
///          list is given for both, the majors come first.
///          x = (tMax - tMin) / (ticks - 1) decides, in single precision.
///          KEPT(axis-counts-in-floats) x < 1: step 0, tMin and tMax as majors, every second
///          between as minors, and their number in `minor`, wrapped at 32 bits. For tMin = tMax
///          both majors are that time, and minor is 4294967295. KEPT(step-0-fills-every-second)
///          x = 1: step 1, no minor ticks.
///          x > 1: the smallest step from 2 s on that is not below x, else x rounded up to whole
///          days, with 3 minor ticks; these lie at multiples of step / (minor + 1), a float,
///          rounded. KEPT(axis-counts-in-floats)
/// Range    any times. Before 1970 multiples are what they are in mathematics, unlike in
///          `MovingTimeScale`. KEPT(axis-is-signed) A step may have no multiple in the range: then
///          there are no minor ticks either. KEPT(no-major-no-minor)
/// Fails    with std::invalid_argument "MovingTimeAxis - invalid arguments" for fewer than 3 ticks
///          or tMax < tMin; the lists are empty, and step and minor 0 then.
///          KEPT(axis-empties-before-it-checks) With std::bad_alloc; the lists are empty then.
/// Cost     at most one allocation a list. With x < 1 its length is that of the range.
/// Example  (0, 100, 6) gives step 30, minor 2, majors 0 30 60 90, minors 10 20 40 50 70 80
UTILLIBRARY_EXPORT void MovingTimeAxis(long tMin, long tMax, unsigned int ticks,
                                       unsigned long& step, unsigned int& minor,
                                       std::vector<long>& majors, std::vector<long>& minors);

}  // namespace com::halvorin::utilities
