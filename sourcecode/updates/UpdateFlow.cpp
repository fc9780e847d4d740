#include "UpdateFlow.h"

#include "AboutPage.h"
#include "ApplicationConfig.h"
#include "ApplicationUpdateCheck.h"
#include "CameraHandle.h"
#include "FirmwareImage.h"
#include "FirmwareVerdict.h"
#include "FirmwareWorker.h"
#include "HeldFile.h"
#include "InstallerFile.h"
#include "LoadingDialog.h"
#include "LogCategories.h"
#include "MaskForm.h"
#include "OpenCamera.h"
#include "PackageFiles.h"
#include "ReportedText.h"
#include "SessionEndBlock.h"
#include "SvtaForceUpdateSecondDialog.h"
#include "SvtaMessageDialog.h"
#include "SvtaVersionUpdateDialog.h"
#include "UpdateCheck.h"
#include "UVCCamera.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QProcess>
#include <QSettings>
#include <QTimer>

namespace {

constexpr int kHeldTimeoutMs = 5000;
constexpr int kHeldIntervalMs = 100;

/// Settings key with the path of the image that writeDevelopmentFirmware() writes.
constexpr const char* kDevelopmentFirmwareKey = "development/firmwareFile";

} // namespace

UpdateFlow::UpdateFlow(OpenCamera& camera, MaskForm& mask, QWidget* window)
    : m_camera(camera)
    , m_mask(mask)
    , m_window(window)
    , m_worker(new FirmwareWorker(this))
    , m_applicationUpdate(new ApplicationUpdateCheck(this))
    , m_updateDialog(new SvtaVersionUpdateDialog(window))
    , m_messageDialog(new SvtaMessageDialog(window))
    , m_closeAppDialog(new SvtaForceUpdateSecondDialog(window))
    , m_loadingDialog(new LoadingDialog(window))
    , m_updateTimer(new QTimer(window))
{
    for (QDialog* dialog : std::initializer_list<QDialog*>{m_updateDialog, m_messageDialog,
                                                           m_closeAppDialog, m_loadingDialog}) {
        dialog->setModal(true);
        dialog->hide();
        dialog->installEventFilter(this);
    }
    m_updateTimer->setObjectName(QStringLiteral("updateTimer"));
    m_updateTimer->setSingleShot(true);

    connect(m_worker, &FirmwareWorker::busyCameraChanged, this, &UpdateFlow::sigBusyCameraChanged);
    connect(m_worker, &FirmwareWorker::notOpened, this, &UpdateFlow::sigNotOpened);
    connect(m_worker, &FirmwareWorker::finished, this, &UpdateFlow::transferFinished);
    connect(m_closeAppDialog, &SvtaForceUpdateSecondDialog::sigCloseApp, qApp,
            &QCoreApplication::quit);
    PackageFiles::removeOld(QDateTime::currentDateTime());
}

UpdateFlow::~UpdateFlow() = default;

void UpdateFlow::readConfigFile(AboutPage& page)
{
    const QString path = QCoreApplication::applicationDirPath() + QStringLiteral("/config.json");
    const QList<ApplicationConfig::VersionInfo> infos = ApplicationConfig::read(path);
    for (const ApplicationConfig::VersionInfo& info : infos) {
        page.setHashCode(info.hashCode);
        mVersion = info.version;
        m_applicationBody = UpdateCheck::applicationBody(mVersion);
        page.setVersion(mVersion);
    }
}

void UpdateFlow::checkApplication(AboutPage& page)
{
    connect(m_applicationUpdate, &ApplicationUpdateCheck::sigOffer, &page,
            &AboutPage::sigCommonUpdate, Qt::UniqueConnection);
    if (!mVersion.isEmpty()) // without a version there is nothing to compare
        m_applicationUpdate->checkOnce(m_applicationBody);
}

void UpdateFlow::showFirmwareOffer(const QJsonObject& downloadData, const QString& text)
{
    if (isDownloading()) {
        qCDebug(updateLog) << "an offer of firmware is ignored during another download";
        return;
    }
    removeFirmwarePackage();
    m_package = Package::Firmware;
    m_offerCamera = m_camera.session().info();
    m_forceStatus = false;
    qCDebug(updateLog) << "installWidget1";
    m_mask.follow(m_updateDialog);
    qCDebug(updateLog) << "installWidget2";
    m_updateDialog->setUpdateData(downloadData, text, QStringLiteral("N"));
    m_updateDialog->setModal(true);
}

void UpdateFlow::showForcedOffer(const QJsonObject& downloadData)
{
    m_waitingOffer = [this, downloadData] { offerApplication(downloadData, true); };
    showWaitingOffer();
}

void UpdateFlow::showApplicationOffer(const QJsonObject& updateData)
{
    m_waitingOffer = [this, updateData] { offerApplication(updateData, false); };
    showWaitingOffer();
}

void UpdateFlow::offerApplication(const QJsonObject& updateData, bool forced)
{
    removeFirmwarePackage();
    m_package = Package::Application;
    m_forceStatus = forced;
    emit sigRestoreWindow();
    m_mask.follow(m_updateDialog);
    m_updateDialog->setCloseVisible(forced);
    m_updateDialog->setUpdateData(updateData, QStringLiteral("MarvikTools V") + mVersion,
                                  forced ? QStringLiteral("Y") : QStringLiteral("N"));
}

void UpdateFlow::pageShown(SvtaPagesView::ViewPageEnum page)
{
    m_page = page;
    showWaitingOffer();
}

void UpdateFlow::showWaitingOffer()
{
    const bool accepted = m_page == SvtaPagesView::HomePage || m_page == SvtaPagesView::AboutUsPage;
    if (!m_waitingOffer || !accepted || isUnderWay())
        return;
    const std::function<void()> show = std::move(m_waitingOffer);
    m_waitingOffer = nullptr;
    show();
}

/// The dialog shows its download page from the start of a download until the package has arrived,
/// or the user has stopped or given up the download.
bool UpdateFlow::isDownloading() const
{
    return m_updateDialog->currentPage() == SvtaVersionUpdateDialog::DownloadPage;
}

bool UpdateFlow::isUnderWay() const
{
    const bool offersFirmware = m_package == Package::Firmware && m_updateDialog->isVisible();
    return offersFirmware || isDownloading() || isInstalling() || m_worker->isRunning() ||
           m_messageDialog->isVisible();
}

bool UpdateFlow::eventFilter(QObject* watched, QEvent* event)
{
    // The end of an update closes one of its dialogs. The offer that waits is shown later, because
    // the function that closes this dialog may open another one.
    if (event->type() == QEvent::Hide && watched == m_loadingDialog)
        removeFirmwarePackage();
    if (event->type() == QEvent::Hide && m_waitingOffer)
        QTimer::singleShot(0, this, &UpdateFlow::showWaitingOffer);
    return QObject::eventFilter(watched, event);
}

void UpdateFlow::setProgress(int progress)
{
    m_updateDialog->setProgress(progress);
}

void UpdateFlow::stopDownload()
{
    m_updateDialog->slotStopUpdate();
}

/// The confirming button has the text "Later" but downloads again. In a forced update it is the
/// only button.
void UpdateFlow::downloadFailed()
{
    m_updateDialog->setStatus(SvtaVersionUpdateDialog::Failed);
    m_messageDialog->setMessage(
        m_forceStatus ? tr("Download failed, please try again. If no, please contact the "
                           "administrator.")
                      : tr("Downloading failed . Please try again."),
        tr("Later"), tr("Retry"), m_forceStatus);
    m_mask.showUnder(m_messageDialog);
    m_updateDialog->hide();
    m_updateDialog->setCurrentPage(SvtaVersionUpdateDialog::DownloadPage);
}

void UpdateFlow::retry()
{
    m_updateDialog->setCurrentPage(SvtaVersionUpdateDialog::DownloadPage);
    m_mask.showUnder(m_updateDialog);
    m_messageDialog->hide();
    m_updateDialog->reDownload();
}

void UpdateFlow::cancelAfterFailure()
{
    m_updateDialog->setCurrentPage(SvtaVersionUpdateDialog::OfferPage);
    m_updateDialog->setProgress(0);
    m_messageDialog->hide();
    removeFirmwarePackage();
}

void UpdateFlow::downloadSucceeded(SvtaPagesView::ViewPageEnum page)
{
    m_updateDialog->setStatus(SvtaVersionUpdateDialog::Success);
    m_updateDialog->setProgress(0);
    if (m_updateDialog->currentPage() == SvtaVersionUpdateDialog::DownloadPage)
        m_updateDialog->hide();
    m_updateDialog->setCurrentPage(SvtaVersionUpdateDialog::OfferPage);

    qCDebug(updateLog) << "isStopDownload =" << m_updateDialog->isStopDownload();
    if (m_updateDialog->isStopDownload())
        return;
    if (m_package == Package::Firmware)
        m_firmwareFile = m_updateDialog->savePath();
    installWhenFree(page);
}

/// A virus scanner may hold the new file for some seconds.
void UpdateFlow::installWhenFree(SvtaPagesView::ViewPageEnum page, int waitedMs)
{
    const QString file = m_updateDialog->savePath();
    if (waitedMs < kHeldTimeoutMs && HeldFile::isHeld(file)) {
        QTimer::singleShot(kHeldIntervalMs, this, [this, file, package = m_package, waitedMs] {
            // The user may have gone to another page, or to another offer.
            const bool isNewest = file == m_updateDialog->savePath() && package == m_package;
            if (isNewest && !isDownloading() && !m_updateDialog->isVisible())
                installWhenFree(m_page, waitedMs + kHeldIntervalMs);
        });
        return;
    }
    const bool isFirmware = m_package == Package::Firmware;
    if (isFirmware && page == SvtaPagesView::InfoPage && isForOpenCamera())
        installFirmware(file);
    else if (!isFirmware && (page == SvtaPagesView::HomePage || page == SvtaPagesView::AboutUsPage))
        installApplication(page);
    else
        qCDebug(updateLog) << "the package stays in the cache directory";
    showWaitingOffer();
}

/// The package is of no use when its update has ended, because each attempt downloads it again. It
/// stays while the worker may still read it.
void UpdateFlow::removeFirmwarePackage()
{
    if (m_firmwareFile.isEmpty() || m_worker->isRunning())
        return;
    PackageFiles::remove(m_firmwareFile);
    m_firmwareFile.clear();
}

/// A camera that was plugged in again keeps its serial number, but may have another path.
bool UpdateFlow::isForOpenCamera() const
{
    const DeviceWidgetInfo& open = m_camera.session().info();
    if (open.model != m_offerCamera.model)
        return false;
    return m_offerCamera.sn.isEmpty() ? open.hidPath == m_offerCamera.hidPath
                                      : open.sn == m_offerCamera.sn;
}

/// Whether the package can be sent. A camera that has received the start command is interrupted,
/// and one that receives no packets after it may reject its firmware.
bool UpdateFlow::isWhole(const QString& file) const
{
    const std::optional<QByteArray> image = FirmwareImage::read(file);
    return image && !image->isEmpty() && image->size() == m_updateDialog->downloadedBytes();
}

void UpdateFlow::installFirmware(const QString& file)
{
    if (m_worker->isRunning()) {
        emit sigShowToast(tr("The installation process will take a long time. Please wait."));
        return;
    }
    if (!isWhole(file)) {
        qCWarning(updateLog) << "the firmware package is damaged and is not sent:" << file;
        showFailed();
        return;
    }
    m_othersWhenItLeft.reset();
    m_updateTimer->start(kFirmwareInstallTimeout);
    m_mask.showUnder(m_loadingDialog);
    qCDebug(updateLog) << "slotDownloadSuccessed" << file;
    writeFirmware(file);
}

/// Lets the worker write the open camera. Until the transfer has ended, nothing else may send
/// commands to this camera.
void UpdateFlow::writeFirmware(const QString& file)
{
    CameraSession& session = m_camera.session();
    session.flushDeferred();
    // A camera's answers go to every open handle, so a second one would receive answers of the
    // transfer. A closed handle also lets the camera return under the same path.
    session.closeLink();
    if (m_worker->start(session.info().hidPath, file))
        m_sessionEndBlock =
            std::make_unique<SessionEndBlock>(m_window, tr("A camera is being updated"));
}

void UpdateFlow::transferFinished(bool sent)
{
    m_sessionEndBlock.reset();
    // A camera that has received the whole image leaves the bus to start it. It is opened when it
    // has returned.
    if (!sent && m_camera.session().isOpen())
        m_camera.session().openLink();
    if (!isInstalling())
        removeFirmwarePackage();
    showWaitingOffer();
}

void UpdateFlow::installApplication(SvtaPagesView::ViewPageEnum page)
{
    qCDebug(updateLog) << "ui->homeStackedWidget->currentIndex() =" << page;
    QString downLoadFilepath = m_updateDialog->savePath();
    qCDebug(updateLog) << "downLoadFilepath =" << downLoadFilepath;
    InstallerFile::makeExecutable(downLoadFilepath);
    // Quoted, so that splitCommand() does not split a path at its blanks.
    downLoadFilepath = QLatin1Char('"') + downLoadFilepath + QLatin1Char('"');
    qCDebug(updateLog) << "downLoadFilepath =" << downLoadFilepath;
    QStringList command = QProcess::splitCommand(downLoadFilepath);
    const QString program = command.isEmpty() ? QString() : command.takeFirst();
    const bool ret = QProcess::startDetached(program, command);
    qCDebug(updateLog) << "ret =" << ret;
    if (ret) {
        QCoreApplication::quit();
    } else if (m_forceStatus) {
        qCDebug(updateLog) << "forceStatus =" << m_forceStatus;
        QCoreApplication::quit();
    }
}

void UpdateFlow::writeDevelopmentFirmware()
{
    const QSettings settings(QSettings::IniFormat, QSettings::UserScope,
                             QStringLiteral("MarvikTools"), QStringLiteral("MarvikTools"));
    const QString file = settings.value(QLatin1String(kDevelopmentFirmwareKey)).toString();
    if (file.isEmpty() || m_worker->isRunning())
        return;
    const std::optional<QByteArray> image = FirmwareImage::read(file);
    if (image && !image->isEmpty())
        writeFirmware(file);
}

void UpdateFlow::hideLoading()
{
    m_updateTimer->stop();
    m_loadingDialog->hide();
}

void UpdateFlow::timeOut()
{
    qCDebug(updateLog) << "SorvantaHome::slotTimeout" << 1284 << "超时了";
    hideLoading();
    emit sigShowList();
    emit sigShowToast(tr("更新失败，请重试"));
}

void UpdateFlow::showCloseAppQuestion()
{
    if (!m_closeAppMask) {
        m_closeAppMask = new MaskForm(m_window);
        m_closeAppMask->setCoveredWidget(m_window);
    }
    m_closeAppMask->showUnder(m_closeAppDialog);
}

bool UpdateFlow::isInstalling() const
{
    return m_loadingDialog->isVisible();
}

bool UpdateFlow::isBusy(const QString& hidPath) const
{
    return !hidPath.isEmpty() && hidPath == m_worker->busyHidPath();
}

bool UpdateFlow::refusesBusyCamera(const DeviceWidgetInfo& info)
{
    if (!isBusy(info.hidPath))
        return false;
    emit sigShowToast(tr("The installation process will take a long time. Please wait."));
    return true;
}

void UpdateFlow::devicesChanged(const QMap<QString, HidDevices>& devices)
{
    if (!devices.contains(m_worker->busyHidPath()))
        m_worker->cameraLeft();
}

void UpdateFlow::cameraLeft(const QList<HidDevices>& others)
{
    QStringList paths;
    for (const HidDevices& device : others)
        paths << device.path;
    m_othersWhenItLeft = paths;
}

/// The cameras that may be the updated one. The list does not notice a camera that leaves and
/// returns during the pause before it enumerates. The candidates are then the cameras that have
/// just arrived or, if none has, the camera at the path of the updated one.
QList<HidDevices> UpdateFlow::candidates(const QList<HidDevices>& present,
                                         const QList<HidDevices>& arrived) const
{
    const QString openHidPath = m_camera.session().info().hidPath;
    QList<HidDevices> found;
    for (const HidDevices& device : present) {
        bool isNew = arrived.contains(device);
        if (isInstalling())
            isNew = m_othersWhenItLeft ? !m_othersWhenItLeft->contains(device.path)
                                       : isNew || (arrived.isEmpty() && device.path == openHidPath);
        // A camera that is still being written cannot be the one that has returned.
        if (isNew && !isBusy(device.path))
            found.append(device);
    }
    return found;
}

void UpdateFlow::verifyReturningCamera(const QList<HidDevices>& present,
                                       const QList<HidDevices>& arrived,
                                       const std::function<QString(const QString&)>& videoPathOf)
{
    const QString openHidPath = m_camera.session().info().hidPath;
    QString lastAsked;
    const QList<HidDevices> asked = candidates(present, arrived);
    for (const HidDevices& device : asked) {
        lastAsked = device.path;
        QString version;
        if (!isReturningCamera(device, version))
            continue;
        // The list has not noticed that this camera left, and the camera reports its old version:
        // it may restart later. The time-out decides.
        const bool hasReturned = m_othersWhenItLeft || arrived.contains(device);
        if (hasReturned || version != m_camera.session().info().deviceVersion)
            judge(device, version, videoPathOf(device.path));
        return;
    }
    if (!lastAsked.isEmpty() && lastAsked != openHidPath)
        returnToOpenCamera();
}

/// Asks the camera behind @p device for version and serial number.
bool UpdateFlow::isReturningCamera(const HidDevices& device, QString& version)
{
    UVCCamera& camera = m_camera.camera();
    const DeviceWidgetInfo& open = m_camera.session().info();
    camera.setCurrentDevicePath(device.path);
    camera.initHid();
    version = ReportedText::orEmpty(camera.getFirmwareVersion());
    const QString sn = ReportedText::orEmpty(camera.getSerialNumber());
    const bool loading = isInstalling();
    qCDebug(updateLog) << "插入设备，在设备详情页";
    qCDebug(updateLog) << "mDeviceWidgetInfo.deviceVersion =" << open.deviceVersion << version;
    qCDebug(updateLog) << "mDeviceWidgetInfo.sn =" << open.sn;
    qCDebug(updateLog) << "sn =" << sn;
    qCDebug(updateLog) << "loading页状态 =" << loading;
    return loading && sn == open.sn;
}

/// The camera that is being updated has returned as @p device.
void UpdateFlow::judge(const HidDevices& device, const QString& version, const QString& videoPath)
{
    CameraSession& session = m_camera.session();
    const DeviceWidgetInfo before = session.info();
    qCDebug(updateLog) << "插入的设备是更新的设备，并且loading页显示";
    // Perhaps under other names: a second attempt and the camera's settings go there.
    session.setPaths(videoPath.isEmpty() ? before.path : videoPath, device.path);
    CameraHandle::instance().setCurrentDevice(session.info());
    const bool connected = UVCHid::getCameraConnectionStatus(device.path.toUtf8().constData(),
                                                             device.vendorId, device.productId);
    session.setStatus(connected ? 1 : 0);
    qCDebug(updateLog) << "hid_status" << connected;
    m_updateTimer->stop();
    const FirmwareVerdict verdict = firmwareVerdict(connected, before.deviceVersion, version);
    if (verdict == FirmwareVerdict::NotConnected) {
        qCDebug(updateLog) << "当前设备状态Failed，更新失败";
        showFailed();
        return;
    }
    qCDebug(updateLog) << "更新设备状态Connected";
    if (verdict == FirmwareVerdict::SameVersion) {
        qCDebug(updateLog) << "版本号相同，更新失败";
        showFailed();
        return;
    }
    qCDebug(updateLog) << "版本号不同，更新完成";
    emit sigShowList();
    m_loadingDialog->hide();
    emit sigShowToast(tr("Update Complete"));
}

/// Another camera was asked for its identity. What the user sets from here on is for the one whose
/// pages are open.
void UpdateFlow::returnToOpenCamera()
{
    if (isBusy(m_camera.session().info().hidPath))
        m_camera.session().closeLink();
    else
        m_camera.session().openLink();
}

void UpdateFlow::showFailed()
{
    m_loadingDialog->hide();
    m_messageDialog->setMessage(tr("Updating failed. Please try again."), tr("Retry"), tr("Later"),
                                false);
    m_updateDialog->hide();
    m_mask.showUnder(m_messageDialog);
}

bool UpdateFlow::hideForRemoval()
{
    if (!m_updateDialog->isVisible())
        return false;
    // Firmware cannot be installed into a camera that has left.
    if (m_updateDialog->currentPage() == SvtaVersionUpdateDialog::DownloadPage)
        m_updateDialog->slotStopUpdate();
    m_updateDialog->hide();
    return true;
}

void UpdateFlow::finishTransfer()
{
    m_updateTimer->stop();
    if (!m_worker->isRunning())
        return;
    qCDebug(updateLog) << "the program ends after the firmware transfer";
    // Events are handled meanwhile, because the session manager and the window system would treat a
    // program that does not react as hung.
    QEventLoop loop;
    connect(m_worker, &FirmwareWorker::finished, &loop, &QEventLoop::quit);
    loop.exec();
}
