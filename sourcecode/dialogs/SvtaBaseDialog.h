#pragma once

#include <QDialog>
#include <QPoint>

/// The base of every pop-up dialog. It has no frame and a transparent background, appears in the
/// middle of the primary screen, ignores Escape and reports the user's choice by signals only.
///
/// Return and Enter press no button, so that no key decides by accident: autoDefault is off for
/// each button of a form. Space presses the button that has the focus.
///
/// A dialog is created once, hidden; its owner shows and hides it. exec() and result codes are not
/// used. MaskForm darkens the main window behind a dialog.
class SvtaBaseDialog : public QDialog
{
    Q_OBJECT

public:
    explicit SvtaBaseDialog(QWidget* parent = nullptr);
    ~SvtaBaseDialog() override;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QPoint m_dragOrigin; ///< global position of the last left-button press
    bool m_pressed = false;
    bool m_movable = true; ///< presses are recorded only while this is true
};
