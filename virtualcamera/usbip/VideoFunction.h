#pragma once

#include "BusContext.h"
#include "CameraSpec.h"
#include "HostLink.h"
#include "scene/FramePainter.h"
#include "StreamModes.h"

#include <atomic>
#include <memory>
#include <thread>

namespace virtualcamera {

/// The camera's video streaming interface: the negotiation, and the frames in isochronous packets.
class VideoFunction
{
public:
    VideoFunction(BusContext& context, const CameraIdentity& identity, Device& device,
                  const PixelFormats& formats, std::unique_ptr<FramePainter> painter);
    /// Must not be called with the bus locked: waits for the frame thread.
    ~VideoFunction();
    VideoFunction(const VideoFunction&) = delete;
    VideoFunction& operator=(const VideoFunction&) = delete;

    // Called with the bus locked.
    void setFormats(const PixelFormats& formats);
    void connect(std::shared_ptr<HostLink> link);
    /// Stops the stream.
    void disconnect();
    /// Handles a class request to the streaming interface.
    ControlAnswer request(const SetupPacket& setup, const Bytes& data);
    /// Selects the alternate setting: the stream runs in the setting that has an endpoint.
    void setStreaming(bool streaming);
    bool isStreaming() const { return m_streaming; }
    const StreamMode& mode() const { return m_modes.mode(m_committed); }
    std::uint32_t frameRate() const { return 10'000'000 / m_committed.interval; }
    std::uint64_t framesDelivered() const { return m_framesDelivered; }

private:
    using Lock = std::unique_lock<std::mutex>;

    void runFrames();
    void makeFrame(Lock& lock, double seconds);
    /// Sends one frame; false when the stream ended before its end.
    bool deliver(HostLink& link, const Bytes& frame, std::uint32_t sequence, unsigned stream);

    BusContext& m_context;
    const CameraIdentity& m_identity;
    Device& m_device;
    std::unique_ptr<FramePainter> m_painter;
    StreamModes m_modes;
    StreamAgreement m_probed;
    StreamAgreement m_committed;
    std::shared_ptr<HostLink> m_link;

    bool m_streaming = false;
    /// Incremented when a stream starts or stops, so that a frame of the previous one is dropped.
    std::atomic<unsigned> m_streamNumber{0};
    std::uint32_t m_sequence = 0;
    std::uint64_t m_framesDelivered = 0;
    std::condition_variable m_streamChanged;
    bool m_stopping = false;
    std::thread m_frameThread;
};

} // namespace virtualcamera
