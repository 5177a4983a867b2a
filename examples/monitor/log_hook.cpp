// The library's reports. It calls this definition in place of its own, which is empty.
#include <cstdio>

#include <utillibrary/application/ORUsyslog.h>

#include "output.h"

void com::halvorin::application::oru::writelog(std::string const& component, int level,
                                               std::string const& message, unsigned int code) {
    char numbers[48];  // two words and two numbers of 32 bits need less
    std::snprintf(numbers, sizeof numbers, " (level %d, code 0x%08X)", level, code);
    monitor::say(component + ": " + message + numbers);
}
