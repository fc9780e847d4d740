#pragma once

#include "RecordingCaptureGraph.h"
#include "VideoDevices.h"

#include <memory>
#include <mutex>
#include <vector>

/// Replaces the platform's video devices: while an object exists, the program finds the devices
/// that are plugged in here, and every preview uses a RecordingCaptureGraph. Without an object it
/// finds no device.
///
/// plugIn(), unplugAll() and listings() are thread-safe. Only one object may exist at a time.
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
    /// How often the devices were enumerated.
    [[nodiscard]] int listings() const;

    /// The script of all previews. To be used on the GUI thread.
    [[nodiscard]] CaptureScript& preview() { return *m_preview; }

    /// @name Called by the program
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
