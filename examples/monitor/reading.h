#pragma once

#include <string>

#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime.h>
#include <utillibrary/utilities/SysStats.h>

namespace monitor {

// The machine at one moment. A value that could not be had is Null; one that was not asked for is of
// type Unknown, as a Variant is at first.
struct Reading {
    com::halvorin::datatypes::xtime_t time;
    com::halvorin::datatypes::Variant processor;  // percent, since the reading before
    com::halvorin::datatypes::Variant memory;     // percent in use
    com::halvorin::datatypes::Variant disk;       // percent in use
    com::halvorin::datatypes::Variant free;       // bytes on that disk
    com::halvorin::datatypes::Variant uptime;     // seconds
    int diskError = 0;                            // why disk and free are Null: an errno
};

/// Whether a value is there at all: neither Null nor unknown.
bool isKnown(com::halvorin::datatypes::Variant const& value) noexcept;

// Takes readings of this machine, and of the disk that holds a path.
class Sampler {
public:
    explicit Sampler(std::string path);

    /// Fails    with std::runtime_error where the machine's clock cannot be read.
    Reading read() const;

private:
    std::string path_;
    com::halvorin::utilities::SysStats machine_;
};

/// What to tell of a path's error: something when it has changed, else the empty text.
/// Takes    before, now: errno values, 0 for none.
std::string errorNews(std::string const& path, int before, int now);

}  // namespace monitor
