#include "HidInterface.h"

#include "CameraIdentity.h"
#include "core/ReportDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <linux/hidraw.h>
#include <linux/input.h>

namespace virtualcamera {

namespace {

// The first byte of a hidraw write is the report id.
constexpr std::size_t kSmallestWrite = 2;
constexpr std::size_t kLargestWrite = 16384; // HID_MAX_BUFFER_SIZE

SyscallResult copyText(const IoctlArgument& argument, const std::string& text)
{
    void* memory = argument.memory();
    if (!memory)
        return -EFAULT;
    const std::size_t size = std::min(argument.requestSize(), text.size() + 1);
    std::memcpy(memory, text.c_str(), size);
    return static_cast<SyscallResult>(size);
}

} // namespace

class HidInterface::HidSession : public Session
{
public:
    HidSession(HidInterface& interface, std::shared_ptr<Fifo> queue)
        : m_interface(interface)
        , m_queue(std::move(queue))
    {
    }
    ~HidSession() override
    {
        m_interface.m_sessions.erase(this);
        m_interface.m_context.changed.notify_all();
    }

    SyscallResult opened() override
    {
        if (m_interface.m_device.faults().countOpen())
            return -EACCES;
        m_interface.m_sessions.insert(this);
        ++m_interface.m_totalOpens;
        m_interface.m_context.changed.notify_all();
        return 0;
    }

    SyscallResult write(const std::uint8_t* data, std::size_t size) override
    {
        if (m_gone)
            return -ENODEV;
        if (size < kSmallestWrite || size > kLargestWrite)
            return -EINVAL;
        return m_interface.handleReport(*this, data, size);
    }

    std::optional<SyscallResult> read() override
    {
        // The token that made the node readable is kept, so that the node stays readable.
        if (m_gone)
            return -EIO;
        if (m_failRead) {
            m_failRead = false;
            m_queue->pop();
            return -EIO;
        }
        return std::nullopt;
    }

    SyscallResult ioctl(std::uint32_t request, const IoctlArgument& argument) override;

    void deliver(const Bytes& report) { m_queue->push(report); }
    void failNextRead()
    {
        m_failRead = true;
        m_queue->pushToken();
    }
    void disconnect()
    {
        m_gone = true;
        m_queue->pushToken();
    }

private:
    HidInterface& m_interface;
    std::shared_ptr<Fifo> m_queue;
    bool m_gone = false;
    bool m_failRead = false;
};

SyscallResult HidInterface::HidSession::ioctl(std::uint32_t request, const IoctlArgument& argument)
{
    if (m_gone)
        return -ENODEV;
    const CameraIdentity& identity = m_interface.m_identity;
    const Bytes& descriptor = reportDescriptor();
    if (request == HIDIOCGRDESCSIZE) {
        auto* size = argument.as<int>();
        if (!size)
            return -EFAULT;
        *size = static_cast<int>(descriptor.size());
        return 0;
    }
    if (request == HIDIOCGRDESC) {
        auto* result = argument.as<hidraw_report_descriptor>();
        if (!result)
            return -EFAULT;
        if (result->size > HID_MAX_DESCRIPTOR_SIZE - 1)
            return -EINVAL;
        std::memcpy(result->value, descriptor.data(),
                    std::min<std::size_t>(result->size, descriptor.size()));
        return 0;
    }
    if (request == HIDIOCGRAWINFO) {
        auto* info = argument.as<hidraw_devinfo>();
        if (!info)
            return -EFAULT;
        info->bustype = BUS_USB;
        info->vendor = static_cast<__s16>(identity.vendorId);
        info->product = static_cast<__s16>(identity.productId);
        return 0;
    }
    if (_IOC_TYPE(request) == 'H' && _IOC_DIR(request) == _IOC_READ) {
        switch (_IOC_NR(request)) {
        case _IOC_NR(HIDIOCGRAWNAME(0)):
            return copyText(argument, identity.hidName());
        case _IOC_NR(HIDIOCGRAWPHYS(0)):
            return copyText(argument, identity.hidPhysicalPath());
        case _IOC_NR(HIDIOCGRAWUNIQ(0)):
            return copyText(argument, identity.usbSerial);
        default:
            break;
        }
    }
    if (_IOC_TYPE(request) == 'H' && _IOC_DIR(request) == (_IOC_READ | _IOC_WRITE))
        return -EPIPE; // the device has no feature reports and stalls the request
    return -ENOTTY;
}

HidInterface::HidInterface(NodeContext& context, const CameraIdentity& identity, Device& device,
                           DropHandler onDrop)
    : m_context(context)
    , m_identity(identity)
    , m_device(device)
    , m_onDrop(std::move(onDrop))
{
}

std::unique_ptr<Session> HidInterface::open(std::shared_ptr<Fifo> queue)
{
    return std::make_unique<HidSession>(*this, std::move(queue));
}

void HidInterface::disconnect()
{
    ++m_connection;
    for (HidSession* session : m_sessions)
        session->disconnect();
    m_sessions.clear();
}

SyscallResult HidInterface::handleReport(HidSession& from, const std::uint8_t* data,
                                         std::size_t size)
{
    const Reaction reaction = m_device.handleReport(data, size);
    m_context.changed.notify_all();
    if (reaction.drop)
        m_onDrop(*reaction.drop);
    if (reaction.writeFails)
        return -EIO;
    if (reaction.nextReadFails)
        from.failNextRead();
    if (reaction.delay.count() == 0) {
        deliver(reaction.reports, &from);
    } else {
        m_context.scheduler.after(reaction.delay, [this, reports = reaction.reports, asker = &from,
                                                   connection = m_connection] {
            const std::lock_guard<std::mutex> lock(m_context.mutex);
            if (connection == m_connection)
                deliver(reports, asker);
        });
    }
    return static_cast<SyscallResult>(size);
}

void HidInterface::deliver(const std::vector<Bytes>& reports, const HidSession* asker)
{
    for (HidSession* session : m_sessions) {
        if (!m_broadcast && session != asker)
            continue;
        for (const Bytes& report : reports)
            session->deliver(report);
    }
}

} // namespace virtualcamera
