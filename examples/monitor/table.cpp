#include "table.h"

#include <algorithm>
#include <string_view>

#include <utillibrary/utilities/StringUtilities.h>

#include "readings/number_text.h"

namespace monitor {

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtime_t;
using com::halvorin::utilities::to_string;

namespace {

constexpr double MIB = 1024.0 * 1024;
constexpr ByteUnit GIB = {"GiB", MIB * 1024};

constexpr long SECONDS_PER_DAY = 86400;

// Each column ends where its heading ends.
constexpr std::string_view PROCESSOR = "cpu %";
constexpr std::string_view MEMORY = "memory %";
constexpr std::string_view DISK = "disk %";
constexpr std::string_view FREE = "free ";  // the unit follows
constexpr std::string_view UPTIME = "uptime d+hh:mm:ss";
constexpr std::size_t UNIT_SIZE = 3;

// Two spaces, then the text, right-aligned. A text that is longer than the width is not cut.
std::string cell(std::string_view text, std::size_t width) {
    std::size_t const padding = text.size() < width ? width - text.size() : 0;
    return std::string(2 + padding, ' ').append(text);
}

// A row of cells, as many of them as the width has room for. Spaces at its end are removed.
template <typename Cells>
std::string joined(std::string row, Cells const& cells, std::size_t width) {
    if (width == 0) width = std::string::npos;
    for (std::string const& next : cells) {
        if (row.size() + next.size() > width) break;
        row += next;
    }
    if (row.size() > width) row.resize(width);
    row.erase(row.find_last_not_of(' ') + 1);
    return row + "\n";
}

// "1+02:03:04": days, then the remaining seconds as a time of day. The library writes that time for
// the same number of seconds since 1970.
std::string daysAndTime(Variant const& seconds) {
    if (!isKnown(seconds)) return missingText(seconds);
    xtime_t const sinceZero(seconds.toInt64());
    Variant const days(sinceZero.getDateTime() / SECONDS_PER_DAY);
    std::string const text = sinceZero.toString(false, 0, "I");
    return days.toString() + "+" + text.substr(text.find('T') + 1);
}

}  // namespace

ByteUnit byteUnitFor(Variant const& bytes) {
    if (!isKnown(bytes)) return GIB;
    double const amount = bytes.toDouble();
    if (amount < GIB.bytes) return {"MiB", MIB};
    if (amount < GIB.bytes * 1024) return GIB;
    if (amount < GIB.bytes * 1024 * 1024) return {"TiB", GIB.bytes * 1024};
    return {"PiB", GIB.bytes * 1024 * 1024};
}

Table::Table(int offsetSeconds, ByteUnit freeUnit)
    : offsetSeconds_(offsetSeconds), freeUnit_(freeUnit) {}

std::string Table::header(std::size_t width) const {
    std::string first = "time";
    first.resize(timeText(xtime_t()).size(), ' ');
    return joined(first,
                  Cells{cell(PROCESSOR, 0), cell(MEMORY, 0), cell(DISK, 0),
                        cell(std::string(FREE) + freeUnit_.name, 0), cell(UPTIME, 0)},
                  width);
}

std::string Table::row(Reading const& reading, std::size_t width) const {
    return joined(timeText(reading.time), cells(reading), width);
}

std::string Table::averageRow(Reading const& mean, std::chrono::duration<double> span,
                              std::size_t width) const {
    double const seconds = span.count();
    // From a day on the fraction is of no interest, and has no room.
    std::string first =
        "average over " + to_string(seconds, seconds < SECONDS_PER_DAY ? "%.3f" : "%.0f") + " s";
    first.resize(std::max(first.size(), timeText(xtime_t()).size()), ' ');
    return joined(first, cells(mean), width);
}

Table::Cells Table::cells(Reading const& reading) const {
    return {cell(oneDecimal(reading.processor), PROCESSOR.size()),
            cell(oneDecimal(reading.memory), MEMORY.size()),
            cell(oneDecimal(reading.disk), DISK.size()),
            cell(oneDecimal(reading.free, freeUnit_.bytes), FREE.size() + UNIT_SIZE),
            cell(daysAndTime(reading.uptime), UPTIME.size())};
}

std::string Table::timeText(xtime_t const& time) const {
    return time.toString(true, offsetSeconds_, "");
}

}  // namespace monitor
