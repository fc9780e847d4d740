#include "Scheduler.h"

namespace virtualcamera {

Scheduler::Scheduler()
    : m_thread([this] { run(); })
{
}

Scheduler::~Scheduler()
{
    stop();
}

void Scheduler::stop()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void Scheduler::after(std::chrono::milliseconds delay, Task task)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_tasks.emplace(Clock::now() + delay, std::move(task));
    }
    m_changed.notify_all();
}

void Scheduler::run()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_stopping) {
        if (m_tasks.empty()) {
            m_changed.wait(lock);
            continue;
        }
        const auto next = m_tasks.begin();
        if (next->first > Clock::now()) {
            // A copy, because the map entry may be erased during the wait.
            const Clock::time_point time = next->first;
            m_changed.wait_until(lock, time);
            continue;
        }
        const Task task = std::move(next->second);
        m_tasks.erase(next);
        lock.unlock();
        task();
        lock.lock();
    }
}

} // namespace virtualcamera
