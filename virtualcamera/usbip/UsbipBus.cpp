#include "UsbipBus.h"

#include <array>
#include <cerrno>
#include <stdexcept>
#include <sys/socket.h>
#include <system_error>
#include <thread>

namespace virtualcamera {

namespace {

constexpr std::chrono::milliseconds kImportTimeoutMs{1000};

} // namespace

UsbipBus::UsbipBus(std::optional<VhciPort> kernel)
    : CameraBus(m_ownContext)
    , m_kernel(std::move(kernel))
{
}

UsbipBus::~UsbipBus()
{
    m_ownContext.scheduler.stop();
    std::vector<std::shared_ptr<HostLink>> links;
    {
        const Lock lock(m_ownContext.mutex);
        for (Camera* each : cameras())
            if (std::shared_ptr<HostLink> link = static_cast<UsbCamera*>(each)->leave())
                links.push_back(std::move(link));
    }
    if (!links.empty())
        std::this_thread::sleep_for(kQuietTime);
    for (const auto& link : links)
        link->close();
    forgetCameras();
}

std::vector<UsbipBus::Listing> UsbipBus::listing()
{
    const Lock lock(m_ownContext.mutex);
    std::vector<Listing> list;
    for (Camera* each : cameras()) {
        const auto& camera = static_cast<const UsbCamera&>(*each);
        if (camera.isFree())
            list.push_back({camera.record(), camera.descriptors().interfaces()});
    }
    return list;
}

UsbCamera* UsbipBus::find(const std::string& busId)
{
    for (Camera* each : cameras()) {
        auto* camera = static_cast<UsbCamera*>(each);
        if (camera->busId() == busId)
            return camera;
    }
    return nullptr;
}

bool UsbipBus::exportTo(FileDescriptor& socket, const std::string& busId)
{
    Lock lock(m_ownContext.mutex);
    UsbCamera* camera = find(busId);
    const auto isFree = [camera] { return camera->isFree(); };
    if (!camera || !m_ownContext.changed.wait_for(lock, kImportTimeoutMs, isFree))
        return false;
    usbip::Operation reply;
    reply.code = usbip::kReplyImport;
    Bytes greeting = reply.encode();
    const Bytes record = camera->record().encode();
    greeting.insert(greeting.end(), record.begin(), record.end());
    camera->import(std::move(socket), greeting);
    return true;
}

void UsbipBus::connect(const std::string& id, FileDescriptor socket)
{
    const Lock lock(m_ownContext.mutex);
    static_cast<UsbCamera&>(camera(id)).import(std::move(socket), {});
}

std::unique_ptr<Camera> UsbipBus::create(const std::string& id, CameraSpec spec)
{
    return std::make_unique<UsbCamera>(m_ownContext, id, std::move(spec),
                                       [this, id](const BusDrop& drop) { scheduleDrop(id, drop); });
}

void UsbipBus::appear(Camera& camera, Lock& lock)
{
    auto& arriving = static_cast<UsbCamera&>(camera);
    arriving.appear();
    if (!m_kernel)
        return;
    std::array<int, 2> sockets{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets.data()) != 0)
        throw std::system_error(errno, std::generic_category(), "socketpair");
    const FileDescriptor kernelEnd(sockets[1]);
    arriving.import(FileDescriptor(sockets[0]), {});
    const usbip::DeviceRecord record = arriving.record();

    lock.unlock();
    try {
        m_kernel->attach(kernelEnd, record);
    } catch (...) {
        lock.lock();
        vanish(arriving, lock);
        throw;
    }
    lock.lock();
}

void UsbipBus::vanish(Camera& camera, Lock& lock)
{
    auto& leaving = static_cast<UsbCamera&>(camera);
    std::shared_ptr<HostLink> link = leaving.leave();
    lock.unlock();
    if (link) {
        std::this_thread::sleep_for(kQuietTime);
        link->close();
    }
    lock.lock();
    leaving.vanish();
}

} // namespace virtualcamera
