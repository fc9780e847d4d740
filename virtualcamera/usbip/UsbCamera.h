#pragma once

#include "BusContext.h"
#include "Camera.h"
#include "ControlPipe.h"
#include "HidFunction.h"
#include "HostLink.h"
#include "ProcessingUnit.h"
#include "UsbDescriptors.h"
#include "VideoFunction.h"

#include <memory>

namespace virtualcamera {

/// A camera as a USB device that one host at a time can import. Guarded by the mutex of the bus;
/// the transfer handlers lock it themselves.
class UsbCamera : public Camera, private TransferHandler
{
public:
    UsbCamera(BusContext& context, std::string cameraId, CameraSpec cameraSpec,
              HidFunction::DropHandler onDrop);
    /// Must not be called with the bus locked.
    ~UsbCamera() override;

    StreamState stream() const override;
    /// A USB device does not see who opens its nodes.
    HandleState handles() const override { return {}; }
    std::vector<std::pair<std::string, std::string>> places() const override;

    std::string busId() const { return "1-" + std::to_string(spec.identity.port); }
    usbip::DeviceRecord record() const;
    const UsbDescriptors& descriptors() const { return m_descriptors; }

    /// Called when the device has appeared on the bus: makes its descriptors from its spec.
    void appear();
    bool isImported() const { return m_link && !m_hostGone; }
    /// Whether a host can import it now.
    bool isFree() const { return m_present && !isImported(); }
    /// Gives the camera to this host and sends `greeting` first. Throws std::runtime_error when the
    /// camera is not free.
    void import(FileDescriptor socket, const Bytes& greeting);
    /// Stops answering the host's drivers and returns the link, which the caller has to close
    /// without the bus locked; null when no host had the camera.
    std::shared_ptr<HostLink> leave();
    /// Called when the link is closed.
    void vanish();

private:
    ControlAnswer control(const SetupPacket& setup, const Bytes& data) override;
    bool output(std::uint8_t number, const Bytes& data) override;
    bool hasInput(std::uint8_t number) const override;
    void settle() override;
    void hostLeft() override;

    BusContext& m_context;
    UsbDescriptors m_descriptors;
    ProcessingUnit m_unit;
    VideoFunction m_video;
    HidFunction m_hid;
    ControlPipe m_pipe;
    std::shared_ptr<HostLink> m_link;
    bool m_hostGone = false;
    bool m_present = false;
};

} // namespace virtualcamera
