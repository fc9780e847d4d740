/* fstat() of a node.
 *
 * Gap: umockdev makes stat() of a node report a character device, but not fstat(). libhidapi uses
 * the device number from fstat() to find the device of a handle and read its strings. */
#define _GNU_SOURCE
#include "Next.h"
#include "Node.h"

#include <limits.h>
#include <stdio.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>

DEFINE_NEXT(int, nextFstat64, "fstat64", int, struct stat64*)

/* umockdev keeps "major:minor" of each node in a link; 0 when the device is gone. */
static dev_t nodeNumber(const char* node)
{
    char link[PATH_MAX];
    char target[32];
    unsigned major = 0;
    unsigned minor = 0;
    snprintf(link, sizeof link, "%s/dev/.node/%s", nodeRoot(), node + sizeof "/dev/" - 1);
    const long length = syscall(SYS_readlinkat, -100, link, target, sizeof target - 1);
    target[length > 0 ? length : 0] = '\0';
    return sscanf(target, "%u:%u", &major, &minor) == 2 ? makedev(major, minor) : 0;
}

#define DEFINE_FSTAT(name, versionedName, Stat, next)                                              \
    static int name##Node(int fd, struct Stat* status)                                             \
    {                                                                                              \
        char node[PATH_MAX];                                                                       \
        const int result = next(fd, status);                                                       \
        if (result == 0 && S_ISFIFO(status->st_mode) && nodeOfFd(fd, node, sizeof node)) {         \
            status->st_mode = (status->st_mode & ~(mode_t)S_IFMT) | S_IFCHR;                       \
            status->st_rdev = nodeNumber(node);                                                    \
        }                                                                                          \
        return result;                                                                             \
    }                                                                                              \
    int name(int fd, struct Stat* status)                                                          \
    {                                                                                              \
        return name##Node(fd, status);                                                             \
    }                                                                                              \
    /* The name in programs built for an older C library; ThreadSanitizer calls it too. */         \
    int versionedName(int version, int fd, struct Stat* status);                                   \
    int versionedName(int version, int fd, struct Stat* status)                                    \
    {                                                                                              \
        (void)version;                                                                             \
        return name##Node(fd, status);                                                             \
    }

DEFINE_FSTAT(fstat, __fxstat, stat, realFstat)
DEFINE_FSTAT(fstat64, __fxstat64, stat64, nextFstat64())
