#pragma once

#include "RecordingCaptureGraph.h"
#include "VideoDevices.h"

#include <memory>
#include <mutex>
#include <vector>

/// Stands in for the platform's video side: while one exists, the program finds the devices that
/// are plugged in here, and every preview it builds is a recording one. Without one it finds no
/// device.
///
/// plugIn(), unplugAll() and listings() are callable from any thread. One at a time.
class ScriptedVideo
{
public:
    ScriptedVideo();
    ~ScriptedVideo();
    ScriptedVideo(const ScriptedVideo&) = delete;
    ScriptedVideo& operator=(const ScriptedVideo&) = delete;

    /// Appends a device to the inventory.
    void plugIn(const VideoDevices::Properties& device);
    void unplugAll();
    /// How often the inventory was taken.
    [[nodiscard]] int listings() const;

    /// The script of all previews. GUI thread.
    [[nodiscard]] CaptureScript& preview() { return *m_preview; }

    /// @name The program's side
    /// @{
    static ScriptedVideo* current();
    std::vector<VideoDevices::Properties> list();
    [[nodiscard]] std::shared_ptr<CaptureScript> script() const { return m_preview; }
    /// @}

private:
    mutable std::mutex m_mutex;
    std::vector<VideoDevices::Properties> m_devices;
    int m_listings = 0;
    std::shared_ptr<CaptureScript> m_preview = std::make_shared<CaptureScript>();
};
