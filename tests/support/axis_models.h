#pragma once

#include "support/time_axes.h"

// MovingTimeScale and MovingTimeAxis in the plainest code, without regard to speed. Tests compare
// the library with these models.
namespace testing_support {

struct Step {
    long seconds;
    unsigned int minor;
    long granularity;
};

inline constexpr Step STEPS[] = {
    {1, 0, 0},        {2, 1, 0},        {5, 4, 0},        {10, 4, 5},       {15, 2, 5},
    {30, 2, 5},       {60, 3, 10},      {120, 3, 15},     {300, 4, 60},     {600, 4, 300},
    {900, 2, 300},    {1200, 3, 300},   {1800, 2, 300},   {3600, 3, 300},   {7200, 3, 900},
    {14400, 3, 1800}, {21600, 3, 3600}, {28800, 3, 3600}, {43200, 3, 3600}, {86400, 3, 3600},
};

/// What MovingTimeScale gives: every row and every shift in turn, in sums that wrap.
Scale modelOfScale(long tMin, long tMax, unsigned int ticks, unsigned long minStep);

/// What MovingTimeAxis gives, in 128 bits, where no sum overflows.
Axis modelOfAxis(long tMin, long tMax, unsigned int ticks);

}  // namespace testing_support
