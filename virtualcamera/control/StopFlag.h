#pragma once

#include <condition_variable>
#include <mutex>

namespace virtualcamera {

/// Lets a script sleep, but not beyond the end of the program. Thread-safe.
class StopFlag
{
public:
    void raise();
    /// False when the flag was raised before the time was over.
    bool sleep(long milliseconds);

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_raised = false;
};

} // namespace virtualcamera
