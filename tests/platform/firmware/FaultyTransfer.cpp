#include "FaultyTransfer.h"

#include "ProcessUsage.h"

#include <QElapsedTimer>

namespace {

constexpr int kImageBytes = 1010 * (TransferFault::kPackets - 1) + 77;

} // namespace

FaultyTransfer::FaultyTransfer(const QString& fault)
    : m_image(FirmwareCamera::image(kImageBytes))
    , m_pulled(fault.startsWith(QLatin1String("unplug-at")))
{
    const QString file = m_camera.file(m_image);
    if (!fault.isEmpty())
        m_camera->fault(fault.toStdString());
    m_descriptors = ProcessUsage::openDescriptors();
    QElapsedTimer timer;
    timer.start();
    m_sent = m_camera.write(file);
    m_elapsedMs = timer.elapsed();
    m_requests = m_camera.requests();
}

QByteArray FaultyTransfer::complaint(bool hasAll)
{
    if (ProcessUsage::openDescriptors() != m_descriptors)
        return "a file or handle is left open";
    if (!m_camera->waitFor("hid<=0"))
        return "the camera is left open";
    const std::optional<QByteArray> received = m_camera.received();
    if (!received)
        return "the camera has other bytes than those in its log";
    if (!m_image.startsWith(*received))
        return "the camera has bytes that are not the image's";
    if (hasAll && *received != m_image)
        return "the camera has " + QByteArray::number(received->size()) + " bytes";
    if (m_pulled && !m_camera->waitFor("offbus"))
        return "the camera is still there";
    if (!m_pulled && m_camera.wasToldTheEnd() && !m_camera.startsAnew())
        return "the camera does not start anew";
    const QString version = m_camera.versionAfterRestart();
    const char* expected = hasAll ? FirmwareCamera::kNewVersion : FirmwareCamera::kOldVersion;
    return version == QLatin1String(expected) ? QByteArray() : "it runs " + version.toUtf8();
}
