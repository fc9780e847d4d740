#pragma once

#include "linux/FileDescriptor.h"
#include "linux/UdevHandles.h"

/// The udev monitor of HID interfaces, and the means to end its wait.
class HotPlugWatch
{
public:
    enum class Event {
        Arrival,
        Removal,
        Other, ///< nothing that concerns the list
        Woken,
        Failed,
    };

    /// Starts to receive; opened from one thread, waited on from another.
    void open();
    void close();
    [[nodiscard]] bool isOpen() const { return static_cast<bool>(m_monitor); }

    /// Blocks until the next event or wake().
    [[nodiscard]] Event wait();

    /// Ends a wait() that is under way or to come. Any thread.
    void wake() const;

private:
    Event receive();
    static void waitForVideoNodes(udev_device* hidraw);

    UdevContext m_context;
    UdevMonitor m_monitor;
    FileDescriptor m_wakeUp;
};
