#pragma once

#include <QDialog>
#include <QPoint>

/// The base of every pop-up dialog: borderless and see-through, in the middle of the primary
/// screen, deaf to Escape, and reporting the user's choice through signals only.
///
/// Dialogs are made once, hidden, and shown and hidden by their owner; none is run modally with
/// exec() and none has a result code. The main window behind a dialog is darkened by MaskForm.
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
