#include "VideoInterface.h"

#include <array>
#include <chrono>
#include <optional>
#include <qt_windows.h>
#include <thread>

// After qt_windows.h, which it needs.
#include <cfgmgr32.h>

namespace {

constexpr std::chrono::milliseconds kTimeout{1000};
constexpr std::chrono::milliseconds kInterval{20};

/// The class under which the enumerator of video inputs finds cameras.
constexpr GUID kCaptureInterfaceClass = {
    0x65E8773D, 0x8F56, 0x11D0, {0xA3, 0xB9, 0x00, 0xA0, 0xC9, 0x22, 0x31, 0x96}};

wchar_t* units(QString& text)
{
    return reinterpret_cast<wchar_t*>(text.data());
}

/// The device of an interface: the interface "\\?\HID#VID_1&PID_2#7&1&0#{class}" belongs to the
/// device "HID\VID_1&PID_2\7&1&0".
QString deviceOf(const QString& interfacePath)
{
    const QString prefix = QStringLiteral("\\\\?\\");
    const int end = interfacePath.lastIndexOf(QLatin1String("#{"));
    if (!interfacePath.startsWith(prefix) || end < prefix.size())
        return {};
    return interfacePath.mid(prefix.size(), end - prefix.size())
        .replace(QLatin1Char('#'), QLatin1Char('\\'));
}

QString idOf(DEVINST device)
{
    std::array<wchar_t, MAX_DEVICE_ID_LEN> id{};
    if (::CM_Get_Device_IDW(device, id.data(), MAX_DEVICE_ID_LEN, 0) != CR_SUCCESS)
        return {};
    return QString::fromWCharArray(id.data());
}

/// The USB device that the HID interface is a function of.
std::optional<DEVINST> usbDeviceOf(const QString& hidInterface)
{
    QString hid = deviceOf(hidInterface);
    DEVINST device = 0;
    if (hid.isEmpty() ||
        ::CM_Locate_DevNodeW(&device, units(hid), CM_LOCATE_DEVNODE_NORMAL) != CR_SUCCESS)
        return std::nullopt;
    while (::CM_Get_Parent(&device, device, 0) == CR_SUCCESS) {
        const QString id = idOf(device);
        // A function of the device has the number of its interface in its name.
        if (id.startsWith(QLatin1String("USB\\"), Qt::CaseInsensitive) &&
            !id.contains(QLatin1String("&MI_"), Qt::CaseInsensitive))
            return device;
    }
    return std::nullopt;
}

bool isVideoFunction(DEVINST function)
{
    std::array<wchar_t, 1024> ids{};
    auto bytes = static_cast<ULONG>(sizeof ids);
    if (::CM_Get_DevNode_Registry_PropertyW(function, CM_DRP_COMPATIBLEIDS, nullptr, ids.data(),
                                            &bytes, 0) != CR_SUCCESS)
        return false;
    const QString all =
        QString::fromWCharArray(ids.data(), static_cast<int>(bytes / sizeof(wchar_t)));
    return all.contains(QLatin1String("USB\\Class_0E"), Qt::CaseInsensitive);
}

/// Whether the enumerator of video inputs can find the function.
bool isUsable(DEVINST function)
{
    QString id = idOf(function);
    GUID interfaceClass = kCaptureInterfaceClass;
    ULONG length = 0;
    // An empty list is its final zero.
    return ::CM_Get_Device_Interface_List_SizeW(&length, &interfaceClass, units(id),
                                                CM_GET_DEVICE_INTERFACE_LIST_PRESENT) ==
               CR_SUCCESS &&
           length > 1;
}

/// Whether a video interface of the camera is still to come.
bool isExpected(const QString& hidInterface)
{
    const std::optional<DEVINST> camera = usbDeviceOf(hidInterface);
    DEVINST function = 0;
    if (!camera || ::CM_Get_Child(&function, *camera, 0) != CR_SUCCESS)
        return false;
    do {
        if (isVideoFunction(function) && !isUsable(function))
            return true;
    } while (::CM_Get_Sibling(&function, function, 0) == CR_SUCCESS);
    return false;
}

} // namespace

void VideoInterface::waitFor(const QString& hidInterface)
{
    const auto deadline = std::chrono::steady_clock::now() + kTimeout;
    while (isExpected(hidInterface) && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(kInterval);
}
