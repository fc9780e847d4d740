#include "CameraArrivals.h"
#include "HotPlugWatch.h"

#include <algorithm>

class CameraArrivals::Watch
{
public:
    Watch() { watch.open(); }
    ~Watch() { watch.close(); }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    [[nodiscard]] QString path() const
    {
        return QStringLiteral("/dev/") + QString::fromStdString(watch.interfaceName());
    }

    HotPlugWatch watch;
};

CameraArrivals::CameraArrivals()
    : m_watch(std::make_unique<Watch>())
{
}

CameraArrivals::~CameraArrivals() = default;

bool CameraArrivals::isOpen() const
{
    return m_watch->watch.isOpen();
}

CameraArrivals::Event CameraArrivals::wait(std::optional<std::chrono::milliseconds> timeout)
{
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + timeout.value_or(std::chrono::milliseconds(0));
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
        const int leftMs = timeout ? static_cast<int>(std::max<qint64>(left.count(), 0))
                                   : HotPlugWatch::kNoTimeout;
        switch (m_watch->watch.wait(leftMs)) {
        case HotPlugWatch::Event::Arrival:
            return {Event::Kind::Arrived, m_watch->path()};
        case HotPlugWatch::Event::Removal:
            return {Event::Kind::Left, m_watch->path()};
        case HotPlugWatch::Event::Woken:
            return {Event::Kind::Stopped, {}};
        case HotPlugWatch::Event::TimedOut:
            return {Event::Kind::TimedOut, {}};
        case HotPlugWatch::Event::Failed:
            return {Event::Kind::Failed, {}};
        case HotPlugWatch::Event::Other:
            break;
        }
    }
}

void CameraArrivals::stop()
{
    m_watch->watch.wake();
}
