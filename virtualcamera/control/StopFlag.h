#pragma once

#include <condition_variable>
#include <mutex>

namespace virtualcamera {

/// Lets a script sleep, until the program ends. For several threads.
class StopFlag
{
public:
    void raise();
    /// False when the flag was raised.
    bool sleep(long milliseconds);

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_raised = false;
};

} // namespace virtualcamera
