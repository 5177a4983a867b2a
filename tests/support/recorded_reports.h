#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace testing_support {

/// One call of the log hook, with all its arguments.
struct Report {
    std::string component;
    int level;
    std::string message;
    unsigned int code;

    bool operator==(Report const&) const = default;
};

std::ostream& operator<<(std::ostream& out, Report const& report);

/// The reports since the last call, oldest first. Linking this in replaces the library's hook.
std::vector<Report> takeReports();

}  // namespace testing_support
