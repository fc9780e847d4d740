#include "GapMeter.h"

#include <algorithm>
#include <QPainter>

GapMeter::GapMeter(QWidget* parent)
    : QWidget(parent)
{
    resize(120, 40);
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(1);
    connect(&m_timer, &QTimer::timeout, this, &GapMeter::turn);
}

void GapMeter::start()
{
    m_lastTurn = m_lastPaint = Clock::now();
    m_largest = {};
    m_timer.start();
}

double GapMeter::largestGap() const
{
    return std::chrono::duration<double>(m_largest).count();
}

void GapMeter::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    QPainter(this).fillRect(rect(), Qt::gray);
    if (m_timer.isActive())
        note(m_lastPaint, m_largest);
}

void GapMeter::note(Clock::time_point& last, Clock::duration& largest)
{
    const Clock::time_point now = Clock::now();
    largest = std::max(largest, now - last);
    last = now;
}

void GapMeter::turn()
{
    note(m_lastTurn, m_largest);
    update();
}
