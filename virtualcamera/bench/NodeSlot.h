#pragma once

#include "BenchContext.h"
#include "Fifo.h"
#include "Session.h"
#include "Testbed.h"

#include <map>
#include <memory>
#include <string>

typedef struct _UMockdevIoctlClient UMockdevIoctlClient;

namespace virtualcamera {

/// What answers behind a device node while its device is there.
class NodeBackend
{
public:
    virtual ~NodeBackend() = default;
    virtual std::unique_ptr<Session> open(std::shared_ptr<Fifo> queue) = 0;
};

/// A device node name such as "hidraw0". It outlives the devices that come and go under it:
/// taking its socket away at an unplug would end a program that has just opened the node.
class NodeSlot
{
public:
    /// The bench is locked around every call into a session or the backend.
    NodeSlot(BenchContext& context, Testbed& testbed, std::string name);
    ~NodeSlot();
    NodeSlot(const NodeSlot&) = delete;
    NodeSlot& operator=(const NodeSlot&) = delete;

    std::string devnode() const { return "/dev/" + m_name; }
    void install(NodeBackend& backend);
    void remove();
    /// The kernel gives a number to the next device only when the last handle of the old one is
    /// closed.
    bool isFree() const { return !m_backend && hasNoHandles(); }
    bool hasNoHandles() const { return m_handles == 0; }

private:
    struct Client;

    static void onConnected(UMockdevIoctlBase* base, UMockdevIoctlClient* client, void* self);
    static int onIoctl(UMockdevIoctlBase* base, UMockdevIoctlClient* client, void* self);
    static int onRead(UMockdevIoctlBase* base, UMockdevIoctlClient* client, void* self);
    static int onWrite(UMockdevIoctlBase* base, UMockdevIoctlClient* client, void* self);
    static void destroyClient(void* client);
    static Client& clientOf(UMockdevIoctlClient* client);
    static void complete(UMockdevIoctlClient* client, SyscallResult result);

    void connect(UMockdevIoctlClient* client);
    SyscallResult ioctl(UMockdevIoctlClient* client);
    SyscallResult confirmOpen(Client& client, std::uint64_t inode);
    SyscallResult share(Client& client, int number);

    std::string path() const { return m_context.root + devnode(); }

    BenchContext& m_context;
    const std::string m_name;
    UMockdevIoctlBase* m_handler;
    NodeBackend* m_backend = nullptr;
    /// Waits at the path for the next open().
    std::shared_ptr<Fifo> m_next;
    std::map<int, std::weak_ptr<Session>> m_sessions;
    /// Counts the devices that have been under this name.
    unsigned m_connection = 0;
    int m_handles = 0;
};

} // namespace virtualcamera
