#include "HotPlugWatch.h"

#include "LogCategories.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <poll.h>
#include <sys/eventfd.h>
#include <thread>
#include <utility>

namespace {

constexpr const char* kSubsystem = "hidraw";
// Some 500 events; the default holds a tenth. Without privileges the kernel grants no more than
// net.core.rmem_max.
constexpr int kReceiveBufferBytes = 1024 * 1024;
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
        udev_monitor_filter_add_match_subsystem_devtype(monitor.get(), kSubsystem, nullptr) < 0)
        return;
    udev_monitor_set_receive_buffer_size(monitor.get(), kReceiveBufferBytes);
    if (udev_monitor_enable_receiving(monitor.get()) < 0)
        return;
    m_monitor = std::move(monitor);
    m_known = interfaces();
}

void HotPlugWatch::close()
{
    m_monitor.reset();
    m_context.reset();
    m_wakeUp = FileDescriptor();
    m_known.clear();
    m_found.clear();
}

void HotPlugWatch::wake() const
{
    const eventfd_t one = 1;
    ::eventfd_write(m_wakeUp.get(), one);
}

HotPlugWatch::Event HotPlugWatch::wait(int timeoutMs)
{
    if (!m_found.empty()) {
        const auto [event, path] = m_found.front();
        m_found.pop_front();
        return report(event, path);
    }
    pollfd descriptors[] = {{udev_monitor_get_fd(m_monitor.get()), POLLIN, 0},
                            {m_wakeUp.get(), POLLIN, 0}};
    int ready = 0;
    do {
        ready = ::poll(descriptors, 2, timeoutMs);
    } while (ready < 0 && errno == EINTR);
    if (ready < 0)
        return Event::Failed;
    if (ready == 0)
        return Event::TimedOut;
    if (descriptors[1].revents != 0)
        return Event::Woken;
    return receive();
}

/// The name of an interface is the last part of its path.
HotPlugWatch::Event HotPlugWatch::report(Event event, const std::string& path)
{
    m_name = path.substr(path.rfind('/') + 1);
    return event;
}

std::set<std::string> HotPlugWatch::interfaces() const
{
    std::set<std::string> paths;
    forEachUdevDevice(m_context.get(), kSubsystem,
                      [&paths](udev_device* each) { paths.insert(udev_device_get_syspath(each)); });
    return paths;
}

/// Removals come first: what is there now has come after what has gone.
void HotPlugWatch::reportChanges()
{
    const std::set<std::string> before = std::exchange(m_known, interfaces());
    for (const std::string& path : before) {
        if (m_known.count(path) == 0)
            m_found.emplace_back(Event::Removal, path);
    }
    for (const std::string& path : m_known) {
        if (before.count(path) != 0)
            continue;
        const UdevDevice device(udev_device_new_from_syspath(m_context.get(), path.c_str()));
        if (device)
            waitForVideoNodes(device.get());
        m_found.emplace_back(Event::Arrival, path);
    }
}

HotPlugWatch::Event HotPlugWatch::receive()
{
    const UdevDevice device(udev_monitor_receive_device(m_monitor.get()));
    if (!device) {
        qCWarning(hotplugLog) << "events of udev were lost, the interfaces are listed";
        reportChanges();
        return Event::Other;
    }
    const char* action = udev_device_get_action(device.get());
    const char* path = udev_device_get_syspath(device.get());
    if (isEqual(action, "remove")) {
        m_known.erase(path);
        return report(Event::Removal, path);
    }
    if (!isEqual(action, "add"))
        return Event::Other;
    m_known.insert(path);
    waitForVideoNodes(device.get());
    return report(Event::Arrival, path);
}

/// The interfaces of one camera appear one after the other, and the video driver may have to be
/// loaded first. The HID interface alone makes the event, so this thread, which has no other task,
/// waits for the video interface, unless the camera has left again.
void HotPlugWatch::waitForVideoNodes(udev_device* hidraw)
{
    udev_device* usb = usbDeviceOf(hidraw);
    if (!usb || !hasVideoInterface(usb))
        return;
    const auto deadline =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(kVideoNodeTimeoutMs);
    while (!hasUsableVideoNodes(usb) && hasVideoInterface(usb) &&
           std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(kVideoNodeInterval);
}
