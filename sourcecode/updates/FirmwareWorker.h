#pragma once

#include <memory>
#include <mutex>
#include <QFutureWatcher>
#include <QObject>
#include <QString>

class SleepInhibitor;
class UVCCamera;

/// Writes firmware into a camera, on a worker of the global thread pool; one camera at a time.
/// During a transfer the computer does not go to sleep by itself.
///
/// The transfer has its own link to the camera, so the worker shares no object with the GUI thread.
/// All functions belong to the GUI thread. The destructor waits for the end of the transfer,
/// because a camera with half an image may not start again.
class FirmwareWorker : public QObject
{
    Q_OBJECT

public:
    explicit FirmwareWorker(QObject* parent = nullptr);
    ~FirmwareWorker() override;

    /// Starts to write the image in @p file into the camera at @p hidPath. No other handle to this
    /// camera may be open.
    /// @return false when another transfer is still running
    bool start(const QString& hidPath, const QString& file);

    [[nodiscard]] bool isRunning() const;

    /// Path of the control interface that is being written, to which nothing else may send
    /// commands. Empty when no camera is being written.
    [[nodiscard]] QString busyHidPath() const { return m_busyHidPath; }

    /// The camera has left the bus. A camera that comes back under the same path may be asked at
    /// once, even if the transfer to the old one has not failed yet.
    void cameraLeft();

signals:
    /// busyHidPath() has changed.
    void busyCameraChanged(const QString& hidPath);
    /// The camera could not be opened and nothing was sent. Emitted on the worker.
    void notOpened();
    /// The transfer has ended; emitted for each transfer.
    /// @param sent whether the camera acknowledged the end command. This does not mean that it
    ///             accepted the image: only its version after the restart shows that.
    void finished(bool sent);

private:
    void cameraUpdateFile(const QString& path);
    bool write(const QString& path);
    void end();
    void setBusyHidPath(const QString& hidPath);

    std::mutex m_mutex; ///< locked by the worker during the transfer
    /// Used under the mutex; created and destroyed while no worker runs.
    std::unique_ptr<UVCCamera> m_camera;
    bool m_sent = false; ///< used under the mutex
    std::unique_ptr<SleepInhibitor> m_inhibitor;
    QFutureWatcher<void> m_worker;
    QString m_busyHidPath;
};
