#include "VideoStream.h"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace virtualcamera {

VideoStream::VideoStream(const std::string& node, int flags)
    : m_fd(::open(node.c_str(), O_RDWR | O_CLOEXEC | flags))
{
}

VideoStream::~VideoStream()
{
    unmap();
    if (m_fd >= 0)
        ::close(m_fd);
}

void VideoStream::unmap()
{
    for (const auto& [address, size] : m_maps)
        ::munmap(address, size);
    m_maps.clear();
}

int VideoStream::controlRaw(unsigned long request, void* argument) const
{
    return ::ioctl(m_fd, request, argument) == 0 ? 0 : errno;
}

int VideoStream::setFormat(std::uint32_t fourcc, std::uint32_t width, std::uint32_t height) const
{
    v4l2_format format{};
    format.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    format.fmt.pix.pixelformat = fourcc;
    format.fmt.pix.width = width;
    format.fmt.pix.height = height;
    return control(VIDIOC_S_FMT, format);
}

int VideoStream::requestBuffers(std::uint32_t count) const
{
    v4l2_requestbuffers request{};
    request.count = count;
    request.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    request.memory = V4L2_MEMORY_MMAP;
    return control(VIDIOC_REQBUFS, request);
}

int VideoStream::start(std::uint32_t count)
{
    if (const int error = requestBuffers(count))
        return error;
    for (std::uint32_t i = 0; i < count; ++i) {
        v4l2_buffer buffer{};
        buffer.index = i;
        buffer.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        buffer.memory = V4L2_MEMORY_MMAP;
        if (const int error = control(VIDIOC_QUERYBUF, buffer))
            return error;
        void* address = ::mmap(nullptr, buffer.length, PROT_READ | PROT_WRITE, MAP_SHARED, m_fd,
                               static_cast<off_t>(buffer.m.offset));
        if (address == MAP_FAILED)
            return errno;
        m_maps.emplace_back(address, buffer.length);
        if (const int error = control(VIDIOC_QBUF, buffer))
            return error;
    }
    int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    return control(VIDIOC_STREAMON, type);
}

int VideoStream::stop()
{
    int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    const int error = control(VIDIOC_STREAMOFF, type);
    unmap();
    return error;
}

bool VideoStream::waitReadable(int timeoutMs) const
{
    pollfd event{m_fd, POLLIN, 0};
    return ::poll(&event, 1, timeoutMs) == 1 && (event.revents & POLLIN) != 0;
}

int VideoStream::readFrame(std::vector<std::uint8_t>& frame)
{
    v4l2_buffer buffer{};
    buffer.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    buffer.memory = V4L2_MEMORY_MMAP;
    if (const int error = control(VIDIOC_DQBUF, buffer))
        return error;
    m_lastSequence = buffer.sequence;
    const auto* from = static_cast<const std::uint8_t*>(m_maps[buffer.index].first);
    frame.assign(from, from + buffer.bytesused);
    return control(VIDIOC_QBUF, buffer);
}

} // namespace virtualcamera
