#include "SorvantaHome.h"

#include "AboutPage.h"
#include "CameraSettings.h"
#include "DeviceHomePage.h"
#include "DeviceInfoPage.h"
#include "IDeviceNotify.h"
#include "MaskForm.h"
#include "MyIQLogObserver.h"
#include "OpenCamera.h"
#include "ParamSettingsPage.h"
#include "PreviewControl.h"
#include "PreviewOverlays.h"
#include "ScaleChange.h"
#include "setLogObserver.h"
#include "SettingsDialogs.h"
#include "Shortcuts.h"
#include "SvtaMessageDialog.h"
#include "SvtaMoreWidget.h"
#include "SvtaParamNotSaveDialog.h"
#include "SvtaParamResetDialog.h"
#include "SvtaParamSaveDialog.h"
#include "SvtaStartPage.h"
#include "SvtaSupportedProductDialog.h"
#include "SvtaVersionUpdateDialog.h"
#include "SystemSleep.h"
#include "ToastDialog.h"
#include "ToolTips.h"
#include "TransparentBtn.h"
#include "TransPrewBtn.h"
#include "TrayIcon.h"
#include "ui_SorvantaHome.h"
#include "UpdateFlow.h"
#include "UVCCamera.h"

#include <QGuiApplication>
#include <QTimer>
#include <QWindow>

SorvantaHome::SorvantaHome(QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::SorvantaHome>())
    , m_pCamera(new UVCCamera(this))
    , m_logObserver(std::make_unique<MyIQLogObserver>())
    , m_openCamera(std::make_unique<OpenCamera>(*m_pCamera))
{
    ui->setupUi(this);

    // The back button keeps its place on pages that show no title or no information button.
    for (QWidget* widget : std::initializer_list<QWidget*>{ui->labCurrentPage, ui->deviceInfoBtn}) {
        QSizePolicy policy = widget->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        widget->setSizePolicy(policy);
    }

    setAttribute(Qt::WA_Mapped);
    setFocusPolicy(Qt::ClickFocus);
    setWindowFlags(Qt::FramelessWindowHint | Qt::WindowSystemMenuHint |
                   Qt::WindowMinimizeButtonHint);
    ui->titleWidget->installEventFilter(this);
    ui->homeStackedWidget->installEventFilter(this);

    makePages();
    makeOverlays();
    Brivane::setLogObserver(m_logObserver.get());
    makeDialogs();

    // Both are arguments of signals that are queued from the watcher's thread.
    qRegisterMetaType<QList<UVCDeviceInfo>>("QList<UVCDeviceInfo>");
    qRegisterMetaType<QMap<QString, HidDevices>>("QMap<QString,HidDevices>");

    showView(SvtaPagesView::StartPage);

    m_trayIcon = new TrayIcon(this);
    new ToolTips(this);
    addShortcuts();
    connectShell();
    connectList();
    connectSettings();
    connectUpdates();
    readConfigFile();
}

SorvantaHome::~SorvantaHome()
{
    Brivane::setLogObserver(nullptr);
    // A button that is destroyed under the pointer still reports that the pointer has left it, and
    // the window then calls the settings page. So the buttons are destroyed before the page.
    m_overlays.reset();
}

CameraSession& SorvantaHome::session() const
{
    return m_openCamera->session();
}

void SorvantaHome::makePages()
{
    m_homePage = new DeviceHomePage(this);
    m_infoPage = new DeviceInfoPage(this);
    m_aboutPage = new AboutPage(this);
    m_settingsPage = new ParamSettingsPage(this);

    const auto add = [this](SvtaPagesView::ViewPageEnum page, QWidget* widget) {
        mPageMap.insert(page, widget);
        ui->homeStackedWidget->addWidget(widget); // in the order of the enum: index equals value
    };
    add(SvtaPagesView::StartPage, new SvtaStartPage(this));
    add(SvtaPagesView::HomePage, m_homePage);
    add(SvtaPagesView::InfoPage, m_infoPage);
    add(SvtaPagesView::AboutUsPage, m_aboutPage);
    add(SvtaPagesView::SettingPage, m_settingsPage);
}

void SorvantaHome::makeOverlays()
{
    m_mask = new MaskForm(this);
    m_mask->setCoveredWidget(this);
    m_moreMenu = new SvtaMoreWidget(this);
    m_moreMenu->hide();
    m_overlays = std::make_unique<PreviewOverlays>(this);
}

void SorvantaHome::makeDialogs()
{
    m_update = std::make_unique<UpdateFlow>(*m_openCamera, *m_mask, this);
    m_dialogs = std::make_unique<SettingsDialogs>(this);
    m_supportedProductDialog = new SvtaSupportedProductDialog(this);
    m_supportedProductDialog->setModal(true);
    m_supportedProductDialog->hide();
    m_toast = new ToastDialog(this);
    m_toast->hide();
    m_settings = std::make_unique<CameraSettings>(*m_openCamera, *m_settingsPage);
    m_preview =
        std::make_unique<PreviewControl>(*m_openCamera, *m_settingsPage, *m_overlays, *m_settings);
}

void SorvantaHome::addShortcuts()
{
    Shortcuts::press(ui->backBtn, {QKeySequence(QStringLiteral("Alt+Left")), Qt::Key_Back});
    Shortcuts::press(ui->deviceInfoBtn, {QKeySequence(QStringLiteral("Ctrl+I"))});
    Shortcuts::press(ui->moreBtn, {Qt::Key_F10});
    Shortcuts::call(this, Qt::Key_F1, [this] { showHelp(); });
    TransPrewBtn* preview = m_overlays->previewButton();
    const QKeySequence previewKey(QStringLiteral("Ctrl+P"));
    Shortcuts::call(m_settingsPage, previewKey, [preview] { emit preview->sigHandleCapture(); });
    preview->setToolTip(Shortcuts::named(preview->accessibleName(), previewKey));
    TransparentBtn* grid = m_overlays->gridButton();
    grid->setToolTip(
        Shortcuts::named(grid->accessibleName(), QKeySequence(QStringLiteral("Ctrl+G"))));
}

void SorvantaHome::connectShell()
{
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
            &SorvantaHome::followApplicationState);
    connect(ui->closeBtn, &QPushButton::clicked, this, &SorvantaHome::slotClose);
    connect(ui->minimumBtn, &QPushButton::clicked, this, &SorvantaHome::slotMinimum);
    connect(ui->moreBtn, &QPushButton::clicked, this, &SorvantaHome::slotShowMoreMenu);
    connect(ui->backBtn, &QPushButton::clicked, this, &SorvantaHome::backView);
    connect(ui->deviceInfoBtn, &QPushButton::clicked, this, &SorvantaHome::slotShowDeviceInfoPage);
    connect(m_moreMenu, &SvtaMoreWidget::sigBtnAboutclicked, this, [this] {
        if (currentPage() != SvtaPagesView::AboutUsPage)
            showView(SvtaPagesView::AboutUsPage);
        m_moreMenu->hide();
    });
    connect(m_moreMenu, &SvtaMoreWidget::sigBtnQuitclicked, this, [this] {
        m_moreMenu->hide();
        session().forgetParameters();
        close();
    });
    connect(m_trayIcon, &TrayIcon::activated, this, &SorvantaHome::slotTrayActivated);
    connect(m_overlays->gridButton(), &TransparentBtn::sigShowLine, this,
            &SorvantaHome::slotShowLine);
    const TransPrewBtn* preview = m_overlays->previewButton();
    connect(preview, &TransPrewBtn::sigHandleCapture, this, &SorvantaHome::slotHandleCapture);
    connect(preview, &TransPrewBtn::sigShowPreviewTip, this, &SorvantaHome::slotShowPreviewTip);
    connect(preview, &TransPrewBtn::sigHidePreviewTip, this, &SorvantaHome::slotHidePreviewTip);
    connect(m_preview.get(), &PreviewControl::sigShowToast, this, &SorvantaHome::showToast);
    const auto* sleep = new SystemSleep(this);
    connect(sleep, &SystemSleep::fallsAsleep, this, [this] { m_preview->suspend(); });
    connect(sleep, &SystemSleep::isAwake, this, &SorvantaHome::followWindowState);
    connect(new ScaleChange(this), &ScaleChange::settled, this, [this] {
        m_overlays->place(windowHandle()->position());
        m_preview->fit();
    });
    connect(this, &SorvantaHome::sigShowStartPage, this, &SorvantaHome::slotShowStartPage);
    connect(this, &SorvantaHome::sigHideLoadingPage, this, &SorvantaHome::slotHideLoadingPage);
}

void SorvantaHome::connectList()
{
    connect(m_homePage, &DeviceHomePage::sigShowDevicePages, this,
            &SorvantaHome::showDeviceSettingPages);
    connect(m_homePage, &DeviceHomePage::sigShowDeviceInfo, this,
            [this](const DeviceWidgetInfo& info) {
                if (!m_pCamera || m_update->refusesBusyCamera(info))
                    return;
                m_openCamera->open(info);
                slotShowDeviceInfoPage();
            });
    connect(m_homePage, &DeviceHomePage::sigUpdateCameraListFinished, this,
            &SorvantaHome::slotUpdateCameraListFinished);
    connect(m_homePage, &DeviceHomePage::sigSetDeviceWidgetMaps, this,
            &SorvantaHome::slotSetDeviceWidget);
    // The signal is only emitted for a camera that was plugged in.
    connect(m_homePage, &DeviceHomePage::sigInitCamera, this,
            [this] { slotInitCamera(DevicePluggedIn); });
    connect(m_homePage, &DeviceHomePage::sigShowSupportedProduct, this,
            &SorvantaHome::slotShowSupportedProduct);
    connect(m_homePage, &DeviceHomePage::sigSetDeviceParam, this,
            &SorvantaHome::slotSetDeviceParam);
}

void SorvantaHome::connectSettings()
{
    using Page = ParamSettingsPage;
    using Home = SorvantaHome;
    const Page* page = m_settingsPage;
    connect(page, &Page::sigBrightSliderValueChanged, this, &Home::slotCameraBrightValueChanged);
    connect(page, &Page::sigContrastSliderValueChanged, this,
            &Home::slotCameraContrastValueChanged);
    connect(page, &Page::sigSaturationSliderValueChanged, this,
            &Home::slotCameraSaturationValueChanged);
    connect(page, &Page::sigSharpnessSliderValueChanged, this,
            &Home::slotCameraSharpnessValueChanged);
    connect(page, &Page::sigCameraFigureCenterSwitch, this, &Home::slotCameraFigureCenterSwitch);
    connect(page, &Page::sigCameraHorizontalMirrorSwitch, this,
            &Home::slotCameraHorizontalMirrorSwitch);
    connect(page, &Page::sigCameraViewSwitch, this, &Home::slotCameraViewSwitch);
    connect(page, &Page::sigShowLine, this, &Home::slotShowLine);
    // Saving asks first: sigShowParamSaveDialog opens the question. The page's other save signal is
    // not connected.
    connect(page, &Page::sigShowParamResetDialog, this, &Home::slotShowParamResetDialog);
    connect(page, &Page::sigShowParamSaveDialog, this, &Home::slotShowParamSaveDialog);
    connect(page, &Page::sigShowCenterTipDialog, this, &Home::slotShowCenterTipDialog);
    connect(page, &Page::sigCameraViewChange, this, &Home::slotCameraViewChange);
    connect(page, &Page::sigPickupSensitivityChange, this, &Home::slotPickupSensitivitySwitch);
    connect(page, &Page::sigPickupSensitivitySwitch, this, &Home::slotPickupSensitivitySwitch);
    connect(page, &Page::sigDoIntelligentSwitch, this, &Home::slotDoIntelligentSwitch);
    connect(page, &Page::sigRbtnPersonalTrackChecked, this, &Home::slotPersonalTrackChecked);
    connect(page, &Page::sigRadioButtonChanged, this, &Home::slotRadioButtonChanged);
    connect(page, &Page::sigSetDeviceImageMode, this, &Home::slotSetDeviceImageMode);

    connect(m_dialogs->save, &SvtaParamSaveDialog::sigConfirm, this, &Home::slotParamSave);
    connect(m_dialogs->save, &SvtaParamSaveDialog::sigCancel, m_dialogs->save, &QWidget::hide);
    connect(m_dialogs->reset, &SvtaParamResetDialog::sigConfirm, this, &Home::slotParamReset);
    connect(m_dialogs->reset, &SvtaParamResetDialog::sigCancel, m_dialogs->reset, &QWidget::hide);
    connect(m_dialogs->notSave, &SvtaParamNotSaveDialog::sigExit, this, &Home::slotBackLastStep);
    connect(m_dialogs->notSave, &SvtaParamNotSaveDialog::sigSaveAndExit, this,
            &Home::slotSaveAndBackLastStep);
    // When the user closes the question, the page stays and keeps its values.
    connect(m_dialogs->notSave, &SvtaParamNotSaveDialog::sigStay, this,
            [this] { session().setParametersLoaded(true); });
}

void SorvantaHome::connectUpdates()
{
    connect(m_infoPage, &DeviceInfoPage::sigUpgrade, this, &SorvantaHome::slotCameraUpgrade);
    connect(m_infoPage, &DeviceInfoPage::sigSetDownloadData, this,
            &SorvantaHome::slotSetDownloadData);
    connect(m_infoPage, &DeviceInfoPage::sigShowToast, this, &SorvantaHome::showToast);
    connect(m_aboutPage, &AboutPage::sigShowToast, this, &SorvantaHome::showToast);
    connect(m_aboutPage, &AboutPage::sigForceUpdate, this, &SorvantaHome::slotForceUpdate);
    connect(m_aboutPage, &AboutPage::sigCommonUpdate, this, &SorvantaHome::slotSetUpdateData);
    const SvtaVersionUpdateDialog* dialog = m_update->updateDialog();
    connect(dialog, &SvtaVersionUpdateDialog::sigDownloadFailed, this,
            &SorvantaHome::slotDownloadFailed);
    connect(dialog, &SvtaVersionUpdateDialog::sigSetProgress, this, &SorvantaHome::slotSetProgress);
    connect(dialog, &SvtaVersionUpdateDialog::sigDownloadSuccessed, this,
            &SorvantaHome::slotDownloadSuccessed);
    connect(dialog, &SvtaVersionUpdateDialog::sigStopUpdate, this, &SorvantaHome::slotStopUpdate);
    connect(dialog, &SvtaVersionUpdateDialog::sigShowCloseAppDialog, this,
            &SorvantaHome::slotShowCloseAppDialog);
    const SvtaMessageDialog* message = m_update->messageDialog();
    connect(message, &SvtaMessageDialog::sigRetry, this, &SorvantaHome::slotRetry);
    connect(message, &SvtaMessageDialog::sigDownloadFailedCancel, this,
            &SorvantaHome::slotDownloadFailedCancel);
    connect(m_update->installTimer(), &QTimer::timeout, this, &SorvantaHome::slotTimeout);

    const UpdateFlow* update = m_update.get();
    connect(update, &UpdateFlow::sigShowToast, this, &SorvantaHome::showToast);
    connect(update, &UpdateFlow::sigShowList, this, [this] { showView(SvtaPagesView::HomePage); });
    connect(update, &UpdateFlow::sigRestoreWindow, this, &QWidget::showNormal);
    connect(update, &UpdateFlow::sigNotOpened, this, &SorvantaHome::sigHideLoadingPage);
    connect(update, &UpdateFlow::sigBusyCameraChanged, m_homePage, &DeviceHomePage::setBusyCamera);
}
