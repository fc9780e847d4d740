#include "SorvantaHome.h"

#include "AboutPage.h"
#include "ApplicationUpdateCheck.h"
#include "DeviceHomePage.h"
#include "DeviceInfoPage.h"
#include "FirmwareTransfer.h"
#include "IDeviceNotify.h"
#include "LoadingDialog.h"
#include "MaskForm.h"
#include "MyIQLogObserver.h"
#include "ParamSettingsPage.h"
#include "setLogObserver.h"
#include "SvtaCenterTipDialog.h"
#include "SvtaForceUpdateSecondDialog.h"
#include "SvtaMessageDialog.h"
#include "SvtaMoreWidget.h"
#include "SvtaParamNotSaveDialog.h"
#include "SvtaParamResetDialog.h"
#include "SvtaParamSaveDialog.h"
#include "SvtaStartPage.h"
#include "SvtaSupportedProductDialog.h"
#include "SvtaVersionUpdateDialog.h"
#include "ToastDialog.h"
#include "TransparentBtn.h"
#include "TransparentWidget.h"
#include "TransPrewBtn.h"
#include "ui_SorvantaHome.h"
#include "UVCCamera.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QTimer>

namespace {

const char* const kTrayMenuStyle =
    "QMenu { background-color: white; border: 1px solid white; }"
    "QMenu::item { background-color: transparent; padding: 8px 32px; margin: 0px;"
    " border-bottom: 1px solid #DBDBDB; }"
    "QMenu::item:selected { background-color: #2dabf9; }";

} // namespace

SorvantaHome::SorvantaHome(QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::SorvantaHome>())
    , m_pCamera(new UVCCamera(this))
    , m_logObserver(std::make_unique<MyIQLogObserver>())
    , m_transfer(new FirmwareTransfer(this))
    , m_applicationUpdate(new ApplicationUpdateCheck(this))
{
    ui->setupUi(this);

    // The back button keeps its place when a page has no title or no information to show.
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

    // Both travel from the watcher's thread in queued signals.
    qRegisterMetaType<QList<UVCDeviceInfo>>("QList<UVCDeviceInfo>");
    qRegisterMetaType<QMap<QString, HidDevices>>("QMap<QString,HidDevices>");

    showView(SvtaPagesView::StartPage);

    makeTray();
    connectShell();
    connectList();
    connectSettings();
    connectUpdates();
    readConfigFile();
}

SorvantaHome::~SorvantaHome()
{
    Brivane::setLogObserver(nullptr);
    // A button that goes from under the pointer still tells that the pointer leaves it, which the
    // settings page is told in turn: while there is one.
    delete m_previewBtn;
}

void SorvantaHome::makePages()
{
    m_homePage = new DeviceHomePage(this);
    m_infoPage = new DeviceInfoPage(this);
    m_aboutPage = new AboutPage(this);
    m_settingsPage = new ParamSettingsPage(this);

    const auto add = [this](SvtaPagesView::ViewPageEnum page, QWidget* widget) {
        mPageMap.insert(page, widget);
        ui->homeStackedWidget->addWidget(widget); // in the order of the values: index equals value
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
    m_updateTimer = new QTimer(this);
    m_updateTimer->setObjectName(QStringLiteral("updateTimer"));
    m_updateTimer->setSingleShot(true);
    // Parented to the window: a window manager puts them behind it otherwise.
    m_grid = new TransparentWidget(this);
    m_gridBtn = new TransparentBtn(this);
    m_previewBtn = new TransPrewBtn(this);
    hideOverlays();
}

void SorvantaHome::makeDialogs()
{
    m_updateDialog = new SvtaVersionUpdateDialog(this);
    m_messageDialog = new SvtaMessageDialog(this);
    m_notSaveDialog = new SvtaParamNotSaveDialog(this);
    m_resetDialog = new SvtaParamResetDialog(this);
    m_saveDialog = new SvtaParamSaveDialog(this);
    m_centerTipDialog = new SvtaCenterTipDialog(this);
    m_closeAppDialog = new SvtaForceUpdateSecondDialog(this);
    m_supportedProductDialog = new SvtaSupportedProductDialog(this);
    m_loadingDialog = new LoadingDialog(this);
    for (QDialog* dialog : std::initializer_list<QDialog*>{
             m_updateDialog, m_messageDialog, m_notSaveDialog, m_resetDialog, m_saveDialog,
             m_centerTipDialog, m_closeAppDialog, m_supportedProductDialog, m_loadingDialog}) {
        dialog->setModal(true);
        dialog->hide();
    }
    m_toast = new ToastDialog(this);
    m_toast->hide();
}

void SorvantaHome::makeTray()
{
    m_trayIcon = new QSystemTrayIcon(this);
    m_trayIcon->setIcon(QIcon(QStringLiteral(":/images/MarvikTools.png")));
    m_trayIcon->setToolTip(QStringLiteral("MarvikTools"));

    m_quitAction = new QAction(tr("Quit"), this);
    connect(m_quitAction, SIGNAL(triggered()), qApp, SLOT(quit()));
    // Stays out of the menu: a click on the icon is the way back to the window. The application has
    // no such slot, which Qt reports once at the start.
    m_showAction = new QAction(tr("Show"), this);
    connect(m_showAction, SIGNAL(triggered()), qApp, SLOT(showNormal()));

    m_trayMenu = new QMenu(this);
    m_trayMenu->setStyleSheet(QString::fromLatin1(kTrayMenuStyle));
    m_trayMenu->addAction(m_quitAction);
    m_trayIcon->setContextMenu(m_trayMenu);
    m_trayIcon->show();
    connect(m_trayIcon, &QSystemTrayIcon::activated, this, &SorvantaHome::slotTrayActivated);
}

void SorvantaHome::connectShell()
{
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
        m_parameters.clear();
        m_parametersLoaded = false;
        m_valuesKnown = false;
        close();
    });
    connect(m_gridBtn, &TransparentBtn::sigShowLine, this, &SorvantaHome::slotShowLine);
    connect(m_previewBtn, &TransPrewBtn::sigHandleCapture, this, &SorvantaHome::slotHandleCapture);
    connect(m_previewBtn, &TransPrewBtn::sigShowPreviewTip, this,
            &SorvantaHome::slotShowPreviewTip);
    connect(m_previewBtn, &TransPrewBtn::sigHidePreviewTip, this,
            &SorvantaHome::slotHidePreviewTip);
    connect(this, &SorvantaHome::sigShowStartPage, this, &SorvantaHome::slotShowStartPage);
    connect(this, &SorvantaHome::sigHideLoadingPage, this, &SorvantaHome::slotHideLoadingPage);
}

void SorvantaHome::connectList()
{
    connect(m_homePage, &DeviceHomePage::sigShowDevicePages, this,
            &SorvantaHome::showDeviceSettingPages);
    connect(m_homePage, &DeviceHomePage::sigShowDeviceInfo, this,
            [this](const DeviceWidgetInfo& info) {
                if (!m_pCamera || refuseBusyCamera(info))
                    return;
                takePutOffSteps();
                mDeviceWidgetInfo = info;
                slotShowDeviceInfoPage();
            });
    connect(m_homePage, &DeviceHomePage::sigUpdateCameraListFinished, this,
            &SorvantaHome::slotUpdateCameraListFinished);
    connect(m_homePage, &DeviceHomePage::sigSetDeviceWidgetMaps, this,
            &SorvantaHome::slotSetDeviceWidget);
    // The signal only comes for a camera that was plugged in.
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
    // The page's request to save goes through the question first, which has a signal of its own.
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

    connect(m_saveDialog, &SvtaParamSaveDialog::sigConfirm, this, &Home::slotParamSave);
    connect(m_saveDialog, &SvtaParamSaveDialog::sigCancel, m_saveDialog, &QWidget::hide);
    connect(m_resetDialog, &SvtaParamResetDialog::sigConfirm, this, &Home::slotParamReset);
    connect(m_resetDialog, &SvtaParamResetDialog::sigCancel, m_resetDialog, &QWidget::hide);
    connect(m_notSaveDialog, &SvtaParamNotSaveDialog::sigExit, this, &Home::slotBackLastStep);
    connect(m_notSaveDialog, &SvtaParamNotSaveDialog::sigSaveAndExit, this,
            &Home::slotSaveAndBackLastStep);
    // Who closes the question stays on the page, with the values that are there.
    connect(m_notSaveDialog, &SvtaParamNotSaveDialog::sigStay, this,
            [this] { m_parametersLoaded = true; });
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
    connect(m_applicationUpdate, &ApplicationUpdateCheck::sigOffer, m_aboutPage,
            &AboutPage::sigCommonUpdate);
    const SvtaVersionUpdateDialog* update = m_updateDialog;
    connect(update, &SvtaVersionUpdateDialog::sigDownloadFailed, this,
            &SorvantaHome::slotDownloadFailed);
    connect(update, &SvtaVersionUpdateDialog::sigSetProgress, this, &SorvantaHome::slotSetProgress);
    connect(update, &SvtaVersionUpdateDialog::sigDownloadSuccessed, this,
            &SorvantaHome::slotDownloadSuccessed);
    connect(update, &SvtaVersionUpdateDialog::sigStopUpdate, this, &SorvantaHome::slotStopUpdate);
    connect(update, &SvtaVersionUpdateDialog::sigShowCloseAppDialog, this,
            &SorvantaHome::slotShowCloseAppDialog);
    connect(m_transfer, &FirmwareTransfer::busyCameraChanged, m_homePage,
            &DeviceHomePage::setBusyCamera);
    connect(m_transfer, &FirmwareTransfer::notOpened, this, &SorvantaHome::sigHideLoadingPage);
    connect(m_transfer, &FirmwareTransfer::finished, this, &SorvantaHome::slotTransferFinished);
    connect(m_messageDialog, &SvtaMessageDialog::sigRetry, this, &SorvantaHome::slotRetry);
    connect(m_messageDialog, &SvtaMessageDialog::sigDownloadFailedCancel, this,
            &SorvantaHome::slotDownloadFailedCancel);
    connect(m_closeAppDialog, &SvtaForceUpdateSecondDialog::sigCloseApp, qApp,
            &QCoreApplication::quit);
    connect(m_updateTimer, &QTimer::timeout, this, &SorvantaHome::slotTimeout);
}
