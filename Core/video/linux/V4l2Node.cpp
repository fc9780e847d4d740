#include "V4l2Node.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/ioctl.h>

V4l2Node::V4l2Node(const QString& node)
    : m_fd(::open(node.toLocal8Bit().constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC))
{
}

bool V4l2Node::control(unsigned long request, void* argument) const
{
    int result = 0;
    do {
        result = ::ioctl(m_fd.get(), request, argument);
    } while (result < 0 && errno == EINTR);
    return result >= 0;
}

std::optional<v4l2_capability> V4l2Node::capability() const
{
    v4l2_capability capability{};
    if (!m_fd || !control(VIDIOC_QUERYCAP, &capability))
        return std::nullopt;
    return capability;
}
