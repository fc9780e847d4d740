#include "PendingTimers.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QPointer>
#include <QTimerEvent>
#include <vector>

namespace {

struct Pending
{
    QPointer<QObject> timer;
    int id = 0;
};

/// Qt makes an object for every single shot, a child of the event dispatcher.
std::vector<Pending> pending(int intervalMs)
{
    std::vector<Pending> found;
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    for (QObject* child : dispatcher->children()) {
        for (const auto& info : dispatcher->registeredTimers(child)) {
            if (info.interval == intervalMs)
                found.push_back({child, info.timerId});
        }
    }
    return found;
}

} // namespace

int PendingTimers::count(int intervalMs)
{
    return static_cast<int>(pending(intervalMs).size());
}

bool PendingTimers::fire(int intervalMs)
{
    const std::vector<Pending> timers = pending(intervalMs);
    for (const Pending& timer : timers) {
        if (!timer.timer)
            continue;
        QTimerEvent event(timer.id);
        QCoreApplication::sendEvent(timer.timer, &event);
    }
    return !timers.empty();
}

void PendingTimers::dropAll()
{
    const QObjectList children = QAbstractEventDispatcher::instance()->children();
    for (QObject* child : children) {
        if (child->inherits("QSingleShotTimer"))
            delete child;
    }
}

void PendingTimers::drop(int intervalMs)
{
    for (const Pending& timer : pending(intervalMs))
        delete timer.timer;
}
