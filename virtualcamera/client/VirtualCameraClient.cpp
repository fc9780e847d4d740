#include "VirtualCameraClient.h"

#include "protocol/ControlText.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace virtualcamera {

namespace {

[[noreturn]] void fail(const std::string& what)
{
    throw std::runtime_error("virtual camera: " + what + ": " + std::strerror(errno));
}

std::string command(const char* verb, const std::string& id)
{
    return std::string(verb) + ' ' + percentEncode(id);
}

std::uint64_t number(const std::string& text)
{
    return std::strtoull(text.c_str(), nullptr, 0);
}

template <typename Number>
Number number(const std::string& text)
{
    return static_cast<Number>(number(text));
}

std::string valueOf(const std::multimap<std::string, std::string>& fields, const std::string& name)
{
    const auto found = fields.find(name);
    return found == fields.end() ? std::string() : found->second;
}

std::vector<std::string> splitFields(const std::string& text)
{
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t comma = 0; comma != std::string::npos; start = comma + 1) {
        comma = text.find(',', start);
        parts.push_back(
            percentDecode(text.substr(start, comma == std::string::npos ? comma : comma - start)));
    }
    return parts;
}

/// The comma-separated fields of every word "name=..." of a reply.
std::vector<std::vector<std::string>> rows(const std::vector<std::string>& words,
                                           const std::string& name, std::size_t columns)
{
    std::vector<std::vector<std::string>> result;
    for (const std::string& word : words) {
        if (word.rfind(name + '=', 0) != 0)
            continue;
        // Split before decoding: only the commas between the fields are not encoded.
        result.push_back(splitFields(word.substr(name.size() + 1)));
        if (result.back().size() != columns)
            throw std::runtime_error("virtual camera: unexpected reply: " + word);
    }
    return result;
}

} // namespace

VirtualCameraClient::VirtualCameraClient(const std::string& path)
{
    const char* fromEnvironment = std::getenv(kSocketVariable);
    const std::string chosen = !path.empty() ? path : fromEnvironment ? fromEnvironment : "";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (chosen.empty() || chosen.size() >= sizeof address.sun_path)
        throw std::runtime_error("virtual camera: no control socket");
    chosen.copy(address.sun_path, sizeof address.sun_path - 1);
    m_socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (m_socket < 0)
        fail("socket");
    if (::connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        const int reason = errno;
        ::close(m_socket);
        errno = reason;
        fail(chosen);
    }
}

VirtualCameraClient::~VirtualCameraClient()
{
    ::close(m_socket);
}

std::string VirtualCameraClient::exchange(const std::string& line)
{
    const std::string text = line + '\n';
    for (std::size_t sent = 0; sent < text.size();) {
        const ssize_t count =
            ::send(m_socket, text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            fail("send");
        sent += static_cast<std::size_t>(count);
    }
    std::array<char, 16384> chunk{};
    std::size_t end = 0;
    while ((end = m_received.find('\n')) == std::string::npos) {
        const ssize_t count = ::recv(m_socket, chunk.data(), chunk.size(), 0);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            fail("receive");
        if (count == 0)
            throw std::runtime_error("virtual camera: the server closed the connection");
        m_received.append(chunk.data(), static_cast<std::size_t>(count));
    }
    std::string reply = m_received.substr(0, end);
    m_received.erase(0, end + 1);
    return reply;
}

std::vector<std::string> VirtualCameraClient::request(const std::string& line)
{
    const std::string reply = exchange(line);
    std::vector<std::string> words = splitWords(reply);
    if (words.empty() || words.front() != "ok")
        throw std::runtime_error("virtual camera: " + line.substr(0, 200) + ": " + reply);
    words.erase(words.begin());
    return words;
}

VirtualCameraClient::Fields VirtualCameraClient::fields(const std::string& line)
{
    Fields result;
    for (const std::string& word : request(line))
        if (const auto pair = parseKeyValue(word))
            result.insert(*pair);
    return result;
}

void VirtualCameraClient::plug(const std::string& id, const Options& options)
{
    std::string line = command("plug", id);
    for (const auto& [name, value] : options)
        line += ' ' + formatKeyValue(name, value);
    request(line);
}

void VirtualCameraClient::unplug(const std::string& id)
{
    request(command("unplug", id));
}

std::vector<VirtualCameraClient::CameraEntry> VirtualCameraClient::list()
{
    std::vector<CameraEntry> cameras;
    for (const auto& row : rows(request("list"), "camera", 4))
        cameras.push_back({row[0], row[1] == "on", row[2], row[3]});
    return cameras;
}

void VirtualCameraClient::fault(const std::string& id, const std::string& fault)
{
    request(command("fault", id) + ' ' + fault);
}

void VirtualCameraClient::clear(const std::string& id)
{
    request(command("clear", id));
}

std::multimap<std::string, std::string> VirtualCameraClient::registers(const std::string& id)
{
    return fields(command("registers", id));
}

std::string VirtualCameraClient::registerValue(const std::string& id, const std::string& name)
{
    const auto all = registers(id);
    const auto found = all.find(name);
    if (found == all.end())
        throw std::runtime_error("virtual camera: no register " + name);
    return found->second;
}

void VirtualCameraClient::set(const std::string& id, const std::string& name,
                              const std::string& value)
{
    request(command("set", id) + ' ' + percentEncode(name) + ' ' + percentEncode(value));
}

void VirtualCameraClient::set(const std::string& id, const std::string& name, int value)
{
    set(id, name, std::to_string(value));
}

std::vector<VirtualCameraClient::LogEntry> VirtualCameraClient::log(const std::string& id,
                                                                    std::uint64_t fromSequence)
{
    std::vector<LogEntry> entries;
    const std::string line = command("log", id) + " from=" + std::to_string(fromSequence);
    for (const auto& row : rows(request(line), "entry", 8)) {
        LogEntry entry;
        entry.sequence = number(row[0]);
        entry.command = number<std::uint16_t>(row[1]);
        entry.dataStatus = number<unsigned>(row[2]);
        entry.dataLength = number<unsigned>(row[3]);
        entry.packNumber = number<std::uint32_t>(row[4]);
        entry.payload = fromHex(row[5]).value_or(std::vector<std::uint8_t>());
        entry.verdict = row[6];
        if (row[7] != "none")
            entry.answerStatus = number<std::uint32_t>(row[7]);
        entries.push_back(std::move(entry));
    }
    return entries;
}

void VirtualCameraClient::clearLog(const std::string& id)
{
    request(command("clearlog", id));
}

VirtualCameraClient::Handles VirtualCameraClient::handles(const std::string& id)
{
    const Fields f = fields(command("handles", id));
    return {number(valueOf(f, "hid")), number(valueOf(f, "video")), number(valueOf(f, "hidtotal")),
            number(valueOf(f, "videototal"))};
}

VirtualCameraClient::Stats VirtualCameraClient::stats(const std::string& id)
{
    const Fields f = fields(command("stats", id));
    Stats stats;
    stats.onBus = valueOf(f, "bus") == "on";
    stats.connections = number(valueOf(f, "connections"));
    stats.streaming = valueOf(f, "streaming") == "1";
    stats.width = number<int>(valueOf(f, "width"));
    stats.height = number<int>(valueOf(f, "height"));
    stats.fourcc = valueOf(f, "fourcc");
    stats.rate = number<int>(valueOf(f, "rate"));
    stats.frames = number(valueOf(f, "frames"));
    stats.requests = number(valueOf(f, "requests"));
    stats.violations = number(valueOf(f, "violations"));
    return stats;
}

VirtualCameraClient::Firmware VirtualCameraClient::firmware(const std::string& id)
{
    const Fields f = fields(command("firmware", id));
    Firmware firmware;
    firmware.version = valueOf(f, "version");
    firmware.size = number(valueOf(f, "size"));
    firmware.checksum = number<std::uint16_t>(valueOf(f, "checksum"));
    firmware.packets = number<std::uint32_t>(valueOf(f, "packets"));
    firmware.receiving = valueOf(f, "receiving") == "1";
    firmware.complete = valueOf(f, "complete") == "1";
    return firmware;
}

VirtualCameraClient::Nodes VirtualCameraClient::nodes(const std::string& id)
{
    const Fields f = fields(command("nodes", id));
    return {valueOf(f, "hid"), valueOf(f, "video"), valueOf(f, "metadata")};
}

bool VirtualCameraClient::wait(const std::string& id, const std::string& condition,
                               std::chrono::milliseconds timeoutMs)
{
    const std::string line = command("wait", id) + ' ' + percentEncode(condition) + ' ' +
                             std::to_string(timeoutMs.count());
    const std::string reply = exchange(line);
    if (reply == "error timeout")
        return false;
    if (reply != "ok")
        throw std::runtime_error("virtual camera: " + line + ": " + reply);
    return true;
}

void VirtualCameraClient::quit()
{
    request("quit");
}

} // namespace virtualcamera
