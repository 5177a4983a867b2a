#pragma once

#include <chrono>
#include <string>

#include "reading.h"

namespace monitor {

// A power of 1024 bytes.
struct ByteUnit {
    char const* name;
    double bytes;
};

/// The unit for an amount: the largest that it fills, from MiB to PiB, so that a whole table of
/// such amounts reads well in it. GiB where none is known.
ByteUnit byteUnitFor(com::halvorin::datatypes::Variant const& bytes);

/// A number in a unit, with one decimal: 12 is shown as 12.0 beside 12.3, as long as the decimal is
/// among the six significant digits that `Variant` shows.
/// Gives    "null" for Null, and the empty text for what is unknown.
std::string oneDecimal(com::halvorin::datatypes::Variant const& number, double unit = 1);

// Readings as lines of text, one below the other.
//
// Numbers are what Variant::toString makes of them, after rounding to one decimal; its six
// significant digits show that decimal up to 99999.9. Times are what xtime_t::toString gives.
class Table {
public:
    /// Takes    offsetSeconds: the zone of the times, east of UTC, less than a day; freeUnit: that
    ///          of free space.
    Table(int offsetSeconds, ByteUnit freeUnit);

    /// The headings with their units, and one reading below them: lines that end with a newline.
    std::string header() const;
    std::string row(Reading const& reading) const;

    /// A last row of averages, with the time that they cover in place of a time.
    /// Takes    mean: an unknown value has an empty cell.
    std::string averageRow(Reading const& mean, std::chrono::duration<double> span) const;

private:
    std::string timeText(com::halvorin::datatypes::xtime_t const& time) const;
    std::string cells(Reading const& reading) const;

    int offsetSeconds_;
    ByteUnit freeUnit_;
};

}  // namespace monitor
