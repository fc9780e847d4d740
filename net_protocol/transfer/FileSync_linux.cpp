#include "FileSync.h"

#include <cerrno>
#include <unistd.h>

namespace Brivane {

bool syncToDisk(int fileDescriptor)
{
    int result = -1;
    do {
        result = fsync(fileDescriptor);
    } while (result != 0 && errno == EINTR);
    return result == 0 || errno == EINVAL || errno == EROFS;
}

} // namespace Brivane
