#include "NodeBus.h"

#include <algorithm>
#include <filesystem>

namespace virtualcamera {

NodeBus::NodeBus()
    : CameraBus(m_context)
    , m_uevents(m_files.root(), m_context.scheduler)
{
    m_context.root = root();
    std::filesystem::create_directory(root() + "/frames");
    m_files.addDevice(rootHub());
}

NodeBus::~NodeBus()
{
    m_context.scheduler.stop();
    forgetCameras();
}

bool NodeBus::isIdle()
{
    const Lock lock(m_context.mutex);
    return std::all_of(m_slots.begin(), m_slots.end(),
                       [](const auto& each) { return each.second->hasNoHandles(); });
}

std::unique_ptr<Camera> NodeBus::create(const std::string& id, CameraSpec spec)
{
    return std::make_unique<NodeCamera>(
        m_context, id, std::move(spec),
        [this, id](const BusDrop& drop) { scheduleDrop(id, drop); });
}

int NodeBus::claimNode(const std::string& prefix, NodeBackend& backend)
{
    for (int number = 0;; ++number) {
        const std::string name = prefix + std::to_string(number);
        std::unique_ptr<NodeSlot>& known = m_slots[name];
        if (!known)
            known = std::make_unique<NodeSlot>(m_context, m_files, name);
        if (known->isFree()) {
            known->install(backend);
            return number;
        }
    }
}

void NodeBus::appear(Camera& camera, Lock& lock)
{
    auto& arriving = static_cast<NodeCamera&>(camera);
    arriving.nodes = {};
    if (arriving.spec.hasVideo) {
        arriving.nodes.video = claimNode("video", arriving.video);
        arriving.nodes.metadata = claimNode("video", arriving.metadata);
    }
    if (arriving.spec.hasHid)
        arriving.nodes.hid = claimNode("hidraw", arriving.hid);
    ++m_busNumbers.deviceNumber;
    ++m_busNumbers.hidInstance;
    arriving.devices = cameraDevices(arriving.spec.identity, arriving.nodes, m_busNumbers);
    const std::vector<SysfsDevice> devices = arriving.devices;

    lock.unlock();
    for (const SysfsDevice& device : devices) {
        m_files.addDevice(device);
        m_uevents.send("add", device);
    }
    lock.lock();
}

void NodeBus::vanish(Camera& camera, Lock& lock)
{
    auto& leaving = static_cast<NodeCamera&>(camera);
    releaseNodes(leaving);
    leaving.hid.disconnect();
    leaving.video.disconnect();
    leaving.metadata.disconnect();
    const std::vector<SysfsDevice> devices = removalOrder(leaving.devices);
    leaving.devices.clear();
    leaving.nodes = {};

    lock.unlock();
    for (const SysfsDevice& device : devices) {
        m_files.removeDevice(device);
        m_uevents.send("remove", device);
    }
    lock.lock();
}

void NodeBus::releaseNodes(const NodeCamera& camera)
{
    if (camera.nodes.video) {
        slot("video" + std::to_string(*camera.nodes.video)).remove();
        slot("video" + std::to_string(*camera.nodes.metadata)).remove();
    }
    if (camera.nodes.hid)
        slot("hidraw" + std::to_string(*camera.nodes.hid)).remove();
}

} // namespace virtualcamera
