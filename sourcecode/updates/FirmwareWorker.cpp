#include "FirmwareWorker.h"

#include "CameraLock.h"
#include "LogCategories.h"
#include "SleepInhibitor.h"
#include "UVCCamera.h"

#include <QtConcurrent>

namespace {

constexpr std::chrono::seconds kLockLimit{3};

}

FirmwareWorker::FirmwareWorker(QObject* parent)
    : QObject(parent)
{
    connect(&m_worker, &QFutureWatcher<void>::finished, this, &FirmwareWorker::end);
}

FirmwareWorker::~FirmwareWorker()
{
    m_worker.waitForFinished();
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_camera.reset();
}

bool FirmwareWorker::start(const QString& hidPath, const QString& file)
{
    if (isRunning())
        return false;
    setBusyHidPath(hidPath);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_camera = std::make_unique<UVCCamera>();
        m_camera->setCurrentDevicePath(hidPath);
    }
    m_inhibitor = std::make_unique<SleepInhibitor>(tr("Firmware is written into a camera"));
    m_worker.setFuture(QtConcurrent::run(this, &FirmwareWorker::cameraUpdateFile, file));
    return true;
}

bool FirmwareWorker::isRunning() const
{
    return m_camera != nullptr;
}

void FirmwareWorker::cameraLeft()
{
    setBusyHidPath({});
}

void FirmwareWorker::setBusyHidPath(const QString& hidPath)
{
    if (m_busyHidPath == hidPath)
        return;
    m_busyHidPath = hidPath;
    emit busyCameraChanged(m_busyHidPath);
}

/// On the worker.
void FirmwareWorker::cameraUpdateFile(const QString& path)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_sent = write(path);
}

bool FirmwareWorker::write(const QString& path)
{
    qCDebug(updateLog) << "slotCameraUpdateFile" << path;
    // Before the camera is opened: an open handle receives the answers to other programs' commands.
    CameraLock lock;
    if (!lock.acquire(m_camera->currentDevicePath().toUtf8(), CameraLock::Use::Firmware,
                      kLockLimit)) {
        qCWarning(updateLog) << "The camera is in use by" << lock.holder().toString();
        emit notOpened();
        return false;
    }
    if (!m_camera->initHid()) {
        qCDebug(updateLog) << "无法打开当前设备";
        emit notOpened();
        return false;
    }
    const bool sent = m_camera->updateFile(path);
    // On the thread that has used the handle: Windows may still write into the buffer of a read
    // that this thread has started.
    m_camera->closeHid();
    return sent;
}

void FirmwareWorker::end()
{
    bool sent = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_camera.reset();
        sent = m_sent;
    }
    m_inhibitor.reset();
    setBusyHidPath({});
    emit finished(sent);
}
