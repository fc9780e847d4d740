#pragma once

#include <QObject>

class QMouseEvent;
class QSlider;

/// How the picture sliders react to mouse and keyboard: a press moves the handle to the pointer, a
/// drag reports one value when it ends, the wheel changes nothing.
class SliderInput : public QObject
{
    Q_OBJECT

public:
    explicit SliderInput(QObject* parent = nullptr);

    void watch(QSlider* slider);

signals:
    /// The user has pressed the mouse on a watched slider, whether or not that changed its value,
    /// or has changed its value with the keyboard. Comes after the slider's own signals.
    void sigUserInput();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool handlePress(QSlider* slider, const QMouseEvent* event);
    void noteAction(const QSlider* slider, int action);
    void noteValueChanged();

    bool m_keyboardStep = false; ///< a key has made a step; its valueChanged() comes next
};
