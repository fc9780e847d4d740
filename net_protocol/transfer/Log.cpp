#include "Log.h"

#include "setLogObserver.h"

#include <mutex>

namespace Brivane {

namespace {

struct Observation
{
    // The observer is called under the lock, so it is never called after it was taken away. It may
    // take itself away from inside the call.
    std::recursive_mutex mutex;
    ILogObserver* observer = nullptr;
};

/// The one place for the one observer of a process, as setLogObserver() knows no client.
Observation& observation()
{
    static Observation instance;
    return instance;
}

} // namespace

void log(ILogObserver::Level level, const std::string& text)
{
    Observation& current = observation();
    const std::lock_guard<std::recursive_mutex> lock(current.mutex);
    if (current.observer && level >= current.observer->getLogLevel())
        current.observer->onPrintLog(level, text);
}

void setLogObserver(ILogObserver* observer)
{
    Observation& current = observation();
    const std::lock_guard<std::recursive_mutex> lock(current.mutex);
    current.observer = observer;
}

} // namespace Brivane
