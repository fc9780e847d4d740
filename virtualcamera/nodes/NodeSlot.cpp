#include "NodeSlot.h"

#include "protocol/PrivateIoctl.h"

#include <cerrno>
#include <umockdev.h>
#include <unistd.h>

namespace virtualcamera {

namespace {

constexpr const char* kClientKey = "virtualcamera-client";

/// A handle whose device left before the bus saw the open().
class GoneSession : public Session
{
public:
    SyscallResult opened() override { return -ENODEV; }
    SyscallResult ioctl(std::uint32_t, const IoctlArgument&) override { return -ENODEV; }
    SyscallResult write(const std::uint8_t*, std::size_t) override { return -ENODEV; }
    std::optional<SyscallResult> read() override { return -EIO; }
};

} // namespace

struct NodeSlot::Client
{
    NodeSlot& slot;
    std::shared_ptr<Session> session;
    std::uint64_t inode = 0;
    unsigned connection = 0;
};

NodeSlot::NodeSlot(NodeContext& context, DeviceFileTree& files, std::string name)
    : m_context(context)
    , m_name(std::move(name))
    , m_handler(umockdev_ioctl_base_new())
{
    g_signal_connect(m_handler, "client-connected", G_CALLBACK(onConnected), this);
    g_signal_connect(m_handler, "handle-ioctl", G_CALLBACK(onIoctl), this);
    g_signal_connect(m_handler, "handle-read", G_CALLBACK(onRead), this);
    g_signal_connect(m_handler, "handle-write", G_CALLBACK(onWrite), this);
    files.attach(devnode(), m_handler);
}

NodeSlot::~NodeSlot()
{
    g_signal_handlers_disconnect_by_data(m_handler, this);
    g_object_unref(m_handler);
}

void NodeSlot::install(NodeBackend& backend)
{
    m_backend = &backend;
    ++m_connection;
    m_next = std::make_shared<Fifo>(Fifo::create(path()));
}

void NodeSlot::remove()
{
    ::unlink(path().c_str());
    m_backend = nullptr;
    m_next.reset();
}

void NodeSlot::onConnected(UMockdevIoctlBase*, UMockdevIoctlClient* client, void* self)
{
    auto* slot = static_cast<NodeSlot*>(self);
    const std::lock_guard<std::mutex> lock(slot->m_context.mutex);
    slot->connect(client);
}

void NodeSlot::connect(UMockdevIoctlClient* umockdevClient)
{
    auto* client = new Client{*this, std::make_shared<GoneSession>(), 0, m_connection};
    ++m_handles;
    if (m_backend) {
        client->inode = m_next->inode();
        client->session = m_backend->open(m_next);
        client->session->setNumber(++m_context.lastHandle);
        m_sessions[m_context.lastHandle] = client->session;
        m_next = std::make_shared<Fifo>(Fifo::create(path()));
    }
    g_object_set_data_full(G_OBJECT(umockdevClient), kClientKey, client, destroyClient);
}

void NodeSlot::destroyClient(void* pointer)
{
    auto* client = static_cast<Client*>(pointer);
    NodeSlot& slot = client->slot;
    const std::lock_guard<std::mutex> lock(slot.m_context.mutex);
    const int number = client->session->number();
    delete client;
    --slot.m_handles;
    if (const auto found = slot.m_sessions.find(number);
        found != slot.m_sessions.end() && found->second.expired())
        slot.m_sessions.erase(found);
}

NodeSlot::Client& NodeSlot::clientOf(UMockdevIoctlClient* client)
{
    return *static_cast<Client*>(g_object_get_data(G_OBJECT(client), kClientKey));
}

void NodeSlot::complete(UMockdevIoctlClient* client, SyscallResult result)
{
    umockdev_ioctl_client_complete(client, result < 0 ? -1 : result,
                                   result < 0 ? static_cast<gint>(-result) : 0);
}

int NodeSlot::onIoctl(UMockdevIoctlBase*, UMockdevIoctlClient* client, void* self)
{
    auto* slot = static_cast<NodeSlot*>(self);
    SyscallResult result = 0;
    {
        const std::lock_guard<std::mutex> lock(slot->m_context.mutex);
        result = slot->ioctl(client);
    }
    complete(client, result);
    return TRUE;
}

SyscallResult NodeSlot::ioctl(UMockdevIoctlClient* umockdevClient)
{
    const auto request =
        static_cast<std::uint32_t>(umockdev_ioctl_client_get_request(umockdevClient));
    const IoctlArgument argument(umockdev_ioctl_client_get_arg(umockdevClient), request);
    Client& client = clientOf(umockdevClient);
    switch (request) {
    case VIRTUALCAMERA_IOC_OPENED:
        return confirmOpen(client, argument.number());
    case VIRTUALCAMERA_IOC_SHARE:
        return share(client, static_cast<int>(argument.number()));
    case VIRTUALCAMERA_IOC_HANDLE:
        return client.session->number();
    default:
        return client.session->ioctl(request, argument);
    }
}

SyscallResult NodeSlot::confirmOpen(Client& client, std::uint64_t inode)
{
    // Two processes can open the node before the bus has seen the first of them, and a device
    // can be replugged in between; then the handle has a different queue from this session.
    if (client.inode != inode)
        return -EAGAIN;
    if (!m_backend || client.connection != m_connection)
        return -ENODEV;
    const SyscallResult result = client.session->opened();
    return result < 0 ? result : client.session->number();
}

SyscallResult NodeSlot::share(Client& client, int number)
{
    const auto found = m_sessions.find(number);
    const auto session = found == m_sessions.end() ? nullptr : found->second.lock();
    if (!session)
        return -EBADF;
    m_sessions.erase(client.session->number());
    client.session = session;
    return number;
}

int NodeSlot::onRead(UMockdevIoctlBase*, UMockdevIoctlClient* client, void* self)
{
    auto* slot = static_cast<NodeSlot*>(self);
    std::optional<SyscallResult> result;
    {
        const std::lock_guard<std::mutex> lock(slot->m_context.mutex);
        result = clientOf(client).session->read();
    }
    if (!result)
        return FALSE;
    complete(client, *result);
    return TRUE;
}

int NodeSlot::onWrite(UMockdevIoctlBase*, UMockdevIoctlClient* client, void* self)
{
    auto* slot = static_cast<NodeSlot*>(self);
    const UMockdevIoctlData* data = umockdev_ioctl_client_get_arg(client);
    SyscallResult result = 0;
    {
        const std::lock_guard<std::mutex> lock(slot->m_context.mutex);
        result =
            clientOf(client).session->write(data->data, static_cast<std::size_t>(data->data_len));
    }
    complete(client, result);
    return TRUE;
}

} // namespace virtualcamera
