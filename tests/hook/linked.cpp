#include "hook/open_failure_paths.h"

// For a host that is linked with the library and so finds it loaded.
FailurePath const* openFailurePaths() { return failurePaths(); }
