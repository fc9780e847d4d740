#pragma once

#include "SvtaBaseDialog.h"

#include <memory>
#include <QJsonObject>
#include <QString>

namespace Brivane {
class CHttpClient;
struct STHTTPDownloadRequest;
} // namespace Brivane

namespace Ui {
class SvtaVersionUpdateDialog;
}

/// Shows what an update brings and downloads its package into the user's cache directory. One
/// dialog lives for the whole run and is used for every update; what becomes of a package is its
/// owner's decision.
///
/// GUI thread; sigDownloadFailed(), sigSetProgress() and sigDownloadSuccessed() come from the
/// networking library's.
class SvtaVersionUpdateDialog : public SvtaBaseDialog
{
    Q_OBJECT

public:
    enum Status { Success = 0, Downloading = 1, Failed = 2 };
    enum Page { DownloadPage = 0, OfferPage = 1 };

    explicit SvtaVersionUpdateDialog(QWidget* parent = nullptr);
    ~SvtaVersionUpdateDialog() override;

    /// Shows an offer.
    /// @param updateData the service's answer
    /// @param force "Y" leaves the user no choice but to update
    void setUpdateData(const QJsonObject& updateData, const QString& title, const QString& force);
    /// Shows or hides the button that asks to leave a forced update.
    void setCloseVisible(bool visible);
    /// The text beside the progress; empty for a value that is no Status.
    void setStatus(int status);
    /// @param percent 0 to 100
    void setProgress(int percent);
    [[nodiscard]] int currentPage() const;
    void setCurrentPage(int page);
    /// Full path of the package file.
    [[nodiscard]] QString savePath() const { return mSavePath; }
    /// Whether the user stopped the download; what it still brings is not to be installed.
    [[nodiscard]] bool isStopDownload() const { return m_isStopDownload; }
    /// Starts the download again, from the beginning.
    void reDownload();

    /// The window manager's way to close it: the choice that the page's "Cancel" stands for.
    void reject() override;

public slots:
    void slotUpdate();
    void slotStopUpdate();

signals:
    void sigDownloadFailed();
    void sigSetProgress(int progress);
    void sigDownloadSuccessed();
    void sigStopUpdate();
    void sigShowCloseAppDialog();

private:
    [[nodiscard]] QString packageUrl() const;
    void removePackageFile() const;
    void HttpDownload();

    std::unique_ptr<Ui::SvtaVersionUpdateDialog> ui;
    QJsonObject m_updateData;
    QString mSavePath;
    int m_status = Success;
    bool m_forced = false;
    bool m_isStopDownload = false;
    std::shared_ptr<Brivane::STHTTPDownloadRequest> m_request; ///< null before the first download
    /// Gone before the request and the signals that its callbacks use.
    std::unique_ptr<Brivane::CHttpClient> m_client;
};
