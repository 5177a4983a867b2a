#include "readings/reading.h"

#include <system_error>
#include <utility>

namespace monitor {

using com::halvorin::datatypes::Variant;
using com::halvorin::datatypes::xtimeNow;

// `hasValue` is true for Null, so Null needs a test of its own.
bool isKnown(Variant const& value) noexcept { return value.hasValue() && !value.isNull(); }

Sampler::Sampler(std::string path) : path_(std::move(path)) {}

Reading Sampler::read() const {
    Reading reading;
    reading.time = xtimeNow();
    reading.processor = machine_.systemCPU();
    reading.memory = machine_.systemMemory();
    reading.uptime = machine_.uptime();

    float percent = 0;
    unsigned long free = 0;
    reading.diskError = machine_.diskSpace(path_, percent, free);
    if (reading.diskError == 0) {
        reading.disk = percent;
        reading.free = free;
    } else {
        reading.disk.makeNull();
        reading.free.makeNull();
    }
    return reading;
}

std::string diskErrorChange(std::string const& path, int before, int now) {
    if (now == before) return {};
    return path + ": " + (now == 0 ? "readable again" : std::generic_category().message(now));
}

}  // namespace monitor
