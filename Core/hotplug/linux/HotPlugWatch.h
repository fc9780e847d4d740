#pragma once

#include "FileDescriptor.h"
#include "linux/UdevHandles.h"

#include <deque>
#include <set>
#include <string>
#include <utility>

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
        TimedOut,
        Failed,
    };

    /// Starts to receive; opened from one thread, waited on from another.
    void open();
    void close();
    [[nodiscard]] bool isOpen() const { return static_cast<bool>(m_monitor); }

    static constexpr int kNoTimeout = -1;
    /// Blocks until the next event or wake(), or for @p timeoutMs.
    [[nodiscard]] Event wait(int timeoutMs = kNoTimeout);

    /// The interface of the last arrival or removal: "hidraw3".
    [[nodiscard]] const std::string& interfaceName() const { return m_name; }

    /// Ends a wait() that is under way or to come. Any thread, and a signal handler.
    void wake() const;

private:
    Event receive();
    void reportChanges();
    Event report(Event event, const std::string& path);
    [[nodiscard]] std::set<std::string> interfaces() const;
    static void waitForVideoNodes(udev_device* hidraw);

    UdevContext m_context;
    UdevMonitor m_monitor;
    std::set<std::string> m_known; ///< paths in /sys of the interfaces after the last event
    /// Changes that were found by listing the interfaces, with the paths in /sys.
    std::deque<std::pair<Event, std::string>> m_found;
    std::string m_name;
    FileDescriptor m_wakeUp;
};
