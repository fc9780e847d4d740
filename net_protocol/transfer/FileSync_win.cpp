#include "FileSync.h"

#include <cerrno>
#include <io.h>

namespace Brivane {

bool syncToDisk(int fileDescriptor)
{
    return _commit(fileDescriptor) == 0 || errno == EINVAL;
}

} // namespace Brivane
