#include "Bench.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace virtualcamera {

Bench::Bench()
    : m_uevents(m_testbed.root(), m_scheduler)
    , m_context{{}, {}, m_scheduler, m_testbed.root(), 0}
{
    std::filesystem::create_directory(root() + "/frames");
    m_testbed.addDevice(rootHub());
}

Bench::~Bench()
{
    m_scheduler.stop();
}

void Bench::plug(const std::string& id, const SpecEditor& edit)
{
    const std::lock_guard<std::mutex> bus(m_busMutex);
    Lock lock(m_context.mutex);
    const auto known = m_cameras.find(id);
    if (known == m_cameras.end()) {
        CameraSpec spec = defaultSpec();
        edit(spec);
        lock.unlock();
        auto created = std::make_unique<Camera>(
            m_context, id, std::move(spec),
            [this, id](const BusDrop& drop) { scheduleDrop(camera(id), drop); });
        lock.lock();
        appear(*m_cameras.emplace(id, std::move(created)).first->second, lock);
        return;
    }
    Camera& camera = *known->second;
    if (camera.onBus)
        throw std::runtime_error("already plugged: " + id);
    CameraSpec spec = camera.spec;
    spec.device = camera.device.config();
    edit(spec);
    camera.update(spec);
    appear(camera, lock);
}

void Bench::unplug(const std::string& id)
{
    const std::lock_guard<std::mutex> bus(m_busMutex);
    Lock lock(m_context.mutex);
    Camera& known = camera(id);
    if (!known.onBus)
        throw std::runtime_error("not plugged: " + id);
    vanish(known, lock);
}

Camera& Bench::camera(const std::string& id)
{
    const auto found = m_cameras.find(id);
    if (found == m_cameras.end())
        throw std::runtime_error("unknown camera: " + id);
    return *found->second;
}

std::vector<Camera*> Bench::cameras()
{
    std::vector<Camera*> list;
    for (const auto& [id, camera] : m_cameras)
        list.push_back(camera.get());
    return list;
}

bool Bench::isIdle()
{
    const Lock lock(m_context.mutex);
    return std::all_of(m_slots.begin(), m_slots.end(),
                       [](const auto& each) { return each.second->hasNoHandles(); });
}

CameraSpec Bench::defaultSpec() const
{
    CameraSpec spec;
    spec.identity.port = freePort();
    const std::string serial = "SVAA00950055" + std::to_string(m_cameras.size() + 1);
    spec.device.serial.assign(serial.begin(), serial.end());
    spec.identity.usbSerial = serial;
    return spec;
}

int Bench::freePort() const
{
    // A camera keeps its socket while it is unplugged.
    int port = 1;
    const auto isTaken = [this, &port] {
        return std::any_of(m_cameras.begin(), m_cameras.end(), [port](const auto& each) {
            return each.second->spec.identity.port == port;
        });
    };
    while (isTaken())
        ++port;
    return port;
}

int Bench::claimNode(const std::string& prefix, NodeBackend& backend)
{
    for (int number = 0;; ++number) {
        const std::string name = prefix + std::to_string(number);
        std::unique_ptr<NodeSlot>& known = m_slots[name];
        if (!known)
            known = std::make_unique<NodeSlot>(m_context, m_testbed, name);
        if (known->isFree()) {
            known->install(backend);
            return number;
        }
    }
}

void Bench::appear(Camera& camera, Lock& lock)
{
    if (camera.wasOnBus)
        camera.device.powerCycle();
    camera.wasOnBus = true;
    ++camera.connection;
    camera.nodes = {};
    if (camera.spec.hasVideo) {
        camera.nodes.video = claimNode("video", camera.video);
        camera.nodes.metadata = claimNode("video", camera.metadata);
    }
    if (camera.spec.hasHid)
        camera.nodes.hid = claimNode("hidraw", camera.hid);
    ++m_busNumbers.deviceNumber;
    ++m_busNumbers.hidInstance;
    camera.devices = cameraDevices(camera.spec.identity, camera.nodes, m_busNumbers);
    const std::vector<SysfsDevice> devices = camera.devices;

    lock.unlock();
    for (const SysfsDevice& device : devices) {
        m_testbed.addDevice(device);
        m_uevents.send("add", device);
    }
    lock.lock();
    camera.onBus = true;
    m_context.changed.notify_all();
}

void Bench::vanish(Camera& camera, Lock& lock)
{
    releaseNodes(camera);
    camera.hid.disconnect();
    camera.video.disconnect();
    camera.metadata.disconnect();
    const std::vector<SysfsDevice> devices = removalOrder(camera.devices);
    camera.devices.clear();
    camera.nodes = {};

    lock.unlock();
    for (const SysfsDevice& device : devices) {
        m_testbed.removeDevice(device);
        m_uevents.send("remove", device);
    }
    lock.lock();
    camera.onBus = false;
    m_context.changed.notify_all();
}

void Bench::releaseNodes(Camera& camera)
{
    if (camera.nodes.video) {
        slot("video" + std::to_string(*camera.nodes.video)).remove();
        slot("video" + std::to_string(*camera.nodes.metadata)).remove();
    }
    if (camera.nodes.hid)
        slot("hidraw" + std::to_string(*camera.nodes.hid)).remove();
}

void Bench::scheduleDrop(Camera& camera, const BusDrop& drop)
{
    m_scheduler.after(drop.after, [this, id = camera.id, connection = camera.connection, drop] {
        dropNow(id, connection, drop);
    });
}

void Bench::dropNow(const std::string& id, unsigned connection, const BusDrop& drop)
{
    const std::lock_guard<std::mutex> bus(m_busMutex);
    Lock lock(m_context.mutex);
    Camera& dropping = camera(id);
    if (!dropping.onBus || dropping.connection != connection)
        return;
    vanish(dropping, lock);
    if (drop.returnsAfter)
        m_scheduler.after(*drop.returnsAfter, [this, id, connection] { comeBack(id, connection); });
}

void Bench::comeBack(const std::string& id, unsigned connection)
{
    const std::lock_guard<std::mutex> bus(m_busMutex);
    Lock lock(m_context.mutex);
    Camera& returning = camera(id);
    if (!returning.onBus && returning.connection == connection)
        appear(returning, lock);
}

} // namespace virtualcamera
