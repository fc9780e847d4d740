#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace virtualcamera {

/// Runs tasks at their due time, one after the other, on its own thread.
class Scheduler
{
public:
    using Task = std::function<void()>;

    Scheduler();
    ~Scheduler();
    Scheduler(const Scheduler&) = delete;
    Scheduler& operator=(const Scheduler&) = delete;

    /// Waits for the running task and drops all others; later tasks are never run.
    void stop();
    void after(std::chrono::milliseconds delay, Task task);

private:
    using Clock = std::chrono::steady_clock;

    void run();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::multimap<Clock::time_point, Task> m_tasks;
    bool m_stopping = false;
    std::thread m_thread;
};

} // namespace virtualcamera
