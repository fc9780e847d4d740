#pragma once

#include "FrameBuffers.h"
#include "NodeContext.h"
#include "NodeSlot.h"
#include "PixelFormats.h"
#include "scene/FramePainter.h"
#include "VideoControls.h"

#include <atomic>
#include <set>
#include <thread>

namespace virtualcamera {

struct CameraIdentity;

/// The camera's capture node, as the UVC driver presents it.
class VideoInterface : public NodeBackend
{
public:
    VideoInterface(NodeContext& context, const CameraIdentity& identity, Device& device,
                   std::unique_ptr<FramePainter> painter);
    /// Must not be called with the bus locked: waits for the frame thread.
    ~VideoInterface() override;

    std::unique_ptr<Session> open(std::shared_ptr<Fifo> queue) override;
    void disconnect();

    /// The formats that it offers from now on.
    void setPixelFormats(const PixelFormats& formats);
    VideoControls& controls() { return m_controls; }
    bool isStreaming() const { return m_streaming; }
    const v4l2_pix_format& format() const { return m_format; }
    std::uint32_t frameRate() const { return m_frameRate; }
    std::uint64_t framesDelivered() const { return m_framesDelivered; }
    std::size_t openHandles() const { return m_sessions.size(); }
    std::uint64_t totalOpens() const { return m_totalOpens; }

private:
    class VideoSession;

    SyscallResult ioctl(VideoSession& session, std::uint32_t request,
                        const IoctlArgument& argument);
    SyscallResult capability(v4l2_capability& capability) const;
    SyscallResult enumerate(std::uint32_t request, const IoctlArgument& argument) const;
    SyscallResult accessFormat(VideoSession& session, std::uint32_t request, v4l2_format& format);
    SyscallResult accessParameters(VideoSession& session, std::uint32_t request,
                                   v4l2_streamparm& parameters);
    SyscallResult requestBuffers(VideoSession& session, v4l2_requestbuffers& request);
    SyscallResult handleBuffer(VideoSession& session, std::uint32_t request, v4l2_buffer& buffer);
    SyscallResult startStream(VideoSession& session);
    void stopStream();
    void closeSession(VideoSession& session);

    /// The kernel allows one handle at a time to configure and stream.
    SyscallResult acquire(VideoSession& session);
    void release(VideoSession& session);
    std::string mappingPath(int handle) const;

    void runFrames();
    void makeFrame(std::unique_lock<std::mutex>& lock, double seconds);

    NodeContext& m_context;
    const CameraIdentity& m_identity;
    Device& m_device;
    VideoControls m_controls;
    std::unique_ptr<FramePainter> m_painter;
    std::set<VideoSession*> m_sessions;
    VideoSession* m_owner = nullptr;
    std::uint64_t m_totalOpens = 0;

    PixelFormats m_formats = defaultPixelFormats();
    v4l2_pix_format m_format{};
    std::uint32_t m_frameRate;
    FrameBuffers m_buffers;
    bool m_streaming = false;
    /// Incremented when a stream starts or stops, so that a frame of the previous one is dropped.
    unsigned m_streamNumber = 0;
    std::uint32_t m_sequence = 0;
    std::uint64_t m_framesDelivered = 0;

    std::condition_variable m_streamChanged;
    bool m_stopping = false;
    std::thread m_frameThread;
};

} // namespace virtualcamera
