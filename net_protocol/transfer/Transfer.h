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

/// One request that is sent. It has its own access manager, and a new one for each redirect, so
/// that its time-outs start with its own connection and nothing is shared with another request.
///
/// It follows redirects itself because the access manager sometimes sends the next request over the
/// connection that the service is closing.
///
/// A callback may call cancel() of the transfer that called it.
class Transfer : public QObject
{
    Q_OBJECT

public:
    Transfer(RequestJob job, TrustStore& trust, QObject* parent);
    ~Transfer() override;

    void start();
    /// Ends the transfer as cancelled; does nothing after its end.
    void cancel();
    /// Whether the record was cancelled.
    [[nodiscard]] bool isCancelled() const { return m_job.isCancelled(); }

signals:
    /// The transfer has ended; its callback is called next.
    void ended(Brivane::Transfer* transfer);

private slots:
    void onEncrypted();
    void onSslErrors(const QList<QSslError>& errors);
    /// The service is connected and active: ends the connect time-out, restarts that of inactivity.
    void onAlive();
    void onMetaDataChanged();
    void onReadyRead();
    void onCollected();
    void onFinished();
    void onConnectTimeout();
    void onInactivityTimeout();
    void onAnswerTimeout();

private:
    void send(const QUrl& url);
    /// Sets the headers and the options of the request.
    void describe(QNetworkRequest& request) const;
    void follow(int status, const QUrl& target);
    void dropReply();
    /// Checks status and headers of the answer.
    /// @return false when the transfer has ended; the same holds for the functions below
    bool acceptHead();
    bool acceptLength(int status);
    /// Takes the part of the body that has arrived.
    bool takeBody();
    bool take(const char* data, std::int64_t size);
    bool reportProgress(std::optional<std::int32_t> percent);

    void fail(std::int32_t code, const std::string& message);
    void succeed();
    void leave();

    [[nodiscard]] std::int64_t maxBytes() const;

    RequestJob m_job;
    TrustStore& m_trust;
    std::unique_ptr<QNetworkAccessManager> m_manager;
    QNetworkReply* m_reply = nullptr; ///< owned by the manager
    bool m_post = false;
    int m_redirects = 0;
    QTimer m_connectTimer;
    QTimer m_inactivityTimer;
    QTimer m_answerTimer;
    QTimer m_collectTimer;

    bool m_ended = false;
    bool m_secure = false; ///< the handshake with this host is done
    bool m_headAccepted = false;
    std::int64_t m_announced = -1; ///< length of the body; negative when not announced
    std::int64_t m_received = 0;
    std::vector<char> m_buffer;
    std::string m_text;
    DownloadFile m_file;
    ProgressMeter m_progress;
    std::string m_certificateError;
};

} // namespace Brivane
