#include "ControlInterfaces.h"

#include <QDir>
#include <QFile>

namespace {

const QString kClass = QStringLiteral("/sys/class/hidraw/");
constexpr const char* kIds = "HID_ID="; // bus, vendor, product: "0003:0000B206:0000B215"

} // namespace

/// From the files of the kernel. hidapi asks udev for every text of every interface and of its
/// parents, which took longer than reading a setting.
HidDeviceMap ControlInterfaces::list()
{
    HidDeviceMap devices;
    const QStringList names = QDir(kClass).entryList({QStringLiteral("hidraw*")},
                                                     QDir::Dirs | QDir::System, QDir::Unsorted);
    for (const QString& name : names) {
        QFile file(kClass + name + QStringLiteral("/device/uevent"));
        if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            continue; // it has just left
        const QByteArray facts = '\n' + file.readAll();
        const int at = facts.indexOf(QByteArray("\n") + kIds);
        if (at < 0)
            continue;
        const QByteArray line = facts.mid(at + 1, facts.indexOf('\n', at + 1) - at - 1);
        const QList<QByteArray> ids = line.mid(static_cast<int>(qstrlen(kIds))).split(':');
        if (ids.size() != 3)
            continue;
        HidDevices device;
        device.path = QStringLiteral("/dev/") + name;
        device.vendorId = static_cast<quint16>(ids.at(1).toUInt(nullptr, 16));
        device.productId = static_cast<quint16>(ids.at(2).toUInt(nullptr, 16));
        devices.insert(device.path, device);
    }
    return devices;
}
