#include "ProgramMutex.h"

/// Nothing to tell: package managers replace the files of a running program, and the process keeps
/// the old ones until it ends.
class ProgramMutex::Objects
{
};

ProgramMutex::ProgramMutex() = default;

ProgramMutex::~ProgramMutex() = default;
