#include "HidCommands.h"
#include "UVCCamera.h"

#include <QDebug>
#include <QThread>

bool UVCCamera::initHid()
{
    m_hid.reset(); // the old handle is closed before the interface is opened again
    m_hid = std::make_unique<UVCHid>();
    const bool opened = m_hid->createHandleWithPath(m_currentDevicePath);
    qDebug() << "UVCCamera::initHid"
             << "m_currentDevicePath =" << m_currentDevicePath;
    if (!opened) {
        qDebug() << "Create hid handle failed.";
        m_hid.reset(); // no command may reach whatever now answers at that path
    }
    return opened;
}

void UVCCamera::closeHid()
{
    m_hid.reset();
}

int UVCCamera::readSetting(int cmd)
{
    return m_hid ? m_hid->readInfoFromDevice(cmd).toInt() : 0;
}

bool UVCCamera::writeSetting(int value, int cmd)
{
    return m_hid && m_hid->writeInfoToDevice2(value, cmd) != -1;
}

int UVCCamera::getAutoFrameMode()
{
    return readSetting(HidCommands::ReadAutoFrameMode);
}

int UVCCamera::getFrameMaster()
{
    return readSetting(HidCommands::ReadFrameMaster);
}

int UVCCamera::getPickupSensitivity()
{
    return readSetting(HidCommands::ReadPickupSensitivity);
}

int UVCCamera::getAutoFrameSwitch()
{
    return readSetting(HidCommands::ReadAutoFrameSwitch);
}

int UVCCamera::getHorizontalMirror()
{
    return readSetting(HidCommands::ReadHorizontalMirror);
}

int UVCCamera::getCameraView()
{
    return readSetting(HidCommands::ReadCameraView);
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
    return writeSetting(value, HidCommands::WriteAutoFrameMode);
}

bool UVCCamera::setFrameMaster(int value)
{
    return writeSetting(value, HidCommands::WriteFrameMaster);
}

bool UVCCamera::setPickupSensitivity(int value)
{
    return writeSetting(value, HidCommands::WritePickupSensitivity);
}

bool UVCCamera::setAutoFrameSwitch(int value)
{
    return writeSetting(value, HidCommands::WriteAutoFrameSwitch);
}

bool UVCCamera::setHorizontalMirror(int value)
{
    return writeSetting(value, HidCommands::WriteHorizontalMirror);
}

bool UVCCamera::setCameraView(int degrees)
{
    return writeSetting(degrees, HidCommands::WriteCameraView);
}

bool UVCCamera::saveDeviceParam()
{
    return m_hid && m_hid->writeInfoToDevice(QString(), HidCommands::StoreSettings) != -1;
}

bool UVCCamera::updateFile(const QString& path)
{
    qDebug() << "UVCCamera::updateFile" << QThread::currentThreadId();
    return m_hid && m_hid->updateFile(path);
}
