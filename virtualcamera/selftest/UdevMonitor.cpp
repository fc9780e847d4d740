#include "UdevMonitor.h"

#include <chrono>
#include <poll.h>
#include <stdexcept>

namespace virtualcamera {

namespace {

std::string text(const char* value)
{
    return value ? value : "";
}

} // namespace

UdevMonitor::UdevMonitor(const std::vector<std::string>& subsystems)
    : m_udev(udev_new())
    , m_monitor(udev_monitor_new_from_netlink(m_udev.get(), "udev"))
{
    for (const std::string& subsystem : subsystems)
        udev_monitor_filter_add_match_subsystem_devtype(m_monitor.get(), subsystem.c_str(),
                                                        nullptr);
    if (udev_monitor_enable_receiving(m_monitor.get()) < 0)
        throw std::runtime_error("udev monitor");
}

std::vector<UdevMonitor::Event> UdevMonitor::collect(std::size_t count, int timeoutMs)
{
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::milliseconds(timeoutMs);
    std::vector<Event> events;
    while (events.size() < count) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd event{udev_monitor_get_fd(m_monitor.get()), POLLIN, 0};
        if (left <= 0 || ::poll(&event, 1, static_cast<int>(left)) <= 0)
            break;
        udev_device* device = udev_monitor_receive_device(m_monitor.get());
        if (!device)
            continue;
        events.push_back({text(udev_device_get_action(device)),
                          text(udev_device_get_subsystem(device)),
                          text(udev_device_get_devnode(device))});
        udev_device_unref(device);
    }
    return events;
}

} // namespace virtualcamera
