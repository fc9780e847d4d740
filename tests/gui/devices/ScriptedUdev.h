#pragma once

#include <mutex>
#include <queue>
#include <string>

/// Stands in for the monitor of the udev library: while one exists, the program's monitor receives
/// the events that are sent here. Callable from any thread. One at a time.
class ScriptedUdev
{
public:
    ScriptedUdev();
    ~ScriptedUdev();
    ScriptedUdev(const ScriptedUdev&) = delete;
    ScriptedUdev& operator=(const ScriptedUdev&) = delete;

    /// An event of a HID interface.
    void send(const std::string& action);
    /// From now on no monitor can be made.
    void refuseMonitors();
    /// Monitors made so far, and those that were not given back.
    [[nodiscard]] int monitorsMade() const;
    [[nodiscard]] int monitorsOpen() const;
    /// Source and subsystem that the last monitor was made for.
    [[nodiscard]] std::string subject() const;

    /// @name The library's side
    /// @{
    static ScriptedUdev* current();
    bool makeMonitor(const std::string& source);
    void dropMonitor();
    void filter(const std::string& subsystem);
    [[nodiscard]] int descriptor() const { return m_pipe[0]; }
    std::string receive();
    /// @}

private:
    mutable std::mutex m_mutex;
    std::queue<std::string> m_actions;
    int m_pipe[2] = {-1, -1};
    bool m_refusing = false;
    int m_made = 0;
    int m_open = 0;
    std::string m_subject;
};
