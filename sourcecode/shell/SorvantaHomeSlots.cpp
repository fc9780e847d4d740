// The slots that pages, dialogs and overlays are connected to. Most only forward the call to the
// class that does the work.
#include "CameraSettings.h"
#include "DeviceHomePage.h"
#include "IDeviceNotify.h"
#include "ListChange.h"
#include "LogCategories.h"
#include "MaskForm.h"
#include "OpenCamera.h"
#include "ParamSettingsPage.h"
#include "PreviewControl.h"
#include "PreviewOverlays.h"
#include "SettingsDialogs.h"
#include "SorvantaHome.h"
#include "SvtaCenterTipDialog.h"
#include "SvtaParamNotSaveDialog.h"
#include "SvtaParamResetDialog.h"
#include "SvtaParamSaveDialog.h"
#include "SvtaSupportedProductDialog.h"
#include "TransPrewBtn.h"
#include "UpdateFlow.h"
#include "UVCCamera.h"

#include <QTimer>

namespace {

constexpr int kLeaveDelayMs = 20;
constexpr int kDebounceMs = 800;

const char* const kSaveFailed =
    QT_TRANSLATE_NOOP("SorvantaHome", "Save failed ， please try it again");

} // namespace

// Settings of the open camera.

void SorvantaHome::readIniFile()
{
    session().readIniFile();
}

void SorvantaHome::readDeviceParam()
{
    session().readDeviceParam();
}

void SorvantaHome::readIniFileWithSN(const QString& sn)
{
    m_settings->reapplySaved(sn);
}

bool SorvantaHome::writeIniFile()
{
    return session().writeIniFile();
}

bool SorvantaHome::isSameData()
{
    return session().parameters().isSameData();
}

void SorvantaHome::setDeviceParam()
{
    m_settings->setDeviceParam();
}

void SorvantaHome::setAdvancedParam()
{
    m_settings->setAdvancedParam();
}

void SorvantaHome::slotCameraBrightValueChanged(int value)
{
    qCDebug(shellLog) << "value" << value;
    m_settings->applyPicture(PictureProperty::Brightness, value);
    qCDebug(shellLog) << "paramDateChangeMap[bright]" << value;
}

void SorvantaHome::slotCameraContrastValueChanged(int value)
{
    qCDebug(shellLog) << "slotCameraContrastValueChanged" << value;
    m_settings->applyPicture(PictureProperty::Contrast, value);
}

void SorvantaHome::slotCameraSaturationValueChanged(int value)
{
    m_settings->applyPicture(PictureProperty::Saturation, value);
}

void SorvantaHome::slotCameraSharpnessValueChanged(int value)
{
    m_settings->applyPicture(PictureProperty::Sharpness, value);
}

void SorvantaHome::slotCameraHorizontalMirrorSwitch(bool isChecked)
{
    m_settings->apply(DeviceSetting::HorizontalMirror, isChecked ? 1 : 0);
}

void SorvantaHome::slotCameraViewChange(int value)
{
    m_settings->apply(DeviceSetting::CameraView, value);
}

void SorvantaHome::slotCameraViewSwitch(bool isChecked)
{
    Q_UNUSED(isChecked)
    m_settings->applySelectedView();
}

void SorvantaHome::slotPickupSensitivitySwitch(int value)
{
    m_settings->apply(DeviceSetting::PickupSensitivity, value);
}

void SorvantaHome::slotPersonalTrackChecked(bool checked)
{
    m_settings->apply(DeviceSetting::AutoFrameMode, checked ? 0 : 1);
}

void SorvantaHome::slotCameraFigureCenterSwitch(bool isChecked)
{
    m_settings->setFigureCenter(isChecked);
}

void SorvantaHome::slotDoIntelligentSwitch(bool on, int lastIntelligent)
{
    m_settings->switchIntelligent(on, lastIntelligent);
}

void SorvantaHome::slotRadioButtonChanged(int btn_num)
{
    m_settings->chooseFraming(btn_num);
}

void SorvantaHome::slotSetDeviceImageMode(SvtaPagesView::ImageMode mode)
{
    m_settings->setImageMode(mode);
}

void SorvantaHome::slotSetDeviceParam(const DeviceWidgetInfo& Info)
{
    if (currentPage() != SvtaPagesView::HomePage || !m_pCamera || m_update->isBusy(Info.hidPath))
        return;
    m_homePage->setSerialNumber(Info.hidPath, m_settings->reapplySavedTo(Info));
}

void SorvantaHome::slotShowParamSaveDialog()
{
    m_mask->showUnder(m_dialogs->save);
}

void SorvantaHome::slotShowParamResetDialog()
{
    m_mask->showUnder(m_dialogs->reset);
}

void SorvantaHome::slotShowCenterTipDialog()
{
    m_mask->showUnder(m_dialogs->centerTip);
}

void SorvantaHome::slotParamSave()
{
    const bool onList = currentPage() == SvtaPagesView::HomePage;
    if (onList) {
        showToast(tr("保存失败"));
    } else if (m_settings->save()) {
        showToast(tr("Successfully saved"));
        qCDebug(shellLog) << "Successfully saved";
    } else {
        showToast(tr(kSaveFailed));
    }
    m_dialogs->save->hide();
}

void SorvantaHome::slotParamReset()
{
    m_dialogs->reset->hide();
    if (currentPage() != SvtaPagesView::HomePage)
        m_settings->resetToDefaults();
}

void SorvantaHome::slotBackLastStep()
{
    m_settings->discard();
    m_history.removeLast();
    showLastView();
    m_dialogs->notSave->hide();
}

void SorvantaHome::slotSaveAndBackLastStep()
{
    slotParamSave();
    m_history.removeLast();
    showLastView();
    m_dialogs->notSave->hide();
}

// Preview.

void SorvantaHome::startPlay()
{
    if (m_pCamera)
        m_preview->startPlay(m_update->isBusy(session().info().hidPath));
}

void SorvantaHome::slotHandleCapture()
{
    // A second click while the camera still starts or stops would undo the first.
    disconnect(m_overlays->previewButton(), &TransPrewBtn::sigHandleCapture, this,
               &SorvantaHome::slotHandleCapture);
    QTimer::singleShot(kDebounceMs, this, [this] {
        connect(m_overlays->previewButton(), &TransPrewBtn::sigHandleCapture, this,
                &SorvantaHome::slotHandleCapture, Qt::UniqueConnection);
    });
    m_preview->toggle(m_update->isBusy(session().info().hidPath));
}

void SorvantaHome::slotShowPreviewTip()
{
    if (m_overlays->isPreviewOpen())
        m_settingsPage->showPreviewTip(true);
}

void SorvantaHome::slotHidePreviewTip()
{
    m_settingsPage->showPreviewTip(false);
}

void SorvantaHome::slotShowLine()
{
    m_overlays->toggleGrid();
}

// Updates.

void SorvantaHome::readConfigFile()
{
    m_update->readConfigFile(*m_aboutPage);
}

void SorvantaHome::slotSetDownloadData(const QJsonObject& downloadData, const QString& text)
{
    m_update->showFirmwareOffer(downloadData, text);
}

void SorvantaHome::slotForceUpdate(const QJsonObject& downloadData)
{
    m_update->showForcedOffer(downloadData);
}

void SorvantaHome::slotSetUpdateData(const QJsonObject& updateData)
{
    m_update->showApplicationOffer(updateData);
}

void SorvantaHome::slotSetProgress(int progress)
{
    m_update->setProgress(progress);
}

void SorvantaHome::slotStopUpdate()
{
    m_update->stopDownload();
}

void SorvantaHome::slotDownloadFailed()
{
    m_update->downloadFailed();
}

void SorvantaHome::slotRetry()
{
    m_update->retry();
}

void SorvantaHome::slotDownloadFailedCancel()
{
    m_update->cancelAfterFailure();
}

void SorvantaHome::slotDownloadSuccessed()
{
    m_update->downloadSucceeded(currentPage());
}

void SorvantaHome::slotCameraUpgrade()
{
    m_update->writeDevelopmentFirmware();
}

void SorvantaHome::slotHideLoadingPage()
{
    m_update->hideLoading();
}

void SorvantaHome::slotTimeout()
{
    m_update->timeOut();
}

void SorvantaHome::slotShowCloseAppDialog()
{
    m_update->showCloseAppQuestion();
}

// Devices.

void SorvantaHome::slotSetDeviceWidget(const QMap<QString, DeviceWidgetInfo>& InfoMap)
{
    m_deviceWidgets = InfoMap;
    if (!session().isOpen())
        return;
    session().setStatus(0);
    for (const DeviceWidgetInfo& info : InfoMap) {
        if (info.hidPath != session().info().hidPath)
            continue;
        session().setStatus(info.status);
        // A camera that was plugged in again may have another video node.
        session().setPaths(info.path, info.hidPath);
    }
}

void SorvantaHome::slotInitCamera(int status)
{
    Q_UNUSED(status)
    if (m_update->isBusy(session().info().hidPath))
        return;
    getHidInfo();
    session().openLink();
    qCDebug(shellLog) << "init m_pCamera";
}

void SorvantaHome::slotUpdateCameraListFinished(const QList<UVCDeviceInfo>& camera,
                                                const QList<UVCDeviceInfo>& oldCameras,
                                                const QMap<QString, HidDevices>& deviceHidMaps,
                                                const QMap<QString, HidDevices>& oldDeviceHidMaps,
                                                int status)
{
    Q_UNUSED(camera)
    Q_UNUSED(oldCameras)
    m_update->devicesChanged(deviceHidMaps);
    const ListChange change(deviceHidMaps, oldDeviceHidMaps, status);
    const QString openHidPath = session().info().hidPath;
    if (!change.concernsCameras()) {
        // A camera can leave and return under the same path within the pause before the list
        // enumerates. Its link then belongs to an interface that is gone.
        if (change.isReplug() && change.isPresent(openHidPath))
            openCameraMayBeNew(change);
        return;
    }
    qCDebug(shellLog) << "curHidDevice.path =" << change.lastCamera().path;
    qCDebug(shellLog) << "mDeviceWidgetInfo.hidPath =" << openHidPath;
    qCDebug(shellLog) << "SorvantaHome::slotUpdateCameraListFinished" << __LINE__
                      << "当前页 =" << currentPage() << "当前热插拔状态 =" << status;
    qCDebug(shellLog) << "isContainsCurDev" << change.isPresent(openHidPath);

    const ListChange::Meaning meaning = change.meaningFor(openHidPath);
    if (meaning == ListChange::Meaning::CameraLeft) {
        qCDebug(shellLog) << "拔出设备，不包含mDeviceWidgetInfo.hidPath";
        session().setParametersLoaded(false);
        if (!m_update->isInstalling()) {
            leaveAfterRemoval();
            return;
        }
        // While firmware is installed the camera leaves the bus to start it, and its pages stay. It
        // may have returned under another path already.
        m_update->cameraLeft(change.camerasThatStayed());
    }
    if (meaning != ListChange::Meaning::Nothing)
        verifyReturningCamera(change);
}

/// The cameras are the same as before, but one was plugged in: perhaps the open one.
void SorvantaHome::openCameraMayBeNew(const ListChange& change)
{
    if (m_update->isInstalling())
        verifyReturningCamera(change);
    else if (!m_update->isBusy(session().info().hidPath))
        session().openLink();
}

void SorvantaHome::verifyReturningCamera(const ListChange& change)
{
    if (currentPage() == SvtaPagesView::InfoPage && !change.cameras().isEmpty())
        m_update->verifyReturningCamera(change.cameras(), change.arrived(),
                                        [this](const QString& path) { return videoPathOf(path); });
}

/// The video path that the list has paired with a control interface; empty when it has none.
QString SorvantaHome::videoPathOf(const QString& hidPath) const
{
    for (const DeviceWidgetInfo& info : m_deviceWidgets) {
        if (info.hidPath == hidPath)
            return info.path;
    }
    return {};
}

void SorvantaHome::leaveAfterRemoval()
{
    m_overlays->setPreviewOpen(false);
    m_openCamera->drop();
    QTimer::singleShot(kLeaveDelayMs, this, [this] {
        showView(SvtaPagesView::HomePage);
        m_homePage->limitListHeight();
        const QList<QDialog*> questions = m_dialogs->questions();
        for (QDialog* dialog : questions) {
            if (dialog->isVisible()) {
                dialog->hide();
                return;
            }
        }
        m_update->hideForRemoval();
    });
}

void SorvantaHome::slotShowSupportedProduct()
{
    m_mask->showUnder(m_supportedProductDialog);
}
