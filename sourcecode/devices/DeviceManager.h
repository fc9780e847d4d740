#pragma once

#include <atomic>
#include <memory>
#include <thread>

class HotPlugWatch;
class SDMMNotificationClient;

/// Notices cameras that are plugged in or removed, on a thread of its own, and makes CameraHandle
/// enumerate again. Beside it, logs changes of the audio endpoints.
///
/// The platform's part is detecting() and initIMMDeviceEnumerator() in
/// DeviceManager_<platform>.cpp, and the classes HotPlugWatch and SDMMNotificationClient in linux/
/// and windows/.
class DeviceManager
{
public:
    /// Created on first use; callable on any thread.
    static DeviceManager& instance();

    ~DeviceManager();
    DeviceManager(const DeviceManager&) = delete;
    DeviceManager& operator=(const DeviceManager&) = delete;

    /// Starts the watcher thread, once however often it is called, and registers the audio client
    /// anew on every call. GUI thread.
    void start();

    /// Ends the watcher thread and waits for it; start() may follow. GUI thread.
    void stop();

    [[nodiscard]] bool isRunning() const { return m_running != 0; }

    /// What the watcher thread runs.
    void detecting();

    /// Registers the audio endpoint client. GUI thread.
    void initIMMDeviceEnumerator();

    /// The reactions to the platform's two events, on the watcher thread.
    void deviceArrived();
    void deviceRemoved();

private:
    DeviceManager();

    std::atomic<int> m_running{0};
    std::thread m_thread;
    std::unique_ptr<HotPlugWatch> m_watch;
    std::shared_ptr<SDMMNotificationClient> m_audioClient; ///< its deleter unregisters it
};
