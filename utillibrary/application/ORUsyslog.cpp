#include "utillibrary/application/ORUsyslog.h"

namespace com::halvorin::application::oru {

// KEPT(hook-is-empty): a report belongs to the host, so the library prints nothing.
// The function is alone in this file, so that no caller is compiled together with it. The build
// also keeps it out of link-time optimisation and of the linker's symbolic binding.
void writelog(std::string const& /*component*/, int /*level*/, std::string const& /*message*/,
              unsigned int /*code*/) {}

}  // namespace com::halvorin::application::oru
