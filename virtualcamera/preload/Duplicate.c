/* Copies of descriptors.
 *
 * Gap: umockdev does not know of dup(). The GStreamer source streams through a copy of the
 * descriptor with which it configured the camera, and the copy would be a plain file. So a copy is
 * opened as a new umockdev handle, which virtualcamera joins with the original; its file is then
 * replaced by the original's, so that both read the same queue. */
#define _GNU_SOURCE
#include "Next.h"
#include "Node.h"
#include "Open.h"
#include "protocol/PrivateIoctl.h"

#include <fcntl.h>
#include <limits.h>
#include <stdarg.h>
#include <sys/syscall.h>
#include <unistd.h>

DEFINE_NEXT(int, nextDup, "dup", int)
DEFINE_NEXT(int, nextFcntl, "fcntl", int, int, ...)
DEFINE_NEXT(int, nextFcntl64, "fcntl64", int, int, ...)

/* -1 when `fd` is not a node, or a node that cannot be copied. */
static int copyNode(int fd, int lowest, int closeOnExec)
{
    char path[PATH_MAX];
    if (!nodeOfFd(fd, path, sizeof path))
        return -1;
    nodeTableLock();
    const int handle = nodeIoctl(fd, VIRTUALCAMERA_IOC_HANDLE, 0);
    int copy = handle > 0 ? openUnannounced(path) : -1;
    if (copy >= 0 && (copy < lowest ||
                      nodeIoctl(copy, VIRTUALCAMERA_IOC_SHARE, (unsigned long)handle) != handle ||
                      syscall(SYS_dup3, fd, copy, closeOnExec ? O_CLOEXEC : 0) < 0)) {
        closeLocked(copy);
        copy = -1;
    }
    nodeTableUnlock();
    return copy;
}

int dup(int fd)
{
    const int copy = copyNode(fd, 0, 0);
    return copy >= 0 ? copy : nextDup()(fd);
}

#define DEFINE_FCNTL(name, next)                                                                   \
    int name(int fd, int command, ...)                                                             \
    {                                                                                              \
        va_list arguments;                                                                         \
        va_start(arguments, command);                                                              \
        void* argument = va_arg(arguments, void*);                                                 \
        va_end(arguments);                                                                         \
        if (command == F_DUPFD || command == F_DUPFD_CLOEXEC) {                                    \
            const int copy = copyNode(fd, (int)(long)argument, command == F_DUPFD_CLOEXEC);        \
            if (copy >= 0)                                                                         \
                return copy;                                                                       \
        }                                                                                          \
        return next()(fd, command, argument);                                                      \
    }

DEFINE_FCNTL(fcntl, nextFcntl)
DEFINE_FCNTL(fcntl64, nextFcntl64)
