#pragma once

#include "BusContext.h"
#include "core/Device.h"
#include "HostLink.h"

#include <deque>
#include <functional>
#include <memory>

namespace virtualcamera {

/// The camera's vendor HID interface: reports in, reports out.
class HidFunction
{
public:
    using DropHandler = std::function<void(const BusDrop&)>;

    HidFunction(BusContext& context, Device& device, DropHandler onDrop);

    void connect(std::shared_ptr<HostLink> link);
    /// Drops the reports that the host has not fetched, and those that are still delayed.
    void disconnect();

    /// Handles a report from the host; false when the device refuses it. With the bus locked.
    bool takeReport(const Bytes& report);
    /// The last report that was sent; a host can read it by a control transfer.
    Bytes lastReport();
    /// Sends queued reports while the host has transfers for them. Must not be called with the bus
    /// locked, because the host may be slow.
    void pump();

private:
    struct Pending
    {
        Bytes report;
        bool fails = false;
    };

    void enqueue(const std::vector<Bytes>& reports);
    void enqueueLate(std::chrono::milliseconds delay, std::vector<Bytes> reports);

    BusContext& m_context;
    Device& m_device;
    DropHandler m_onDrop;

    std::mutex m_mutex;
    std::shared_ptr<HostLink> m_link;
    std::deque<Pending> m_pending;
    Bytes m_lastReport;
    /// Incremented with every plug: a late answer from before a replug is dropped.
    unsigned m_connection = 0;
};

} // namespace virtualcamera
