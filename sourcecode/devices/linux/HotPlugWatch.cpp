#include "HotPlugWatch.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <poll.h>
#include <sys/eventfd.h>
#include <thread>

namespace {

constexpr int kVideoNodeTimeoutMs = 1000;
constexpr std::chrono::milliseconds kVideoNodeInterval{20};

bool isEqual(const char* a, const char* b)
{
    return a && b && std::strcmp(a, b) == 0;
}

/// Calls @p visit with each device of @p subsystem that belongs to @p usb.
template <typename Visit>
void forEachChild(udev_device* usb, const char* subsystem, Visit visit)
{
    const UdevEnumerate enumerate(udev_enumerate_new(udev_device_get_udev(usb)));
    if (!enumerate || udev_enumerate_add_match_parent(enumerate.get(), usb) < 0 ||
        udev_enumerate_add_match_subsystem(enumerate.get(), subsystem) < 0 ||
        udev_enumerate_scan_devices(enumerate.get()) < 0)
        return;
    udev_list_entry* entry = nullptr;
    udev_list_entry_foreach(entry, udev_enumerate_get_list_entry(enumerate.get()))
    {
        const UdevDevice device(udev_device_new_from_syspath(udev_device_get_udev(usb),
                                                             udev_list_entry_get_name(entry)));
        if (device)
            visit(device.get());
    }
}

bool hasVideoInterface(udev_device* usb)
{
    constexpr const char* videoClass = "0e";
    bool found = false;
    forEachChild(usb, "usb", [&found](udev_device* child) {
        found =
            found || isEqual(udev_device_get_sysattr_value(child, "bInterfaceClass"), videoClass);
    });
    return found;
}

/// udev gives access to the nodes of one camera in any order, and the metadata node is not enough:
/// all nodes must be accessible.
bool hasUsableVideoNodes(udev_device* usb)
{
    bool found = false;
    bool isUsable = true;
    forEachChild(usb, "video4linux", [&found, &isUsable](udev_device* child) {
        const char* node = udev_device_get_devnode(child);
        found = true;
        isUsable = isUsable && node && ::access(node, R_OK | W_OK) == 0;
    });
    return found && isUsable;
}

} // namespace

void HotPlugWatch::open()
{
    m_wakeUp = FileDescriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    m_context.reset(udev_new());
    if (!m_context)
        return;
    // "udev" rather than "kernel": its events come after the rules have given the user access.
    UdevMonitor monitor(udev_monitor_new_from_netlink(m_context.get(), "udev"));
    if (!monitor ||
        udev_monitor_filter_add_match_subsystem_devtype(monitor.get(), "hidraw", nullptr) < 0 ||
        udev_monitor_enable_receiving(monitor.get()) < 0)
        return;
    m_monitor = std::move(monitor);
}

void HotPlugWatch::close()
{
    m_monitor.reset();
    m_context.reset();
    m_wakeUp = FileDescriptor();
}

void HotPlugWatch::wake() const
{
    const eventfd_t one = 1;
    ::eventfd_write(m_wakeUp.get(), one);
}

HotPlugWatch::Event HotPlugWatch::wait()
{
    pollfd descriptors[] = {{udev_monitor_get_fd(m_monitor.get()), POLLIN, 0},
                            {m_wakeUp.get(), POLLIN, 0}};
    int ready = 0;
    do {
        ready = ::poll(descriptors, 2, -1);
    } while (ready < 0 && errno == EINTR);
    if (ready < 0)
        return Event::Failed;
    if (descriptors[1].revents != 0)
        return Event::Woken;
    return receive();
}

HotPlugWatch::Event HotPlugWatch::receive()
{
    const UdevDevice device(udev_monitor_receive_device(m_monitor.get()));
    if (!device)
        return Event::Other;
    const char* action = udev_device_get_action(device.get());
    if (isEqual(action, "remove"))
        return Event::Removal;
    if (!isEqual(action, "add"))
        return Event::Other;
    waitForVideoNodes(device.get());
    return Event::Arrival;
}

/// The interfaces of one camera appear one after the other, and the video driver may have to be
/// loaded first. The HID interface alone makes the event, so this thread, which has no other task,
/// waits for the video interface.
void HotPlugWatch::waitForVideoNodes(udev_device* hidraw)
{
    udev_device* usb = usbDeviceOf(hidraw);
    if (!usb || !hasVideoInterface(usb))
        return;
    const auto deadline =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(kVideoNodeTimeoutMs);
    while (!hasUsableVideoNodes(usb) && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(kVideoNodeInterval);
}
