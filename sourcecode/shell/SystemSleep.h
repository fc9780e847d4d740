#pragma once

#include <memory>
#include <QObject>

/// Reports that the computer goes to sleep and is awake again. Windows may take the camera's power
/// during that time, and the picture then stands still without an error. On Linux the driver starts
/// the stream again, so nothing is reported there. GUI thread.
class SystemSleep : public QObject
{
    Q_OBJECT

public:
    /// USB devices come back within this time after the computer is awake.
    static constexpr int kReturnMs = 2000;

    explicit SystemSleep(QObject* parent = nullptr);
    ~SystemSleep() override;

signals:
    void fallsAsleep();
    /// Emitted kReturnMs after the computer is awake.
    void isAwake();

private:
    class Watch;
    std::unique_ptr<Watch> m_watch;
};
