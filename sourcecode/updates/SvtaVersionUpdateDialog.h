#pragma once

#include "SvtaBaseDialog.h"

#include <atomic>
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

/// Shows the details of an update and downloads its package into the user's cache directory. There
/// is one dialog for the whole run of the program, used for every update. Its owner decides what to
/// do with a downloaded package.
///
/// GUI thread. sigDownloadFailed(), sigSetProgress() and sigDownloadSuccessed() are emitted on the
/// networking library's thread.
class SvtaVersionUpdateDialog : public SvtaBaseDialog
{
    Q_OBJECT

public:
    enum Status { Success = 0, Downloading = 1, Failed = 2 };
    enum Page { DownloadPage = 0, OfferPage = 1 };
    /// A label that shows a megabyte of text blocks the window for seconds.
    static constexpr int kMaxDetailsBytes = 64 * 1024;

    explicit SvtaVersionUpdateDialog(QWidget* parent = nullptr);
    ~SvtaVersionUpdateDialog() override;

    /// Shows an offer. Of its details, at most the first kMaxDetailsBytes of UTF-8 are shown.
    /// @param updateData the service's answer
    /// @param force "Y": the dialog offers only to update, not to cancel
    void setUpdateData(const QJsonObject& updateData, const QString& title, const QString& force);
    /// Shows or hides the close button of a forced update, which asks whether to end the program.
    void setCloseVisible(bool visible);
    /// Sets the text beside the progress; it is empty when @p status is not a Status.
    void setStatus(int status);
    /// @param percent 0 to 100
    void setProgress(int percent);
    [[nodiscard]] int currentPage() const;
    void setCurrentPage(int page);
    /// Full path of the package file.
    [[nodiscard]] QString savePath() const { return mSavePath; }
    /// Size of the package file when its download ended.
    [[nodiscard]] qint64 downloadedBytes() const { return m_downloadedBytes; }
    /// Whether the user stopped the download. A package that still arrives must not be installed.
    [[nodiscard]] bool isStopDownload() const { return m_isStopDownload; }
    /// Starts the download again, from the beginning.
    void reDownload();

    /// Called when the window manager closes the dialog: does the same as the page's "Cancel"
    /// button.
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
    std::atomic<qint64> m_downloadedBytes{0}; ///< set on the networking library's thread
    int m_status = Success;
    bool m_forced = false;
    bool m_isStopDownload = false;
    std::shared_ptr<Brivane::STHTTPDownloadRequest> m_request; ///< null before the first download
    /// Destroyed before the request, because its callbacks use it.
    std::unique_ptr<Brivane::CHttpClient> m_client;
};
