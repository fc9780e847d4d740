#include "ScriptedVideo.h"

namespace {

ScriptedVideo* s_current = nullptr;

} // namespace

ScriptedVideo::ScriptedVideo()
{
    Q_ASSERT(!s_current);
    s_current = this;
}

ScriptedVideo::~ScriptedVideo()
{
    s_current = nullptr;
}

ScriptedVideo* ScriptedVideo::current()
{
    return s_current;
}

void ScriptedVideo::plugIn(const VideoDevices::Properties& device)
{
    const std::lock_guard lock(m_mutex);
    m_devices.push_back(device);
}

void ScriptedVideo::unplugAll()
{
    const std::lock_guard lock(m_mutex);
    m_devices.clear();
}

int ScriptedVideo::listings() const
{
    const std::lock_guard lock(m_mutex);
    return m_listings;
}

std::vector<VideoDevices::Properties> ScriptedVideo::list()
{
    const std::lock_guard lock(m_mutex);
    ++m_listings;
    return m_devices;
}

// The two functions through which the program reaches the platform's video devices.

std::vector<VideoDevices::Properties> VideoDevices::list()
{
    ScriptedVideo* script = ScriptedVideo::current();
    return script ? script->list() : std::vector<Properties>();
}

std::unique_ptr<CaptureGraph> CaptureGraph::makePlatformGraph()
{
    ScriptedVideo* script = ScriptedVideo::current();
    return std::make_unique<RecordingCaptureGraph>(script ? script->script()
                                                          : std::make_shared<CaptureScript>());
}
