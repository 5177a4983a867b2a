// Receives the library's reports. The library calls this definition; its own one does nothing.
#include <cstdio>

#include <utillibrary/application/ORUsyslog.h>

#include "program/output.h"

void com::halvorin::application::oru::writelog(std::string const& component, int level,
                                               std::string const& message, unsigned int code) {
    char numbers[48];  // the words and two numbers of 32 bits take less
    std::snprintf(numbers, sizeof numbers, " (level %d, code 0x%08X)", level, code);
    monitor::say(component + ": " + message + numbers);
}
