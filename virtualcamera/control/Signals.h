#pragma once

#include "FileDescriptor.h"

namespace virtualcamera {

/// Blocks SIGTERM, SIGINT, SIGHUP and SIGCHLD in this and all later threads, ignores SIGPIPE, and
/// returns a descriptor to read the blocked ones from. To be called before any thread starts.
FileDescriptor blockSignals();

} // namespace virtualcamera
