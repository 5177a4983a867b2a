#include "support/recorded_reports.h"

#include <utility>

#include <utillibrary/application/ORUsyslog.h>

namespace testing_support {

namespace {

std::vector<Report>& reports() {
    static std::vector<Report> recorded;
    return recorded;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, Report const& report) {
    return out << '{' << report.component << ", " << report.level << ", \"" << report.message
               << "\", 0x" << std::hex << report.code << std::dec << '}';
}

std::vector<Report> takeReports() { return std::exchange(reports(), {}); }

}  // namespace testing_support

// The host's own hook: what the library reports arrives here.
void com::halvorin::application::oru::writelog(std::string const& component, int level,
                                               std::string const& message, unsigned int code) {
    testing_support::reports().push_back({component, level, message, code});
}
