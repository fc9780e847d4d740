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
    /// How long a camera is quiet before it leaves. A host whose drivers are in the middle of a
    /// transfer when the connection ends may crash; Linux 6.1 does.
    static constexpr std::chrono::milliseconds kQuietTime{200};

    /// With `kernel` every camera is imported by this machine's kernel as soon as it appears.
    explicit UsbipBus(std::optional<VhciPort> kernel = std::nullopt);
    /// The cameras leave.
    ~UsbipBus() override;

    struct Listing
    {
        usbip::DeviceRecord record;
        std::vector<InterfaceClass> interfaces;
    };
    /// The cameras a host can import now.
    std::vector<Listing> listing();
    /// Gives a camera to the host behind the socket, after the reply of an import; waits a moment
    /// for a camera that another host is just letting go. False when there is none of that name or
    /// it is taken; the socket then still belongs to the caller.
    bool exportTo(FileDescriptor& socket, const std::string& busId);
    /// Gives a camera to a host that knows it and expects no reply. Throws std::runtime_error.
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
