#pragma once

#include "DownloadFile.h"
#include "ProgressMeter.h"
#include "RequestJob.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <QList>
#include <QNetworkAccessManager>
#include <QObject>
#include <QSslError>
#include <QTimer>
#include <string>
#include <vector>

class QNetworkReply;
class QNetworkRequest;

namespace Brivane {

class TrustStore;

/// One request on its way. It has an access manager of its own, and one for each redirect, so that
/// its time limits start with its own connection and nothing is shared with another request.
///
/// Redirects are followed here and not by the access manager, which now and then sends the next
/// request over the connection that the service is closing.
///
/// A callback may lead to cancel() of the very transfer that makes it.
class Transfer : public QObject
{
    Q_OBJECT

public:
    Transfer(RequestJob job, TrustStore& trust, QObject* parent);
    ~Transfer() override;

    void start();
    /// Ends it as cancelled; without effect after its end.
    void cancel();
    /// Its record was cancelled.
    [[nodiscard]] bool isCancelled() const { return m_job.isCancelled(); }

signals:
    /// It is over, and its callback comes next.
    void ended(Brivane::Transfer* transfer);

private slots:
    void onEncrypted();
    void onSslErrors(const QList<QSslError>& errors);
    /// The service has shown that it is there.
    void onSign();
    void onMetaDataChanged();
    void onReadyRead();
    void onGathered();
    void onFinished();
    void onConnectTimeout();
    void onInactivityTimeout();
    void onAnswerTimeout();

private:
    /// Sends the request to an address; false when that was its end.
    bool send(const QUrl& url);
    bool describe(QNetworkRequest& request) const;
    void follow(int status, const QUrl& target);
    void dropReply();
    /// Judges status and header of the answer; false when that was its end.
    bool acceptHead();
    bool acceptLength(int status);
    /// Takes what has arrived; false when that was its end.
    bool takeBody();
    bool take(const char* data, std::int64_t size);
    bool tellProgress(std::optional<std::int32_t> percent);

    void fail(std::int32_t code, const std::string& message);
    void succeed();
    void leave();

    [[nodiscard]] std::int64_t mostBytes() const;

    RequestJob m_job;
    TrustStore& m_trust;
    std::unique_ptr<QNetworkAccessManager> m_manager;
    QNetworkReply* m_reply = nullptr; ///< the manager's
    bool m_post = false;
    int m_redirects = 0;
    QTimer m_connectTimer;
    QTimer m_inactivityTimer;
    QTimer m_answerTimer;
    QTimer m_gatherTimer;

    bool m_ended = false;
    bool m_secure = false; ///< the handshake with this host is done
    bool m_headAccepted = false;
    std::int64_t m_announced = -1; ///< length of the body; negative when the answer does not say
    std::int64_t m_received = 0;
    std::vector<char> m_buffer;
    std::string m_text;
    DownloadFile m_file;
    ProgressMeter m_progress;
    std::string m_certificateError;
};

} // namespace Brivane
