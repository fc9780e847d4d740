#include "VideoInterface.h"

#include "CameraIdentity.h"
#include "Picture.h"
#include "PixelFormats.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace virtualcamera {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint32_t kDriverVersion = (6U << 16U) | (1U << 8U);

template <typename Array>
void copyText(const std::string& text, Array& to)
{
    const std::size_t size = std::min(text.size(), sizeof to - 1);
    std::memset(to, 0, sizeof to);
    std::memcpy(to, text.data(), size);
}

bool isVideoCapture(std::uint32_t type)
{
    return type == V4L2_BUF_TYPE_VIDEO_CAPTURE;
}

} // namespace

class VideoInterface::VideoSession : public Session
{
public:
    VideoSession(VideoInterface& interface, std::shared_ptr<Fifo> queue)
        : m_interface(interface)
        , m_queue(std::move(queue))
    {
    }
    ~VideoSession() override { m_interface.closeSession(*this); }

    SyscallResult opened() override
    {
        if (m_interface.m_device.faults().isActive(FaultKind::Denied))
            return -EACCES;
        m_interface.m_sessions.insert(this);
        ++m_interface.m_totalOpens;
        m_interface.m_context.changed.notify_all();
        return 0;
    }
    SyscallResult ioctl(std::uint32_t request, const IoctlArgument& argument) override
    {
        return m_gone ? -ENODEV : m_interface.ioctl(*this, request, argument);
    }
    // The UVC driver streams through mapped buffers only.
    SyscallResult write(const std::uint8_t*, std::size_t) override { return -EINVAL; }
    std::optional<SyscallResult> read() override { return m_gone ? -ENODEV : -EINVAL; }

    /// The queue has one token per finished frame, so that poll() of the node is right.
    Fifo& queue() { return *m_queue; }
    void disconnect()
    {
        m_gone = true;
        m_queue->pushToken();
    }

private:
    VideoInterface& m_interface;
    std::shared_ptr<Fifo> m_queue;
    bool m_gone = false;
};

VideoInterface::VideoInterface(NodeContext& context, const CameraIdentity& identity, Device& device,
                               std::unique_ptr<FramePainter> painter)
    : m_context(context)
    , m_identity(identity)
    , m_device(device)
    , m_controls(device)
    , m_painter(std::move(painter))
    , m_frameRate(frameRates().front())
{
    m_format.width = device.configuredFormat().width;
    m_format.height = device.configuredFormat().height;
    adjustFormat(m_formats, m_format);
    m_frameThread = std::thread([this] { runFrames(); });
}

VideoInterface::~VideoInterface()
{
    {
        const std::lock_guard<std::mutex> lock(m_context.mutex);
        m_stopping = true;
    }
    m_streamChanged.notify_all();
    m_frameThread.join();
}

void VideoInterface::setPixelFormats(const PixelFormats& formats)
{
    m_formats = formats;
    // A running stream keeps its format.
    if (!m_owner)
        adjustFormat(m_formats, m_format);
}

std::unique_ptr<Session> VideoInterface::open(std::shared_ptr<Fifo> queue)
{
    return std::make_unique<VideoSession>(*this, std::move(queue));
}

void VideoInterface::disconnect()
{
    stopStream();
    if (m_owner)
        release(*m_owner);
    for (VideoSession* session : m_sessions)
        session->disconnect();
    m_sessions.clear();
}

void VideoInterface::closeSession(VideoSession& session)
{
    m_sessions.erase(&session);
    if (m_owner == &session) {
        stopStream();
        release(session);
    }
    m_context.changed.notify_all();
}

SyscallResult VideoInterface::ioctl(VideoSession& session, std::uint32_t request,
                                    const IoctlArgument& argument)
{
    if (const auto result = m_controls.ioctl(request, argument))
        return *result;
    if (argument.requestSize() == 0)
        return -ENOTTY;
    if (!argument.memory())
        return -EFAULT;
    switch (request) {
    case VIDIOC_QUERYCAP:
        return capability(*argument.as<v4l2_capability>());
    case VIDIOC_ENUM_FMT:
    case VIDIOC_ENUM_FRAMESIZES:
    case VIDIOC_ENUM_FRAMEINTERVALS:
    case VIDIOC_ENUMINPUT:
        return enumerate(request, argument);
    case VIDIOC_G_INPUT:
        *argument.as<int>() = 0;
        return 0;
    case VIDIOC_S_INPUT:
        return *argument.as<int>() == 0 ? 0 : -EINVAL;
    case VIDIOC_G_FMT:
    case VIDIOC_S_FMT:
    case VIDIOC_TRY_FMT:
        return accessFormat(session, request, *argument.as<v4l2_format>());
    case VIDIOC_G_PARM:
    case VIDIOC_S_PARM:
        return accessParameters(session, request, *argument.as<v4l2_streamparm>());
    case VIDIOC_REQBUFS:
        return requestBuffers(session, *argument.as<v4l2_requestbuffers>());
    case VIDIOC_QUERYBUF:
    case VIDIOC_QBUF:
    case VIDIOC_DQBUF:
        return handleBuffer(session, request, *argument.as<v4l2_buffer>());
    case VIDIOC_STREAMON:
        return isVideoCapture(*argument.as<std::uint32_t>()) ? startStream(session) : -EINVAL;
    case VIDIOC_STREAMOFF:
        if (!isVideoCapture(*argument.as<std::uint32_t>()))
            return -EINVAL;
        if (m_owner && m_owner != &session)
            return -EBUSY;
        stopStream();
        return 0;
    default:
        return -ENOTTY;
    }
}

SyscallResult VideoInterface::capability(v4l2_capability& capability) const
{
    capability = v4l2_capability{};
    copyText("uvcvideo", capability.driver);
    copyText(m_identity.card, capability.card);
    copyText(m_identity.videoBusInfo(), capability.bus_info);
    capability.version = kDriverVersion;
    capability.device_caps = V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_STREAMING | V4L2_CAP_EXT_PIX_FORMAT;
    // The capabilities of the whole camera, so they include those of the metadata node.
    capability.capabilities = capability.device_caps | V4L2_CAP_META_CAPTURE | V4L2_CAP_DEVICE_CAPS;
    return 0;
}

SyscallResult VideoInterface::enumerate(std::uint32_t request, const IoctlArgument& argument) const
{
    if (request == VIDIOC_ENUM_FMT) {
        auto& description = *argument.as<v4l2_fmtdesc>();
        if (!isVideoCapture(description.type) || description.index >= m_formats.size())
            return -EINVAL;
        const PixelFormat& format = m_formats[description.index];
        description.flags = format.compressed ? V4L2_FMT_FLAG_COMPRESSED : 0;
        description.pixelformat = format.fourcc;
        copyText(format.description, description.description);
        return 0;
    }
    if (request == VIDIOC_ENUM_FRAMESIZES) {
        auto& entry = *argument.as<v4l2_frmsizeenum>();
        const PixelFormat* format = findPixelFormat(m_formats, entry.pixel_format);
        if (!format || entry.index >= format->sizes.size())
            return -EINVAL;
        entry.type = V4L2_FRMSIZE_TYPE_DISCRETE;
        entry.discrete = {format->sizes[entry.index].width, format->sizes[entry.index].height};
        return 0;
    }
    if (request == VIDIOC_ENUM_FRAMEINTERVALS) {
        auto& entry = *argument.as<v4l2_frmivalenum>();
        const PixelFormat* format = findPixelFormat(m_formats, entry.pixel_format);
        const bool knowsSize = format && std::any_of(format->sizes.begin(), format->sizes.end(),
                                                     [&entry](const FrameSize& size) {
                                                         return size.width == entry.width &&
                                                                size.height == entry.height;
                                                     });
        if (!knowsSize || entry.index >= frameRates().size())
            return -EINVAL;
        entry.type = V4L2_FRMIVAL_TYPE_DISCRETE;
        entry.discrete = {1, frameRates()[entry.index]};
        return 0;
    }
    auto& input = *argument.as<v4l2_input>();
    if (input.index != 0)
        return -EINVAL;
    input = v4l2_input{};
    copyText("Camera 1", input.name);
    input.type = V4L2_INPUT_TYPE_CAMERA;
    return 0;
}

SyscallResult VideoInterface::accessFormat(VideoSession& session, std::uint32_t request,
                                           v4l2_format& format)
{
    if (!isVideoCapture(format.type))
        return -EINVAL;
    if (request == VIDIOC_G_FMT) {
        format.fmt.pix = m_format;
        return 0;
    }
    v4l2_pix_format adjusted = format.fmt.pix;
    adjustFormat(m_formats, adjusted);
    if (request == VIDIOC_S_FMT) {
        if (const SyscallResult result = acquire(session); result < 0)
            return result;
        if (m_buffers.count() > 0)
            return -EBUSY;
        m_format = adjusted;
    }
    format.fmt.pix = adjusted;
    return 0;
}

SyscallResult VideoInterface::accessParameters(VideoSession& session, std::uint32_t request,
                                               v4l2_streamparm& parameters)
{
    if (!isVideoCapture(parameters.type))
        return -EINVAL;
    if (request == VIDIOC_S_PARM) {
        if (const SyscallResult result = acquire(session); result < 0)
            return result;
        if (m_streaming)
            return -EBUSY;
        m_frameRate = nearestFrameRate(parameters.parm.capture.timeperframe);
    }
    parameters.parm.capture = v4l2_captureparm{};
    parameters.parm.capture.capability = V4L2_CAP_TIMEPERFRAME;
    parameters.parm.capture.timeperframe = {1, m_frameRate};
    return 0;
}

SyscallResult VideoInterface::requestBuffers(VideoSession& session, v4l2_requestbuffers& request)
{
    request.capabilities = V4L2_BUF_CAP_SUPPORTS_MMAP;
    if (!isVideoCapture(request.type) || request.memory != V4L2_MEMORY_MMAP)
        return -EINVAL;
    if (const SyscallResult result = acquire(session); result < 0)
        return result;
    if (m_streaming)
        return -EBUSY;
    request.count = static_cast<std::uint32_t>(
        std::min<std::size_t>(request.count, FrameBuffers::kMostBuffers));
    m_buffers.allocate(request.count, m_format.sizeimage);

    // The preload library follows this link when the program maps the node.
    const std::string path = mappingPath(session.number());
    ::unlink(path.c_str());
    if (request.count == 0) {
        release(session);
        return 0;
    }
    const std::string target =
        "/proc/" + std::to_string(::getpid()) + "/fd/" + std::to_string(m_buffers.memory()->fd());
    return ::symlink(target.c_str(), path.c_str()) == 0 ? 0 : -ENOMEM;
}

SyscallResult VideoInterface::handleBuffer(VideoSession& session, std::uint32_t request,
                                           v4l2_buffer& buffer)
{
    if (!isVideoCapture(buffer.type))
        return -EINVAL;
    if (m_owner != &session)
        return m_owner ? -EBUSY : -EINVAL;
    if (request == VIDIOC_QUERYBUF)
        return m_buffers.query(buffer) ? 0 : -EINVAL;
    if (request == VIDIOC_QBUF)
        return m_buffers.enqueue(buffer);
    if (!m_streaming)
        return -EINVAL;
    if (!m_buffers.dequeue(buffer))
        return -EAGAIN; // the preload library waits at the node when the handle may block
    session.queue().pop();
    return 0;
}

SyscallResult VideoInterface::startStream(VideoSession& session)
{
    if (const SyscallResult result = acquire(session); result < 0)
        return result;
    if (m_buffers.count() == 0)
        return -EINVAL;
    if (m_streaming)
        return 0;
    session.queue().drain();
    m_streaming = true;
    ++m_streamNumber;
    m_sequence = 0;
    m_device.setStream(VideoFormat{m_format.width, m_format.height, true});
    m_streamChanged.notify_all();
    m_context.changed.notify_all();
    return 0;
}

void VideoInterface::stopStream()
{
    m_buffers.releaseAll();
    if (!m_streaming)
        return;
    m_streaming = false;
    ++m_streamNumber;
    m_device.setStream(std::nullopt);
    // A program that waits for a frame has to notice that no frame will come.
    m_owner->queue().pushToken();
    m_streamChanged.notify_all();
    m_context.changed.notify_all();
}

SyscallResult VideoInterface::acquire(VideoSession& session)
{
    if (m_device.faults().isActive(FaultKind::Busy) || (m_owner && m_owner != &session))
        return -EBUSY;
    m_owner = &session;
    return 0;
}

void VideoInterface::release(VideoSession& session)
{
    ::unlink(mappingPath(session.number()).c_str());
    m_buffers.allocate(0, 0);
    m_owner = nullptr;
}

std::string VideoInterface::mappingPath(int handle) const
{
    return m_context.root + "/frames/" + std::to_string(handle);
}

void VideoInterface::runFrames()
{
    const Clock::time_point start = Clock::now();
    Clock::time_point due = start;
    std::unique_lock<std::mutex> lock(m_context.mutex);
    while (!m_stopping) {
        if (!m_streaming) {
            m_streamChanged.wait(lock);
            due = Clock::now();
            continue;
        }
        due += std::chrono::nanoseconds(1'000'000'000 / m_frameRate);
        // After a long pause or a slow frame, continue from now instead of catching up.
        due = std::max(due, Clock::now() - std::chrono::milliseconds(5));
        const unsigned stream = m_streamNumber;
        m_streamChanged.wait_until(
            lock, due, [this, stream] { return m_stopping || stream != m_streamNumber; });
        if (!m_stopping && m_streaming && stream == m_streamNumber)
            makeFrame(lock, std::chrono::duration<double>(due - start).count());
    }
}

void VideoInterface::makeFrame(std::unique_lock<std::mutex>& lock, double seconds)
{
    if (m_device.faults().isActive(FaultKind::Frozen))
        return;
    const std::uint32_t sequence = m_sequence++;
    const auto index = m_buffers.takeQueued();
    if (!index)
        return; // the program is too slow: the frame is dropped
    const PictureState state =
        pictureOf(m_device, m_identity, m_format.pixelformat, m_format.width, m_format.height);
    const std::shared_ptr<BufferMemory> memory = m_buffers.memory();
    const unsigned stream = m_streamNumber;
    const std::size_t capacity = m_format.sizeimage;

    lock.unlock();
    const std::size_t size =
        m_painter->paint(state, sequence, seconds, memory->buffer(*index), capacity);
    lock.lock();

    if (stream != m_streamNumber)
        return;
    m_buffers.finish(*index, static_cast<std::uint32_t>(size), sequence);
    ++m_framesDelivered;
    m_owner->queue().pushToken();
    m_context.changed.notify_all();
}

} // namespace virtualcamera
