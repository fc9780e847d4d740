#include "UeventSender.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace virtualcamera {

namespace {

/// The header that libudev's device monitor expects before the properties.
struct MonitorHeader
{
    char prefix[8] = "libudev";
    std::uint32_t magic = htonl(0xfeedcafe);
    std::uint32_t headerSize = sizeof(MonitorHeader);
    std::uint32_t propertiesOffset = sizeof(MonitorHeader);
    std::uint32_t propertiesLength = 0;
    std::uint32_t subsystemHash = 0;
    std::uint32_t devtypeHash = 0;
    std::uint32_t tagBloomHigh = 0;
    std::uint32_t tagBloomLow = 0;
};

/// MurmurHash2 with seed 0: libudev's monitors filter messages by this hash first.
std::uint32_t filterHash(const std::string& text)
{
    constexpr std::uint32_t multiplier = 0x5bd1e995;
    auto hash = static_cast<std::uint32_t>(text.size());
    std::size_t at = 0;
    for (; at + 4 <= text.size(); at += 4) {
        std::uint32_t word = 0;
        std::memcpy(&word, text.data() + at, sizeof word);
        word *= multiplier;
        word ^= word >> 24U;
        hash = hash * multiplier ^ word * multiplier;
    }
    if (at < text.size()) {
        for (std::size_t i = text.size(); i-- > at;)
            hash ^= static_cast<std::uint32_t>(static_cast<unsigned char>(text[i]))
                    << (8U * (i - at));
        hash *= multiplier;
    }
    hash ^= hash >> 13U;
    hash *= multiplier;
    return hash ^ hash >> 15U;
}

std::vector<std::string> monitorSockets(const std::string& root)
{
    // The preload library binds each udev monitor to "event<fd>".
    std::vector<std::string> sockets;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(root, ignored))
        if (entry.path().filename().string().rfind("event", 0) == 0)
            sockets.push_back(entry.path());
    std::sort(sockets.begin(), sockets.end());
    return sockets;
}

std::uint64_t inodeOf(const std::string& path)
{
    struct stat status
    {
    };
    return ::stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

FileDescriptor connectTo(const std::string& path)
{
    FileDescriptor socket(::socket(AF_UNIX, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    if (::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        socket.reset();
    return socket;
}

} // namespace

UeventSender::UeventSender(std::string root, Scheduler& scheduler)
    : m_root(std::move(root))
    , m_scheduler(scheduler)
{
}

void UeventSender::send(const std::string& action, const SysfsDevice& device)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Message message = compose(action, device);
    for (const std::string& monitor : monitorSockets(m_root))
        deliver(monitor, message);
}

UeventSender::Message UeventSender::compose(const std::string& action, const SysfsDevice& device)
{
    std::string properties;
    const auto add = [&properties](const std::string& name, const std::string& value) {
        properties.append(name).append("=").append(value).push_back('\0');
    };
    add("ACTION", action);
    add("DEVPATH", device.devpath());
    add("SUBSYSTEM", device.subsystem);
    add("SEQNUM", std::to_string(++m_sequence));
    for (const auto& [name, value] : device.properties)
        add(name, value);

    MonitorHeader header;
    header.propertiesLength = static_cast<std::uint32_t>(properties.size());
    header.subsystemHash = htonl(filterHash(device.subsystem));
    if (const std::string devtype = device.property("DEVTYPE"); !devtype.empty())
        header.devtypeHash = htonl(filterHash(devtype));

    Message message(sizeof header + properties.size());
    std::memcpy(message.data(), &header, sizeof header);
    std::memcpy(message.data() + sizeof header, properties.data(), properties.size());
    return message;
}

void UeventSender::deliver(const std::string& monitor, const Message& message)
{
    const std::uint64_t inode = inodeOf(monitor);
    Backlog& backlog = m_backlogs[monitor];
    if (backlog.inode != inode) {
        // Another monitor of the program now has this name.
        backlog = Backlog{connectTo(monitor), inode, {}};
        if (!backlog.socket) {
            std::error_code ignored;
            std::filesystem::remove(monitor, ignored); // its program has closed it
        }
    }
    if (backlog.socket)
        backlog.messages.push_back(message);
    if (!backlog.socket || flush(backlog))
        m_backlogs.erase(monitor);
    else
        scheduleRetry();
}

bool UeventSender::flush(Backlog& backlog)
{
    while (!backlog.messages.empty()) {
        const Message& message = backlog.messages.front();
        if (::send(backlog.socket.get(), message.data(), message.size(), MSG_NOSIGNAL) < 0 &&
            (errno == EAGAIN || errno == EWOULDBLOCK))
            return false;
        backlog.messages.pop_front();
    }
    return true;
}

void UeventSender::scheduleRetry()
{
    if (m_retryScheduled)
        return;
    m_retryScheduled = true;
    m_scheduler.after(std::chrono::milliseconds(20), [this] { retry(); });
}

void UeventSender::retry()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_retryScheduled = false;
    for (auto each = m_backlogs.begin(); each != m_backlogs.end();)
        each = flush(each->second) ? m_backlogs.erase(each) : std::next(each);
    if (!m_backlogs.empty())
        scheduleRetry();
}

} // namespace virtualcamera
