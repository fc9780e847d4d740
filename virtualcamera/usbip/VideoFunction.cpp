#include "VideoFunction.h"

#include "Picture.h"
#include "UvcRequests.h"

#include <algorithm>

namespace virtualcamera {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint8_t kProbe = 1;
constexpr std::uint8_t kCommit = 2;

// The header of a payload: its length, then flags for the frame it belongs to.
constexpr std::uint32_t kPayloadHeader = 2;
constexpr unsigned kEndOfHeader = 0x80;
constexpr unsigned kEndOfFrame = 0x02;
constexpr unsigned kOddFrame = 0x01;

} // namespace

VideoFunction::VideoFunction(BusContext& context, const CameraIdentity& identity, Device& device,
                             const PixelFormats& formats, std::unique_ptr<FramePainter> painter)
    : m_context(context)
    , m_identity(identity)
    , m_device(device)
    , m_painter(std::move(painter))
    , m_modes(formats)
    , m_probed(m_modes.agree({}))
    , m_committed(m_probed)
{
    m_frameThread = std::thread([this] { runFrames(); });
}

VideoFunction::~VideoFunction()
{
    {
        const Lock lock(m_context.mutex);
        disconnect();
        m_stopping = true;
    }
    m_streamChanged.notify_all();
    m_frameThread.join();
}

void VideoFunction::setFormats(const PixelFormats& formats)
{
    m_modes = StreamModes(formats);
    m_probed = m_modes.agree({});
    m_committed = m_probed;
}

void VideoFunction::connect(std::shared_ptr<HostLink> link)
{
    m_link = std::move(link);
}

void VideoFunction::disconnect()
{
    setStreaming(false);
    m_link.reset();
}

ControlAnswer VideoFunction::request(const SetupPacket& setup, const Bytes& data)
{
    const auto selector = static_cast<std::uint8_t>(setup.value >> 8U);
    if (selector != kProbe && selector != kCommit)
        return ControlAnswer::stall();
    StreamAgreement& current = selector == kProbe ? m_probed : m_committed;
    switch (setup.request) {
    case uvc::kSetCurrent:
        if (selector == kCommit && m_device.faults().isActive(FaultKind::Busy))
            return ControlAnswer::stall();
        // A running stream keeps its parameters.
        if (selector == kCommit && m_streaming)
            return ControlAnswer::stall();
        current = m_modes.parse(data);
        return {};
    case uvc::kGetCurrent:
        return {false, m_modes.encode(current)};
    case uvc::kGetMinimum:
    case uvc::kGetMaximum: {
        StreamAgreement limit = m_probed;
        const std::vector<std::uint32_t>& rates = m_modes.mode(limit).rates;
        limit.interval = StreamModes::intervalOf(setup.request == uvc::kGetMinimum ? rates.front()
                                                                                   : rates.back());
        return {false, m_modes.encode(limit)};
    }
    case uvc::kGetDefault:
        return {false, m_modes.encode(m_modes.agree({}))};
    case uvc::kGetLength:
        return {false, {StreamModes::kBlockSize, 0}};
    case uvc::kGetInfo:
        return {false, {uvc::kReadsAndWrites}};
    default:
        return ControlAnswer::stall();
    }
}

void VideoFunction::setStreaming(bool streaming)
{
    if (streaming == m_streaming)
        return;
    m_streaming = streaming;
    ++m_streamNumber;
    m_sequence = 0;
    if (streaming)
        m_device.setStream(VideoFormat{mode().width, mode().height, true});
    else
        m_device.setStream(std::nullopt);
    if (m_link)
        m_link->wake();
    m_streamChanged.notify_all();
    m_context.changed.notify_all();
}

void VideoFunction::runFrames()
{
    const Clock::time_point start = Clock::now();
    Clock::time_point due = start;
    Lock lock(m_context.mutex);
    while (!m_stopping) {
        if (!m_streaming) {
            m_streamChanged.wait(lock);
            due = Clock::now();
            continue;
        }
        due += std::chrono::nanoseconds(1'000'000'000 / frameRate());
        // After a long pause or a slow frame, continue from now instead of catching up.
        due = std::max(due, Clock::now() - std::chrono::milliseconds(5));
        const unsigned stream = m_streamNumber;
        m_streamChanged.wait_until(
            lock, due, [this, stream] { return m_stopping || stream != m_streamNumber; });
        if (!m_stopping && m_streaming && stream == m_streamNumber)
            makeFrame(lock, std::chrono::duration<double>(due - start).count());
    }
}

void VideoFunction::makeFrame(Lock& lock, double seconds)
{
    if (!m_link || m_device.faults().isActive(FaultKind::Frozen))
        return;
    const std::shared_ptr<HostLink> link = m_link;
    const unsigned stream = m_streamNumber;
    const std::uint32_t sequence = m_sequence++;
    const StreamMode& shown = mode();
    const PictureState state =
        pictureOf(m_device, m_identity, shown.fourcc, shown.width, shown.height);
    const std::size_t capacity = StreamModes::frameSize(shown);

    lock.unlock();
    Bytes frame(capacity);
    frame.resize(m_painter->paint(state, sequence, seconds, frame.data(), capacity));
    const bool delivered = deliver(*link, frame, sequence, stream);
    lock.lock();

    if (delivered && stream == m_streamNumber) {
        ++m_framesDelivered;
        m_context.changed.notify_all();
    }
}

bool VideoFunction::deliver(HostLink& link, const Bytes& frame, std::uint32_t sequence,
                            unsigned stream)
{
    std::size_t sent = 0;
    // The frame identifier alternates from frame to frame.
    const unsigned identifier = (sequence & 1U) != 0 ? kOddFrame : 0;
    const auto fill = [&frame, &sent, identifier](HostLink::Transfer& transfer) {
        HostLink::Answer answer;
        for (usbip::IsoPacket& packet : transfer.packets) {
            packet.actual = 0;
            packet.status = 0;
            if (sent == frame.size() || packet.length <= kPayloadHeader)
                continue;
            const std::size_t part =
                std::min<std::size_t>(packet.length - kPayloadHeader, frame.size() - sent);
            unsigned flags = kEndOfHeader | identifier;
            if (sent + part == frame.size())
                flags |= kEndOfFrame;
            answer.data.push_back(kPayloadHeader);
            answer.data.push_back(static_cast<std::uint8_t>(flags));
            const auto from = frame.begin() + static_cast<std::ptrdiff_t>(sent);
            answer.data.insert(answer.data.end(), from, from + static_cast<std::ptrdiff_t>(part));
            sent += part;
            packet.actual = static_cast<std::uint32_t>(kPayloadHeader + part);
        }
        return answer;
    };
    const auto isOver = [this, stream] { return stream != m_streamNumber; };
    while (sent < frame.size())
        if (!link.answerWhenAsked(endpoint::kVideoIn, fill, isOver))
            return false;
    return true;
}

} // namespace virtualcamera
