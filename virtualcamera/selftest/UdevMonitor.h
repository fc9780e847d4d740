#pragma once

#include <libudev.h>
#include <memory>
#include <string>
#include <vector>

namespace virtualcamera {

/// Collects device events through libudev, as a program does.
class UdevMonitor
{
public:
    struct Event
    {
        std::string action;
        std::string subsystem;
        std::string node;
    };

    explicit UdevMonitor(const std::vector<std::string>& subsystems);

    /// Waits until `count` events have arrived or the time-out has passed.
    std::vector<Event> collect(std::size_t count, int timeoutMs);

private:
    struct Unref
    {
        void operator()(udev* context) const { udev_unref(context); }
        void operator()(udev_monitor* monitor) const { udev_monitor_unref(monitor); }
    };

    std::unique_ptr<udev, Unref> m_udev;
    std::unique_ptr<udev_monitor, Unref> m_monitor;
};

} // namespace virtualcamera
