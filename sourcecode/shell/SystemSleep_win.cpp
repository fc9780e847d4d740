#include "SystemSleep.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <qt_windows.h>
#include <QTimer>
#include <utility>

class SystemSleep::Watch : public QAbstractNativeEventFilter
{
public:
    explicit Watch(SystemSleep* sleep)
        : m_sleep(sleep)
    {
        QCoreApplication::instance()->installNativeEventFilter(this);
    }

    bool nativeEventFilter(const QByteArray& type, void* message, long* result) override
    {
        Q_UNUSED(type)
        Q_UNUSED(result)
        const auto* event = static_cast<const MSG*>(message);
        if (event->message != WM_POWERBROADCAST)
            return false;
        if (event->wParam == PBT_APMSUSPEND)
            noteSleep();
        else if (event->wParam == PBT_APMRESUMEAUTOMATIC)
            noteAwake();
        return false;
    }

private:
    /// The system sends the message to each window, and reports the end of the sleep more than
    /// once.
    void noteSleep()
    {
        m_awakeIsDue = false;
        if (!std::exchange(m_asleep, true))
            emit m_sleep->fallsAsleep();
    }
    void noteAwake()
    {
        if (!m_asleep || std::exchange(m_awakeIsDue, true))
            return;
        QTimer::singleShot(kReturnMs, m_sleep, [this] {
            if (!std::exchange(m_awakeIsDue, false))
                return; // it sleeps again
            m_asleep = false;
            emit m_sleep->isAwake();
        });
    }

    SystemSleep* m_sleep;
    bool m_asleep = false;
    bool m_awakeIsDue = false;
};

SystemSleep::SystemSleep(QObject* parent)
    : QObject(parent)
    , m_watch(std::make_unique<Watch>(this))
{
}

SystemSleep::~SystemSleep() = default;
