#include "CameraArrivals.h"
#include "CameraInventory.h"

#include <deque>
#include <qt_windows.h>
#include <set>

// After qt_windows.h, which it needs.
#include <dbt.h>

namespace {

constexpr const char* kWindowClass = "marvikctl watch";
constexpr UINT kDevicesChanged = WM_APP + 1;
constexpr UINT kStop = WM_APP + 2;

/// The device interface class of HID devices.
constexpr GUID kHidInterfaceClass = {
    0x4D1E55B2, 0xF16F, 0x11CF, {0x88, 0xCB, 0x00, 0x11, 0x11, 0x00, 0x00, 0x30}};

constexpr UINT_PTR kTimeoutTimer = 1;

/// A timer that nobody waits for any more must not end a later wait.
class TimerStopper
{
public:
    explicit TimerStopper(HWND window)
        : m_window(window)
    {
    }
    ~TimerStopper() { ::KillTimer(m_window, kTimeoutTimer); }
    TimerStopper(const TimerStopper&) = delete;
    TimerStopper& operator=(const TimerStopper&) = delete;

private:
    HWND m_window;
};

/// Broadcasts are sent and not posted; the loop of wait() gets a posted message for each.
LRESULT CALLBACK receive(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const bool isChange = wParam == DBT_DEVICEARRIVAL || wParam == DBT_DEVICEREMOVECOMPLETE;
    if (message == WM_DEVICECHANGE && isChange)
        ::PostMessageW(window, kDevicesChanged, 0, 0);
    return ::DefWindowProcW(window, message, wParam, lParam);
}

std::set<QString> paths()
{
    std::set<QString> found;
    for (const FoundCamera& camera : CameraInventory::list())
        found.insert(camera.hid.path);
    return found;
}

} // namespace

/// A window that is only there for its messages, which belong to the thread that made it.
class CameraArrivals::Watch
{
public:
    Watch()
    {
        WNDCLASSA windowClass{};
        windowClass.lpfnWndProc = &receive;
        windowClass.hInstance = ::GetModuleHandleW(nullptr);
        windowClass.lpszClassName = kWindowClass;
        ::RegisterClassA(&windowClass);
        // No message-only window: those get no broadcasts of the end of a session.
        window = ::CreateWindowExA(0, kWindowClass, kWindowClass, 0, 0, 0, 0, 0, nullptr, nullptr,
                                   windowClass.hInstance, nullptr);
        if (!window)
            return;
        DEV_BROADCAST_DEVICEINTERFACE_W filter{};
        filter.dbcc_size = sizeof filter;
        filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
        filter.dbcc_classguid = kHidInterfaceClass;
        notification = ::RegisterDeviceNotificationW(window, &filter, DEVICE_NOTIFY_WINDOW_HANDLE);
        known = paths();
    }
    ~Watch()
    {
        if (notification)
            ::UnregisterDeviceNotification(notification);
        if (window)
            ::DestroyWindow(window);
        ::UnregisterClassA(kWindowClass, ::GetModuleHandleW(nullptr));
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    /// Removals come first: what is there now has come after what has gone.
    void compare()
    {
        std::set<QString> now = paths();
        for (const QString& path : known) {
            if (now.count(path) == 0)
                events.push_back({Event::Kind::Left, path});
        }
        for (const QString& path : now) {
            if (known.count(path) == 0)
                events.push_back({Event::Kind::Arrived, path});
        }
        known.swap(now);
    }

    HWND window = nullptr;
    HDEVNOTIFY notification = nullptr;
    std::set<QString> known;
    std::deque<Event> events;
};

CameraArrivals::CameraArrivals()
    : m_watch(std::make_unique<Watch>())
{
}

CameraArrivals::~CameraArrivals() = default;

bool CameraArrivals::isOpen() const
{
    return m_watch->notification != nullptr;
}

CameraArrivals::Event CameraArrivals::wait(std::optional<std::chrono::milliseconds> timeout)
{
    if (timeout)
        ::SetTimer(m_watch->window, kTimeoutTimer, static_cast<UINT>(timeout->count()), nullptr);
    const TimerStopper stopper(m_watch->window);
    while (m_watch->events.empty()) {
        MSG message;
        const BOOL got = ::GetMessageW(&message, nullptr, 0, 0);
        if (got < 0)
            return {Event::Kind::Failed, {}};
        if (got == 0 || message.message == kStop)
            return {Event::Kind::Stopped, {}};
        if (message.message == WM_TIMER)
            return {Event::Kind::TimedOut, {}};
        if (message.message == kDevicesChanged)
            m_watch->compare();
        else
            ::DispatchMessageW(&message);
    }
    Event event = m_watch->events.front();
    m_watch->events.pop_front();
    return event;
}

void CameraArrivals::stop()
{
    ::PostMessageW(m_watch->window, kStop, 0, 0);
}
