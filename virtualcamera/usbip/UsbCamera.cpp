#include "UsbCamera.h"

#include "scene/ScenePainter.h"

#include <stdexcept>
#include <sys/socket.h>

namespace virtualcamera {

UsbCamera::UsbCamera(BusContext& context, std::string cameraId, CameraSpec cameraSpec,
                     HidFunction::DropHandler onDrop)
    : Camera(std::move(cameraId), std::move(cameraSpec))
    , m_context(context)
    , m_descriptors(spec)
    , m_unit(device)
    , m_video(context, spec.identity, device, spec.modes, std::make_unique<ScenePainter>())
    , m_hid(context, device, std::move(onDrop))
    , m_pipe(m_unit, m_video, m_hid)
{
}

UsbCamera::~UsbCamera()
{
    if (m_link)
        m_link->close();
}

void UsbCamera::appear()
{
    m_descriptors = UsbDescriptors(spec);
    m_unit.setPresent(spec.hasAmplifier);
    m_video.setFormats(spec.modes);
    m_pipe.reset();
    m_present = true;
}

StreamState UsbCamera::stream() const
{
    const StreamMode& mode = m_video.mode();
    return {m_video.isStreaming(), mode.width,          mode.height,
            mode.fourcc,           m_video.frameRate(), m_video.framesDelivered()};
}

std::vector<std::pair<std::string, std::string>> UsbCamera::places() const
{
    if (!onBus)
        return {};
    return {{"usb", busId()}, {"imported", isImported() ? "1" : "0"}};
}

usbip::DeviceRecord UsbCamera::record() const
{
    usbip::DeviceRecord record;
    record.path = "/sys/devices/virtual/virtualcamera/usb1/" + busId();
    record.busId = busId();
    record.deviceNumber = static_cast<std::uint32_t>(spec.identity.port) + 1;
    record.vendorId = spec.identity.vendorId;
    record.productId = spec.identity.productId;
    record.version = UsbDescriptors::kDeviceVersion;
    record.deviceClass = UsbDescriptors::kDeviceClass.code;
    record.deviceSubclass = UsbDescriptors::kDeviceClass.subclass;
    record.deviceProtocol = UsbDescriptors::kDeviceClass.protocol;
    record.interfaceCount = static_cast<std::uint8_t>(m_descriptors.interfaces().size());
    return record;
}

void UsbCamera::import(FileDescriptor socket, const Bytes& greeting)
{
    if (!isFree())
        throw std::runtime_error("not free: " + id);
    if (!greeting.empty() && ::send(socket.get(), greeting.data(), greeting.size(), MSG_NOSIGNAL) !=
                                 static_cast<ssize_t>(greeting.size()))
        throw std::runtime_error("the host has disconnected");
    m_hostGone = false;
    TransferHandler& handler = *this;
    m_link = std::make_shared<HostLink>(std::move(socket), handler);
    m_pipe.reset();
    m_video.connect(m_link);
    m_hid.connect(m_link);
    m_link->start();
    m_context.changed.notify_all();
}

std::shared_ptr<HostLink> UsbCamera::leave()
{
    m_present = false;
    if (m_link)
        m_link->quiet();
    m_video.disconnect();
    m_hid.disconnect();
    return m_link;
}

void UsbCamera::vanish()
{
    m_link.reset();
}

ControlAnswer UsbCamera::control(const SetupPacket& setup, const Bytes& data)
{
    const std::lock_guard<std::mutex> lock(m_context.mutex);
    return m_pipe.handle(m_descriptors, setup, data);
}

bool UsbCamera::output(std::uint8_t number, const Bytes& data)
{
    if (number != endpoint::kHidOut)
        return false;
    const std::lock_guard<std::mutex> lock(m_context.mutex);
    return m_descriptors.hidInterface() && m_hid.takeReport(data);
}

bool UsbCamera::hasInput(std::uint8_t number) const
{
    const std::lock_guard<std::mutex> lock(m_context.mutex);
    return (number == endpoint::kVideoIn && m_descriptors.videoStreaming()) ||
           (number == endpoint::kHidIn && m_descriptors.hidInterface());
}

void UsbCamera::settle()
{
    m_hid.pump();
}

void UsbCamera::hostLeft()
{
    const std::lock_guard<std::mutex> lock(m_context.mutex);
    m_video.disconnect();
    m_hid.disconnect();
    m_hostGone = true;
    m_context.changed.notify_all();
}

} // namespace virtualcamera
