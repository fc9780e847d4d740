#pragma once

#include "PixelSize.h"

#include <QObject>

class QScreen;
class QWidget;

/// Gives the program's windows the right size again after the scale of a monitor has changed, or
/// the main window has moved to a monitor of another scale. Qt scales a window itself then, but not
/// the native windows inside of it (the preview area is one), nor a window without a frame that
/// Windows does not scale. GUI thread.
class ScaleChange : public QObject
{
    Q_OBJECT

public:
    /// @param window the main window; owns this object
    explicit ScaleChange(QWidget* window);

signals:
    /// All windows have their sizes.
    void settled();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watchWindow();
    void watchScreen(QScreen* screen) const;
    void settleLater();
    void settle();

    PixelSize m_pixelSize;
    QWidget* m_window;
    bool m_isDue = false;
};
