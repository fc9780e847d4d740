#pragma once

#include <memory>
#include <QString>

/// While an object of this class exists, the computer does not go to sleep by itself; on Linux the
/// user is also asked before it is shut down, see SessionEndBlock. When the system does not support
/// or refuses this, a warning is logged and there is no other effect. GUI thread; does not wait for
/// the system's answer.
class SleepInhibitor
{
public:
    /// @param why the reason, which the system's tools show to the user
    explicit SleepInhibitor(const QString& why);
    ~SleepInhibitor();
    SleepInhibitor(const SleepInhibitor&) = delete;
    SleepInhibitor& operator=(const SleepInhibitor&) = delete;

private:
    class Hold;
    std::unique_ptr<Hold> m_hold;
};
