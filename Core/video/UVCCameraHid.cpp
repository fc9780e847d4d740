#include "HidCommands.h"
#include "LogCategories.h"
#include "UVCCamera.h"

#include <QThread>

bool UVCCamera::initHid()
{
    m_hid.reset(); // the old handle is closed before the interface is opened again
    m_hid = std::make_unique<UVCHid>();
    const bool opened = m_hid->createHandleWithPath(m_currentDevicePath);
    qCDebug(hidLog) << "UVCCamera::initHid"
                    << "m_currentDevicePath =" << m_currentDevicePath;
    if (!opened) {
        qCDebug(hidLog) << "Create hid handle failed.";
        m_hid.reset(); // no command may reach another device that now has this path
    }
    return opened;
}

void UVCCamera::closeHid()
{
    m_hid.reset();
}

std::optional<int> UVCCamera::readSetting(DeviceSetting setting)
{
    return m_hid ? m_hid->readSetting(setting) : std::nullopt;
}

bool UVCCamera::writeSetting(DeviceSetting setting, int value)
{
    return m_hid && m_hid->writeSetting(setting, value);
}

int UVCCamera::getAutoFrameMode()
{
    return readSetting(DeviceSetting::AutoFrameMode).value_or(0);
}

int UVCCamera::getFrameMaster()
{
    return readSetting(DeviceSetting::FrameMaster).value_or(0);
}

int UVCCamera::getPickupSensitivity()
{
    return readSetting(DeviceSetting::PickupSensitivity).value_or(0);
}

int UVCCamera::getAutoFrameSwitch()
{
    return readSetting(DeviceSetting::AutoFrameSwitch).value_or(0);
}

int UVCCamera::getHorizontalMirror()
{
    return readSetting(DeviceSetting::HorizontalMirror).value_or(0);
}

int UVCCamera::getCameraView()
{
    return readSetting(DeviceSetting::CameraView).value_or(0);
}

QString UVCCamera::getFirmwareVersion()
{
    return m_hid ? m_hid->readInfoFromDevice(HidCommands::FirmwareVersion) : QString();
}

QString UVCCamera::getSerialNumber()
{
    return m_hid ? m_hid->readInfoFromDevice(HidCommands::SerialNumber) : QString();
}

bool UVCCamera::getResolution(QMap<QString, int>& map)
{
    return m_hid && m_hid->readResolutionFromDevice(HidCommands::VideoFormat, map);
}

bool UVCCamera::setAutoFrameMode(int value)
{
    return writeSetting(DeviceSetting::AutoFrameMode, value);
}

bool UVCCamera::setFrameMaster(int value)
{
    return writeSetting(DeviceSetting::FrameMaster, value);
}

bool UVCCamera::setPickupSensitivity(int value)
{
    return writeSetting(DeviceSetting::PickupSensitivity, value);
}

bool UVCCamera::setAutoFrameSwitch(int value)
{
    return writeSetting(DeviceSetting::AutoFrameSwitch, value);
}

bool UVCCamera::setHorizontalMirror(int value)
{
    return writeSetting(DeviceSetting::HorizontalMirror, value);
}

bool UVCCamera::setCameraView(int degrees)
{
    return writeSetting(DeviceSetting::CameraView, degrees);
}

bool UVCCamera::saveDeviceParam()
{
    return m_hid && m_hid->writeInfoToDevice(QString(), HidCommands::StoreSettings) != -1;
}

bool UVCCamera::updateFile(const QString& path)
{
    qCDebug(hidLog) << "UVCCamera::updateFile" << QThread::currentThreadId();
    return m_hid && m_hid->updateFile(path);
}
