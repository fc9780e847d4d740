#pragma once

#include <mutex>
#include <queue>
#include <string>

/// Replaces the monitor of the udev library: while an object exists, the program's monitor receives
/// the events that are sent here. Thread-safe. Only one object may exist at a time.
class ScriptedUdev
{
public:
    ScriptedUdev();
    ~ScriptedUdev();
    ScriptedUdev(const ScriptedUdev&) = delete;
    ScriptedUdev& operator=(const ScriptedUdev&) = delete;

    /// Sends an event of a HID interface.
    void send(const std::string& action);
    /// From now on creating a monitor fails.
    void refuseMonitors();
    /// Monitors created so far, and those that were not released.
    [[nodiscard]] int monitorsMade() const;
    [[nodiscard]] int monitorsOpen() const;
    /// Source and subsystem of the last created monitor.
    [[nodiscard]] std::string subject() const;
    /// Bytes that the program has asked for; 0 when it has not.
    [[nodiscard]] int receiveBuffer() const;

    /// @name Called by the udev functions
    /// @{
    static ScriptedUdev* current();
    bool makeMonitor(const std::string& source);
    void dropMonitor();
    void filter(const std::string& subsystem);
    [[nodiscard]] int descriptor() const { return m_pipe[0]; }
    void setReceiveBuffer(int bytes);
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
    int m_receiveBuffer = 0;
};
