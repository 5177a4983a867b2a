#pragma once

#include <vector>

#include <utillibrary/export.h>

// A name after "Kept" is a deliberate surprise; share/doc/utillibrary/kept.md explains each.

// Steps and ticks for a time axis whose window moves with the data. Times are whole seconds since
// 1970, and no time zone is used. No state, no lock: any thread may call both.
//
// Both functions choose from one table of steps. A scale starts at a multiple of its step, or, from
// 10 s on, at a multiple of a finer grid:
//
//   step                   1 s  2 s  5 s  10 s  15 s  30 s
//   minor ticks between      0    1    4     4     2     2
//   grid of a scale        1 s  2 s  5 s   5 s   5 s   5 s
//
//   step                  1 min  2 min  5 min  10 min  15 min  20 min  30 min
//   minor ticks between       3      3      4       4       2       3       2
//   grid of a scale        10 s   15 s  1 min   5 min   5 min   5 min   5 min
//
//   step                   1 h     2 h     4 h  6 h  8 h  12 h  24 h
//   minor ticks between      3       3       3    3    3     3     3
//   grid of a scale      5 min  15 min  30 min  1 h  1 h   1 h   1 h
//
//     long start, end;
//     unsigned long step;
//     unsigned int minor;
//     MovingTimeScale(7, 35, 5, 0, start, end, step, minor);
//     start   // 5
//     end     // 45
//     step    // 10
//     minor   // 4
namespace com::halvorin::utilities {

/// Widens a range to a scale: `ticks` major ticks, the first at `start` and the last at `end`.
/// Takes    tMin, tMax: the range; ticks: 3 or more; minStep: the least step, in seconds.
/// Gives    the smallest step of the table, not below minStep, with which a scale covers the range
///          (start <= tMin and tMax <= end); for that step the latest start; and the step's minor
///          ticks. Two cases do not use the table:
///
///          tMin = tMax         start = tMax; end = tMax + ticks - 1; step = 1; minor = 3.
///                              minStep is not used, and the table has no such step.
///          no step is enough,  start = the last multiple of 86400 that is not after tMin
///          or minStep > 86400  n     = uint32(tMax - start) / (ticks - 1), cut
///                              step  = n, rounded up to a multiple of 86400
///                              end   = start + (ticks - 1) * step
///                              minor = 3
///                              minStep is not used. The scale can end before tMax. The step is 0
///                              if n is 0.
///
/// Range    made for times from 1970 on. Before 1970 the multiples are those of the time's 64 bits
///          as an unsigned number, where `MovingTimeAxis` takes those of mathematics.
/// Fails    with std::invalid_argument "MovingTimeScale - invalid arguments" if ticks < 3 or tMax <
///          tMin, or with std::bad_alloc if there is no memory for that exception; nothing is
///          written then. Sums wrap at 64 bits, and a scale that wraps is not chosen from the
///          table.
/// Example  long start, end;
///          unsigned long step;
///          unsigned int minor;
///          MovingTimeScale(0, 35, 5, 600, start, end, step, minor);
///          step    // 600
///          end     // 2400
///          MovingTimeScale(100, 100, 5, 600, start, end, step, minor);
///          step    // 1
///          end     // 104
///          MovingTimeScale(0, 345604, 5, 0, start, end, step, minor);
///          step    // 172800
/// Kept     instant-has-seconds, scale-is-unsigned, days-in-32-bits
UTILLIBRARY_EXPORT void MovingTimeScale(long tMin, long tMax, unsigned int ticks,
                                        unsigned long minStep, long& start, long& end,
                                        unsigned long& step, unsigned int& minor);

/// Lists the major and the minor ticks of an axis that lie in a range.
/// Takes    tMin, tMax: the range; ticks: about how many major ticks are wanted, 3 or more.
/// Gives    majors: the multiples of the step from tMin to tMax; minors: the minor ticks between
///          tMin and tMax, without these two. Both lists rise, and their old elements are dropped.
///          One list may be given for both: the majors come first. x = (tMax - tMin) / (ticks - 1),
///          a float, decides:
///
///          x         step                         minor           ticks
///          below 1   0                            uint32(tMax -   majors: tMin and tMax; minors:
///                                                 tMin - 1)       every second between
///          1         1                            0               majors: every second
///          above 1   the first of the table,      that of the     minors: k * step / (minor + 1)
///                    from 2 s on, that is not     table           seconds after each major and
///                    below x                                      before the first one, computed
///                                                                 in floats and rounded
///          above     x, rounded up to a           3               as above
///          86400     multiple of 86400
///
/// Range    any times. Before 1970 the multiples are those of mathematics, unlike in
///          `MovingTimeScale`. If no multiple of the step lies in the range, both lists stay empty.
///          For tMin = tMax both majors are that time, and minor is 4294967295.
/// Fails    with std::invalid_argument "MovingTimeAxis - invalid arguments" if ticks < 3 or tMax <
///          tMin; the lists are then empty, and step and minor are 0. With std::bad_alloc; the
///          lists are then empty.
/// Cost     at most one allocation for each list. For x < 1 the lists are as long as the range.
/// Example  unsigned long step;
///          unsigned int minor;
///          std::vector<long> majors, minors;
///          MovingTimeAxis(0, 100, 6, step, minor, majors, minors);
///          step     // 30
///          minor    // 2
///          majors   // {0, 30, 60, 90}
///          minors   // {10, 20, 40, 50, 70, 80}
/// Kept     axis-counts-in-floats, step-0-fills-every-second, axis-is-signed, no-major-no-minor,
///          axis-empties-before-it-checks
UTILLIBRARY_EXPORT void MovingTimeAxis(long tMin, long tMax, unsigned int ticks,
                                       unsigned long& step, unsigned int& minor,
                                       std::vector<long>& majors, std::vector<long>& minors);

}  // namespace com::halvorin::utilities
