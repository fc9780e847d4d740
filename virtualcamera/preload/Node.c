#include "Node.h"

#include "Next.h"

#include <errno.h>
#include <limits.h>
#include <pthread.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

DEFINE_NEXT(int, nextFstat, "fstat", int, struct stat*)

static char root[PATH_MAX];
static pthread_mutex_t tableMutex = PTHREAD_MUTEX_INITIALIZER;
static sigset_t maskBeforeLock;

/* Read once: programs change their environment while other threads open files. */
__attribute__((constructor)) static void findRoot(void)
{
    const char* directory = getenv("UMOCKDEV_DIR");
    if (!directory || strlen(directory) >= sizeof root)
        return;
    strcpy(root, directory);
    /* A process that one thread forks must not inherit a lock that another thread holds. */
    pthread_atfork(nodeTableLock, nodeTableUnlock, nodeTableUnlock);
}

void nodeTableLock(void)
{
    /* A signal handler may close a descriptor on the thread that holds the lock. */
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    pthread_mutex_lock(&tableMutex);
    maskBeforeLock = before;
}

void nodeTableUnlock(void)
{
    const sigset_t before = maskBeforeLock;
    pthread_mutex_unlock(&tableMutex);
    pthread_sigmask(SIG_SETMASK, &before, NULL);
}

const char* nodeRoot(void)
{
    return root[0] ? root : NULL;
}

bool isNodePath(const char* path)
{
    return root[0] && path && strncmp(path, "/dev/", 5) == 0;
}

int realFstat(int fd, struct stat* status)
{
    return nextFstat()(fd, status);
}

bool nodeOfLink(char* target, char* path, unsigned long size)
{
    if (!root[0])
        return false;
    /* Every open() replaces the FIFO at the path, so the kernel reports this one as deleted. */
    char* suffix = strstr(target, " (deleted)");
    if (suffix)
        *suffix = '\0';
    const unsigned long rootLength = strlen(root);
    if (strncmp(target, root, rootLength) != 0 || strncmp(target + rootLength, "/dev/", 5) != 0 ||
        strlen(target + rootLength) >= size)
        return false;
    strcpy(path, target + rootLength);
    return true;
}

bool nodeOfFd(int fd, char* path, unsigned long size)
{
    if (!root[0] || fd < 0)
        return false;
    const int savedErrno = errno;
    bool found = false;
    struct stat status;
    if (realFstat(fd, &status) == 0 && S_ISFIFO(status.st_mode)) {
        char link[64];
        char target[PATH_MAX];
        snprintf(link, sizeof link, "/proc/self/fd/%d", fd);
        /* A direct system call, because umockdev redirects readlink(). */
        const long length = syscall(SYS_readlinkat, -100, link, target, sizeof target - 1);
        target[length > 0 ? length : 0] = '\0';
        found = nodeOfLink(target, path, size);
    }
    errno = savedErrno;
    return found;
}
