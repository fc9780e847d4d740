#include "ScriptedDisk.h"

// The linker prefers it to the function of the C library.
extern "C" int fsync(int /*descriptor*/)
{
    return ScriptedDisk::flush();
}
