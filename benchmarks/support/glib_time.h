#pragma once

#include <glib.h>

#include <utillibrary/datatypes/xtime.h>

namespace benchmarks {

// A counted reference to a time of GLib's, in UTC and whole microseconds.
class GLibTime {
public:
    explicit GLibTime(com::halvorin::datatypes::xtime_t const& time) {
        GDateTime* const second = g_date_time_new_from_unix_utc(time.getDateTime());
        time_ = g_date_time_add(second, time.getNanoseconds() / 1000);
        g_date_time_unref(second);
    }
    /// Takes  time: a reference, which this object then owns.
    explicit GLibTime(GDateTime* time) : time_(time) {}
    GLibTime(GLibTime const& other) : time_(g_date_time_ref(other.time_)) {}
    GLibTime& operator=(GLibTime const&) = delete;
    ~GLibTime() { g_date_time_unref(time_); }

    GDateTime* get() const { return time_; }

    long milliseconds() const {
        return g_date_time_to_unix(time_) * 1000 + g_date_time_get_microsecond(time_) / 1000;
    }

private:
    GDateTime* time_;
};

}  // namespace benchmarks
