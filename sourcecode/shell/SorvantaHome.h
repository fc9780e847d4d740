#pragma once

#include "DeviceWidgetInfo.h"
#include "HidDevices.h"
#include "SvtaPagesView.h"
#include "UVCDeviceInfo.h"

#include <memory>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QPoint>
#include <QPointer>
#include <QSystemTrayIcon>
#include <QWidget>

class AboutPage;
class CameraSession;
class CameraSettings;
class DeviceHomePage;
class DeviceInfoPage;
class ListChange;
class MaskForm;
class MyIQLogObserver;
class OpenCamera;
class ParamSettingsPage;
class PreviewControl;
class PreviewOverlays;
class SvtaMoreWidget;
class SvtaSupportedProductDialog;
class ToastDialog;
class TrayIcon;
class UpdateFlow;
class UVCCamera;
struct SettingsDialogs;

namespace Ui {
class SorvantaHome;
}

/// The one top-level window: title bar, back bar and the stack of five pages. Owns the pages, the
/// overlays, the tray icon and the navigation between the pages; pages reach it by signals only.
///
/// Most of its functions only forward the call to a class with one task:
/// CameraSession (what belongs to the open camera), CameraSettings (applying edits), PreviewControl
/// (the live picture), PreviewOverlays, UpdateFlow, ListChange (what a hot-plug event means).
///
/// GUI thread.
class SorvantaHome : public QWidget
{
    Q_OBJECT

public:
    explicit SorvantaHome(QWidget* parent = nullptr);
    ~SorvantaHome() override;

    /// Shows a page and adds it to the history. For a value without a page, the current page stays.
    void showView(SvtaPagesView::ViewPageEnum page);
    /// Returns to the previous page; asks first when settings are unsaved. The back button is
    /// disabled for one second after each use.
    void backView();
    /// Shows @p text for a moment; an empty text changes nothing.
    void showToast(const QString& text);
    /// Opens a camera: reads version and serial number from it and shows its settings.
    void showDeviceSettingPages(const DeviceWidgetInfo& info);
    /// Logs the identity of the open camera's HID interface; diagnostic only.
    void getHidInfo() const;
    /// Reads the program's own version from config.json in the folder of the program.
    void readConfigFile();
    /// Hides all windows and the tray icon at once. Then waits until a running firmware transfer
    /// has ended. Called when the program ends.
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
    /// Opens the video device, starts the preview if the preview button is on, and fills the page.
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
    // All are part of the window's fixed interface. Only the two that have a receiver are emitted.
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
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void makePages();
    void makeOverlays();
    void makeDialogs();
    void addShortcuts();
    /// What helps on the current page: the list names the supported products, the settings explain
    /// the centring, the camera's information leads to the page with the support.
    void showHelp();
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
    void leaveAfterRemoval();
    void openCameraMayBeNew(const ListChange& change);
    void verifyReturningCamera(const ListChange& change);
    void restoreOverlays();
    void followWindowState();
    void followApplicationState(Qt::ApplicationState state);
    void logStreamSize() const;
    [[nodiscard]] SvtaPagesView::ViewPageEnum currentPage() const;
    [[nodiscard]] CameraSession& session() const;
    [[nodiscard]] QString videoPathOf(const QString& hidPath) const;

    std::unique_ptr<Ui::SorvantaHome> ui;
    UVCCamera* m_pCamera;
    std::unique_ptr<MyIQLogObserver> m_logObserver;
    QMap<SvtaPagesView::ViewPageEnum, QWidget*> mPageMap;
    QList<SvtaPagesView::ViewPageEnum> m_history;
    QMap<QString, DeviceWidgetInfo> m_deviceWidgets; ///< of the last list, by video path
    QPoint m_dragOrigin;
    bool m_isSameData = true;

    DeviceHomePage* m_homePage = nullptr;
    DeviceInfoPage* m_infoPage = nullptr;
    AboutPage* m_aboutPage = nullptr;
    ParamSettingsPage* m_settingsPage = nullptr;
    MaskForm* m_mask = nullptr;
    SvtaMoreWidget* m_moreMenu = nullptr;
    SvtaSupportedProductDialog* m_supportedProductDialog = nullptr;
    QPointer<ToastDialog> m_toast;
    TrayIcon* m_trayIcon = nullptr;

    std::unique_ptr<OpenCamera> m_openCamera;
    std::unique_ptr<SettingsDialogs> m_dialogs;
    std::unique_ptr<PreviewOverlays> m_overlays;
    std::unique_ptr<CameraSettings> m_settings;
    std::unique_ptr<PreviewControl> m_preview;
    std::unique_ptr<UpdateFlow> m_update;
};
