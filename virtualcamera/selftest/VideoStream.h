#pragma once

#include <cstdint>
#include <linux/videodev2.h>
#include <string>
#include <utility>
#include <vector>

namespace virtualcamera {

/// Captures from a video node through mapped buffers.
class VideoStream
{
public:
    explicit VideoStream(const std::string& node, int flags = 0);
    ~VideoStream();
    VideoStream(const VideoStream&) = delete;
    VideoStream& operator=(const VideoStream&) = delete;

    bool isOpen() const { return m_fd >= 0; }
    int fd() const { return m_fd; }

    /// @return 0 or the errno of the ioctl
    template <typename Argument>
    int control(unsigned long request, Argument& argument) const
    {
        return controlRaw(request, &argument);
    }
    int setFormat(std::uint32_t fourcc, std::uint32_t width, std::uint32_t height) const;
    int requestBuffers(std::uint32_t count) const;
    int start(std::uint32_t count = 4);
    int stop();
    /// Whether poll() reports the node as readable before the time-out.
    bool waitReadable(int timeoutMs) const;
    /// Dequeues a buffer, copies it and queues it again; 0 or an errno.
    int readFrame(std::vector<std::uint8_t>& frame);
    std::uint32_t lastSequence() const { return m_lastSequence; }

private:
    int controlRaw(unsigned long request, void* argument) const;
    void unmap();

    int m_fd;
    std::uint32_t m_lastSequence = 0;
    std::vector<std::pair<void*, std::size_t>> m_maps;
};

} // namespace virtualcamera
