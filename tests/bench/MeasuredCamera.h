#pragma once

#include "client/VirtualCameraClient.h"

#include <QString>
#include <string>

/// A virtual camera that is plugged in for the duration of a measurement.
class MeasuredCamera
{
public:
    using Client = virtualcamera::VirtualCameraClient;

    explicit MeasuredCamera(std::string id, const Client::Options& options = {})
        : m_id(std::move(id))
    {
        m_client.plug(m_id, options);
    }
    ~MeasuredCamera() { m_client.unplug(m_id); }
    MeasuredCamera(const MeasuredCamera&) = delete;
    MeasuredCamera& operator=(const MeasuredCamera&) = delete;

    [[nodiscard]] QString hidPath() { return QString::fromStdString(m_client.nodes(m_id).hid); }
    [[nodiscard]] QString videoNode() { return QString::fromStdString(m_client.nodes(m_id).video); }
    [[nodiscard]] bool waitFor(const std::string& condition)
    {
        return m_client.wait(m_id, condition, std::chrono::seconds(30));
    }
    void fault(const std::string& text) { m_client.fault(m_id, text); }
    [[nodiscard]] std::uint64_t frames() { return m_client.stats(m_id).frames; }

private:
    std::string m_id;
    Client m_client;
};
