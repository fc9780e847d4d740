#include "HostLink.h"

#include <algorithm>
#include <cerrno>
#include <sys/socket.h>
#include <sys/time.h>

namespace virtualcamera {

namespace {

// No driver asks for more at once; an unknown client on the network may.
constexpr std::uint32_t kLongestTransfer = 1024 * 1024;
constexpr std::uint32_t kMostPackets = 1024;
/// A host that accepts no data for this long is gone.
constexpr time_t kSendTimeoutMs = 5000;

bool isTooLarge(const usbip::Command& command)
{
    return command.length > kLongestTransfer || command.packetCount > kMostPackets;
}

} // namespace

HostLink::HostLink(FileDescriptor socket, TransferHandler& handler)
    : m_socket(std::move(socket))
    , m_handler(handler)
{
    const timeval timeout{kSendTimeoutMs / 1000, 0};
    ::setsockopt(m_socket.get(), SOL_SOCKET, SO_SNDTIMEO, &timeout, sizeof timeout);
    const timeval forever{0, 0};
    ::setsockopt(m_socket.get(), SOL_SOCKET, SO_RCVTIMEO, &forever, sizeof forever);
}

HostLink::~HostLink()
{
    close();
}

void HostLink::start()
{
    m_thread = std::thread([this] { run(); });
}

void HostLink::close()
{
    quiet();
    ::shutdown(m_socket.get(), SHUT_RDWR);
    if (m_thread.joinable())
        m_thread.join();
}

void HostLink::quiet()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_quiet = true;
    }
    m_changed.notify_all();
}

void HostLink::wake()
{
    // A thread that is about to wait has checked its condition with the lock held.
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
    }
    m_changed.notify_all();
}

bool HostLink::answer(std::uint8_t endpoint, const Maker& make)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_quiet || m_ended || m_waiting[endpoint].empty())
        return false;
    return answerLocked(endpoint, make);
}

bool HostLink::answerWhenAsked(std::uint8_t endpoint, const Maker& make,
                               const std::function<bool()>& isCancelled)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(
        lock, [&] { return m_quiet || m_ended || isCancelled() || !m_waiting[endpoint].empty(); });
    if (m_quiet || m_ended || isCancelled())
        return false;
    return answerLocked(endpoint, make);
}

bool HostLink::answerLocked(std::uint8_t endpoint, const Maker& make)
{
    std::deque<Transfer>& queue = m_waiting[endpoint];
    Transfer transfer = std::move(queue.front());
    queue.pop_front();
    Answer answer = make(transfer);
    if (transfer.packets.empty() && answer.data.size() > transfer.length)
        answer.data.resize(transfer.length);

    usbip::Reply reply;
    reply.sequence = transfer.sequence;
    reply.status = answer.status;
    reply.actual = static_cast<std::uint32_t>(answer.data.size());
    reply.startFrame = transfer.startFrame;
    reply.packetCount = static_cast<std::uint32_t>(transfer.packets.size());
    Bytes bytes = reply.encode();
    bytes.insert(bytes.end(), answer.data.begin(), answer.data.end());
    for (const usbip::IsoPacket& packet : transfer.packets) {
        const Bytes encoded = packet.encode();
        bytes.insert(bytes.end(), encoded.begin(), encoded.end());
    }
    return send(bytes);
}

void HostLink::run()
{
    std::array<std::uint8_t, usbip::kHeaderSize> header{};
    bool alive = true;
    while (alive && receive(header.data(), header.size())) {
        alive = serve(usbip::Command::parse(header.data()));
        if (alive)
            m_handler.settle();
    }
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_ended = true;
        m_waiting.clear();
    }
    m_changed.notify_all();
    ::shutdown(m_socket.get(), SHUT_RDWR);
    m_handler.hostLeft();
}

bool HostLink::serve(const usbip::Command& command)
{
    if (command.code == usbip::kUnlink)
        return unlink(command);
    return command.code == usbip::kSubmit && !isTooLarge(command) && submit(command);
}

bool HostLink::submit(const usbip::Command& command)
{
    Bytes data(command.in ? 0 : command.length);
    if (!data.empty() && !receive(data.data(), data.size()))
        return false;
    Bytes encoded(command.packetCount * usbip::kIsoPacketSize);
    if (!encoded.empty() && !receive(encoded.data(), encoded.size()))
        return false;

    if (command.endpoint == 0)
        return runControl(command, data);
    const auto endpoint = static_cast<std::uint8_t>(command.endpoint);
    if (!command.in) {
        const bool taken = m_handler.output(endpoint, data);
        return reply(command, taken ? 0 : -EPIPE, taken ? command.length : 0, {});
    }
    if (!m_handler.hasInput(endpoint))
        return reply(command, -EPIPE, 0, {});
    Transfer transfer{command.sequence, command.length, command.startFrame, {}};
    for (std::size_t at = 0; at < encoded.size(); at += usbip::kIsoPacketSize)
        transfer.packets.push_back(usbip::IsoPacket::parse(&encoded[at]));
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_waiting[endpoint].push_back(std::move(transfer));
    }
    m_changed.notify_all();
    return true;
}

bool HostLink::runControl(const usbip::Command& command, const Bytes& data)
{
    ControlAnswer answer = m_handler.control(SetupPacket::parse(command.setup.data()), data);
    if (answer.stalled)
        return reply(command, -EPIPE, 0, {});
    if (!command.in)
        return reply(command, 0, command.length, {});
    if (answer.data.size() > command.length)
        answer.data.resize(command.length);
    return reply(command, 0, static_cast<std::uint32_t>(answer.data.size()), answer.data);
}

bool HostLink::reply(const usbip::Command& command, std::int32_t status, std::uint32_t actual,
                     const Bytes& data)
{
    usbip::Reply reply;
    reply.sequence = command.sequence;
    reply.status = status;
    reply.actual = actual;
    Bytes bytes = reply.encode();
    bytes.insert(bytes.end(), data.begin(), data.end());
    const std::lock_guard<std::mutex> lock(m_mutex);
    return send(bytes);
}

bool HostLink::unlink(const usbip::Command& command)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    bool found = false;
    for (auto& [endpoint, queue] : m_waiting) {
        const auto wanted =
            std::find_if(queue.begin(), queue.end(), [&command](const Transfer& transfer) {
                return transfer.sequence == command.unlinked;
            });
        if (wanted != queue.end()) {
            queue.erase(wanted);
            found = true;
            break;
        }
    }
    usbip::Reply reply;
    reply.code = usbip::kUnlinked;
    reply.sequence = command.sequence;
    reply.status = found ? -ECONNRESET : 0;
    return send(reply.encode());
}

bool HostLink::receive(std::uint8_t* to, std::size_t size)
{
    while (size > 0) {
        const ssize_t count = ::recv(m_socket.get(), to, size, 0);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        to += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

bool HostLink::send(const Bytes& bytes)
{
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count =
            ::send(m_socket.get(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0) {
            // Half an answer was sent: the host could not parse anything that follows.
            m_quiet = true;
            ::shutdown(m_socket.get(), SHUT_RDWR);
            return false;
        }
        sent += static_cast<std::size_t>(count);
    }
    return true;
}

} // namespace virtualcamera
