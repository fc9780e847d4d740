#include "BusyCursor.h"
#include "CameraHandle.h"
#include "DeviceHomePage.h"
#include "DeviceInfoPage.h"
#include "HidDiagnostics.h"
#include "LogCategories.h"
#include "MaskForm.h"
#include "OpenCamera.h"
#include "ParamSettingsPage.h"
#include "PreviewOverlays.h"
#include "SettingsDialogs.h"
#include "SorvantaHome.h"
#include "Style.h"
#include "SvtaMoreWidget.h"
#include "SvtaParamNotSaveDialog.h"
#include "ToastDialog.h"
#include "ui_SorvantaHome.h"
#include "UpdateFlow.h"
#include "UVCCamera.h"

#include <QTimer>

namespace {

constexpr int kStartAnimationMs = 2800;
constexpr int kPreviewDelayMs = 100;
constexpr int kBackLockMs = 1000;
constexpr int kToastMs = 700;

const char* const kBlueTitle = "#bgWidget { background-color: @start; border: 1px solid @start; }";
const char* const kWhiteTitle =
    "#bgWidget { background-color: @surface; border: 1px solid @line; }";

} // namespace

SvtaPagesView::ViewPageEnum SorvantaHome::currentPage() const
{
    return static_cast<SvtaPagesView::ViewPageEnum>(ui->homeStackedWidget->currentIndex());
}

void SorvantaHome::showView(SvtaPagesView::ViewPageEnum page)
{
    m_history.append(page);
    m_overlays->hide();
    if (m_pCamera) {
        m_pCamera->stopCapture();
        m_pCamera->closeDevice();
    }

    QWidget* widget = mPageMap.value(page);
    if (!widget)
        return;
    if (page != SvtaPagesView::InfoPage)
        m_infoPage->dropQuestion();
    qCDebug(shellLog) << "mPageMap.contains(page)";
    ui->homeStackedWidget->setCurrentWidget(widget);
    // No control of the new page has the focus yet; Tab moves it to the first one.
    setFocus(Qt::OtherFocusReason);

    switch (page) {
    case SvtaPagesView::StartPage:
        ui->backWidget->hide();
        ui->moreBtn->hide();
        ui->bgWidget->setStyleSheet(Style::sheet(kBlueTitle));
        QTimer::singleShot(kStartAnimationMs, this, &SorvantaHome::leaveStartPage);
        break;
    case SvtaPagesView::HomePage:
        enterHomePage();
        break;
    case SvtaPagesView::InfoPage:
        enterInfoPage();
        break;
    case SvtaPagesView::AboutUsPage:
        enterAboutPage();
        break;
    case SvtaPagesView::SettingPage:
        enterSettingPage();
        break;
    }
    m_update->pageShown(page);
}

void SorvantaHome::leaveStartPage()
{
    ui->moreBtn->show();
    ui->bgWidget->setStyleSheet(Style::sheet(kWhiteTitle));
    ui->closeBtn->setStyleSheet(QStringLiteral("image: url(:/images/close.svg);"));
    ui->minimumBtn->setStyleSheet(QStringLiteral("image: url(:/images/minimum.svg);"));
    setStyleSheet(QStringLiteral("background-color: rgba(255, 255, 255, 0);"));
    m_homePage->start();
    showView(SvtaPagesView::HomePage);
    m_update->checkApplication(*m_aboutPage);
}

void SorvantaHome::showHelp()
{
    switch (currentPage()) {
    case SvtaPagesView::StartPage:
        break;
    case SvtaPagesView::HomePage:
        slotShowSupportedProduct();
        break;
    case SvtaPagesView::SettingPage:
        slotShowCenterTipDialog();
        break;
    case SvtaPagesView::InfoPage:
        showView(SvtaPagesView::AboutUsPage); // whom to ask
        break;
    case SvtaPagesView::AboutUsPage:
        break;
    }
}

void SorvantaHome::enterHomePage()
{
    ui->backWidget->hide();
    m_overlays->switchGridOff();
    m_openCamera->leave(); // Back does not return to its pages from the list
    if (m_homePage->entryCount() >= 1)
        m_homePage->showFilledState();
}

void SorvantaHome::enterInfoPage()
{
    qCDebug(shellLog) << "InfoPage";
    ui->backWidget->show();
    ui->deviceInfoBtn->hide();
    ui->labCurrentPage->hide();
    ui->labCurrentPage->setText(tr("设备信息"));
}

void SorvantaHome::enterAboutPage()
{
    qCDebug(shellLog) << "AboutPage";
    ui->backWidget->show();
    ui->labCurrentPage->setText(tr("About"));
    ui->labCurrentPage->show();
    ui->deviceInfoBtn->hide();
}

void SorvantaHome::enterSettingPage()
{
    qCDebug(shellLog) << "SettingPage";
    ui->backWidget->show();
    ui->deviceInfoBtn->show();
    ui->labCurrentPage->setText(session().info().name);
    ui->labCurrentPage->show();
    m_overlays->showGrid();
    m_settingsPage->resetPage(0);
    QTimer::singleShot(kPreviewDelayMs, this, [this] {
        // The user may have left the page by now; the preview must not start on another page.
        if (currentPage() == SvtaPagesView::SettingPage)
            startPlay();
    });
}

void SorvantaHome::backView()
{
    ui->backBtn->setEnabled(false);
    QTimer::singleShot(kBackLockMs, this, [this] { ui->backBtn->setEnabled(true); });

    const bool same = isSameData();
    qCDebug(shellLog) << "flag" << same;
    m_isSameData = same;

    switch (currentPage()) {
    case SvtaPagesView::SettingPage:
        session().setParametersLoaded(false);
        if (!same) {
            m_mask->showUnder(m_dialogs->notSave);
            return;
        }
        m_history.removeLast();
        break;
    case SvtaPagesView::InfoPage:
        m_history.removeLast();
        // A camera that was removed has no settings to show.
        if (session().info().status == 0 && !m_history.isEmpty() &&
            m_history.last() == SvtaPagesView::SettingPage)
            m_history.removeLast();
        break;
    default:
        m_history.removeLast();
        break;
    }
    showLastView();
}

void SorvantaHome::showLastView()
{
    if (m_history.isEmpty())
        m_history.append(SvtaPagesView::HomePage);
    showView(m_history.last());
    m_history.removeLast();
}

void SorvantaHome::showDeviceSettingPages(const DeviceWidgetInfo& info)
{
    qCDebug(shellLog) << "showDeviceSettingPages";
    if (m_update->refusesBusyCamera(info))
        return;
    m_openCamera->open(info);
    m_overlays->setPreviewOpen(true); // a camera opens with its picture
    refreshIdentity();

    qCDebug(shellLog) << "showView(SvtaPagesView::SettingPage) befor";
    showView(SvtaPagesView::SettingPage);
    qCDebug(shellLog) << "showView(SvtaPagesView::SettingPage) after";
}

void SorvantaHome::slotShowDeviceInfoPage()
{
    getHidInfo();
    refreshIdentity();
    showView(SvtaPagesView::InfoPage);
}

/// Asks the open camera for version and serial number and shows them on its pages.
void SorvantaHome::refreshIdentity()
{
    const BusyCursor busy;
    session().refreshIdentity();
    const DeviceWidgetInfo& info = session().info();
    CameraHandle::instance().setCurrentDevice(info);
    m_homePage->setSerialNumber(info.hidPath, info.sn);
    m_infoPage->setProductInfo(info);
    qCDebug(shellLog) << "vsc =" << info.deviceVersion;
    qCDebug(shellLog) << "sn" << info.sn;
}

void SorvantaHome::getHidInfo() const
{
    if (session().isOpen())
        HidDiagnostics::logIdentity(session().info().hidPath);
}

void SorvantaHome::slotMinimum()
{
    showMinimized();
}

void SorvantaHome::slotClose()
{
    close();
}

void SorvantaHome::slotShowMoreMenu()
{
    m_moreMenu->move(mapToGlobal(QPoint(0, 0)) + QPoint(16, 36));
    m_moreMenu->show();
}

void SorvantaHome::slotShowStartPage()
{
    showView(SvtaPagesView::StartPage);
}

void SorvantaHome::showToast(const QString& text)
{
    qCDebug(shellLog) << "showToast" << text;
    if (text.isEmpty())
        return;
    delete m_toast;
    m_toast = new ToastDialog(this);
    m_toast->show();
    m_toast->raise();
    m_toast->Start(text, kToastMs);
}
