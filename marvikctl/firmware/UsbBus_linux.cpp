#include "linux/UdevHandles.h"
#include "UsbBus.h"

QString UsbBus::of(const QString& hidPath)
{
    const UdevContext context(udev_new());
    if (!context)
        return {};
    const QByteArray name = hidPath.section(QLatin1Char('/'), -1).toLocal8Bit();
    const UdevDevice device(
        udev_device_new_from_subsystem_sysname(context.get(), "hidraw", name.constData()));
    udev_device* usb = device ? usbDeviceOf(device.get()) : nullptr;
    return usb ? QString::fromLatin1(udev_device_get_sysattr_value(usb, "busnum")) : QString();
}
