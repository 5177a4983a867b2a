#pragma once

#include <cstdlib>
#include <ctime>

/// Sets the time zone of this process to UTC. In some other zones the functions of libc, which are
/// the model, count leap seconds; the library never counts them.
/// Gives    0, for LLVMFuzzerInitialize.
inline int useUtc() {
    setenv("TZ", "UTC0", 1);
    tzset();
    return 0;
}
