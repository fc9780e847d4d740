#include "HotPlugWatch.h"

#include "DeviceManager.h"
#include "VideoInterface.h"

// After qt_windows.h, which it needs.
#include <dbt.h>

namespace {

constexpr const char* kWindowClass = "velmarin";
constexpr const char* kWindowTitle = "velmarin window";
/// A number in the place of a pointer, as the window's creation message carries it.
// NOLINTNEXTLINE(performance-no-int-to-ptr)
void* const kCreationParameter = reinterpret_cast<void*>(INT_PTR{12345});

/// The device interface class of HID devices.
constexpr GUID kHidInterfaceClass = {
    0x4D1E55B2, 0xF16F, 0x11CF, {0x88, 0xCB, 0x00, 0x11, 0x11, 0x00, 0x00, 0x30}};

/// The HID interface that a broadcast is about; null for a broadcast about another thing. Volumes
/// and ports are reported to every window, whether it has asked for them or not.
const DEV_BROADCAST_DEVICEINTERFACE_W* hidInterfaceOf(LPARAM broadcast)
{
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the message carries a pointer as a number.
    const auto* header = reinterpret_cast<const DEV_BROADCAST_HDR*>(broadcast);
    if (!header || header->dbch_devicetype != DBT_DEVTYP_DEVICEINTERFACE)
        return nullptr;
    const auto* found = reinterpret_cast<const DEV_BROADCAST_DEVICEINTERFACE_W*>(header);
    return ::IsEqualGUID(found->dbcc_classguid, kHidInterfaceClass) ? found : nullptr;
}

HINSTANCE thisModule()
{
    return ::GetModuleHandleW(nullptr);
}

} // namespace

void HotPlugWatch::NotificationCloser::operator()(HDEVNOTIFY notification) const
{
    ::UnregisterDeviceNotification(notification);
}

HotPlugWatch::HotPlugWatch() = default;

HotPlugWatch::~HotPlugWatch() = default;

bool HotPlugWatch::registerWindowClass()
{
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = &HotPlugWatch::WndProc;
    windowClass.hInstance = thisModule();
    windowClass.lpszClassName = kWindowClass;
    m_classRegistered = ::RegisterClassA(&windowClass) != 0;
    return m_classRegistered;
}

bool HotPlugWatch::createWindow()
{
    m_window = ::CreateWindowExA(0, kWindowClass, kWindowTitle, WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                                 CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr,
                                 thisModule(), kCreationParameter);
    if (!m_window)
        return false;
    // WndProc() hands on to the default procedure for UTF-16, which reads the title as such.
    ::SetWindowLongPtrW(m_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&HotPlugWatch::WndProc));
    ::SetWindowTextA(m_window, kWindowTitle);

    DEV_BROADCAST_DEVICEINTERFACE_W filter{};
    static_assert(sizeof filter == 32, "the size that the system knows the filter by");
    filter.dbcc_size = sizeof filter;
    filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    filter.dbcc_classguid = kHidInterfaceClass;
    m_notification.reset(
        ::RegisterDeviceNotificationW(m_window, &filter, DEVICE_NOTIFY_WINDOW_HANDLE));
    return true;
}

void HotPlugWatch::destroyWindow()
{
    m_notification.reset();
    if (HWND window = m_window.exchange(nullptr))
        ::DestroyWindow(window);
    if (m_classRegistered)
        ::UnregisterClassA(kWindowClass, thisModule());
    m_classRegistered = false;
}

HotPlugWatch::Event HotPlugWatch::wait()
{
    MSG message;
    return ::GetMessageW(&message, nullptr, 0, 0) < 0 ? Event::Failed : Event::Message;
}

void HotPlugWatch::wake() const
{
    // Before the window exists, its thread checks the running flag before it waits.
    if (HWND window = m_window)
        ::PostMessageW(window, WM_NULL, 0, 0);
}

LRESULT CALLBACK HotPlugWatch::WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const bool arrived = message == WM_DEVICECHANGE && wParam == DBT_DEVICEARRIVAL;
    const bool removed = message == WM_DEVICECHANGE && wParam == DBT_DEVICEREMOVECOMPLETE;
    // Other events of this message carry no broadcast.
    const auto* hid = arrived || removed ? hidInterfaceOf(lParam) : nullptr;
    if (hid && arrived) {
        VideoInterface::waitFor(QString::fromWCharArray(hid->dbcc_name));
        DeviceManager::instance().deviceArrived();
    } else if (hid) {
        DeviceManager::instance().deviceRemoved();
    }
    return ::DefWindowProcW(window, message, wParam, lParam);
}
