#include "AboutPage.h"
#include "ApplicationConfig.h"
#include "FirmwareTransfer.h"
#include "LoadingDialog.h"
#include "MaskForm.h"
#include "SorvantaHome.h"
#include "SvtaForceUpdateSecondDialog.h"
#include "SvtaMessageDialog.h"
#include "SvtaVersionUpdateDialog.h"
#include "UpdateCheck.h"
#include "UVCCamera.h"

#include <QApplication>
#include <QDebug>
#include <QEventLoop>
#include <QProcess>
#include <QSettings>
#include <QTimer>

namespace {

constexpr int kInstallLimitMs = 240000;

/// Where a developer names the image that slotCameraUpgrade() writes.
constexpr const char* kDevelopmentFirmwareKey = "development/firmwareFile";

} // namespace

void SorvantaHome::readConfigFile()
{
    const QString path = QCoreApplication::applicationDirPath() + QStringLiteral("/config.json");
    const QList<ApplicationConfig::VersionInfo> infos = ApplicationConfig::read(path);
    for (const ApplicationConfig::VersionInfo& info : infos) {
        m_aboutPage->setHashCode(info.hashCode);
        mVersion = info.version;
        m_applicationBody = UpdateCheck::applicationBody(mVersion);
        m_aboutPage->setVersion(mVersion);
    }
}

void SorvantaHome::slotSetDownloadData(const QJsonObject& downloadData, const QString& text)
{
    qDebug() << "installWidget1";
    m_mask->showUnder(m_updateDialog);
    qDebug() << "installWidget2";
    m_updateDialog->setUpdateData(downloadData, text, QStringLiteral("N"));
    m_updateDialog->setModal(true);
}

void SorvantaHome::slotForceUpdate(const QJsonObject& downloadData)
{
    m_forceStatus = true;
    m_mask->showUnder(m_updateDialog);
    m_updateDialog->setCloseVisible(true);
    m_updateDialog->setUpdateData(downloadData, QStringLiteral("MarvikTools V") + mVersion,
                                  QStringLiteral("Y"));
    showNormal();
}

void SorvantaHome::slotSetUpdateData(const QJsonObject& updateData)
{
    m_forceStatus = false;
    showNormal();
    m_mask->showUnder(m_updateDialog);
    m_updateDialog->setUpdateData(updateData, QStringLiteral("MarvikTools V") + mVersion,
                                  QStringLiteral("N"));
    m_updateDialog->setCloseVisible(false);
    m_updateDialog->show();
}

void SorvantaHome::slotSetProgress(int progress)
{
    m_updateDialog->setProgress(progress);
}

void SorvantaHome::slotStopUpdate()
{
    m_updateDialog->slotStopUpdate();
}

/// The confirming button, "Later", is the one that tries again: in a forced update it is the only
/// one there is.
void SorvantaHome::slotDownloadFailed()
{
    m_updateDialog->setStatus(SvtaVersionUpdateDialog::Failed);
    m_messageDialog->setMessage(
        m_forceStatus ? tr("Download failed, please try again. If no, please contact the "
                           "administrator.")
                      : tr("Downloading failed . Please try again."),
        tr("Later"), tr("Retry"), m_forceStatus);
    showMasked(m_messageDialog);
    m_updateDialog->hide();
    m_updateDialog->setCurrentPage(SvtaVersionUpdateDialog::DownloadPage);
}

void SorvantaHome::slotRetry()
{
    m_updateDialog->setCurrentPage(SvtaVersionUpdateDialog::DownloadPage);
    showMasked(m_updateDialog);
    m_messageDialog->hide();
    m_updateDialog->reDownload();
}

void SorvantaHome::slotDownloadFailedCancel()
{
    m_updateDialog->setCurrentPage(SvtaVersionUpdateDialog::OfferPage);
    m_updateDialog->setProgress(0);
    m_messageDialog->hide();
}

void SorvantaHome::slotDownloadSuccessed()
{
    m_updateDialog->setStatus(SvtaVersionUpdateDialog::Success);
    m_updateDialog->setProgress(0);
    if (m_updateDialog->currentPage() == SvtaVersionUpdateDialog::DownloadPage)
        m_updateDialog->hide();
    m_updateDialog->setCurrentPage(SvtaVersionUpdateDialog::OfferPage);

    qDebug() << "isStopDownload =" << m_updateDialog->isStopDownload();
    if (m_updateDialog->isStopDownload())
        return;
    switch (currentPage()) {
    case SvtaPagesView::InfoPage:
        installFirmware(m_updateDialog->savePath());
        break;
    case SvtaPagesView::HomePage:
    case SvtaPagesView::AboutUsPage:
        installApplication();
        break;
    default:
        break; // the file waits in the cache directory
    }
}

void SorvantaHome::installFirmware(const QString& file)
{
    if (m_transfer->isRunning()) {
        showToast(tr("The installation process will take a long time. Please wait."));
        return;
    }
    m_updateTimer->start(kInstallLimitMs);
    showMasked(m_loadingDialog);
    qDebug() << "slotDownloadSuccessed" << file;
    writeFirmware(file);
}

/// Hands the open camera over to the transfer: from here to its end nobody else talks to it.
void SorvantaHome::writeFirmware(const QString& file)
{
    takePutOffSteps();
    // The answers of a camera go to every open handle, and its name is not free again before the
    // last is closed.
    m_pCamera->closeHid();
    m_transfer->start(mDeviceWidgetInfo.hidPath, file);
}

void SorvantaHome::slotTransferFinished(bool sent)
{
    // A camera that has the whole image leaves the bus to start it and is opened when it is back.
    if (!sent)
        openHidLink();
}

void SorvantaHome::installApplication()
{
    qDebug() << "ui->homeStackedWidget->currentIndex() =" << currentPage();
    QString downLoadFilepath = m_updateDialog->savePath();
    qDebug() << "downLoadFilepath =" << downLoadFilepath;
    // Quoted, so that a path with blanks stays one word.
    downLoadFilepath = QLatin1Char('"') + downLoadFilepath + QLatin1Char('"');
    qDebug() << "downLoadFilepath =" << downLoadFilepath;
    QStringList command = QProcess::splitCommand(downLoadFilepath);
    const QString program = command.isEmpty() ? QString() : command.takeFirst();
    const bool ret = QProcess::startDetached(program, command);
    qDebug() << "ret =" << ret;
    if (ret) {
        QCoreApplication::quit();
    } else if (m_forceStatus) {
        qDebug() << "forceStatus =" << m_forceStatus;
        QCoreApplication::quit();
    }
}

/// For developers: writes an image without asking a service, and without a dialog.
void SorvantaHome::slotCameraUpgrade()
{
    const QSettings settings(QSettings::IniFormat, QSettings::UserScope,
                             QStringLiteral("MarvikTools"), QStringLiteral("MarvikTools"));
    const QString file = settings.value(QLatin1String(kDevelopmentFirmwareKey)).toString();
    if (!file.isEmpty() && !m_transfer->isRunning())
        writeFirmware(file);
}

void SorvantaHome::slotHideLoadingPage()
{
    m_updateTimer->stop();
    m_loadingDialog->hide();
}

void SorvantaHome::slotTimeout()
{
    qDebug() << "SorvantaHome::slotTimeout" << 1284 << "超时了";
    m_updateTimer->stop();
    m_loadingDialog->hide();
    showView(SvtaPagesView::HomePage);
    showToast(tr("更新失败，请重试"));
}

/// The update dialog stays where it is behind the question, under a mask of its own.
void SorvantaHome::slotShowCloseAppDialog()
{
    if (!m_closeAppMask) {
        m_closeAppMask = new MaskForm(this);
        m_closeAppMask->setCoveredWidget(this);
    }
    m_closeAppMask->showUnder(m_closeAppDialog);
    m_closeAppDialog->show();
}

/// Whether firmware is being written into the camera at @p hidPath.
bool SorvantaHome::isBusy(const QString& hidPath) const
{
    return !hidPath.isEmpty() && hidPath == m_transfer->busyHidPath();
}

bool SorvantaHome::refuseBusyCamera(const DeviceWidgetInfo& info)
{
    if (!isBusy(info.hidPath))
        return false;
    showToast(tr("The installation process will take a long time. Please wait."));
    return true;
}

void SorvantaHome::finishTransfer()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows)
        window->hide();
    m_trayIcon->hide();
    m_updateTimer->stop();
    if (!m_transfer->isRunning())
        return;
    qDebug() << "the program ends when the camera is written";
    // Events go on meanwhile: the session and the window system still expect answers.
    QEventLoop loop;
    connect(m_transfer, &FirmwareTransfer::finished, &loop, &QEventLoop::quit);
    loop.exec();
}
