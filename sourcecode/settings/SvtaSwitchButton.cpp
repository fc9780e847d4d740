#include "SvtaSwitchButton.h"

#include "SvtaSwitchButtonAccessible.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

namespace {

constexpr int kRestMargin = 4; // between the knob at rest and the end of the track, in pixels
constexpr double kStep = 6.0;  // of the knob for each animation tick, in pixels
constexpr int kTickMs = 1;     // as fast as the event loop allows: two ticks for a whole slide

} // namespace

SvtaSwitchButton::SvtaSwitchButton(QWidget* parent)
    : QWidget(parent)
    , m_timer(this)
{
    SvtaSwitchButtonAccessible::install();
    setCursor(Qt::PointingHandCursor);
    // By the keyboard only: a click then leaves no focus ring behind.
    setFocusPolicy(Qt::TabFocus);
    connect(&m_timer, &QTimer::timeout, this, &SvtaSwitchButton::onTimeout);
}

void SvtaSwitchButton::setChecked(bool checked)
{
    const bool changed = m_checked != checked;
    m_timer.stop();
    m_checked = checked;
    m_knobPosition =
        m_checked ? width() - kRestMargin - m_knobDiameter / 2 : m_knobDiameter / 2 + kRestMargin;
    update();
    if (changed)
        announceState();
}

void SvtaSwitchButton::toggle()
{
    m_checked = !m_checked;
    announceState();
    // Started before the signal: a receiver that sets another state at once then stops the slide.
    m_timer.start(kTickMs);
    emit sigToggled(m_checked);
}

QSize SvtaSwitchButton::sizeHint() const
{
    return minimumSizeHint();
}

QSize SvtaSwitchButton::minimumSizeHint() const
{
    return {m_knobDiameter * 2, m_knobDiameter + 2};
}

void SvtaSwitchButton::mousePressEvent(QMouseEvent* event)
{
    if (!isEnabled())
        return;
    event->setAccepted(event->buttons().testFlag(Qt::LeftButton));
}

void SvtaSwitchButton::mouseReleaseEvent(QMouseEvent* event)
{
    if (!isEnabled())
        return;
    if (event->type() == QEvent::MouseButtonRelease && event->button() == Qt::LeftButton) {
        event->accept();
        toggle();
    } else {
        event->ignore();
    }
}

void SvtaSwitchButton::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Space) {
        QWidget::keyPressEvent(event);
        return;
    }
    event->accept();
    if (!event->isAutoRepeat())
        toggle();
}

void SvtaSwitchButton::resizeEvent(QResizeEvent* event)
{
    m_knobPosition = m_knobDiameter / 2 + kRestMargin;
    QWidget::resizeEvent(event);
}

void SvtaSwitchButton::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setPen(Qt::NoPen);
    painter.setRenderHint(QPainter::Antialiasing);

    QPainterPath track;
    track.addRoundedRect(rect(), height() / 2, height() / 2, Qt::AbsoluteSize);
    painter.fillPath(track.simplified(), m_checked ? m_backgroundOn : m_backgroundOff);

    painter.setBrush(m_knobColor);
    painter.drawEllipse(QRectF(m_knobPosition - m_knobDiameter / 2,
                               height() / 2 - m_knobDiameter / 2, m_knobDiameter, m_knobDiameter));

    if (hasFocus()) {
        painter.setPen(QPen(QColor(Style::colour("focus-ring")), 1.5));
        painter.setBrush(Qt::NoBrush);
        const QRectF ring = QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75);
        painter.drawRoundedRect(ring, ring.height() / 2, ring.height() / 2);
    }
}

void SvtaSwitchButton::onTimeout()
{
    // A slide ends one pixel before its rest position, and from there the knob snaps to it.
    if (m_checked) {
        m_knobPosition += kStep;
        if (static_cast<int>(m_knobPosition) >= width() - kRestMargin - 1 - m_knobDiameter / 2) {
            m_knobPosition = width() - kRestMargin - m_knobDiameter / 2;
            m_timer.stop();
        }
    } else {
        m_knobPosition -= kStep;
        if (m_knobDiameter / 2 + kRestMargin + 1 >= m_knobPosition) {
            m_knobPosition = m_knobDiameter / 2 + kRestMargin;
            m_timer.stop();
        }
    }
    update();
}

void SvtaSwitchButton::announceState()
{
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}
