#pragma once

#include <memory>

struct pa_context;
struct pa_threaded_mainloop;

/// Logs changes of the audio endpoints as the sound server tells them. Silent for as long as no
/// sound server runs; starts none.
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
    pa_context* m_context = nullptr; ///< only touched with the loop locked
};
