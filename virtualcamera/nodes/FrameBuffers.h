#pragma once

#include "FileDescriptor.h"

#include <cstdint>
#include <deque>
#include <linux/videodev2.h>
#include <memory>
#include <optional>
#include <vector>

namespace virtualcamera {

/// The memory of a set of video buffers; the program maps the same pages.
class BufferMemory
{
public:
    BufferMemory(std::size_t bufferSize, std::size_t count);
    ~BufferMemory();
    BufferMemory(const BufferMemory&) = delete;
    BufferMemory& operator=(const BufferMemory&) = delete;

    std::uint8_t* buffer(std::size_t index) { return m_memory + offset(index); }
    std::size_t offset(std::size_t index) const { return index * m_slotSize; }
    int fd() const { return m_fd.get(); }

private:
    FileDescriptor m_fd;
    std::size_t m_slotSize;
    std::size_t m_size;
    std::uint8_t* m_memory;
};

/// The buffers of one streaming handle, and their two queues.
class FrameBuffers
{
public:
    static constexpr std::size_t kMostBuffers = 32;

    /// Replaces the buffers; 0 frees them.
    void allocate(std::size_t count, std::uint32_t bufferSize);
    std::size_t count() const { return m_buffers.size(); }
    std::shared_ptr<BufferMemory> memory() const { return m_memory; }

    bool query(v4l2_buffer& buffer) const;
    /// 0, or a negative errno when the buffer cannot be queued.
    long enqueue(v4l2_buffer& buffer);
    /// Takes the oldest queued buffer to fill it.
    std::optional<std::size_t> takeQueued();
    void finish(std::size_t index, std::uint32_t bytesUsed, std::uint32_t sequence);
    bool hasDone() const { return !m_done.empty(); }
    bool dequeue(v4l2_buffer& buffer);
    /// Returns all buffers to the program, as VIDIOC_STREAMOFF does.
    void releaseAll();

private:
    std::shared_ptr<BufferMemory> m_memory;
    std::vector<v4l2_buffer> m_buffers;
    std::deque<std::size_t> m_queued;
    std::deque<std::size_t> m_done;
};

} // namespace virtualcamera
