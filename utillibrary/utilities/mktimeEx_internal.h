#pragma once

#include <ctime>
#include <optional>

// The two paths of mktimeEx.
namespace com::halvorin::utilities {

/// General path: fields of any size.
long secondsOfAnyRecord(std::tm* record, int adjustment) noexcept;

/// Fast path: the years 1970 to 2037, a day of the month from 1 to 28, and the other fields in
/// their ranges. Nothing is carried, every fourth year is a leap year, and the seconds fit 32 bits.
/// Declines any other record, and leaves it unchanged.
std::optional<long> secondsOfOrdinaryRecord(std::tm* record, int adjustment) noexcept;

}  // namespace com::halvorin::utilities
