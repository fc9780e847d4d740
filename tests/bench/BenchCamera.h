#pragma once

#include "client/VirtualCameraClient.h"

#include <QString>
#include <string>

/// A virtual camera for the time of a measurement.
class BenchCamera
{
public:
    using Client = virtualcamera::VirtualCameraClient;

    explicit BenchCamera(std::string id, const Client::Options& options = {})
        : m_id(std::move(id))
    {
        m_client.plug(m_id, options);
    }
    ~BenchCamera() { m_client.unplug(m_id); }
    BenchCamera(const BenchCamera&) = delete;
    BenchCamera& operator=(const BenchCamera&) = delete;

    [[nodiscard]] QString hidPath() { return QString::fromStdString(m_client.nodes(m_id).hid); }
    [[nodiscard]] QString videoNode() { return QString::fromStdString(m_client.nodes(m_id).video); }
    [[nodiscard]] bool waitFor(const std::string& condition)
    {
        return m_client.wait(m_id, condition, std::chrono::seconds(30));
    }
    [[nodiscard]] std::uint64_t frames() { return m_client.stats(m_id).frames; }

private:
    std::string m_id;
    Client m_client;
};
