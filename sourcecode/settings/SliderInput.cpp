#include "SliderInput.h"

#include "SliderScale.h"

#include <QMouseEvent>
#include <QSlider>

SliderInput::SliderInput(QObject* parent)
    : QObject(parent)
{
}

void SliderInput::watch(QSlider* slider)
{
    slider->installEventFilter(this);
    connect(slider, &QSlider::actionTriggered, this,
            [this, slider](int action) { noteAction(slider, action); });
    connect(slider, &QSlider::valueChanged, this, &SliderInput::noteValueChanged);
}

bool SliderInput::eventFilter(QObject* watched, QEvent* event)
{
    auto* slider = qobject_cast<QSlider*>(watched);
    if (!slider)
        return QObject::eventFilter(watched, event);
    // Every value is sent to the camera at once; a drag would send too many.
    if (slider->hasTracking())
        slider->setTracking(false);
    switch (event->type()) {
    case QEvent::Wheel:
        // Turning the wheel over the page is meant to scroll it.
        return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: // the second press of a fast pair
        return handlePress(slider, static_cast<QMouseEvent*>(event));
    default:
        return QObject::eventFilter(watched, event);
    }
}

bool SliderInput::handlePress(QSlider* slider, const QMouseEvent* event)
{
    if (!slider->isEnabled())
        return false;
    if (event->button() != Qt::LeftButton)
        return true; // the slider's own handling would set a value for the middle button
    const int value = SliderScale::valueAt(event->pos().x(), slider->width(), slider->minimum(),
                                           slider->maximum());
    if (value != slider->value())
        slider->setValue(value);
    emit sigUserInput();
    return false; // the handle is under the pointer now, so the slider starts a drag
}

void SliderInput::noteAction(const QSlider* slider, int action)
{
    m_keyboardStep =
        action != QAbstractSlider::SliderMove && slider->sliderPosition() != slider->value();
}

void SliderInput::noteValueChanged()
{
    if (!m_keyboardStep)
        return;
    m_keyboardStep = false;
    emit sigUserInput();
}
