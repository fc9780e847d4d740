/* Streaming from a video node.
 *
 * Gap: umockdev does not replace poll(), select() and epoll; they use the file at the node's path.
 * A plain file is always readable, so that file is a FIFO with one token per finished frame. What a
 * FIFO cannot do is done here: mapping it, which maps the memory of the frames, and waiting in
 * VIDIOC_DQBUF. virtualcamera never waits itself, since umockdev would hold a lock that
 * other calls on the descriptor need, VIDIOC_STREAMOFF among them. */
#define _GNU_SOURCE
#include "Next.h"
#include "Node.h"
#include "Open.h"
#include "protocol/PrivateIoctl.h"

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <linux/videodev2.h>
#include <poll.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

static bool isVideoNode(int fd)
{
    char path[PATH_MAX];
    return nodeOfFd(fd, path, sizeof path) && strncmp(path, "/dev/video", 10) == 0;
}

/* Waits for a token; false when a signal interrupts. */
static bool waitForFrame(int fd)
{
    struct pollfd event = {fd, POLLIN, 0};
    return poll(&event, 1, -1) >= 0;
}

int ioctl(int fd, unsigned long request, ...)
{
    va_list arguments;
    va_start(arguments, request);
    const unsigned long argument = va_arg(arguments, unsigned long);
    va_end(arguments);
    for (;;) {
        const int result = nodeIoctl(fd, request, argument);
        if (result >= 0 || request != VIDIOC_DQBUF || errno != EAGAIN || !isVideoNode(fd))
            return result;
        const bool mayWait = (syscall(SYS_fcntl, fd, F_GETFL, 0) & O_NONBLOCK) == 0;
        if (!mayWait || !waitForFrame(fd)) {
            if (!mayWait)
                errno = EAGAIN;
            return -1;
        }
    }
}

/* A descriptor of the memory behind the buffers of a video handle, or -1. */
static int openFrames(int fd)
{
    char path[PATH_MAX];
    const int handle = nodeIoctl(fd, VIRTUALCAMERA_IOC_HANDLE, 0);
    if (handle <= 0)
        return -1;
    snprintf(path, sizeof path, "%s/frames/%d", nodeRoot(), handle);
    return (int)syscall(SYS_openat, -100, path, O_RDWR | O_CLOEXEC, 0);
}

static void* map(void* address, size_t length, int protection, int flags, int fd, long offset)
{
    /* Direct system calls: sanitizers map memory before symbols can be looked up. */
    if (fd < 0 || (flags & MAP_SHARED) == 0 || !nodeRoot() || !isVideoNode(fd))
        return (void*)syscall(SYS_mmap, address, length, protection, flags, fd, offset);
    const int frames = openFrames(fd);
    if (frames < 0) {
        errno = EINVAL;
        return MAP_FAILED;
    }
    void* result = (void*)syscall(SYS_mmap, address, length, protection, flags, frames, offset);
    const int savedErrno = errno;
    syscall(SYS_close, frames);
    errno = savedErrno;
    return result;
}

void* mmap(void* address, size_t length, int protection, int flags, int fd, off_t offset)
{
    return map(address, length, protection, flags, fd, offset);
}

void* mmap64(void* address, size_t length, int protection, int flags, int fd, off64_t offset)
{
    return map(address, length, protection, flags, fd, offset);
}
