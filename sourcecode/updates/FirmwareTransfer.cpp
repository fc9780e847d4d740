#include "FirmwareTransfer.h"

#include "SleepInhibitor.h"
#include "UVCCamera.h"

#include <QDebug>
#include <QtConcurrent>

FirmwareTransfer::FirmwareTransfer(QObject* parent)
    : QObject(parent)
{
    connect(&m_worker, &QFutureWatcher<void>::finished, this, &FirmwareTransfer::end);
}

FirmwareTransfer::~FirmwareTransfer()
{
    m_worker.waitForFinished();
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_camera.reset();
}

bool FirmwareTransfer::start(const QString& hidPath, const QString& file)
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
    m_worker.setFuture(QtConcurrent::run(this, &FirmwareTransfer::cameraUpdateFile, file));
    return true;
}

bool FirmwareTransfer::isRunning() const
{
    return m_camera != nullptr;
}

void FirmwareTransfer::cameraLeft()
{
    setBusyHidPath({});
}

void FirmwareTransfer::setBusyHidPath(const QString& hidPath)
{
    if (m_busyHidPath == hidPath)
        return;
    m_busyHidPath = hidPath;
    emit busyCameraChanged(m_busyHidPath);
}

/// On the worker.
void FirmwareTransfer::cameraUpdateFile(const QString& path)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_sent = write(path);
}

bool FirmwareTransfer::write(const QString& path)
{
    qDebug() << "slotCameraUpdateFile" << path;
    if (!m_camera->initHid()) {
        qDebug() << "无法打开当前设备";
        emit notOpened();
        return false;
    }
    return m_camera->updateFile(path);
}

void FirmwareTransfer::end()
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
