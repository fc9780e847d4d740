#pragma once

#include "Style.h"

#include <QColor>
#include <QTimer>
#include <QWidget>

/// On/off switch with a sliding knob.
///
/// Toggled with the left mouse button or, focused, with the space bar. A resize puts the knob at
/// the off position whatever the state is, until the state is set again: give it a fixed size.
class SvtaSwitchButton : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool checked READ isChecked WRITE setChecked NOTIFY sigToggled)

public:
    explicit SvtaSwitchButton(QWidget* parent = nullptr);

    [[nodiscard]] bool isChecked() const { return m_checked; }
    /// Shows @p checked at once, without animation and without a signal.
    void setChecked(bool checked);
    /// Does what a click of the user does.
    void toggle();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

signals:
    /// The user has toggled the switch; comes before the knob starts to move.
    void sigToggled(bool checked);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private slots:
    void onTimeout();

private:
    void announceState();

    bool m_checked = false;
    QColor m_backgroundOff{Style::colour("switch-off")};
    QColor m_backgroundOn{Style::colour("accent")};
    QColor m_knobColor{Qt::white};
    double m_knobPosition = 0; ///< horizontal centre of the knob, in pixels
    int m_knobDiameter = 18;   ///< in pixels; the size hints follow from it
    QTimer m_timer;
};
