#include "CameraSettings.h"

#include "DeviceIniStore.h"
#include "LogCategories.h"
#include "OpenCamera.h"
#include "ParameterKeys.h"
#include "ParamSettingsPage.h"
#include "PictureSettings.h"
#include "ReportedText.h"
#include "UVCCamera.h"

#include <QScopedValueRollback>

using namespace ParameterKeys;

namespace {

// Framing needs the widest view, and the camera cannot show the narrowest one while it streams 4K.
constexpr int kWidestView = 120;
constexpr int kNarrowestView = 60;
constexpr int kUnknownView = -1;
constexpr int kFramingDelayMs = 10;
constexpr int kFramingOffDelayMs = 100;

/// "setCameraView" for the key "CameraView": the name of the forwarder in the log.
QString setterName(QLatin1String key)
{
    QString name = QString(key);
    name.replace(0, 1, name.at(0).toUpper());
    return QStringLiteral("set") + name;
}

} // namespace

CameraSettings::CameraSettings(OpenCamera& camera, ParamSettingsPage& page, QObject* parent)
    : QObject(parent)
    , m_camera(camera)
    , m_page(page)
{
}

void CameraSettings::reapplySaved(const QString& sn)
{
    const auto saved = DeviceIniStore().read(sn);
    if (!saved)
        return;
    for (const PictureSettingRow& row : PictureSettings::rows())
        m_camera.camera().setPicture(row.property, saved.value().*row.value);
    m_page.setImageMode(saved->reselectedImageMode);
}

QString CameraSettings::reapplySavedTo(const DeviceWidgetInfo& info)
{
    UVCCamera& camera = m_camera.camera();
    m_camera.session().flushDeferred();
    const bool opened = camera.openDevice(info.path, m_page.previewArea()->winId());
    qCDebug(settingsLog) << "openDevice result =" << opened;
    if (!opened) {
        qCDebug(settingsLog) << "open Device failed!";
        return {};
    }
    camera.stopCapture();
    camera.initVideoProcAmp();
    camera.setCurrentDevicePath(info.hidPath);
    camera.initHid();
    QString sn = ReportedText::orEmpty(camera.getSerialNumber());
    reapplySaved(sn);
    camera.closeDevice(); // the list shows no picture
    return sn;
}

void CameraSettings::setDeviceParam()
{
    QMap<QString, int>& edited = m_camera.session().parameters().edited();
    // Read so that flags and steps are known for the writes; the sliders have one range for every
    // camera.
    for (const PictureProperty property : PictureSettings::shownOrder())
        m_camera.camera().pictureRange(property);

    const QScopedValueRollback<bool> showing(m_isShowing, true);
    m_page.setImageMode(edited[ImageMode]);
    for (const PictureProperty property : PictureSettings::shownOrder()) {
        const QLatin1String key = PictureSettings::row(property).key;
        if (m_camera.session().parameters().isUnknown(key)) {
            m_page.setPictureUnknown(property);
            continue;
        }
        const int value = edited[key];
        if (property == PictureProperty::Contrast)
            qCDebug(settingsLog) << "getContrast" << value;
        m_page.setPicture(property, value);
    }
}

void CameraSettings::setAdvancedParam()
{
    const ParameterModel& parameters = m_camera.session().parameters();
    QMap<QString, int>& edited = m_camera.session().parameters().edited();
    const QScopedValueRollback<bool> showing(m_isShowing, true);
    const bool autoFraming = edited[AutoFrameSwitch] != 0;
    m_page.setIntelligentUnknown(isFramingUnknown());
    if (isFramingUnknown() || (!autoFraming && edited[FrameMaster] == 0)) {
        m_page.setIntelligent(false);
    } else {
        m_page.setIntelligent(true);
        if (autoFraming) {
            m_page.setAutoFraming();
            m_page.setSubMode(edited[AutoFrameMode]);
        } else {
            m_page.setFrameMaster();
        }
    }
    for (const DeviceSettingRow& row : DeviceSettings::rows()) {
        const int value = edited[row.key];
        if (parameters.isUnknown(row.key))
            m_page.setSettingUnknown(row.setting);
        else if (row.setting != DeviceSetting::CameraView || value != kUnknownView)
            m_page.showSetting(row.setting, value);
    }
}

void CameraSettings::showAdvancedParam()
{
    const QScopedValueRollback<bool> readOnly(m_isReadOnly, true);
    setAdvancedParam();
}

void CameraSettings::applyPicture(PictureProperty property, int value)
{
    const QLatin1String key = PictureSettings::row(property).key;
    if (isOnlyShown(key))
        return;
    m_camera.session().parameters().setChosen(key);
    m_camera.session().parameters().edited()[key] = value;
    if (!m_camera.camera().setPicture(property, value))
        qCDebug(settingsLog) << "the camera does not take" << key << value;
}

void CameraSettings::apply(DeviceSetting setting, int value)
{
    const QLatin1String key = DeviceSettings::row(setting).key;
    if (isOnlyShown(key))
        return;
    m_camera.session().parameters().setChosen(key);
    const bool ret = m_camera.camera().writeSetting(setting, value);
    qCDebug(settingsLog).noquote() << setterName(key) << "ret =" << ret;
    m_camera.session().parameters().edited()[key] = value;
}

void CameraSettings::applySelectedView()
{
    if (!m_page.isCameraViewEnabled())
        return;
    const int view = m_page.selectedCameraView();
    apply(DeviceSetting::CameraView, view);
    if (view == kNarrowestView) {
        refresh4kState();
        m_page.show4kNotice();
    }
}

void CameraSettings::setFigureCenter(bool on)
{
    m_camera.session().parameters().edited()[FigureCenter] = on ? 1 : 0;
    if (!on)
        return;
    refresh4kState();
    m_page.show4kNotice();
}

void CameraSettings::switchIntelligent(bool on, int lastIntelligent)
{
    if (isOnlyShown(Intelligent))
        return;
    m_camera.session().parameters().setChosen(Intelligent);
    m_camera.session().parameters().edited()[Intelligent] = on ? 1 : 0;
    if (!on) {
        const bool autoFraming = currentValue(DeviceSetting::AutoFrameSwitch) != 0;
        const bool frameMaster = currentValue(DeviceSetting::FrameMaster) != 0;
        qCDebug(settingsLog) << "autoFrameSwicth" << autoFraming << "frameMaster" << frameMaster;
        m_camera.session().defer(kFramingOffDelayMs, [this, autoFraming] {
            const DeviceSettingRow& row = DeviceSettings::row(
                autoFraming ? DeviceSetting::AutoFrameSwitch : DeviceSetting::FrameMaster);
            m_camera.camera().writeSetting(row.setting, 0);
            m_camera.session().parameters().setChosen(row.key);
            m_camera.session().parameters().edited()[row.key] = 0;
        });
        return;
    }

    // Framing always works on the widest view. The page shows it, which sends it to the camera and
    // records it: switching the framing off again leaves the camera there.
    m_page.setCameraView(kWidestView);
    if (lastIntelligent != 0) {
        m_page.setAutoFraming();
        if (refreshSubMode() == 0)
            m_page.setSubMode(0);
    } else {
        m_page.setFrameMaster();
    }
    refresh4kState();
    m_page.show4kNotice();
}

/// The camera uses one framing mode at a time: the active mode is switched off before the other is
/// switched on.
void CameraSettings::chooseFraming(int button)
{
    if (isOnlyShown(Intelligent))
        return;
    m_camera.session().defer(kFramingDelayMs, [this, button] {
        UVCCamera& camera = m_camera.camera();
        for (const QLatin1String key : {AutoFrameSwitch, FrameMaster})
            m_camera.session().parameters().setChosen(key);
        QMap<QString, int>& edited = m_camera.session().parameters().edited();
        if (button == 0) {
            camera.setFrameMaster(0);
            camera.setAutoFrameSwitch(1);
            if (const std::optional<int> subMode = refreshSubMode())
                m_page.setSubMode(*subMode);
            edited[AutoFrameSwitch] = 1;
            edited[FrameMaster] = 0;
        } else {
            camera.setAutoFrameSwitch(0);
            camera.setFrameMaster(1);
            edited[AutoFrameSwitch] = 0;
            edited[FrameMaster] = 1;
        }
    });
}

void CameraSettings::setImageMode(int imageMode)
{
    m_camera.session().parameters().edited()[ImageMode] = imageMode;
    // A custom mode has no values of its own: the sliders stay as the user has them.
    const std::optional<PictureParameters> preset = PictureSettings::preset(imageMode);
    if (!preset)
        return;
    for (const PictureSettingRow& row : PictureSettings::rows())
        m_page.setPicture(row.property, preset.value().*row.value);
}

/// What the camera reports, or else what was last set: without an answer the program must not act
/// as if the setting were off.
int CameraSettings::currentValue(DeviceSetting setting)
{
    CameraSession& session = m_camera.session();
    const std::optional<int> value = session.readSetting(setting);
    return value.value_or(session.parameters().edited()[DeviceSettings::row(setting).key]);
}

/// The sub-mode as currentValue(), which becomes the edited one; nothing when it is not known.
std::optional<int> CameraSettings::refreshSubMode()
{
    CameraSession& session = m_camera.session();
    ParameterModel& parameters = session.parameters();
    const std::optional<int> value = session.readSetting(DeviceSetting::AutoFrameMode);
    if (!value) {
        if (parameters.isUnknown(AutoFrameMode))
            return std::nullopt;
        return parameters.edited()[AutoFrameMode];
    }
    if (parameters.isUnknown(AutoFrameMode)) {
        parameters.setKnown(AutoFrameMode);
        parameters.stored()[AutoFrameMode] = *value;
    }
    parameters.edited()[AutoFrameMode] = *value;
    return value;
}

void CameraSettings::refresh4kState()
{
    CameraSession& session = m_camera.session();
    if (!session.refreshStream())
        return;
    m_page.set4kInUse(session.is4kInUse());
    m_page.setStreamOn(session.stream().streamOn);
}

void CameraSettings::showChangesOfOthers()
{
    if (!m_camera.session().takeChangesOfOthers())
        return;
    qCDebug(settingsLog) << "another program has changed the camera";
    const QScopedValueRollback<bool> readOnly(m_isReadOnly, true);
    setDeviceParam();
    setAdvancedParam();
}

bool CameraSettings::save()
{
    CameraSession& session = m_camera.session();
    if (!session.openLink() || !session.areValuesKnown() || !session.writeIniFile())
        return false;
    session.parameters().keepEdited();
    return true;
}

void CameraSettings::resetToDefaults()
{
    m_page.setImageMode(SvtaPagesView::Standard);
    m_camera.session().parameters().edited()[ImageMode] = SvtaPagesView::Standard;
    m_page.resetToDefaults();
    if (m_camera.session().is4kInUse())
        m_page.show4kNotice();
}

void CameraSettings::discard()
{
    logStored();
    // A copy: the page's signals change the maps while the page reads the values.
    const QMap<QString, int> saved = m_camera.session().parameters().stored();
    m_camera.session().parameters().dropChoices();
    const QScopedValueRollback<bool> showing(m_isShowing, true);
    m_page.paramExitReset(saved);
    m_camera.session().parameters().discardEdited();
}

bool CameraSettings::isFramingUnknown() const
{
    return m_camera.session().parameters().isUnknown(Intelligent);
}

/// Whether the page only shows @p key: the camera has not reported the value, or has just done so.
bool CameraSettings::isOnlyShown(const QString& key) const
{
    return m_isReadOnly || (m_isShowing && m_camera.session().parameters().isUnknown(key));
}

void CameraSettings::logStored()
{
    QMap<QString, int>& stored = m_camera.session().parameters().stored();
    qCDebug(settingsLog) << "paramDateMap[CameraView]" << stored[CameraView];
    qCDebug(settingsLog) << "paramDateMap[HorizontalMirror]" << stored[HorizontalMirror];
    qCDebug(settingsLog) << "paramDateMap[FigureCenter]" << stored[FigureCenter];
    qCDebug(settingsLog) << "paramDateMap[autoFrameSwicth]" << stored[AutoFrameSwitch];
    qCDebug(settingsLog) << "paramDateMap[frameMaster]" << stored[FrameMaster];
    qCDebug(settingsLog) << "paramDateMap[autoFrameMode]" << stored[AutoFrameMode];
    qCDebug(settingsLog) << "paramDateMap[intelligent]" << stored[Intelligent];
    qCDebug(settingsLog) << "paramDateMap[PickupSensitivity]" << stored[PickupSensitivity];
}
