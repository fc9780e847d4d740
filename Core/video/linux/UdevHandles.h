#pragma once

#include <libudev.h>
#include <memory>

struct UdevDeleter
{
    void operator()(udev* p) const { udev_unref(p); }
    void operator()(udev_device* p) const { udev_device_unref(p); }
    void operator()(udev_enumerate* p) const { udev_enumerate_unref(p); }
    void operator()(udev_monitor* p) const { udev_monitor_unref(p); }
};

using UdevContext = std::unique_ptr<udev, UdevDeleter>;
using UdevDevice = std::unique_ptr<udev_device, UdevDeleter>;
using UdevEnumerate = std::unique_ptr<udev_enumerate, UdevDeleter>;
using UdevMonitor = std::unique_ptr<udev_monitor, UdevDeleter>;

/// Calls @p visit with every device of @p subsystem. Devices that vanish meanwhile are left out.
template <typename Visit>
void forEachUdevDevice(udev* context, const char* subsystem, Visit visit)
{
    const UdevEnumerate enumerate(udev_enumerate_new(context));
    if (!enumerate || udev_enumerate_add_match_subsystem(enumerate.get(), subsystem) < 0 ||
        udev_enumerate_scan_devices(enumerate.get()) < 0)
        return;
    udev_list_entry* entry = nullptr;
    udev_list_entry_foreach(entry, udev_enumerate_get_list_entry(enumerate.get()))
    {
        const UdevDevice device(
            udev_device_new_from_syspath(context, udev_list_entry_get_name(entry)));
        if (device)
            visit(device.get());
    }
}

/// The USB device that @p device is an interface of, or null. Owned by @p device.
inline udev_device* usbDeviceOf(udev_device* device)
{
    return udev_device_get_parent_with_subsystem_devtype(device, "usb", "usb_device");
}
