#include "CameraSession.h"

#include "DeviceIniStore.h"
#include "ParameterKeys.h"
#include "PictureSettings.h"
#include "ReportedText.h"
#include "SvtaPagesView.h"
#include "UVCCamera.h"

#include <algorithm>
#include <QDebug>
#include <QTimer>
#include <utility>

namespace {

constexpr int kMaxSilentReads = 2;

} // namespace

CameraSession::CameraSession(UVCCamera& camera, DeviceWidgetInfo info, QObject* parent)
    : QObject(parent)
    , m_camera(camera)
    , mDeviceWidgetInfo(std::move(info))
{
}

void CameraSession::setPaths(const QString& path, const QString& hidPath)
{
    mDeviceWidgetInfo.path = path;
    mDeviceWidgetInfo.hidPath = hidPath;
}

bool CameraSession::openLink()
{
    m_camera.setCurrentDevicePath(mDeviceWidgetInfo.hidPath);
    return m_camera.initHid();
}

void CameraSession::closeLink()
{
    m_camera.closeHid();
}

bool CameraSession::mayRead() const
{
    return m_silentReads < kMaxSilentReads;
}

void CameraSession::noteRead()
{
    m_silentReads = m_camera.wasSilent() ? m_silentReads + 1 : 0;
}

void CameraSession::refreshIdentity()
{
    openLink();
    m_silentReads = 0;
    mDeviceWidgetInfo.deviceVersion = ReportedText::orEmpty(m_camera.getFirmwareVersion());
    noteRead();
    mDeviceWidgetInfo.sn = ReportedText::orEmpty(m_camera.getSerialNumber());
    noteRead();
}

void CameraSession::loadParameters()
{
    m_parametersLoaded = true;
    readIniFile();
    readDeviceParam();
    m_valuesKnown = true;
}

void CameraSession::forgetParameters()
{
    m_parameters.clear();
    m_parametersLoaded = false;
    m_valuesKnown = false;
}

void CameraSession::readIniFile()
{
    for (const PictureSettingRow& row : PictureSettings::rows())
        m_parameters.setKnown(row.key);
    if (const auto saved = DeviceIniStore().read(mDeviceWidgetInfo.sn)) {
        m_parameters.setPicture(*saved);
        return;
    }
    PictureParameters picture;
    for (const PictureSettingRow& row : PictureSettings::rows()) {
        const std::optional<int> value = m_camera.readPicture(row.property);
        picture.*row.value = value.value_or(0);
        if (!value)
            m_parameters.setUnknown(row.key);
    }
    m_parameters.setPicture(picture);
}

std::optional<int> CameraSession::readSetting(DeviceSetting setting)
{
    if (!mayRead())
        return std::nullopt;
    const std::optional<int> value = m_camera.readSetting(setting);
    noteRead();
    return value;
}

void CameraSession::readDeviceParam()
{
    for (const DeviceSettingRow& row : DeviceSettings::rows()) {
        const std::optional<int> value = readSetting(row.setting);
        m_parameters.stored()[row.key] = value.value_or(0);
        if (value)
            m_parameters.setKnown(row.key);
        else
            m_parameters.setUnknown(row.key);
    }
    if (m_parameters.isUnknown(ParameterKeys::AutoFrameSwitch) ||
        m_parameters.isUnknown(ParameterKeys::FrameMaster))
        m_parameters.setUnknown(ParameterKeys::Intelligent);
    else
        m_parameters.setKnown(ParameterKeys::Intelligent);
    m_parameters.deriveIntelligent();
    m_parameters.copyDeviceParameters();
}

bool CameraSession::takeChangesOfOthers()
{
    if (!m_valuesKnown || !m_deferred.isEmpty())
        return false;
    bool changed = false;
    for (const DeviceSettingRow& row : DeviceSettings::rows()) {
        const std::optional<int> value = readSetting(row.setting);
        if (!value ||
            (!m_parameters.isUnknown(row.key) && *value == m_parameters.edited()[row.key]))
            continue;
        m_parameters.setReported(row.key, *value);
        changed = true;
    }
    if (changed)
        deriveIntelligent();
    bool pictureChanged = false;
    for (const PictureSettingRow& row : PictureSettings::rows())
        pictureChanged = takePictureChange(row.property) || pictureChanged;
    // No preset has these values any more.
    if (pictureChanged)
        m_parameters.setReported(ParameterKeys::ImageMode, SvtaPagesView::Custom);
    return changed || pictureChanged;
}

/// What follows from the framing values that were just reported.
void CameraSession::deriveIntelligent()
{
    if (m_parameters.isUnknown(ParameterKeys::AutoFrameSwitch) ||
        m_parameters.isUnknown(ParameterKeys::FrameMaster))
        return;
    m_parameters.setReported(ParameterKeys::Intelligent,
                             m_parameters.edited()[ParameterKeys::AutoFrameSwitch] != 0 ||
                                 m_parameters.edited()[ParameterKeys::FrameMaster] != 0);
}

bool CameraSession::takePictureChange(PictureProperty property)
{
    const std::optional<int> value = m_camera.readPicture(property);
    if (!value)
        return false;
    const QLatin1String key = PictureSettings::row(property).key;
    const int edited = m_parameters.edited()[key];
    const QPair<int, int> range = m_camera.pictureRange(property);
    const int taken = std::max(range.first, std::min(edited, range.second));
    const bool isOurs = *value == edited || *value == taken;
    if (isOurs && !m_parameters.isUnknown(key))
        return false;
    m_parameters.setReported(key, *value);
    return true;
}

bool CameraSession::writeIniFile()
{
    return DeviceIniStore().write(mDeviceWidgetInfo.sn, m_parameters.editedPicture(),
                                  m_parameters.unknownKeys());
}

bool CameraSession::refreshStream()
{
    if (!mayRead() || !openLink())
        return false;
    const bool isAnswered = m_camera.getResolution(m_resolution);
    noteRead();
    if (!isAnswered)
        return false;
    m_4kWasInUse = m_4kInUse;
    m_4kInUse = stream().is4k();
    return true;
}

void CameraSession::defer(int delayMs, std::function<void()> step)
{
    const auto entry = std::make_shared<std::function<void()>>(std::move(step));
    m_deferred.append(entry);
    QTimer::singleShot(delayMs, this, [this, entry] {
        if (m_deferred.removeOne(entry))
            (*entry)();
    });
}

void CameraSession::flushDeferred()
{
    while (!m_deferred.isEmpty())
        (*m_deferred.takeFirst())();
}
