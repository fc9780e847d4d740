#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

/// Locks a switch while the camera changes between its framing modes, which takes a second. A
/// keyboard user keeps the place: the focus returns to the switch unless it has moved on. GUI
/// thread.
class SwitchLock : public QObject
{
    Q_OBJECT

public:
    /// @param control outlives the lock
    explicit SwitchLock(QWidget* control, QObject* parent = nullptr);

    /// Disables the switch and says so in its tool tip; sigExpired follows.
    void lock();
    /// Enables the switch again.
    void unlock();

signals:
    void sigExpired();

private:
    QWidget* m_control;
    QTimer m_timer;
    QPointer<QWidget> m_focusDuringLock; ///< took the focus from the locked switch
};
