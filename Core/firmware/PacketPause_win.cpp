#include "PacketPause.h"
#include "WinHandle.h"

// After qt_windows.h, which it needs.
#include <timeapi.h>

namespace {

// Systems before Windows 10 1803 have no high-resolution timers, and older headers lack these
// names.
constexpr DWORD kManualReset = 1;
constexpr DWORD kHighResolution = 2;

/// Sets the system's timer tick to 1 ms; it is 15.6 ms otherwise.
class FineTick
{
public:
    FineTick()
        : m_begun(::timeBeginPeriod(kTickMs) == TIMERR_NOERROR)
    {
    }
    ~FineTick()
    {
        if (m_begun)
            ::timeEndPeriod(kTickMs);
    }
    FineTick(const FineTick&) = delete;
    FineTick& operator=(const FineTick&) = delete;

private:
    static constexpr UINT kTickMs = 1;
    bool m_begun;
};

bool waitForTimer(HANDLE timer, std::chrono::milliseconds duration)
{
    using Ticks = std::chrono::duration<long long, std::ratio<1, 10'000'000>>;
    LARGE_INTEGER due;
    due.QuadPart = -std::chrono::duration_cast<Ticks>(duration).count(); // negative: from now on
    return ::SetWaitableTimer(timer, &due, 0, nullptr, nullptr, FALSE) != FALSE &&
           ::WaitForSingleObject(timer, INFINITE) == WAIT_OBJECT_0;
}

} // namespace

void packetPause(std::chrono::milliseconds duration)
{
    const WinHandle timer(::CreateWaitableTimerExW(nullptr, nullptr, kManualReset | kHighResolution,
                                                   SYNCHRONIZE | TIMER_MODIFY_STATE));
    if (timer && waitForTimer(timer.get(), duration))
        return;
    const FineTick tick;
    ::Sleep(static_cast<DWORD>(duration.count()));
}
