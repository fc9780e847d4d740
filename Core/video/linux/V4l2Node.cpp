#include "V4l2Node.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/ioctl.h>

V4l2Node::V4l2Node(const QString& node)
    : m_fd(::open(node.toLocal8Bit().constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC))
    , m_openError(m_fd ? 0 : errno)
{
}

bool V4l2Node::control(unsigned long request, void* argument) const
{
    if (!m_fd) {
        errno = m_openError;
        return false;
    }
    int result = 0;
    do {
        result = ::ioctl(m_fd.get(), request, argument);
    } while (result < 0 && errno == EINTR);
    return result >= 0;
}

std::optional<v4l2_capability> V4l2Node::capability() const
{
    v4l2_capability capability{};
    if (!control(VIDIOC_QUERYCAP, &capability))
        return std::nullopt;
    return capability;
}

int V4l2Node::streamError() const
{
    // To ask for no buffers changes nothing, but is allowed only when the stream is free.
    v4l2_requestbuffers request{};
    request.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    request.memory = V4L2_MEMORY_MMAP;
    return control(VIDIOC_REQBUFS, &request) ? 0 : errno;
}
