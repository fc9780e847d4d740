#pragma once

#include "DeviceWidgetInfo.h"
#include "HidDevices.h"
#include "ParameterModel.h"
#include "SvtaPagesView.h"
#include "UVCDeviceInfo.h"

#include <functional>
#include <memory>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QPoint>
#include <QPointer>
#include <QSystemTrayIcon>
#include <QWidget>
#include <string>

class AboutPage;
class ApplicationUpdateCheck;
class DeviceHomePage;
class DeviceInfoPage;
class FirmwareTransfer;
class LoadingDialog;
class MaskForm;
class MyIQLogObserver;
class ParamSettingsPage;
class QAction;
class QDialog;
class QMenu;
class QTimer;
class SvtaCenterTipDialog;
class SvtaForceUpdateSecondDialog;
class SvtaMessageDialog;
class SvtaMoreWidget;
class SvtaParamNotSaveDialog;
class SvtaParamResetDialog;
class SvtaParamSaveDialog;
class SvtaSupportedProductDialog;
class SvtaVersionUpdateDialog;
class ToastDialog;
class TransparentBtn;
class TransparentWidget;
class TransPrewBtn;
class UVCCamera;

namespace Ui {
class SorvantaHome;
}

/// The one top-level window: title bar, back bar and the stack of five pages. Owns every page,
/// dialog and overlay, the camera that is open and everything known about it, and sends every
/// command to it; pages reach it by signals only.
///
/// GUI thread. The sources are split by concern: SorvantaHome.cpp (construction and wiring),
/// ...Navigation, ...Window (events and overlays), ...Settings, ...Preview, ...Reconciliation and
/// ...Updates.
class SorvantaHome : public QWidget
{
    Q_OBJECT

public:
    explicit SorvantaHome(QWidget* parent = nullptr);
    ~SorvantaHome() override;

    /// Shows a page and enters it into the history. A value without a page leaves the current one.
    void showView(SvtaPagesView::ViewPageEnum page);
    /// Returns to the previous page; asks first when settings are unsaved. Blocked for a second
    /// after each use.
    void backView();
    /// Shows @p text for a moment; an empty text changes nothing.
    void showToast(const QString& text);
    /// Opens a camera: reads version and serial number from it and shows its settings.
    void showDeviceSettingPages(const DeviceWidgetInfo& info);
    /// Logs the identity of the open camera's HID interface; diagnostic only.
    void getHidInfo() const;
    /// Takes the program's own version from config.json beside it.
    void readConfigFile();
    /// Takes the program off the screen at once and returns when no camera is being written any
    /// more. For the end of the program.
    void finishTransfer();

    /// Brings the window back from tray or task bar, with the overlays of its page.
    void slotActivateWindow();
    void slotTrayActivated(QSystemTrayIcon::ActivationReason reason);

    // Settings of the open camera; see ParameterModel.
    void readIniFile();
    void readDeviceParam();
    void readIniFileWithSN(const QString& sn);
    bool writeIniFile();
    bool isSameData();
    void setDeviceParam();
    /// Builds the preview, starts it when the preview button says so, and fills the page.
    void startPlay();

    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    void slotMinimum();
    void slotClose();
    void slotShowMoreMenu();
    void slotShowDeviceInfoPage();
    void slotCameraBrightValueChanged(int value);
    void slotCameraContrastValueChanged(int value);
    void slotCameraSaturationValueChanged(int value);
    void slotCameraSharpnessValueChanged(int value);
    void slotCameraFigureCenterSwitch(bool isChecked);
    void slotCameraHorizontalMirrorSwitch(bool isChecked);
    void slotCameraViewChange(int value);
    void slotCameraViewSwitch(bool isChecked);
    void slotCameraUpgrade();
    void slotPickupSensitivitySwitch(int value);
    void slotRadioButtonChanged(int btn_num);
    void slotSetDeviceImageMode(SvtaPagesView::ImageMode mode);
    void slotPersonalTrackChecked(bool checked);
    void slotSetDownloadData(const QJsonObject& downloadData, const QString& text);
    void slotDownloadFailed();
    void slotRetry();
    void slotDownloadFailedCancel();
    void slotSetProgress(int progress);
    void slotSetUpdateData(const QJsonObject& updateData);
    void slotStopUpdate();
    void slotDownloadSuccessed();
    void slotTimeout();
    void slotUpdateCameraListFinished(const QList<UVCDeviceInfo>& camera,
                                      const QList<UVCDeviceInfo>& oldCameras,
                                      const QMap<QString, HidDevices>& deviceHidMaps,
                                      const QMap<QString, HidDevices>& oldDeviceHidMaps,
                                      int status);
    void slotSetDeviceWidget(const QMap<QString, DeviceWidgetInfo>& InfoMap);
    void slotForceUpdate(const QJsonObject& downloadData);
    void slotShowStartPage();
    void slotShowLine();
    void slotBackLastStep();
    void slotSaveAndBackLastStep();
    void slotShowParamResetDialog();
    void slotShowParamSaveDialog();
    void slotParamReset();
    void slotParamSave();
    void slotShowCloseAppDialog();
    void slotInitCamera(int status);
    void slotShowCenterTipDialog();
    void slotShowSupportedProduct();
    void slotHandleCapture();
    void slotShowPreviewTip();
    void slotHidePreviewTip();
    void slotSetDeviceParam(const DeviceWidgetInfo& Info);
    void setAdvancedParam();
    void slotHideLoadingPage();
    void slotDoIntelligentSwitch(bool on, int lastIntelligent);

signals:
    void sigForceUpdate(const QJsonObject& downloadData);
    void sigShowStartPage();
    void sigCameraUpdateFile(const QString& downLoadFilepath);
    void sigCommonUpdate(const QJsonObject& downloadData);
    void sigHideLoadingPage();
    void sigGetFrameMaster();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void makePages();
    void makeOverlays();
    void makeDialogs();
    void makeTray();
    void connectShell();
    void connectList();
    void connectSettings();
    void connectUpdates();

    void leaveStartPage();
    void enterHomePage();
    void enterInfoPage();
    void enterAboutPage();
    void enterSettingPage();
    void showLastView();
    void refreshIdentity();
    [[nodiscard]] SvtaPagesView::ViewPageEnum currentPage() const;

    void placeOverlays();
    void hideOverlays();
    void restoreOverlays();
    void followWindowState();
    void showGrid(bool shown);
    void clearGridMark();
    void logStreamSize() const;
    void showMasked(QDialog* dialog);

    bool openHidLink();
    void installFirmware(const QString& file);
    void writeFirmware(const QString& file);
    void installApplication();
    bool refuseBusyCamera(const DeviceWidgetInfo& info);
    void slotTransferFinished(bool sent);
    void putOff(int milliseconds, std::function<void()> step);
    void takePutOffSteps();
    void applyPicture(const QString& key, int value, bool (UVCCamera::*set)(int));
    void refresh4kState();
    void showPreviewRunning(bool running);
    void showUpdateFailed();
    void leaveAfterRemoval();
    [[nodiscard]] bool isBusy(const QString& hidPath) const;
    void verifyReturningCamera(const HidDevices& device);
    void returnToOpenCamera();
    void takeOverNames(const QString& hidPath);

    std::unique_ptr<Ui::SorvantaHome> ui;
    UVCCamera* m_pCamera;
    std::unique_ptr<MyIQLogObserver> m_logObserver;
    FirmwareTransfer* m_transfer;
    ApplicationUpdateCheck* m_applicationUpdate;
    QMap<SvtaPagesView::ViewPageEnum, QWidget*> mPageMap;
    QList<SvtaPagesView::ViewPageEnum> m_history;
    DeviceWidgetInfo mDeviceWidgetInfo;
    QMap<QString, DeviceWidgetInfo> m_deviceWidgets; ///< of the last list, by video path
    QPoint m_dragOrigin;
    bool m_isSameData = true;
    bool m_gridShown = false; ///< the grid belongs on the settings page, even while that is away

    ParameterModel m_parameters;
    bool m_parametersLoaded = false; ///< since the settings page was last left
    bool m_valuesKnown = false;      ///< whether m_parameters are those of the camera that is open
    QMap<QString, int> m_resolution; ///< last answer about the camera's stream
    bool m_4kInUse = false;
    bool m_4kWasInUse = false;
    QList<std::shared_ptr<std::function<void()>>> m_putOff;

    DeviceHomePage* m_homePage = nullptr;
    DeviceInfoPage* m_infoPage = nullptr;
    AboutPage* m_aboutPage = nullptr;
    ParamSettingsPage* m_settingsPage = nullptr;

    QString mVersion; ///< of the program, from config.json
    std::string m_applicationBody;
    bool m_forceStatus = false; ///< a forced update of the program is under way

    MaskForm* m_mask = nullptr;
    MaskForm* m_closeAppMask = nullptr; ///< made when it is first needed
    SvtaMoreWidget* m_moreMenu = nullptr;
    TransparentWidget* m_grid = nullptr;
    TransparentBtn* m_gridBtn = nullptr;
    TransPrewBtn* m_previewBtn = nullptr;
    QPointer<ToastDialog> m_toast;

    SvtaVersionUpdateDialog* m_updateDialog = nullptr;
    SvtaMessageDialog* m_messageDialog = nullptr;
    SvtaParamNotSaveDialog* m_notSaveDialog = nullptr;
    SvtaParamResetDialog* m_resetDialog = nullptr;
    SvtaParamSaveDialog* m_saveDialog = nullptr;
    SvtaCenterTipDialog* m_centerTipDialog = nullptr;
    SvtaForceUpdateSecondDialog* m_closeAppDialog = nullptr;
    SvtaSupportedProductDialog* m_supportedProductDialog = nullptr;
    LoadingDialog* m_loadingDialog = nullptr;
    QTimer* m_updateTimer = nullptr;

    QSystemTrayIcon* m_trayIcon = nullptr;
    QAction* m_quitAction = nullptr;
    QAction* m_showAction = nullptr;
    QMenu* m_trayMenu = nullptr;
};
