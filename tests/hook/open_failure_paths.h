#pragma once

#include "hook/failure_paths.h"

/// The failure paths of this host, which either is linked with the library or loads it now.
FailurePath const* openFailurePaths();
