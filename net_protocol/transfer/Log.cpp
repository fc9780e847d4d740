#include "Log.h"

#include "setLogObserver.h"

#include <mutex>

namespace Brivane {

Q_LOGGING_CATEGORY(netLog, "marvik.net")

namespace {

struct Observation
{
    // The observer is called under the lock, so it is never called after it was removed. It may
    // remove itself during the call.
    std::recursive_mutex mutex;
    ILogObserver* observer = nullptr;
};

/// The observer of the whole process: setLogObserver() belongs to no client.
Observation& observation()
{
    static Observation instance;
    return instance;
}

QtMsgType typeOf(ILogObserver::Level level)
{
    switch (level) {
    case ILogObserver::Debug:
        return QtDebugMsg;
    case ILogObserver::Info:
        return QtInfoMsg;
    case ILogObserver::Warning:
        return QtWarningMsg;
    case ILogObserver::Error:
        break;
    }
    return QtCriticalMsg;
}

void write(ILogObserver::Level level, const std::string& text)
{
    switch (level) {
    case ILogObserver::Debug:
        qCDebug(netLog, "%s", text.c_str());
        break;
    case ILogObserver::Info:
        qCInfo(netLog, "%s", text.c_str());
        break;
    case ILogObserver::Warning:
        qCWarning(netLog, "%s", text.c_str());
        break;
    case ILogObserver::Error:
        qCCritical(netLog, "%s", text.c_str());
        break;
    }
}

} // namespace

void log(ILogObserver::Level level, const std::string& text)
{
    Observation& current = observation();
    {
        const std::lock_guard<std::recursive_mutex> lock(current.mutex);
        if (current.observer) {
            if (netLog().isEnabled(typeOf(level)) && level >= current.observer->getLogLevel())
                current.observer->onPrintLog(level, text);
            return;
        }
    }
    write(level, text);
}

void setLogObserver(ILogObserver* observer)
{
    Observation& current = observation();
    const std::lock_guard<std::recursive_mutex> lock(current.mutex);
    current.observer = observer;
}

} // namespace Brivane
