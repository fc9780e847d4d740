#pragma once

#include <memory>
#include <mutex>
#include <QFutureWatcher>
#include <QObject>
#include <QString>

class SleepInhibitor;
class UVCCamera;

/// The writing of firmware into one camera, on a worker of the global thread pool; at most one at a
/// time. While it runs the computer does not go to sleep by itself.
///
/// It has a link to the camera of its own, so nothing else that is open is touched from the worker.
/// GUI thread. Its destruction waits for the transfer: no camera is left with half an image.
class FirmwareTransfer : public QObject
{
    Q_OBJECT

public:
    explicit FirmwareTransfer(QObject* parent = nullptr);
    ~FirmwareTransfer() override;

    /// Writes the image in @p file into the camera at @p hidPath. No other handle may be open on
    /// it.
    /// @return false when another transfer is still running
    bool start(const QString& hidPath, const QString& file);

    [[nodiscard]] bool isRunning() const;

    /// The control interface that nothing else may talk to; empty when there is none.
    [[nodiscard]] QString busyHidPath() const { return m_busyHidPath; }

    /// The camera is gone from the bus. Whatever comes back under its path is free again, even if
    /// the transfer has not noticed yet.
    void cameraLeft();

signals:
    /// busyHidPath() is another one now.
    void busyCameraChanged(const QString& hidPath);
    /// The camera could not be opened; nothing was sent.
    void notOpened();
    /// The end of every transfer.
    /// @param sent whether the camera acknowledged its end; whether it accepts the image shows in
    ///             the version that it comes back with
    void finished(bool sent);

private:
    void cameraUpdateFile(const QString& path);
    bool write(const QString& path);
    void end();
    void setBusyHidPath(const QString& hidPath);

    std::mutex m_mutex;                  ///< the worker's as long as one runs
    std::unique_ptr<UVCCamera> m_camera; ///< under the mutex; made and destroyed without a worker
    bool m_sent = false;                 ///< under the mutex
    std::unique_ptr<SleepInhibitor> m_inhibitor;
    QFutureWatcher<void> m_worker;
    QString m_busyHidPath;
};
