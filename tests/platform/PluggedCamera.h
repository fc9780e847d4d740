#pragma once

#include "client/VirtualCameraClient.h"

#include <initializer_list>
#include <map>
#include <QString>
#include <string>
#include <vector>

/// A virtual camera that is plugged in for the duration of a test. Every object is a new camera
/// with its own registers, log and serial number.
class PluggedCamera
{
public:
    using Client = virtualcamera::VirtualCameraClient;
    using Option = Client::Options::value_type;

    PluggedCamera(std::initializer_list<Option> options = {});
    ~PluggedCamera();
    PluggedCamera(const PluggedCamera&) = delete;
    PluggedCamera& operator=(const PluggedCamera&) = delete;

    /// Its name on the control socket.
    [[nodiscard]] const std::string& id() const { return m_id; }

    void plug() { m_client.plug(m_id); }
    void unplug() { m_client.unplug(m_id); }

    /// Sets a fault from now on, and clears those that were set before.
    void fault(const std::string& text);
    /// Sets an additional fault.
    void addFault(const std::string& text) { m_client.fault(m_id, text); }
    void clearFaults() { m_client.clear(m_id); }

    [[nodiscard]] QString hidPath() { return nodePath(m_client.nodes(m_id).hid); }
    [[nodiscard]] QString videoNode() { return nodePath(m_client.nodes(m_id).video); }
    [[nodiscard]] QString metadataNode() { return nodePath(m_client.nodes(m_id).metadata); }
    /// The path of the camera's video device in the program's list.
    [[nodiscard]] QString videoPath();

    [[nodiscard]] int value(const std::string& name);
    void setValue(const std::string& name, int value) { m_client.set(m_id, name, value); }
    void setText(const std::string& name, const std::string& text)
    {
        m_client.set(m_id, name, text);
    }

    /// The last request that reached the camera.
    [[nodiscard]] Client::LogEntry lastRequest();
    [[nodiscard]] std::size_t requestCount() { return m_client.log(m_id).size(); }
    /// Every request since forgetRequests(), in order.
    [[nodiscard]] std::vector<Client::LogEntry> requests() { return m_client.log(m_id); }
    void forgetRequests() { m_client.clearLog(m_id); }
    [[nodiscard]] std::multimap<std::string, std::string> registers()
    {
        return m_client.registers(m_id);
    }
    [[nodiscard]] Client::Stats stats() { return m_client.stats(m_id); }
    [[nodiscard]] Client::Handles handles() { return m_client.handles(m_id); }
    [[nodiscard]] Client::Firmware firmware() { return m_client.firmware(m_id); }

    /// Waits up to five seconds for a condition such as "frames>=10".
    [[nodiscard]] bool waitFor(const std::string& condition);
    /// Whether all handles of the camera's nodes are closed; waits, because a close arrives late.
    [[nodiscard]] bool isReleased() { return waitFor("hid<=0") && waitFor("video<=0"); }

private:
    static QString nodePath(const std::string& path) { return QString::fromStdString(path); }

    std::string m_id;
    Client m_client;
};
