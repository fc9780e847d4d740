#include "PluggedCamera.h"

#include "UVCCamera.h"

#include <chrono>
#include <exception>
#include <stdexcept>
#include <unistd.h>

namespace {

constexpr std::chrono::milliseconds kTimeoutMs{5000};

/// Another process on the same bus may make cameras too.
std::string newId()
{
    static int count = 0;
    return "camera" + std::to_string(::getpid()) + '-' + std::to_string(++count);
}

} // namespace

PluggedCamera::PluggedCamera(std::initializer_list<Option> options)
    : m_id(newId())
{
    m_client.plug(m_id, options);
}

PluggedCamera::~PluggedCamera()
{
    try {
        m_client.clear(m_id);
        if (m_client.stats(m_id).onBus)
            m_client.unplug(m_id);
    } catch (const std::exception&) {
        // The virtual camera has ended, and its cameras with it.
    }
}

void PluggedCamera::fault(const std::string& text)
{
    m_client.clear(m_id);
    m_client.fault(m_id, text);
}

QString PluggedCamera::videoPath()
{
    QList<UVCDeviceInfo> cameras;
    UVCCamera::enumerateCameras(cameras);
    const QString node = videoNode();
    for (const UVCDeviceInfo& camera : cameras) {
        if (camera.displayName == node)
            return camera.devicePath;
    }
    return {};
}

int PluggedCamera::value(const std::string& name)
{
    return std::stoi(m_client.registerValue(m_id, name));
}

PluggedCamera::Client::LogEntry PluggedCamera::lastRequest()
{
    const auto entries = m_client.log(m_id);
    if (entries.empty())
        throw std::runtime_error("no request has reached the camera");
    return entries.back();
}

bool PluggedCamera::waitFor(const std::string& condition)
{
    return m_client.wait(m_id, condition, kTimeoutMs);
}
