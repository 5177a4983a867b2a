#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <string>

#include "readings/reading.h"

namespace monitor {

// A unit for amounts of bytes: a power of 1024.
struct ByteUnit {
    char const* name;
    double bytes;
};

/// The unit for an amount: the largest one, from MiB to PiB, that the amount fills.
/// Gives    GiB if the amount is not a number.
/// Fails    never.
ByteUnit byteUnitFor(com::halvorin::datatypes::Variant const& bytes);

// Readings as rows of text. Numbers are written by `oneDecimal`, times by xtime_t::toString.
//
// A row is never wider than a width that the caller gives: cells that have no room are left out,
// from the right. If even the time has no room, it is cut. A width of 0 is no limit.
class Table {
public:
    /// Takes    offsetSeconds: the zone of the times, east of UTC, less than a day; freeUnit: the
    ///          unit of free space.
    /// Fails    never.
    Table(int offsetSeconds, ByteUnit freeUnit);

    /// The row of headings with their units. It ends with a newline, as all rows do.
    /// Fails    with std::bad_alloc only.
    std::string header(std::size_t width = 0) const;

    /// The row of a reading.
    /// Fails    with std::bad_alloc only.
    std::string row(Reading const& reading, std::size_t width = 0) const;

    /// The last row: averages, with the time that they cover in the first column.
    /// Takes    mean: a value that is Unknown has an empty cell.
    /// Fails    with std::bad_alloc only.
    std::string averageRow(Reading const& mean, std::chrono::duration<double> span,
                           std::size_t width = 0) const;

private:
    using Cells = std::array<std::string, 5>;

    std::string timeText(com::halvorin::datatypes::xtime_t const& time) const;
    Cells cells(Reading const& reading) const;

    int offsetSeconds_;
    ByteUnit freeUnit_;
};

}  // namespace monitor
