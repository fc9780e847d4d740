#include "CameraArrivals.h"
#include "HotPlugWatch.h"

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

CameraArrivals::Event CameraArrivals::wait()
{
    for (;;) {
        switch (m_watch->watch.wait()) {
        case HotPlugWatch::Event::Arrival:
            return {Event::Kind::Arrived, m_watch->path()};
        case HotPlugWatch::Event::Removal:
            return {Event::Kind::Left, m_watch->path()};
        case HotPlugWatch::Event::Woken:
            return {Event::Kind::Stopped, {}};
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
