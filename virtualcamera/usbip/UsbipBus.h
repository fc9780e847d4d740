#pragma once

#include "CameraBus.h"
#include "UsbCamera.h"
#include "VhciPort.h"

#include <chrono>
#include <optional>

namespace virtualcamera {

/// Cameras that hosts import by USB/IP.
class UsbipBus : public CameraBus
{
public:
    /// How long a camera sends nothing before it leaves. A host may crash (Linux 6.1 does) when the
    /// connection ends while its drivers are in the middle of a transfer.
    static constexpr std::chrono::milliseconds kQuietTime{200};

    /// With `kernel`, this machine's kernel imports every camera as soon as it appears.
    explicit UsbipBus(std::optional<VhciPort> kernel = std::nullopt);
    /// Takes all cameras off the bus.
    ~UsbipBus() override;

    struct Listing
    {
        usbip::DeviceRecord record;
        std::vector<InterfaceClass> interfaces;
    };
    /// The cameras a host can import now.
    std::vector<Listing> listing();
    /// Sends the reply to an import and gives the camera to the host behind the socket. Waits up to
    /// a second when another host is just releasing the camera. False when no camera has that name
    /// or another host has it; the socket then still belongs to the caller.
    bool exportTo(FileDescriptor& socket, const std::string& busId);
    /// Gives a camera to the kernel, which expects no reply. Throws std::runtime_error.
    void connect(const std::string& id, FileDescriptor socket);

protected:
    std::unique_ptr<Camera> create(const std::string& id, CameraSpec spec) override;
    void appear(Camera& camera, Lock& lock) override;
    void vanish(Camera& camera, Lock& lock) override;

private:
    UsbCamera* find(const std::string& busId);

    BusContext m_ownContext;
    std::optional<VhciPort> m_kernel;
};

} // namespace virtualcamera
