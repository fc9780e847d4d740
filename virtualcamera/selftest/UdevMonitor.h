#pragma once

#include <libudev.h>
#include <memory>
#include <string>
#include <vector>

namespace virtualcamera {

/// Collects device events as a program does, through libudev.
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

    /// Waits until `count` events have come or the time is over.
    std::vector<Event> collect(std::size_t count, int milliseconds);

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
