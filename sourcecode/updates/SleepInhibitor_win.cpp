#include "LogCategories.h"
#include "SleepInhibitor.h"

#include <qt_windows.h>

/// The request belongs to the thread that makes it: Windows drops it when the thread ends.
class SleepInhibitor::Hold
{
public:
    Hold()
    {
        if (::SetThreadExecutionState(ES_CONTINUOUS | ES_SYSTEM_REQUIRED) == 0)
            qCWarning(updateLog) << "the system may go to sleep";
    }
    ~Hold() { ::SetThreadExecutionState(ES_CONTINUOUS); }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
};

SleepInhibitor::SleepInhibitor(const QString& why)
    : m_hold(std::make_unique<Hold>())
{
    Q_UNUSED(why) // Windows shows the program's name
}

SleepInhibitor::~SleepInhibitor() = default;
