#include "SvtaVersionUpdateDialog.h"

#include "CHttpClient.h"
#include "HttpError.h"
#include "PackageFileName.h"
#include "PackageSize.h"
#include "STHTTPDownloadRequest.h"
#include "ui_SvtaVersionUpdateDialog.h"
#include "UpdateCheck.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

constexpr int kUpdateAloneX = 100;
constexpr int kUpdateBesideX = 151;

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
    m_client.reset(); // its callbacks end here, while the dialog is still whole
}

void SvtaVersionUpdateDialog::setUpdateData(const QJsonObject& updateData, const QString& title,
                                            const QString& force)
{
    m_updateData = updateData;
    ui->labContent->setText(updateData.value(QLatin1String("details")).toString());
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
    m_client.reset(); // a download that still runs would write into the file that goes now
    const QStringList cachePaths = QStandardPaths::standardLocations(QStandardPaths::CacheLocation);
    qDebug() << "系统缓存目录路径:" << cachePaths;
    const QString fileName = PackageFileName::fromUrl(packageUrl());
    if (PackageFileName::isPlain(fileName))
        mSavePath = cachePaths.value(0) + QLatin1Char('/') + fileName;
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
        qDebug() << "mSavePath" << mSavePath;
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

/// Every download starts from an empty file.
void SvtaVersionUpdateDialog::removePackageFile() const
{
    if (!mSavePath.isEmpty())
        QFile::remove(mSavePath);
}

void SvtaVersionUpdateDialog::HttpDownload()
{
    // A name that leads anywhere but into the cache directory is not the service's to choose. No
    // name at all leaves the path as it was.
    const QString fileName = PackageFileName::fromUrl(packageUrl());
    if (!fileName.isEmpty() && !PackageFileName::isPlain(fileName)) {
        qWarning() << "refused file name of a package:" << fileName;
        emit sigDownloadFailed();
        return;
    }
    if (!mSavePath.isEmpty())
        QDir().mkpath(QFileInfo(mSavePath).path());

    m_client = std::make_unique<Brivane::CHttpClient>();
    m_client->setExtraCaFile(UpdateCheck::caFile().toStdString());
    m_request = std::make_shared<Brivane::STHTTPDownloadRequest>();
    m_request->url = packageUrl().toStdString();
    m_request->savePath = mSavePath.toStdString();
    qDebug() << mSavePath;
    m_request->onResponse = [this](const std::string& text) {
        qDebug() << QString::fromStdString(text);
        emit sigDownloadSuccessed();
    };
    m_request->onError = [this](int code, const std::string& message) {
        qDebug() << code << QString::fromStdString(message);
        if (code == Brivane::Cancelled)
            emit sigSetProgress(0);
        else
            emit sigDownloadFailed();
    };
    m_request->onProgress = [this](int percent) {
        qDebug() << percent;
        emit sigSetProgress(percent);
    };
    std::shared_ptr<Brivane::STHTTPRequest> request = m_request;
    m_client->request(request);
}
