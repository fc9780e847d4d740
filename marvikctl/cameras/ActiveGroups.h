#pragma once

#include <sys/types.h>
#include <vector>

/// The supplementary groups of this process. Linux.
[[nodiscard]] std::vector<gid_t> activeGroups();
