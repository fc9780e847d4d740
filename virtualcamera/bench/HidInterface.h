#pragma once

#include "BenchContext.h"
#include "core/Device.h"
#include "NodeSlot.h"

#include <functional>
#include <set>

namespace virtualcamera {

struct CameraIdentity;

/// The camera's vendor HID interface as hidraw shows it.
class HidInterface : public NodeBackend
{
public:
    using DropHandler = std::function<void(const BusDrop&)>;

    HidInterface(BenchContext& context, const CameraIdentity& identity, Device& device,
                 DropHandler onDrop);

    std::unique_ptr<Session> open(std::shared_ptr<Fifo> queue) override;
    /// The device is gone: every handle fails from now on.
    void disconnect();
    /// One answer reaches every open handle, as an input report does on a real bus; false sends
    /// it to the asking handle only.
    void setBroadcast(bool broadcast) { m_broadcast = broadcast; }

    std::size_t openHandles() const { return m_sessions.size(); }
    std::uint64_t totalOpens() const { return m_totalOpens; }

private:
    class HidSession;

    SyscallResult handleReport(HidSession& from, const std::uint8_t* data, std::size_t size);
    void deliver(const std::vector<Bytes>& reports, const HidSession* asker);

    BenchContext& m_context;
    const CameraIdentity& m_identity;
    Device& m_device;
    DropHandler m_onDrop;
    std::set<HidSession*> m_sessions;
    std::uint64_t m_totalOpens = 0;
    /// Counts the times on the bus: a late answer of an earlier time is lost.
    unsigned m_connection = 0;
    bool m_broadcast = true;
};

} // namespace virtualcamera
