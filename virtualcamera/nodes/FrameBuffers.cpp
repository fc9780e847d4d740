#include "FrameBuffers.h"

#include <cerrno>
#include <ctime>
#include <sys/mman.h>
#include <system_error>
#include <unistd.h>

namespace virtualcamera {

namespace {

constexpr std::uint32_t kWandering = V4L2_BUF_FLAG_QUEUED | V4L2_BUF_FLAG_DONE;

timeval now()
{
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return {time.tv_sec, time.tv_nsec / 1000};
}

} // namespace

BufferMemory::BufferMemory(std::size_t bufferSize, std::size_t count)
{
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    m_slotSize = (bufferSize + page - 1) / page * page;
    m_size = m_slotSize * count;
    // Anonymous memory, not a file: the pages must not be written to a disk with every frame, and
    // must be freed when this process ends for any reason.
    m_fd.reset(::memfd_create("virtualcamera-frames", MFD_CLOEXEC));
    if (!m_fd || ::ftruncate(m_fd.get(), static_cast<off_t>(m_size)) != 0)
        throw std::system_error(errno, std::generic_category(), "video buffers");
    void* mapped = ::mmap(nullptr, m_size, PROT_READ | PROT_WRITE, MAP_SHARED, m_fd.get(), 0);
    if (mapped == MAP_FAILED)
        throw std::system_error(errno, std::generic_category(), "map video buffers");
    m_memory = static_cast<std::uint8_t*>(mapped);
}

BufferMemory::~BufferMemory()
{
    ::munmap(m_memory, m_size);
}

void FrameBuffers::allocate(std::size_t count, std::uint32_t bufferSize)
{
    releaseAll();
    m_buffers.clear();
    m_memory.reset();
    if (count == 0)
        return;
    m_memory = std::make_shared<BufferMemory>(bufferSize, count);
    for (std::size_t i = 0; i < count; ++i) {
        v4l2_buffer buffer{};
        buffer.index = static_cast<std::uint32_t>(i);
        buffer.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        buffer.memory = V4L2_MEMORY_MMAP;
        buffer.field = V4L2_FIELD_NONE;
        buffer.flags = V4L2_BUF_FLAG_TIMESTAMP_MONOTONIC | V4L2_BUF_FLAG_TSTAMP_SRC_SOE;
        buffer.length = bufferSize;
        buffer.m.offset = static_cast<std::uint32_t>(m_memory->offset(i));
        m_buffers.push_back(buffer);
    }
}

bool FrameBuffers::query(v4l2_buffer& buffer) const
{
    if (buffer.index >= m_buffers.size())
        return false;
    buffer = m_buffers[buffer.index];
    return true;
}

long FrameBuffers::enqueue(v4l2_buffer& buffer)
{
    if (buffer.index >= m_buffers.size() || buffer.memory != V4L2_MEMORY_MMAP)
        return -EINVAL;
    v4l2_buffer& known = m_buffers[buffer.index];
    if ((known.flags & kWandering) != 0)
        return -EINVAL;
    known.flags |= V4L2_BUF_FLAG_QUEUED;
    m_queued.push_back(buffer.index);
    buffer = known;
    return 0;
}

std::optional<std::size_t> FrameBuffers::takeQueued()
{
    if (m_queued.empty())
        return std::nullopt;
    const std::size_t index = m_queued.front();
    m_queued.pop_front();
    return index;
}

void FrameBuffers::finish(std::size_t index, std::uint32_t bytesUsed, std::uint32_t sequence)
{
    v4l2_buffer& buffer = m_buffers[index];
    buffer.bytesused = bytesUsed;
    buffer.sequence = sequence;
    buffer.timestamp = now();
    buffer.flags &= ~static_cast<std::uint32_t>(V4L2_BUF_FLAG_QUEUED);
    buffer.flags |= V4L2_BUF_FLAG_DONE;
    m_done.push_back(index);
}

bool FrameBuffers::dequeue(v4l2_buffer& buffer)
{
    if (m_done.empty())
        return false;
    v4l2_buffer& done = m_buffers[m_done.front()];
    m_done.pop_front();
    done.flags &= ~static_cast<std::uint32_t>(V4L2_BUF_FLAG_DONE);
    buffer = done;
    return true;
}

void FrameBuffers::releaseAll()
{
    m_queued.clear();
    m_done.clear();
    for (v4l2_buffer& buffer : m_buffers)
        buffer.flags &= ~kWandering;
}

} // namespace virtualcamera
