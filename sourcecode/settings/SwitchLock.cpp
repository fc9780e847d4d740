#include "SwitchLock.h"

namespace {

constexpr int kTimeoutMs = 1000;

} // namespace

SwitchLock::SwitchLock(QWidget* control, QObject* parent)
    : QObject(parent)
    , m_control(control)
    , m_timer(this)
{
    m_timer.setInterval(kTimeoutMs);
    connect(&m_timer, &QTimer::timeout, this, &SwitchLock::sigExpired);
}

void SwitchLock::lock()
{
    const bool hadFocus = m_control->hasFocus();
    m_control->setEnabled(false);
    m_control->setToolTip(tr("The camera is switching. Available again in a second."));
    if (hadFocus)
        m_focusDuringLock = m_control->window()->focusWidget();
    m_timer.start();
}

void SwitchLock::unlock()
{
    m_timer.stop();
    m_control->setEnabled(true);
    m_control->setToolTip(QString());
    if (m_focusDuringLock && m_focusDuringLock->hasFocus())
        m_control->setFocus(Qt::OtherFocusReason);
    m_focusDuringLock.clear();
}
