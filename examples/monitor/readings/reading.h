#pragma once

#include <string>

#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime.h>
#include <utillibrary/utilities/SysStats.h>

namespace monitor {

// The machine at one moment. A value that could not be read is Null. A value that nobody asked for
// has the type Unknown, which is what a new Variant has.
struct Reading {
    com::halvorin::datatypes::xtime_t time;
    com::halvorin::datatypes::Variant processor;  // percent, since the reading before
    com::halvorin::datatypes::Variant memory;     // percent in use
    com::halvorin::datatypes::Variant disk;       // percent in use
    com::halvorin::datatypes::Variant free;       // bytes on that disk
    com::halvorin::datatypes::Variant uptime;     // seconds
    int diskError = 0;                            // the errno that made disk and free Null, or 0
};

// One value of a reading. Its name is the same in a log and on the command line.
struct Field {
    char const* name;
    com::halvorin::datatypes::Variant Reading::*value;
};

// In the order of a log's line, which is the order of the table's columns.
inline constexpr Field FIELDS[] = {
    {"cpu", &Reading::processor}, {"memory", &Reading::memory}, {"disk", &Reading::disk},
    {"free", &Reading::free},     {"uptime", &Reading::uptime},
};

/// True if a value is a number: neither Null nor Unknown.
/// Fails    never.
bool isKnown(com::halvorin::datatypes::Variant const& value) noexcept;

// Takes readings of this machine, and of the disk that contains a path.
class Sampler {
public:
    /// Takes    path: any file or folder on the disk to watch.
    /// Fails    with std::bad_alloc only.
    explicit Sampler(std::string path);

    /// Reads all values now.
    /// Fails    with std::runtime_error if the machine's clock cannot be read. Any other value that
    ///          cannot be read is Null.
    Reading read() const;

private:
    std::string path_;
    com::halvorin::utilities::SysStats machine_;
};

/// The message for a disk error that has changed since the reading before.
/// Takes    before, now: errno values, 0 for none.
/// Gives    "PATH: REASON" or "PATH: readable again"; empty if nothing has changed.
/// Fails    with std::bad_alloc only.
std::string diskErrorChange(std::string const& path, int before, int now);

}  // namespace monitor
