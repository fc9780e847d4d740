#include "ScriptedDisk.h"

#include <atomic>
#include <cerrno>

namespace {

std::atomic<int> s_error{0};
std::atomic<int> s_calls{0};

} // namespace

ScriptedDisk::ScriptedDisk(int error)
{
    s_error = error;
}

ScriptedDisk::~ScriptedDisk()
{
    s_error = 0;
}

int ScriptedDisk::calls()
{
    return s_calls;
}

int ScriptedDisk::flush()
{
    ++s_calls;
    errno = s_error;
    return s_error == 0 ? 0 : -1;
}
