#include "linux/UdevHandles.h"
#include "linux/V4l2Node.h"
#include "VideoDevices.h"

#include <algorithm>
#include <cstring>
#include <QMap>

namespace VideoDevices {

namespace {

struct Entry
{
    Properties properties;
    QString hidNode; ///< control interface of the same USB device; empty when it has none
    int number = 0;  ///< of the video node
};

QString textOf(const char* text)
{
    return text ? QString::fromUtf8(text) : QString();
}

/// A camera has more nodes than it has pictures: uvcvideo adds one for metadata. A node that must
/// not be opened is judged by what udev found when it appeared.
bool isCaptureNode(udev_device* device, const std::optional<v4l2_capability>& capability)
{
    if (capability)
        return (capability->device_caps & V4L2_CAP_VIDEO_CAPTURE) != 0;
    return textOf(udev_device_get_property_value(device, "ID_V4L_CAPABILITIES"))
        .contains(QLatin1String(":capture:"));
}

std::optional<QString> friendlyName(udev_device* device,
                                    const std::optional<v4l2_capability>& capability)
{
    if (capability) {
        const auto* card = reinterpret_cast<const char*>(capability->card);
        return QString::fromUtf8(card, static_cast<int>(strnlen(card, sizeof capability->card)));
    }
    if (const char* name = udev_device_get_sysattr_value(device, "name"))
        return QString::fromUtf8(name);
    return std::nullopt;
}

/// Names the node first and the USB ids in the form that Windows device paths have, so pairing
/// with the control interface is one rule on every platform.
std::optional<QString> devicePath(udev_device* device, const QString& node)
{
    udev_device* usb = usbDeviceOf(device);
    if (!usb)
        return std::nullopt;
    const QString vendor = textOf(udev_device_get_sysattr_value(usb, "idVendor"));
    const QString product = textOf(udev_device_get_sysattr_value(usb, "idProduct"));
    if (vendor.isEmpty() || product.isEmpty())
        return std::nullopt;
    return QStringLiteral("%1#vid_%2&pid_%3#%4")
        .arg(node, vendor, product, textOf(udev_device_get_sysname(usb)));
}

/// First control interface of every USB device that has one, by the USB device's system path.
QMap<QString, QString> hidNodesByUsbDevice(udev* context)
{
    QMap<QString, QString> nodes;
    forEachUdevDevice(context, "hidraw", [&nodes](udev_device* device) {
        udev_device* usb = usbDeviceOf(device);
        const QString node = textOf(udev_device_get_devnode(device));
        if (!usb || node.isEmpty())
            return;
        QString& first = nodes[textOf(udev_device_get_syspath(usb))];
        if (first.isEmpty() || node < first)
            first = node;
    });
    return nodes;
}

/// Linux gives video nodes no order that means anything, and the k-th camera of this list is paired
/// with the k-th control interface by path. So cameras come in the order of their control
/// interfaces, which pairs the two interfaces of one device even among identical cameras; devices
/// without one come last, by number.
bool pairsBefore(const Entry& a, const Entry& b)
{
    if (a.hidNode.isEmpty() != b.hidNode.isEmpty())
        return b.hidNode.isEmpty();
    if (a.hidNode != b.hidNode)
        return a.hidNode < b.hidNode;
    return a.number < b.number;
}

} // namespace

std::vector<Properties> list()
{
    const UdevContext context(udev_new());
    if (!context)
        return {};

    const QMap<QString, QString> hidNodes = hidNodesByUsbDevice(context.get());
    std::vector<Entry> entries;
    forEachUdevDevice(context.get(), "video4linux", [&](udev_device* device) {
        const QString node = textOf(udev_device_get_devnode(device));
        if (node.isEmpty())
            return;
        const std::optional<v4l2_capability> capability = V4l2Node(node).capability();
        if (!isCaptureNode(device, capability))
            return;

        Entry entry;
        entry.properties = {node, friendlyName(device, capability), devicePath(device, node)};
        entry.number = textOf(udev_device_get_sysnum(device)).toInt();
        if (udev_device* usb = usbDeviceOf(device))
            entry.hidNode = hidNodes.value(textOf(udev_device_get_syspath(usb)));
        entries.push_back(std::move(entry));
    });

    std::sort(entries.begin(), entries.end(), pairsBefore);
    std::vector<Properties> result;
    result.reserve(entries.size());
    for (Entry& entry : entries)
        result.push_back(std::move(entry.properties));
    return result;
}

} // namespace VideoDevices
