#pragma once

#include <memory>
#include <QString>

/// As long as one exists the computer does not go to sleep by itself. Where the system cannot be
/// asked, that is logged and nothing is held. GUI thread; does not wait for the system's answer.
class SleepInhibitor
{
public:
    /// @param why shown to a user who asks what keeps the computer awake
    explicit SleepInhibitor(const QString& why);
    ~SleepInhibitor();
    SleepInhibitor(const SleepInhibitor&) = delete;
    SleepInhibitor& operator=(const SleepInhibitor&) = delete;

private:
    class Hold;
    std::unique_ptr<Hold> m_hold;
};
