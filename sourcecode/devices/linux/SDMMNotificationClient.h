#pragma once

#include <memory>

struct pa_context;
struct pa_threaded_mainloop;

/// Logs changes of the audio endpoints that the sound server reports. Does nothing while no sound
/// server runs, and does not start one.
class SDMMNotificationClient
{
public:
    SDMMNotificationClient();
    ~SDMMNotificationClient();
    SDMMNotificationClient(const SDMMNotificationClient&) = delete;
    SDMMNotificationClient& operator=(const SDMMNotificationClient&) = delete;

    /// Connects and subscribes, in the background.
    void registerCallback();

private:
    struct MainLoopDeleter
    {
        void operator()(pa_threaded_mainloop* loop) const;
    };

    void disconnect();

    std::unique_ptr<pa_threaded_mainloop, MainLoopDeleter> m_loop;
    pa_context* m_context = nullptr; ///< used only while the loop is locked
};
