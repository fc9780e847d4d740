#pragma once

#include <atomic>
#include <memory>
#include <qt_windows.h>

/// The hidden window that receives the system's device-change broadcasts, and its message loop.
///
/// The window belongs to the thread that makes it; other threads may call only open(), close() and
/// wake().
class HotPlugWatch
{
public:
    enum class Event {
        Message, ///< a posted message came; what was sent meanwhile has been handled
        Failed,
    };

    HotPlugWatch();
    ~HotPlugWatch();
    HotPlugWatch(const HotPlugWatch&) = delete;
    HotPlugWatch& operator=(const HotPlugWatch&) = delete;

    /// Nothing to prepare: the window is made on the thread that waits.
    void open() {}
    void close() {}

    bool registerWindowClass();
    /// Makes the window, which is never shown, and asks for the broadcasts of HID interfaces.
    bool createWindow();
    void destroyWindow();

    /// Blocks until a message is posted to the thread. Broadcasts are sent, not posted: the system
    /// calls WndProc() from inside.
    [[nodiscard]] Event wait();

    /// Ends a wait() that is under way or to come.
    void wake() const;

    /// Reports arrivals and removals to DeviceManager. On the thread of the window.
    static LRESULT CALLBACK WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

private:
    struct NotificationCloser
    {
        using pointer = HDEVNOTIFY;
        void operator()(HDEVNOTIFY notification) const;
    };

    std::atomic<HWND> m_window{nullptr};
    std::unique_ptr<void, NotificationCloser> m_notification;
    bool m_classRegistered = false;
};
