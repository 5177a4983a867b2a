#include "utillibrary/application/ORUsyslog.h"

namespace com::halvorin::application::oru {

// KEPT(hook-is-empty): a report belongs to the host; a default that printed would speak in the
// host's name. It stands alone in this file so that no caller can be compiled together with it, and
// the linker is told to leave it replaceable.
void writelog(std::string const& /*component*/, int /*level*/, std::string const& /*message*/,
              unsigned int /*code*/) {}

}  // namespace com::halvorin::application::oru
