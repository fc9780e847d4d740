#pragma once

#include "FileDescriptor.h"
#include "linux/UdevHandles.h"

#include <deque>
#include <set>
#include <string>

/// The udev monitor of HID interfaces, and the means to end its wait.
///
/// The kernel drops events when the queue of the monitor is full. The watch then lists the
/// interfaces and reports what has changed since the last event.
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
    void reportChanges();
    [[nodiscard]] std::set<std::string> interfaces() const;
    static void waitForVideoNodes(udev_device* hidraw);

    UdevContext m_context;
    UdevMonitor m_monitor;
    std::set<std::string> m_known; ///< paths in /sys of the interfaces after the last event
    std::deque<Event> m_found;     ///< changes that were found by listing the interfaces
    FileDescriptor m_wakeUp;
};
