/* Opening and closing device nodes.
 *
 * Gap: umockdev 0.17 adds the result of every open() below /dev to a table of 50 entries, even a
 * failure, and ends the program when the table is full. A program that tries to open unplugged
 * nodes is ended after 50 attempts. The entry of a failure has the descriptor -1; closing -1
 * removes it.
 *
 * Gap: virtualcamera learns of an open() on another thread, later. It gives every handle a queue of
 * its own by putting a new FIFO in place after each open(), so the next open() must wait until that
 * is done. */
#define _GNU_SOURCE
#include "Open.h"

#include "Next.h"
#include "Node.h"
#include "protocol/PrivateIoctl.h"

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <sched.h>
#include <stdarg.h>
#include <sys/types.h>

typedef int OpenFunction(const char*, int, ...);
typedef int OpenatFunction(int, const char*, int, ...);

DEFINE_NEXT(int, nextOpen, "open", const char*, int, ...)
DEFINE_NEXT(int, nextOpen64, "open64", const char*, int, ...)
DEFINE_NEXT(int, nextOpenat, "openat", int, const char*, int, ...)
DEFINE_NEXT(int, nextOpenat64, "openat64", int, const char*, int, ...)
DEFINE_NEXT(int, nextClose, "close", int)
DEFINE_NEXT(int, nextIoctl, "ioctl", int, unsigned long, ...)

enum { MOST_TRIES = 1000 };

int nodeIoctl(int fd, unsigned long request, unsigned long argument)
{
    return nextIoctl()(fd, request, argument);
}

void closeLocked(int fd)
{
    const int savedErrno = errno;
    nextClose()(fd);
    errno = savedErrno;
}

/* Waits until virtualcamera has seen the handle. False when the handle must be closed; errno has
 * the reason. */
static bool isAccepted(int fd)
{
    char path[PATH_MAX];
    struct stat status;
    if (!nodeOfFd(fd, path, sizeof path) || realFstat(fd, &status) != 0)
        return true;
    return nodeIoctl(fd, VIRTUALCAMERA_IOC_OPENED, status.st_ino) >= 0 || errno == ENOTTY;
}

static int openNode(OpenFunction* next, const char* path, int flags, mode_t mode)
{
    int fd = -1;
    nodeTableLock();
    for (int tries = 0; tries < MOST_TRIES; ++tries) {
        fd = next(path, flags, mode);
        if (fd < 0) {
            closeLocked(-1);
            break;
        }
        const int savedErrno = errno;
        if (isAccepted(fd)) {
            errno = savedErrno;
            break;
        }
        closeLocked(fd);
        fd = -1;
        /* Another process opened the same queue a moment before, or the camera was replugged. */
        if (errno != EAGAIN)
            break;
        sched_yield();
    }
    nodeTableUnlock();
    return fd;
}

int openUnannounced(const char* path)
{
    const int fd = nextOpen()(path, O_RDWR | O_CLOEXEC);
    if (fd < 0)
        closeLocked(-1);
    return fd;
}

static mode_t modeArgument(int flags, va_list arguments)
{
    const bool creates = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    return creates ? va_arg(arguments, mode_t) : 0;
}

#define DEFINE_OPEN(name, next)                                                                    \
    int name(const char* path, int flags, ...)                                                     \
    {                                                                                              \
        va_list arguments;                                                                         \
        va_start(arguments, flags);                                                                \
        const mode_t mode = modeArgument(flags, arguments);                                        \
        va_end(arguments);                                                                         \
        return isNodePath(path) ? openNode(next(), path, flags, mode) : next()(path, flags, mode); \
    }

/* umockdev serves only nodes that open() opened; openat() with an absolute path does the same. */
#define DEFINE_OPENAT(name, next, open)                                                            \
    int name(int directory, const char* path, int flags, ...)                                      \
    {                                                                                              \
        va_list arguments;                                                                         \
        va_start(arguments, flags);                                                                \
        const mode_t mode = modeArgument(flags, arguments);                                        \
        va_end(arguments);                                                                         \
        return isNodePath(path) ? openNode(open(), path, flags, mode)                              \
                                : next()(directory, path, flags, mode);                            \
    }

/* Programs built with _FORTIFY_SOURCE call these instead of open(). */
#define DEFINE_FORTIFIED_OPEN(name, next)                                                          \
    int name(const char* path, int flags);                                                         \
    int name(const char* path, int flags)                                                          \
    {                                                                                              \
        return isNodePath(path) ? openNode(next(), path, flags, 0) : next()(path, flags, 0);       \
    }

DEFINE_OPEN(open, nextOpen)
DEFINE_OPEN(open64, nextOpen64)
DEFINE_OPENAT(openat, nextOpenat, nextOpen)
DEFINE_OPENAT(openat64, nextOpenat64, nextOpen64)
DEFINE_FORTIFIED_OPEN(__open_2, nextOpen)
DEFINE_FORTIFIED_OPEN(__open64_2, nextOpen64)

int close(int fd)
{
    if (!nodeRoot())
        return nextClose()(fd);
    nodeTableLock();
    const int result = nextClose()(fd);
    nodeTableUnlock();
    return result;
}
