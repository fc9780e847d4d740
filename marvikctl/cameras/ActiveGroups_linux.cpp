#include "ActiveGroups.h"

#include <algorithm>
#include <unistd.h>

std::vector<gid_t> activeGroups()
{
    std::vector<gid_t> groups(static_cast<std::size_t>(std::max(0, ::getgroups(0, nullptr))));
    const int count = ::getgroups(static_cast<int>(groups.size()), groups.data());
    groups.resize(static_cast<std::size_t>(std::max(0, count)));
    return groups;
}
