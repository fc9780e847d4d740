#include "CameraBench.h"

#include "HidCommands.h"
#include "SupportedCameras.h"
#include "UVCCamera.h"

namespace {

constexpr int kFormatSize = 36;
constexpr int kStreamingOffset = 32;

void putNumber(QByteArray& payload, int offset, int value)
{
    for (int i = 0; i < 4; ++i)
        payload[offset + i] = static_cast<char>((static_cast<quint32>(value) >> (8 * i)) & 0xFFU);
}

} // namespace

CameraBench::CameraBench(int cameras)
{
    m_hidapi.respondTo(HidCommands::ConnectionProbe, {QByteArray(1, '\0')});
    m_hidapi.setOpenRule([this](const QByteArray& path) { return m_refused.count(path) == 0; });
    plugIn(cameras);
}

void CameraBench::plugIn(int cameras)
{
    plugInParts(cameras, cameras);
}

void CameraBench::plugInParts(int hidInterfaces, int videoDevices)
{
    m_hidapi.unplugAll();
    for (int i = 0; i < hidInterfaces; ++i)
        m_hidapi.plugIn({hidPath(i).toUtf8(), SupportedCameras::kVendorId,
                         SupportedCameras::kProductId, L"Maker"});
    m_video.unplugAll();
    for (int i = 0; i < videoDevices; ++i)
        m_video.plugIn({QStringLiteral("/dev/video%1").arg(i), QStringLiteral("Camera %1").arg(i),
                        videoPath(i)});
}

void CameraBench::refuse(int number)
{
    m_refused.insert(hidPath(number).toUtf8());
}

void CameraBench::setVersion(const QByteArray& numbers)
{
    m_hidapi.respondTo(HidCommands::FirmwareVersion, {numbers});
}

void CameraBench::setSerialNumber(const QByteArray& serial)
{
    m_hidapi.respondTo(HidCommands::SerialNumber, {serial});
}

void CameraBench::setStream(int width, int height, int streaming)
{
    QByteArray payload(kFormatSize, '\0');
    putNumber(payload, 0, width);
    putNumber(payload, 4, height);
    putNumber(payload, kStreamingOffset, streaming);
    m_hidapi.respondTo(HidCommands::VideoFormat, {payload});
}

QString CameraBench::hidPath(int number)
{
    return QStringLiteral("/dev/hidraw%1").arg(number);
}

QString CameraBench::videoPath(int number)
{
    return QStringLiteral("/dev/video%1#vid_b206&pid_b215#1-%1").arg(number);
}

QList<UVCDeviceInfo> CameraBench::videoDevices()
{
    QList<UVCDeviceInfo> cameras;
    UVCCamera::enumerateCameras(cameras);
    return cameras;
}
