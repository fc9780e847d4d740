#include "StopFlag.h"

#include <chrono>

namespace virtualcamera {

void StopFlag::raise()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_raised = true;
    }
    m_changed.notify_all();
}

bool StopFlag::sleep(long milliseconds)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return !m_changed.wait_for(lock, std::chrono::milliseconds(milliseconds),
                               [this] { return m_raised; });
}

} // namespace virtualcamera
