#include "ControlServer.h"

#include "ControlCommands.h"
#include "protocol/ControlText.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <sys/socket.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>

namespace virtualcamera {

namespace {

bool sendAll(int socket, const std::string& text)
{
    std::size_t sent = 0;
    while (sent < text.size()) {
        const ssize_t count = ::send(socket, text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        sent += static_cast<std::size_t>(count);
    }
    return true;
}

FileDescriptor listenAt(const std::string& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        throw std::runtime_error("control socket path too long: " + path);
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    ::unlink(path.c_str());
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!socket ||
        ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(socket.get(), 16) != 0)
        throw std::system_error(errno, std::generic_category(), path);
    return socket;
}

} // namespace

ControlServer::ControlServer(ControlCommands& commands, std::string path)
    : m_commands(commands)
    , m_path(std::move(path))
    , m_listener(listenAt(m_path))
    , m_acceptor([this] { acceptClients(); })
{
}

ControlServer::~ControlServer()
{
    m_commands.stop();
    ::shutdown(m_listener.get(), SHUT_RDWR);
    m_acceptor.join();
    for (Connection& connection : m_connections) {
        ::shutdown(connection.socket.get(), SHUT_RDWR);
        connection.thread.join();
    }
    ::unlink(m_path.c_str());
}

void ControlServer::acceptClients()
{
    while (FileDescriptor socket = acceptConnection(m_listener)) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        forgetFinished();
        Connection& connection = m_connections.emplace_back();
        connection.socket = std::move(socket);
        connection.thread = std::thread([this, &connection] { serve(connection); });
    }
}

void ControlServer::forgetFinished()
{
    m_connections.remove_if([](Connection& connection) {
        if (connection.finished)
            connection.thread.join();
        return connection.finished;
    });
}

void ControlServer::serve(Connection& connection)
{
    std::string pending;
    std::array<char, 4096> chunk{};
    bool alive = true;
    while (alive) {
        const ssize_t count = ::recv(connection.socket.get(), chunk.data(), chunk.size(), 0);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        pending.append(chunk.data(), static_cast<std::size_t>(count));
        std::size_t end = 0;
        while (alive && (end = pending.find('\n')) != std::string::npos) {
            const std::string line = pending.substr(0, end);
            pending.erase(0, end + 1);
            const std::string reply =
                line.size() > kMaxRequestLine ? "error request too long" : m_commands.execute(line);
            alive = sendAll(connection.socket.get(), reply + '\n');
        }
        if (pending.size() > kMaxRequestLine) {
            sendAll(connection.socket.get(), "error request too long\n");
            alive = false;
        }
    }
    ::shutdown(connection.socket.get(), SHUT_RDWR);
    const std::lock_guard<std::mutex> lock(m_mutex);
    connection.finished = true;
}

} // namespace virtualcamera
