#pragma once

#include "DeviceFileTree.h"
#include "FileDescriptor.h"
#include "Scheduler.h"

#include <deque>
#include <map>
#include <memory>
#include <mutex>

namespace virtualcamera {

/// Sends device events to the udev monitors of the started programs. umockdev's own sender needs
/// the sysfs directory even for "remove", which the kernel announces when the directory is gone,
/// and ends the process when a monitor is slow to read.
class UeventSender
{
public:
    UeventSender(std::string root, Scheduler& scheduler);

    void send(const std::string& action, const SysfsDevice& device);

private:
    using Message = std::vector<std::uint8_t>;

    /// Events for which a monitor has had no room yet, in order.
    struct Backlog
    {
        FileDescriptor socket;
        std::uint64_t inode = 0;
        std::deque<Message> messages;
    };

    Message compose(const std::string& action, const SysfsDevice& device);
    void deliver(const std::string& monitor, const Message& message);
    bool flush(Backlog& backlog);
    void retry();
    void scheduleRetry();

    const std::string m_root;
    Scheduler& m_scheduler;
    std::mutex m_mutex;
    std::map<std::string, Backlog> m_backlogs;
    std::uint64_t m_sequence = 0;
    bool m_retryScheduled = false;
};

} // namespace virtualcamera
