#pragma once

#include "DeviceFileTree.h"
#include "Fifo.h"
#include "NodeContext.h"
#include "Session.h"
#include "UmockdevTypes.h"

#include <map>
#include <memory>
#include <string>

namespace virtualcamera {

/// The device behind a device node, while it is plugged in.
class NodeBackend
{
public:
    virtual ~NodeBackend() = default;
    virtual std::unique_ptr<Session> open(std::shared_ptr<Fifo> queue) = 0;
};

/// A device node name such as "hidraw0". It outlives the devices that use the name: removing its
/// socket at an unplug would end a program that has just opened the node.
class NodeSlot
{
public:
    /// The bus is locked around every call into a session or the backend.
    NodeSlot(NodeContext& context, DeviceFileTree& files, std::string name);
    ~NodeSlot();
    NodeSlot(const NodeSlot&) = delete;
    NodeSlot& operator=(const NodeSlot&) = delete;

    std::string devnode() const { return "/dev/" + m_name; }
    void install(NodeBackend& backend);
    void remove();
    /// Whether a new device can get this number. The kernel reuses a number only when the last
    /// handle of the old device is closed.
    bool isFree() const { return !m_backend && hasNoHandles(); }
    bool hasNoHandles() const { return m_handles == 0; }

private:
    struct Client;

    static void onConnected(UMockdevIoctlBase* base, UMockdevIoctlClient* client, void* self);
    static int onIoctl(UMockdevIoctlBase* base, UMockdevIoctlClient* client, void* self);
    static int onRead(UMockdevIoctlBase* base, UMockdevIoctlClient* client, void* self);
    static int onWrite(UMockdevIoctlBase* base, UMockdevIoctlClient* client, void* self);
    static void destroyClient(void* pointer);
    static Client& clientOf(UMockdevIoctlClient* client);
    static void complete(UMockdevIoctlClient* client, SyscallResult result);

    void connect(UMockdevIoctlClient* client);
    SyscallResult ioctl(UMockdevIoctlClient* client);
    SyscallResult confirmOpen(Client& client, std::uint64_t inode);
    SyscallResult share(Client& client, int number);

    std::string path() const { return m_context.root + devnode(); }

    NodeContext& m_context;
    const std::string m_name;
    UMockdevIoctlBase* m_handler;
    NodeBackend* m_backend = nullptr;
    /// The queue for the next open(); it is at the node's path.
    std::shared_ptr<Fifo> m_next;
    std::map<int, std::weak_ptr<Session>> m_sessions;
    /// Incremented with every device that gets this name.
    unsigned m_connection = 0;
    int m_handles = 0;
};

} // namespace virtualcamera
