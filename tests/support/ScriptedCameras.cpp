#include "ScriptedCameras.h"

#include "CameraModels.h"
#include "DeviceSettings.h"
#include "HidCommands.h"
#include "PictureSettings.h"
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

ScriptedCameras::ScriptedCameras(int cameras)
{
    m_hidapi.respondTo(HidCommands::ConnectionProbe, {QByteArray(1, '\0')});
    m_hidapi.setOpenRule([this](const QByteArray& path) { return m_refused.count(path) == 0; });
    plugIn(cameras);
}

void ScriptedCameras::plugIn(int cameras)
{
    plugInParts(cameras, cameras);
}

void ScriptedCameras::plugInParts(int hidInterfaces, int videoDevices)
{
    m_hidapi.unplugAll();
    for (int i = 0; i < hidInterfaces; ++i)
        addHidInterface(i);
    m_video.unplugAll();
    for (int i = 0; i < videoDevices; ++i)
        addVideoDevice(i);
}

void ScriptedCameras::plugInOnly(int number)
{
    m_hidapi.unplugAll();
    addHidInterface(number);
    m_video.unplugAll();
    addVideoDevice(number);
}

void ScriptedCameras::addHidInterface(int number)
{
    m_hidapi.plugIn({hidPath(number).toUtf8(), CameraModels::rows().begin()->vendorId,
                     CameraModels::rows().begin()->productId, L"Maker"});
}

void ScriptedCameras::addVideoDevice(int number)
{
    m_video.plugIn({QStringLiteral("/dev/video%1").arg(number),
                    QStringLiteral("Camera %1").arg(number), videoPath(number)});
}

void ScriptedCameras::refuse(int number)
{
    m_refused.insert(hidPath(number).toUtf8());
}

void ScriptedCameras::setVersion(const QByteArray& numbers)
{
    m_hidapi.respondTo(HidCommands::FirmwareVersion, {numbers});
}

void ScriptedCameras::setSerialNumber(const QByteArray& serial)
{
    m_hidapi.respondTo(HidCommands::SerialNumber, {serial});
}

void ScriptedCameras::answerAll()
{
    setVersion(QByteArray::fromHex("010005"));
    setSerialNumber("SVAA009500551");
    for (const DeviceSettingRow& row : DeviceSettings::rows())
        m_hidapi.respondTo(row.readCode,
                           {QByteArray(1, static_cast<char>(row.values.begin()->value))});
    for (const PictureSettingRow& row : PictureSettings::rows()) {
        VideoProcAmpRecord& record = m_video.preview().properties[static_cast<int>(row.property)];
        record.property = row.property;
        record.value = PictureSettings::kFactoryDefault;
    }
}

void ScriptedCameras::setStream(int width, int height, int streaming)
{
    QByteArray payload(kFormatSize, '\0');
    putNumber(payload, 0, width);
    putNumber(payload, 4, height);
    putNumber(payload, kStreamingOffset, streaming);
    m_hidapi.respondTo(HidCommands::VideoFormat, {payload});
}

QString ScriptedCameras::hidPath(int number)
{
    return QStringLiteral("/dev/hidraw%1").arg(number);
}

QString ScriptedCameras::videoPath(int number)
{
    return QStringLiteral("/dev/video%1#vid_b206&pid_b215#1-%1").arg(number);
}

QList<UVCDeviceInfo> ScriptedCameras::videoDevices()
{
    QList<UVCDeviceInfo> cameras;
    UVCCamera::enumerateCameras(cameras);
    return cameras;
}
