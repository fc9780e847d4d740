#include "StopRequest.h"

#include <array>
#include <atomic>
#include <csignal>
#include <utility>

namespace {

constexpr std::array<int, 3> kSignals{SIGINT, SIGTERM, SIGHUP};

std::atomic<bool> s_isMade{false};
std::atomic<const std::function<void()>*> s_onStop{nullptr};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler must not wait for a lock");

extern "C" void noteStop(int)
{
    s_isMade = true;
    const std::function<void()>* onStop = s_onStop;
    if (onStop && *onStop)
        (*onStop)();
}

void install(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART; // an exchange with a camera goes on
    for (const int number : kSignals)
        sigaction(number, &action, nullptr);
}

} // namespace

StopRequest::StopRequest(std::function<void()> onStop)
    : m_onStop(std::move(onStop))
{
    s_isMade = false;
    s_onStop = &m_onStop;
    install(&noteStop);
}

StopRequest::~StopRequest()
{
    install(SIG_DFL);
    s_onStop = nullptr;
}

bool StopRequest::isMade() const
{
    return s_isMade;
}
