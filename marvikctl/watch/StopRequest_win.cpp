#include "StopRequest.h"

#include <atomic>
#include <qt_windows.h>
#include <utility>

namespace {

std::atomic<bool> s_isMade{false};
std::atomic<const std::function<void()>*> s_onStop{nullptr};

/// On a thread of the system.
BOOL WINAPI noteStop(DWORD)
{
    s_isMade = true;
    const std::function<void()>* onStop = s_onStop;
    if (onStop && *onStop)
        (*onStop)();
    return TRUE;
}

} // namespace

StopRequest::StopRequest(std::function<void()> onStop)
    : m_onStop(std::move(onStop))
{
    s_isMade = false;
    s_onStop = &m_onStop;
    ::SetConsoleCtrlHandler(&noteStop, TRUE);
}

StopRequest::~StopRequest()
{
    ::SetConsoleCtrlHandler(&noteStop, FALSE);
    s_onStop = nullptr;
}

bool StopRequest::isMade() const
{
    return s_isMade;
}
