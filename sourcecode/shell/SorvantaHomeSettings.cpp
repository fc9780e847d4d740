#include "DeviceIniStore.h"
#include "MaskForm.h"
#include "ParameterKeys.h"
#include "ParamSettingsPage.h"
#include "ReportedText.h"
#include "SorvantaHome.h"
#include "SvtaCenterTipDialog.h"
#include "SvtaParamNotSaveDialog.h"
#include "SvtaParamResetDialog.h"
#include "SvtaParamSaveDialog.h"
#include "UVCCamera.h"

#include <QDebug>
#include <QTimer>

using namespace ParameterKeys;

namespace {

constexpr int kSliderMinimum = 78;
constexpr int kSliderMaximum = 178;
constexpr int kWidestView = 120;
constexpr int kNarrowestView = 60;
constexpr int kFramingDelayMs = 10;
constexpr int kFramingOffDelayMs = 100;
constexpr int kUnknownView = -1;

struct Preset
{
    int bright;
    int contrast;
    int saturation;
    int sharpness;
};

constexpr Preset kStandard{128, 128, 128, 128};
constexpr Preset kBright{138, 128, 130, 120};
constexpr Preset kVivid{130, 128, 140, 120};

const char* const kSaveFailed =
    QT_TRANSLATE_NOOP("SorvantaHome", "Save failed ， please try it again");

} // namespace

void SorvantaHome::readIniFile()
{
    if (const auto saved = DeviceIniStore().read(mDeviceWidgetInfo.sn)) {
        m_parameters.setPicture(*saved);
        return;
    }
    PictureParameters picture;
    picture.bright = m_pCamera->getBright();
    picture.contrast = m_pCamera->getContrast();
    picture.saturation = m_pCamera->getSaturation();
    picture.sharpness = m_pCamera->getSharpness();
    m_parameters.setPicture(picture);
}

void SorvantaHome::readDeviceParam()
{
    QMap<QString, int>& stored = m_parameters.stored();
    stored[AutoFrameSwitch] = m_pCamera->getAutoFrameSwitch();
    stored[FrameMaster] = m_pCamera->getFrameMaster();
    stored[AutoFrameMode] = m_pCamera->getAutoFrameMode();
    stored[PickupSensitivity] = m_pCamera->getPickupSensitivity();
    stored[CameraView] = m_pCamera->getCameraView();
    stored[HorizontalMirror] = m_pCamera->getHorizontalMirror();
    m_parameters.deriveIntelligent();
    m_parameters.copyDeviceParameters();
}

void SorvantaHome::readIniFileWithSN(const QString& sn)
{
    const auto saved = DeviceIniStore().read(sn);
    if (!saved)
        return;
    m_pCamera->setBright(saved->bright);
    m_pCamera->setContrast(saved->contrast);
    m_pCamera->setSaturation(saved->saturation);
    m_pCamera->setSharpness(saved->sharpness);
    m_settingsPage->setImageMode(saved->reselectedImageMode);
}

bool SorvantaHome::writeIniFile()
{
    return DeviceIniStore().write(mDeviceWidgetInfo.sn, m_parameters.editedPicture());
}

bool SorvantaHome::isSameData()
{
    return m_parameters.isSameData();
}

void SorvantaHome::setDeviceParam()
{
    QMap<QString, int>& edited = m_parameters.edited();
    // Asked so that flags and steps are known for the writes; the sliders have one range for every
    // camera.
    m_pCamera->getBrightRange();
    m_pCamera->getContrastRange();
    m_pCamera->getSharpnessRange();
    m_pCamera->getSaturationRange();

    m_settingsPage->setImageMode(edited[ImageMode]);
    m_settingsPage->setBrightSlider(kSliderMinimum, kSliderMaximum, edited[Bright]);
    qDebug() << "getContrast" << edited[Contrast];
    m_settingsPage->setContrastSlider(kSliderMinimum, kSliderMaximum, edited[Contrast]);
    m_settingsPage->setSharpnessSlider(kSliderMinimum, kSliderMaximum, edited[Sharpness]);
    m_settingsPage->setSaturationSlider(kSliderMinimum, kSliderMaximum, edited[Saturation]);
}

/// Shows the settings that the camera itself keeps. Marking a framing mode, a view or the mirror
/// also writes it back to the camera, which does no harm: it is where the value came from.
void SorvantaHome::setAdvancedParam()
{
    QMap<QString, int>& edited = m_parameters.edited();
    const bool autoFraming = edited[AutoFrameSwitch] != 0;
    if (!autoFraming && edited[FrameMaster] == 0) {
        m_settingsPage->setIntelligent(false);
    } else {
        m_settingsPage->setIntelligent(true);
        if (autoFraming) {
            m_settingsPage->setAutoFraming();
            m_settingsPage->setSubMode(edited[AutoFrameMode]);
        } else {
            m_settingsPage->setFrameMaster();
        }
    }
    m_settingsPage->setPickupSensitivity(edited[PickupSensitivity]);
    if (edited[CameraView] != kUnknownView)
        m_settingsPage->setCameraView(edited[CameraView]);
    m_settingsPage->setHorizontalMirror(edited[HorizontalMirror] == 1);
}

void SorvantaHome::slotSetDeviceParam(const DeviceWidgetInfo& Info)
{
    if (currentPage() != SvtaPagesView::HomePage || !m_pCamera || isBusy(Info.hidPath))
        return;
    takePutOffSteps();
    const bool opened = m_pCamera->openDevice(Info.path, m_settingsPage->previewArea()->winId());
    qDebug() << "openDevice result =" << opened;
    if (!opened) {
        qDebug() << "open Device failed!";
        return;
    }
    m_pCamera->stopCapture();
    m_pCamera->initVideoProcAmp();
    m_pCamera->setCurrentDevicePath(Info.hidPath);
    m_pCamera->initHid();
    readIniFileWithSN(reportedText(m_pCamera->getSerialNumber()));
    m_pCamera->closeDevice(); // on the list nothing is shown of it
}

/// Each edit goes into the edited settings and to the camera at once. A camera that refuses is
/// logged; the edit stays, so a save stores what the user chose.
void SorvantaHome::applyPicture(const QString& key, int value, bool (UVCCamera::*set)(int))
{
    m_parameters.edited()[key] = value;
    if (!(m_pCamera->*set)(value))
        qDebug() << "the camera does not take" << key << value;
}

void SorvantaHome::slotCameraBrightValueChanged(int value)
{
    qDebug() << "value" << value;
    applyPicture(Bright, value, &UVCCamera::setBright);
    qDebug() << "paramDateChangeMap[bright]" << m_parameters.edited()[Bright];
}

void SorvantaHome::slotCameraContrastValueChanged(int value)
{
    qDebug() << "slotCameraContrastValueChanged" << value;
    applyPicture(Contrast, value, &UVCCamera::setContrast);
}

void SorvantaHome::slotCameraSaturationValueChanged(int value)
{
    applyPicture(Saturation, value, &UVCCamera::setSaturation);
}

void SorvantaHome::slotCameraSharpnessValueChanged(int value)
{
    applyPicture(Sharpness, value, &UVCCamera::setSharpness);
}

void SorvantaHome::slotCameraHorizontalMirrorSwitch(bool isChecked)
{
    m_parameters.edited()[HorizontalMirror] = isChecked ? 1 : 0;
    const bool ret = m_pCamera->setHorizontalMirror(isChecked ? 1 : 0);
    qDebug() << "setHorizontalMirror ret =" << ret;
}

void SorvantaHome::slotCameraViewChange(int value)
{
    const bool ret = m_pCamera->setCameraView(value);
    qDebug() << "setCameraView ret =" << ret;
    m_parameters.edited()[CameraView] = value;
}

void SorvantaHome::slotCameraViewSwitch(bool isChecked)
{
    Q_UNUSED(isChecked)
    if (!m_settingsPage->isCameraViewEnabled())
        return;
    const int view = m_settingsPage->selectedCameraView();
    const bool ret = m_pCamera->setCameraView(view);
    qDebug() << "setCameraView ret =" << ret;
    m_parameters.edited()[CameraView] = view;
    if (view == kNarrowestView) {
        refresh4kState();
        m_settingsPage->show4kNotice();
    }
}

void SorvantaHome::slotPickupSensitivitySwitch(int value)
{
    const bool ret = m_pCamera->setPickupSensitivity(value);
    qDebug() << "setPickupSensitivity ret =" << ret;
    m_parameters.edited()[PickupSensitivity] = value;
}

void SorvantaHome::slotPersonalTrackChecked(bool checked)
{
    const int subMode = checked ? 0 : 1;
    const bool ret = m_pCamera->setAutoFrameMode(subMode);
    qDebug() << "setAutoFrameMode ret =" << ret;
    m_parameters.edited()[AutoFrameMode] = subMode;
}

void SorvantaHome::slotCameraFigureCenterSwitch(bool isChecked)
{
    m_parameters.edited()[FigureCenter] = isChecked ? 1 : 0;
    if (!isChecked)
        return;
    refresh4kState();
    m_settingsPage->show4kNotice();
}

void SorvantaHome::slotDoIntelligentSwitch(bool on, int lastIntelligent)
{
    m_parameters.edited()[Intelligent] = on ? 1 : 0;
    if (!on) {
        const bool autoFraming = m_pCamera->getAutoFrameSwitch() != 0;
        const bool frameMaster = m_pCamera->getFrameMaster() != 0;
        qDebug() << "autoFrameSwicth" << autoFraming << "frameMaster" << frameMaster;
        putOff(kFramingOffDelayMs, [this, autoFraming] {
            if (autoFraming) {
                m_pCamera->setAutoFrameSwitch(0);
                m_parameters.edited()[AutoFrameSwitch] = 0;
            } else {
                m_pCamera->setFrameMaster(0);
                m_parameters.edited()[FrameMaster] = 0;
            }
        });
        return;
    }

    // Framing always works on the widest view. The page shows it, which sends it to the camera and
    // records it: switching the framing off again leaves the camera there.
    m_settingsPage->setCameraView(kWidestView);
    if (lastIntelligent != 0) {
        m_settingsPage->setAutoFraming();
        const int subMode = m_pCamera->getAutoFrameMode();
        m_parameters.edited()[AutoFrameMode] = subMode;
        if (subMode == 0)
            m_settingsPage->setSubMode(subMode);
    } else {
        m_settingsPage->setFrameMaster();
    }
    refresh4kState();
    m_settingsPage->show4kNotice();
}

/// The camera frames by one rule at a time: the one in use is switched off before the other is
/// switched on.
void SorvantaHome::slotRadioButtonChanged(int btn_num)
{
    putOff(kFramingDelayMs, [this, btn_num] {
        QMap<QString, int>& edited = m_parameters.edited();
        if (btn_num == 0) {
            m_pCamera->setFrameMaster(0);
            m_pCamera->setAutoFrameSwitch(1);
            edited[AutoFrameMode] = m_pCamera->getAutoFrameMode();
            m_settingsPage->setSubMode(edited[AutoFrameMode]);
            edited[AutoFrameSwitch] = 1;
            edited[FrameMaster] = 0;
        } else {
            m_pCamera->setAutoFrameSwitch(0);
            m_pCamera->setFrameMaster(1);
            edited[AutoFrameSwitch] = 0;
            edited[FrameMaster] = 1;
        }
    });
}

/// Takes @p step after a time, or before the program turns to another camera if that is sooner: the
/// step is meant for the one that is open now.
void SorvantaHome::putOff(int milliseconds, std::function<void()> step)
{
    const auto entry = std::make_shared<std::function<void()>>(std::move(step));
    m_putOff.append(entry);
    QTimer::singleShot(milliseconds, this, [this, entry] {
        if (m_putOff.removeOne(entry))
            (*entry)();
    });
}

void SorvantaHome::takePutOffSteps()
{
    while (!m_putOff.isEmpty())
        (*m_putOff.takeFirst())();
}

void SorvantaHome::slotSetDeviceImageMode(SvtaPagesView::ImageMode mode)
{
    m_parameters.edited()[ImageMode] = mode;
    Preset preset = kStandard;
    switch (mode) {
    case SvtaPagesView::Standard:
        preset = kStandard;
        break;
    case SvtaPagesView::Bright:
        preset = kBright;
        break;
    case SvtaPagesView::Vivid:
        preset = kVivid;
        break;
    case SvtaPagesView::Custom:
        return; // the sliders stay as the user has them
    }
    m_settingsPage->setBrightSlider(kSliderMinimum, kSliderMaximum, preset.bright);
    m_settingsPage->setContrastSlider(kSliderMinimum, kSliderMaximum, preset.contrast);
    m_settingsPage->setSaturationSlider(kSliderMinimum, kSliderMaximum, preset.saturation);
    m_settingsPage->setSharpnessSlider(kSliderMinimum, kSliderMaximum, preset.sharpness);
}

/// Asks the camera for its stream and tells the page. A camera that does not answer keeps the
/// answer that is known.
void SorvantaHome::refresh4kState()
{
    if (!openHidLink() || !m_pCamera->getResolution(m_resolution))
        return;
    m_4kWasInUse = m_4kInUse;
    m_4kInUse = m_resolution.value(QStringLiteral("width")) == 3840 &&
                m_resolution.value(QStringLiteral("height")) == 2160;
    m_settingsPage->set4kInUse(m_4kInUse);
    m_settingsPage->setStreamOn(m_resolution.value(QStringLiteral("streamon")));
}

void SorvantaHome::slotShowParamSaveDialog()
{
    showMasked(m_saveDialog);
}

void SorvantaHome::slotShowParamResetDialog()
{
    showMasked(m_resetDialog);
}

void SorvantaHome::slotShowCenterTipDialog()
{
    showMasked(m_centerTipDialog);
}

void SorvantaHome::slotParamSave()
{
    if (currentPage() == SvtaPagesView::HomePage) {
        m_saveDialog->hide();
        showToast(tr("保存失败"));
        return;
    }
    // The camera holds every value already; only the file is written.
    if (!openHidLink() || !m_valuesKnown || !writeIniFile()) {
        showToast(tr(kSaveFailed));
        m_saveDialog->hide();
        return;
    }
    m_parameters.keepEdited();
    showToast(tr("Successfully saved"));
    qDebug() << "Successfully saved";
    m_saveDialog->hide();
}

void SorvantaHome::slotParamReset()
{
    m_resetDialog->hide();
    if (currentPage() == SvtaPagesView::HomePage)
        return;
    m_settingsPage->setImageMode(SvtaPagesView::Standard);
    m_parameters.edited()[ImageMode] = SvtaPagesView::Standard;
    m_settingsPage->resetToDefaults();
    if (m_4kInUse)
        m_settingsPage->show4kNotice();
}

void SorvantaHome::slotBackLastStep()
{
    QMap<QString, int>& stored = m_parameters.stored();
    qDebug() << "paramDateMap[CameraView]" << stored[CameraView];
    qDebug() << "paramDateMap[HorizontalMirror]" << stored[HorizontalMirror];
    qDebug() << "paramDateMap[FigureCenter]" << stored[FigureCenter];
    qDebug() << "paramDateMap[autoFrameSwicth]" << stored[AutoFrameSwitch];
    qDebug() << "paramDateMap[frameMaster]" << stored[FrameMaster];
    qDebug() << "paramDateMap[autoFrameMode]" << stored[AutoFrameMode];
    qDebug() << "paramDateMap[intelligent]" << stored[Intelligent];
    qDebug() << "paramDateMap[PickupSensitivity]" << stored[PickupSensitivity];

    // A copy: the page's signals change the maps while it works through them.
    const QMap<QString, int> saved = stored;
    m_settingsPage->paramExitReset(saved);
    m_parameters.discardEdited();
    m_history.removeLast();
    showLastView();
    m_notSaveDialog->hide();
}

void SorvantaHome::slotSaveAndBackLastStep()
{
    slotParamSave();
    m_history.removeLast();
    showLastView();
    m_notSaveDialog->hide();
}
