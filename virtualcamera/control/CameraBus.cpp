#include "CameraBus.h"

#include <algorithm>
#include <iostream>
#include <stdexcept>

namespace virtualcamera {

void CameraBus::plug(const std::string& id, const SpecEditor& edit)
{
    const std::lock_guard<std::mutex> bus(m_busMutex);
    Lock lock(m_context.mutex);
    const auto known = m_cameras.find(id);
    if (known == m_cameras.end()) {
        CameraSpec spec = defaultSpec();
        edit(spec);
        lock.unlock();
        std::unique_ptr<Camera> created = create(id, std::move(spec));
        lock.lock();
        arrive(*m_cameras.emplace(id, std::move(created)).first->second, lock);
        return;
    }
    Camera& camera = *known->second;
    if (camera.onBus)
        throw std::runtime_error("already plugged: " + id);
    CameraSpec spec = camera.spec;
    spec.device = camera.device.config();
    edit(spec);
    camera.update(spec);
    arrive(camera, lock);
}

void CameraBus::unplug(const std::string& id)
{
    const std::lock_guard<std::mutex> bus(m_busMutex);
    Lock lock(m_context.mutex);
    Camera& known = camera(id);
    if (!known.onBus)
        throw std::runtime_error("not plugged: " + id);
    leave(known, lock);
}

Camera& CameraBus::camera(const std::string& id)
{
    const auto found = m_cameras.find(id);
    if (found == m_cameras.end())
        throw std::runtime_error("unknown camera: " + id);
    return *found->second;
}

std::vector<Camera*> CameraBus::cameras()
{
    std::vector<Camera*> list;
    for (const auto& [id, camera] : m_cameras)
        list.push_back(camera.get());
    return list;
}

void CameraBus::forgetCameras()
{
    m_cameras.clear();
}

CameraSpec CameraBus::defaultSpec() const
{
    CameraSpec spec;
    spec.identity.port = freePort();
    const std::string serial = "SVAA00950055" + std::to_string(m_cameras.size() + 1);
    spec.device.serial.assign(serial.begin(), serial.end());
    spec.identity.usbSerial = serial;
    return spec;
}

int CameraBus::freePort() const
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

void CameraBus::arrive(Camera& camera, Lock& lock)
{
    if (camera.wasOnBus)
        camera.device.powerCycle();
    camera.wasOnBus = true;
    ++camera.connection;
    appear(camera, lock);
    camera.onBus = true;
    m_context.changed.notify_all();
}

void CameraBus::leave(Camera& camera, Lock& lock)
{
    vanish(camera, lock);
    camera.onBus = false;
    m_context.changed.notify_all();
}

void CameraBus::scheduleDrop(const std::string& id, const BusDrop& drop)
{
    m_context.scheduler.after(drop.after, [this, id, connection = camera(id).connection, drop] {
        dropNow(id, connection, drop);
    });
}

void CameraBus::dropNow(const std::string& id, unsigned connection, const BusDrop& drop)
{
    const std::lock_guard<std::mutex> bus(m_busMutex);
    Lock lock(m_context.mutex);
    Camera& dropping = camera(id);
    if (!dropping.onBus || dropping.connection != connection)
        return;
    leave(dropping, lock);
    if (drop.returnsAfter)
        m_context.scheduler.after(*drop.returnsAfter,
                                  [this, id, connection] { comeBack(id, connection); });
}

void CameraBus::comeBack(const std::string& id, unsigned connection)
{
    const std::lock_guard<std::mutex> bus(m_busMutex);
    Lock lock(m_context.mutex);
    Camera& returning = camera(id);
    if (returning.onBus || returning.connection != connection)
        return;
    try {
        arrive(returning, lock);
    } catch (const std::exception& error) {
        std::cerr << "virtualcamera: " << id << " stays away: " << error.what() << std::endl;
    }
}

} // namespace virtualcamera
