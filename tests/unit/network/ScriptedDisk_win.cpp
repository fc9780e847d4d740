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

namespace {

int commit(int /*descriptor*/)
{
    ++s_calls;
    errno = s_error;
    return s_error == 0 ? 0 : -1;
}

} // namespace

// The program calls through this pointer, which wins over that of the C library.
extern "C" {
extern int (*__imp__commit)(int);
int (*__imp__commit)(int) = commit;
}
