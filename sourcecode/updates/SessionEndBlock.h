#pragma once

#include <memory>
#include <QString>

class QWidget;

/// While an object of this class exists, the system asks before it logs the user off or shuts down,
/// and shows why. The user can do so nevertheless. GUI thread.
///
/// On Linux SleepInhibitor does this too, so there this class does nothing.
class SessionEndBlock
{
public:
    /// @param window a window of the program, which may be hidden; it outlives this object
    /// @param why    the reason, for the user
    SessionEndBlock(QWidget* window, const QString& why);
    ~SessionEndBlock();
    SessionEndBlock(const SessionEndBlock&) = delete;
    SessionEndBlock& operator=(const SessionEndBlock&) = delete;

private:
    class Hold;
    std::unique_ptr<Hold> m_hold;
};
