#include "SvtaVersionUpdateDialog.h"

#include "CHttpClient.h"
#include "HttpError.h"
#include "LogCategories.h"
#include "PackageFileName.h"
#include "PackageFiles.h"
#include "PackageSize.h"
#include "STHTTPDownloadRequest.h"
#include "ui_SvtaVersionUpdateDialog.h"
#include "UpdateCheck.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

constexpr int kUpdateAloneX = 100;
constexpr int kUpdateBesideX = 151;

/// Whether @p byte continues a character of UTF-8 that has begun before it.
bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The first kMaxDetailsBytes of @p details, cut before the character that does not fit.
QString shortened(const QString& details)
{
    const QByteArray utf8 = details.toUtf8();
    int end = SvtaVersionUpdateDialog::kMaxDetailsBytes;
    if (utf8.size() <= end)
        return details;
    while (end > 0 && isContinuation(utf8.at(end)))
        --end;
    return QString::fromUtf8(utf8.constData(), end);
}

} // namespace

SvtaVersionUpdateDialog::SvtaVersionUpdateDialog(QWidget* parent)
    : SvtaBaseDialog(parent)
    , ui(std::make_unique<Ui::SvtaVersionUpdateDialog>())
{
    ui->setupUi(this);
    ui->stackedWidget->setCurrentIndex(OfferPage);
    ui->btnClose->hide();
    hide();
    connect(ui->btnUpdate, &QPushButton::clicked, this, &SvtaVersionUpdateDialog::slotUpdate);
    connect(ui->btnCancelUpdate, &QPushButton::clicked, this,
            &SvtaVersionUpdateDialog::slotStopUpdate);
    connect(ui->btnPauseUpdate, &QPushButton::clicked, this, &QWidget::hide);
    connect(ui->btnClose, &QPushButton::clicked, this,
            &SvtaVersionUpdateDialog::sigShowCloseAppDialog);
}

SvtaVersionUpdateDialog::~SvtaVersionUpdateDialog()
{
    m_client.reset(); // its callbacks use the dialog, so they must end before the members go
}

void SvtaVersionUpdateDialog::setUpdateData(const QJsonObject& updateData, const QString& title,
                                            const QString& force)
{
    m_updateData = updateData;
    ui->labContent->setText(shortened(updateData.value(QLatin1String("details")).toString()));
    ui->labTitle->setText(title);
    m_forced = force == QLatin1String("Y");
    ui->btnPauseUpdate->setVisible(!m_forced);
    ui->btnCancelUpdate->setVisible(!m_forced);
    if (!m_forced)
        ui->btnClose->hide();
    ui->btnUpdate->move(m_forced ? kUpdateAloneX : kUpdateBesideX, ui->btnUpdate->y());
    show();
}

void SvtaVersionUpdateDialog::setCloseVisible(bool visible)
{
    ui->btnClose->setVisible(visible);
}

void SvtaVersionUpdateDialog::setStatus(int status)
{
    m_status = status;
    switch (status) {
    case Success:
        ui->labDownloadStatus->setText(tr("Download success"));
        break;
    case Downloading:
        ui->labDownloadStatus->setText(tr("Downloading"));
        break;
    case Failed:
        ui->labDownloadStatus->setText(tr("Download failed"));
        break;
    default:
        ui->labDownloadStatus->clear();
        break;
    }
}

void SvtaVersionUpdateDialog::setProgress(int percent)
{
    ui->labDownloadStatus->setText(tr("Downloading…"));
    ui->progressBar->setValue(percent);
    const PackageSize size(m_updateData.value(QLatin1String("packageSize")).toString());
    ui->labTotalSize->setText(size.progressText(percent));
}

int SvtaVersionUpdateDialog::currentPage() const
{
    return ui->stackedWidget->currentIndex();
}

void SvtaVersionUpdateDialog::setCurrentPage(int page)
{
    ui->stackedWidget->setCurrentIndex(page);
}

void SvtaVersionUpdateDialog::slotUpdate()
{
    m_client.reset(); // a download that still runs could create the file again that is removed here
    const QStringList cachePaths = QStandardPaths::standardLocations(QStandardPaths::CacheLocation);
    qCDebug(updateLog) << "系统缓存目录路径:" << cachePaths;
    const QString fileName = PackageFileName::fromUrl(packageUrl());
    if (PackageFileName::isPlain(fileName))
        mSavePath = cachePaths.value(0) + QLatin1Char('/') + PackageFileName::onDisk(fileName);
    removePackageFile();
    m_isStopDownload = false;
    setCurrentPage(DownloadPage);
    HttpDownload();
}

void SvtaVersionUpdateDialog::reDownload()
{
    m_client.reset();
    setProgress(0);
    if (QFile::exists(mSavePath))
        qCDebug(updateLog) << "mSavePath" << mSavePath;
    removePackageFile();
    m_isStopDownload = false;
    HttpDownload();
}

void SvtaVersionUpdateDialog::slotStopUpdate()
{
    hide();
    setCurrentPage(OfferPage);
    m_isStopDownload = true;
    if (m_request)
        m_request->cancel();
    setProgress(0);
}

void SvtaVersionUpdateDialog::reject()
{
    if (m_forced)
        emit sigShowCloseAppDialog();
    else if (currentPage() == DownloadPage)
        slotStopUpdate();
    else
        hide();
}

QString SvtaVersionUpdateDialog::packageUrl() const
{
    return m_updateData.value(QLatin1String("downLoadUrl")).toString();
}

/// Every download starts without an earlier file.
void SvtaVersionUpdateDialog::removePackageFile() const
{
    if (!mSavePath.isEmpty())
        QFile::remove(mSavePath);
}

void SvtaVersionUpdateDialog::HttpDownload()
{
    // The service must not choose a file outside of the cache directory. An empty name leaves the
    // path unchanged.
    const QString fileName = PackageFileName::fromUrl(packageUrl());
    if (!fileName.isEmpty() && !PackageFileName::isPlain(fileName)) {
        qCWarning(updateLog) << "refused file name of a package:" << fileName;
        emit sigDownloadFailed();
        return;
    }
    if (!mSavePath.isEmpty()) {
        QDir().mkpath(QFileInfo(mSavePath).path());
        PackageFiles::add(mSavePath);
    }

    m_client = std::make_unique<Brivane::CHttpClient>();
    m_client->setExtraCaFile(UpdateCheck::caFile().toStdString());
    m_request = std::make_shared<Brivane::STHTTPDownloadRequest>();
    m_request->url = packageUrl().toStdString();
    m_request->savePath = mSavePath.toStdString();
    qCDebug(updateLog) << mSavePath;
    m_request->onResponse = [this, path = mSavePath](const std::string& text) {
        qCDebug(updateLog) << QString::fromStdString(text);
        m_downloadedBytes = QFileInfo(path).size();
        emit sigDownloadSuccessed();
    };
    m_request->onError = [this](int code, const std::string& message) {
        qCDebug(updateLog) << code << QString::fromStdString(message);
        if (code == Brivane::Cancelled)
            emit sigSetProgress(0);
        else
            emit sigDownloadFailed();
    };
    m_request->onProgress = [this](int percent) {
        qCDebug(updateLog) << percent;
        emit sigSetProgress(percent);
    };
    std::shared_ptr<Brivane::STHTTPRequest> request = m_request;
    m_client->request(request);
}
