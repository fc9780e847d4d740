#include "ApplicationUpdateCheck.h"
#include "CameraHandle.h"
#include "DeviceHomePage.h"
#include "DeviceInfoPage.h"
#include "HidDiagnostics.h"
#include "MaskForm.h"
#include "ParamSettingsPage.h"
#include "ReportedText.h"
#include "SorvantaHome.h"
#include "SvtaMoreWidget.h"
#include "SvtaParamNotSaveDialog.h"
#include "SvtaSupportedProductDialog.h"
#include "ToastDialog.h"
#include "TransPrewBtn.h"
#include "ui_SorvantaHome.h"
#include "UVCCamera.h"

#include <QDebug>
#include <QTimer>

namespace {

constexpr int kStartAnimationMs = 2800;
constexpr int kPreviewDelayMs = 100;
constexpr int kBackLockMs = 1000;
constexpr int kToastMs = 700;

const char* const kBlueTitle =
    "#bgWidget { background-color: #004DA6; border: 1px solid #004DA6; }";
const char* const kWhiteTitle =
    "#bgWidget { background-color: #FFFFFF; border: 1px solid #F2F2F2; }";

} // namespace

SvtaPagesView::ViewPageEnum SorvantaHome::currentPage() const
{
    return static_cast<SvtaPagesView::ViewPageEnum>(ui->homeStackedWidget->currentIndex());
}

void SorvantaHome::showView(SvtaPagesView::ViewPageEnum page)
{
    m_history.append(page);
    hideOverlays();
    if (m_pCamera) {
        m_pCamera->stopCapture();
        m_pCamera->closeDevice();
    }

    QWidget* widget = mPageMap.value(page);
    if (!widget)
        return;
    qDebug() << "mPageMap.contains(page)";
    ui->homeStackedWidget->setCurrentWidget(widget);
    // No control of the new page is the user's choice yet; Tab goes to its first one.
    setFocus(Qt::OtherFocusReason);

    switch (page) {
    case SvtaPagesView::StartPage:
        ui->backWidget->hide();
        ui->moreBtn->hide();
        ui->bgWidget->setStyleSheet(QString::fromLatin1(kBlueTitle));
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
}

void SorvantaHome::leaveStartPage()
{
    ui->moreBtn->show();
    ui->bgWidget->setStyleSheet(QString::fromLatin1(kWhiteTitle));
    ui->closeBtn->setStyleSheet(QStringLiteral("image: url(:/images/close.svg);"));
    ui->minimumBtn->setStyleSheet(QStringLiteral("image: url(:/images/minimum.svg);"));
    setStyleSheet(QStringLiteral("background-color: rgba(255, 255, 255, 0);"));
    m_homePage->start();
    showView(SvtaPagesView::HomePage);
    if (!mVersion.isEmpty()) // a program that does not know its version cannot be outdated
        m_applicationUpdate->checkOnce(m_applicationBody);
}

void SorvantaHome::enterHomePage()
{
    ui->backWidget->hide();
    clearGridMark();
    if (m_homePage->entryCount() >= 1)
        m_homePage->showFilledState();
}

void SorvantaHome::enterInfoPage()
{
    qDebug() << "InfoPage";
    ui->backWidget->show();
    ui->deviceInfoBtn->hide();
    ui->labCurrentPage->hide();
    ui->labCurrentPage->setText(tr("设备信息"));
}

void SorvantaHome::enterAboutPage()
{
    qDebug() << "AboutPage";
    ui->backWidget->show();
    ui->labCurrentPage->setText(tr("About"));
    ui->labCurrentPage->show();
    ui->deviceInfoBtn->hide();
}

void SorvantaHome::enterSettingPage()
{
    qDebug() << "SettingPage";
    ui->backWidget->show();
    ui->deviceInfoBtn->show();
    ui->labCurrentPage->setText(mDeviceWidgetInfo.name);
    ui->labCurrentPage->show();
    showGrid(m_gridShown);
    m_settingsPage->resetPage(0);
    QTimer::singleShot(kPreviewDelayMs, this, [this] {
        // The user may have gone on by now; a preview must not start on another page.
        if (currentPage() == SvtaPagesView::SettingPage)
            startPlay();
    });
}

void SorvantaHome::backView()
{
    ui->backBtn->setEnabled(false);
    QTimer::singleShot(kBackLockMs, this, [this] { ui->backBtn->setEnabled(true); });

    const bool same = isSameData();
    qDebug() << "flag" << same;
    m_isSameData = same;

    switch (currentPage()) {
    case SvtaPagesView::SettingPage:
        m_parametersLoaded = false;
        if (!same) {
            showMasked(m_notSaveDialog);
            return;
        }
        m_history.removeLast();
        break;
    case SvtaPagesView::InfoPage:
        m_history.removeLast();
        // There is nothing to set on a camera that is gone.
        if (mDeviceWidgetInfo.status == 0 && !m_history.isEmpty() &&
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
    qDebug() << "showDeviceSettingPages";
    if (refuseBusyCamera(info))
        return;
    takePutOffSteps();
    mDeviceWidgetInfo = info;
    m_parametersLoaded = false;
    m_valuesKnown = false;
    m_previewBtn->setPreviewOpen(true); // a camera opens with its picture
    refreshIdentity();

    qDebug() << "showView(SvtaPagesView::SettingPage) befor";
    showView(SvtaPagesView::SettingPage);
    qDebug() << "showView(SvtaPagesView::SettingPage) after";
}

void SorvantaHome::slotShowDeviceInfoPage()
{
    getHidInfo();
    refreshIdentity();
    showView(SvtaPagesView::InfoPage);
}

/// Asks the open camera who it is and tells the pages.
void SorvantaHome::refreshIdentity()
{
    openHidLink();
    mDeviceWidgetInfo.deviceVersion = reportedText(m_pCamera->getFirmwareVersion());
    mDeviceWidgetInfo.sn = reportedText(m_pCamera->getSerialNumber());
    CameraHandle::instance().setCurrentDevice(mDeviceWidgetInfo);
    m_infoPage->setProductInfo(mDeviceWidgetInfo);
    qDebug() << "vsc =" << mDeviceWidgetInfo.deviceVersion;
    qDebug() << "sn" << mDeviceWidgetInfo.sn;
}

void SorvantaHome::slotInitCamera(int status)
{
    Q_UNUSED(status)
    if (isBusy(mDeviceWidgetInfo.hidPath))
        return;
    getHidInfo();
    openHidLink();
    qDebug() << "init m_pCamera";
}

void SorvantaHome::getHidInfo() const
{
    if (!mDeviceWidgetInfo.hidPath.isEmpty())
        HidDiagnostics::logIdentity(mDeviceWidgetInfo.hidPath);
}

bool SorvantaHome::openHidLink()
{
    m_pCamera->setCurrentDevicePath(mDeviceWidgetInfo.hidPath);
    return m_pCamera->initHid();
}

void SorvantaHome::slotSetDeviceWidget(const QMap<QString, DeviceWidgetInfo>& InfoMap)
{
    m_deviceWidgets = InfoMap;
    if (mDeviceWidgetInfo.hidPath.isEmpty())
        return;
    mDeviceWidgetInfo.status = 0;
    for (const DeviceWidgetInfo& info : InfoMap) {
        if (info.hidPath == mDeviceWidgetInfo.hidPath)
            mDeviceWidgetInfo.status = info.status;
    }
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

void SorvantaHome::slotShowSupportedProduct()
{
    showMasked(m_supportedProductDialog);
}

void SorvantaHome::showMasked(QDialog* dialog)
{
    m_mask->showUnder(dialog);
    dialog->show();
}

void SorvantaHome::showToast(const QString& text)
{
    qDebug() << "showToast" << text;
    if (text.isEmpty())
        return;
    delete m_toast;
    m_toast = new ToastDialog(this);
    m_toast->show();
    m_toast->raise();
    m_toast->Start(text, kToastMs);
}
