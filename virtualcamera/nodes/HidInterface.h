#pragma once

#include "core/Device.h"
#include "NodeContext.h"
#include "NodeSlot.h"

#include <functional>
#include <set>

namespace virtualcamera {

struct CameraIdentity;

/// The camera's vendor HID interface, as hidraw presents it.
class HidInterface : public NodeBackend
{
public:
    using DropHandler = std::function<void(const BusDrop&)>;

    HidInterface(NodeContext& context, const CameraIdentity& identity, Device& device,
                 DropHandler onDrop);

    std::unique_ptr<Session> open(std::shared_ptr<Fifo> queue) override;
    /// Called when the device is gone: every handle fails from now on.
    void disconnect();
    /// True: an answer reaches every open handle, as an input report does on a real bus. False: it
    /// reaches only the handle that asked.
    void setBroadcast(bool broadcast) { m_broadcast = broadcast; }

    std::size_t openHandles() const { return m_sessions.size(); }
    std::uint64_t totalOpens() const { return m_totalOpens; }

private:
    class HidSession;

    SyscallResult handleReport(HidSession& from, const std::uint8_t* data, std::size_t size);
    void deliver(const std::vector<Bytes>& reports, const HidSession* asker);

    NodeContext& m_context;
    const CameraIdentity& m_identity;
    Device& m_device;
    DropHandler m_onDrop;
    std::set<HidSession*> m_sessions;
    std::uint64_t m_totalOpens = 0;
    /// Incremented with every plug: a late answer from before a replug is dropped.
    unsigned m_connection = 0;
    bool m_broadcast = true;
};

} // namespace virtualcamera
