#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace testing_support {

/// Sets the process's time zone (TZ) for a scope. libc's `gmtime_r` and `timegm` count leap seconds
/// under some zones, so a test that compares the library with them asks for "UTC0" first.
class ScopedTimeZone {
public:
    explicit ScopedTimeZone(char const* name) {
        if (char const* const previous = std::getenv("TZ")) previous_ = previous;
        setenv("TZ", name, 1);
        tzset();
    }
    ~ScopedTimeZone() {
        if (previous_) {
            setenv("TZ", previous_->c_str(), 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
    }
    ScopedTimeZone(ScopedTimeZone const&) = delete;
    ScopedTimeZone& operator=(ScopedTimeZone const&) = delete;

private:
    std::optional<std::string> previous_;
};

}  // namespace testing_support
