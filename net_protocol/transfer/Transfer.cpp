#include "Transfer.h"

#include "CHttpClient.h"
#include "HttpError.h"
#include "Log.h"
#include "RequestAddress.h"
#include "TransferError.h"
#include "TrustStore.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <limits>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslConfiguration>
#include <thread>
#include <utility>

namespace Brivane {

namespace {

constexpr int kPieceBytes = 256 * 1024;
/// When more than this waits to be written, nothing more is read from the network, so that a
/// package is not held in memory.
constexpr std::int64_t kReadAheadBytes = std::int64_t{32} << 20;
/// Qt Network delivers a package in pieces of 4 KiB, and each of them wakes a thread that waits for
/// events. A thread that sleeps is woken once for hundreds of pieces. Without the sleep a download
/// needs a third more processor time and takes up to a third longer.
constexpr std::chrono::milliseconds kCollectTime{1};

constexpr int kOk = 200;
constexpr int kNoContent = 204;
constexpr int kSuccessEnd = 300;
constexpr int kTemporaryRedirect = 307;
constexpr int kPermanentRedirect = 308;
constexpr int kClientErrors = 400;
constexpr int kHttpsPort = 443;

bool isRedirect(int status)
{
    constexpr std::array<int, 5> redirects{301, 302, 303, kTemporaryRedirect, kPermanentRedirect};
    return std::find(redirects.begin(), redirects.end(), status) != redirects.end();
}

int validTimeoutMs(std::int32_t timeoutMs, std::int32_t defaultTimeoutMs)
{
    return timeoutMs < 1 ? defaultTimeoutMs : timeoutMs;
}

int answerTimeoutMs(int inactivityTimeoutMs)
{
    constexpr int longestMs = std::numeric_limits<int>::max() / 4;
    return std::min(inactivityTimeoutMs, longestMs) * 4;
}

} // namespace

Transfer::Transfer(RequestJob job, TrustStore& trust, QObject* parent)
    : QObject(parent)
    , m_job(std::move(job))
    , m_trust(trust)
{
    for (QTimer* timer : {&m_connectTimer, &m_inactivityTimer, &m_answerTimer, &m_collectTimer})
        timer->setSingleShot(true);
    const STHTTPRequest& request = m_job.request();
    m_connectTimer.setInterval(
        validTimeoutMs(request.connectTimeoutMs, STHTTPRequest::kConnectTimeoutMs));
    m_inactivityTimer.setInterval(
        validTimeoutMs(request.inactivityTimeoutMs, STHTTPRequest::kInactivityTimeoutMs));
    m_answerTimer.setInterval(answerTimeoutMs(m_inactivityTimer.interval()));
    m_collectTimer.setInterval(0); // fires when all pieces that have arrived are delivered
    connect(&m_collectTimer, &QTimer::timeout, this, &Transfer::onCollected);
    connect(&m_connectTimer, &QTimer::timeout, this, &Transfer::onConnectTimeout);
    connect(&m_inactivityTimer, &QTimer::timeout, this, &Transfer::onInactivityTimeout);
    connect(&m_answerTimer, &QTimer::timeout, this, &Transfer::onAnswerTimeout);
}

Transfer::~Transfer() = default;

void Transfer::start()
{
    if (m_job.isCancelled()) {
        cancel();
        return;
    }
    const RequestAddress address = RequestAddress::parse(m_job.request().url);
    if (address.error != 0) {
        fail(address.error, address.error == HttpError::UnsupportedScheme
                                ? "Only https addresses are accepted."
                                : "The address of the request is not valid.");
        return;
    }
    if (m_job.download() && !m_file.open(m_job.download()->savePath)) {
        fail(HttpError::FileError, m_file.errorText());
        return;
    }
    m_post = !m_job.download();
    if (!m_job.download())
        m_answerTimer.start();
    send(address.url);
}

void Transfer::send(const QUrl& url)
{
    QNetworkRequest request(url);
    describe(request);
    log(ILogObserver::Info, (m_post ? "POST " : "GET ") + RequestAddress::loggable(url));
    m_manager = std::make_unique<QNetworkAccessManager>();
    m_reply = m_post ? m_manager->post(request, QByteArray::fromStdString(m_job.request().body))
                     : m_manager->get(request);
    if (!m_job.download())
        m_reply->setReadBufferSize(kPieceBytes);
    connect(m_reply, &QNetworkReply::encrypted, this, &Transfer::onEncrypted);
    connect(m_reply, &QNetworkReply::sslErrors, this, &Transfer::onSslErrors);
    connect(m_reply, &QNetworkReply::uploadProgress, this, &Transfer::onAlive);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &Transfer::onMetaDataChanged);
    connect(m_reply, &QNetworkReply::readyRead, this, &Transfer::onReadyRead);
    connect(m_reply, &QNetworkReply::finished, this, &Transfer::onFinished);
    m_secure = false;
    m_connectTimer.start();
}

void Transfer::describe(QNetworkRequest& request) const
{
    request.setHeader(QNetworkRequest::UserAgentHeader, QByteArrayLiteral("net_protocol"));
    if (m_post)
        request.setHeader(QNetworkRequest::ContentTypeHeader,
                          QByteArrayLiteral("application/json"));
    for (const auto& lines : m_job.request().headers) {
        for (const auto& [name, value] : lines)
            request.setRawHeader(QByteArray::fromStdString(name), QByteArray::fromStdString(value));
    }
    // A few compressed bytes can expand to gigabytes.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setSslConfiguration(m_trust.configuration(m_job.extraCaFile()));
}

void Transfer::follow(int status, const QUrl& target)
{
    const QUrl before = m_reply->url();
    dropReply();
    if (m_redirects >= m_job.request().redirectLimit) {
        fail(HttpError::TooManyRedirects, "The service redirects too often.");
        return;
    }
    const RequestAddress address =
        RequestAddress::parse(target.toString(QUrl::FullyEncoded).toStdString());
    const bool elsewhere =
        target.host() != before.host() || target.port(kHttpsPort) != before.port(kHttpsPort);
    if (address.error != 0 || (elsewhere && !m_job.request().headers.empty())) {
        fail(HttpError::RedirectRefused, "The service redirects to where it is not safe.");
        return;
    }
    ++m_redirects;
    m_post = m_post && (status == kTemporaryRedirect || status == kPermanentRedirect);
    m_inactivityTimer.stop();
    send(target);
}

void Transfer::dropReply()
{
    if (!m_reply)
        return;
    m_reply->disconnect(this);
    m_reply = nullptr;
    // One of its signals may be the caller of this function, so it is deleted later.
    QNetworkAccessManager* manager = m_manager.release();
    manager->setParent(parent());
    manager->deleteLater();
}

void Transfer::cancel()
{
    fail(HttpError::Cancelled, {});
}

void Transfer::onEncrypted()
{
    m_secure = true;
    onAlive();
}

void Transfer::onSslErrors(const QList<QSslError>& errors)
{
    for (const QSslError& error : errors) {
        const std::string text = error.errorString().toStdString();
        log(ILogObserver::Warning, "The service's certificate: " + text);
        if (m_certificateError.empty())
            m_certificateError = text;
    }
}

void Transfer::onAlive()
{
    m_connectTimer.stop();
    m_inactivityTimer.start();
}

void Transfer::onMetaDataChanged()
{
    onAlive();
    acceptHead();
}

void Transfer::onReadyRead()
{
    if (!m_collectTimer.isActive())
        m_collectTimer.start();
}

void Transfer::onCollected()
{
    onAlive();
    // The disk is slower than the network: from now on the network waits for it. The limit is not
    // set from the start because it makes a fast download a third slower.
    if (m_reply->bytesAvailable() > kReadAheadBytes)
        m_reply->setReadBufferSize(kReadAheadBytes);
    if (takeBody() && m_job.download())
        std::this_thread::sleep_for(kCollectTime);
}

void Transfer::onFinished()
{
    const QNetworkReply::NetworkError error = m_reply->error();
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    // A status code is reported as it is, although the access manager has its own errors for some.
    if (error != QNetworkReply::NoError && status < kClientErrors) {
        // A service without a protocol in common closes the connection without a TLS error.
        const TransferError failure =
            TransferError::of(error == QNetworkReply::RemoteHostClosedError && !m_secure
                                  ? QNetworkReply::SslHandshakeFailedError
                                  : error);
        const bool hasReason =
            failure.code == HttpError::SecureConnection && !m_certificateError.empty();
        fail(failure.code,
             hasReason ? failure.message + " " + m_certificateError + "." : failure.message);
        return;
    }
    if (!acceptHead() || !takeBody())
        return;
    if (m_announced >= 0 && m_received != m_announced) {
        fail(HttpError::ConnectionLost, "The answer broke off.");
        return;
    }
    succeed();
}

void Transfer::onConnectTimeout()
{
    fail(HttpError::ConnectTimeout, "The service could not be reached in time.");
}

void Transfer::onInactivityTimeout()
{
    fail(HttpError::InactivityTimeout, "The service sends nothing any more.");
}

void Transfer::onAnswerTimeout()
{
    fail(HttpError::InactivityTimeout, "The service takes too long for its answer.");
}

bool Transfer::acceptHead()
{
    if (m_headAccepted || m_ended)
        return !m_ended;
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QUrl target = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    if (isRedirect(status) && !target.isEmpty()) {
        follow(status, m_reply->url().resolved(target));
        return false;
    }
    const bool good = m_job.download() ? status == kOk : status >= kOk && status < kSuccessEnd;
    if (!good) {
        fail(status, "The service answered with status " + std::to_string(status) + ".");
        return false;
    }
    const QByteArray encoding = m_reply->rawHeader("Content-Encoding").trimmed().toLower();
    if (!encoding.isEmpty() && encoding != "identity") {
        fail(HttpError::UnsupportedEncoding, "The answer is compressed.");
        return false;
    }
    m_headAccepted = true;
    return acceptLength(status);
}

bool Transfer::acceptLength(int status)
{
    // If only the end of the connection ends an answer, a complete answer looks the same as one
    // that was cut off.
    const bool chunked =
        m_reply->rawHeader("Transfer-Encoding").trimmed().toLower().endsWith("chunked");
    bool known = true;
    if (!chunked && status != kNoContent)
        m_announced = m_reply->rawHeader("Content-Length").trimmed().toLongLong(&known);
    if (!known || (!chunked && status != kNoContent && m_announced < 0)) {
        fail(HttpError::UnknownLength, "The answer does not tell how long it is.");
        return false;
    }
    if (m_announced > maxBytes()) {
        fail(HttpError::AnswerTooLarge, "The answer is too large.");
        return false;
    }
    return reportProgress(m_progress.advance(0, m_announced));
}

bool Transfer::takeBody()
{
    if (!m_headAccepted || m_ended)
        return !m_ended;
    m_buffer.resize(kPieceBytes);
    for (;;) {
        const std::int64_t size =
            m_reply->read(m_buffer.data(), static_cast<std::int64_t>(m_buffer.size()));
        if (size <= 0)
            return true;
        if (!take(m_buffer.data(), size))
            return false;
    }
}

bool Transfer::take(const char* data, std::int64_t size)
{
    m_received += size;
    if (m_received > maxBytes()) {
        fail(HttpError::AnswerTooLarge, "The answer is too large.");
        return false;
    }
    const STHTTPDownloadRequest* download = m_job.download();
    if (!download) {
        m_text.append(data, static_cast<std::size_t>(size));
        return true;
    }
    if (!m_file.write(data, size)) {
        fail(HttpError::FileError, m_file.errorText());
        return false;
    }
    if (download->onData)
        download->onData(std::string(data, static_cast<std::size_t>(size)));
    if (m_ended)
        return false;
    return reportProgress(m_progress.advance(m_received, m_announced));
}

bool Transfer::reportProgress(std::optional<std::int32_t> percent)
{
    const STHTTPDownloadRequest* download = m_job.download();
    if (percent && download && download->onProgress)
        download->onProgress(*percent);
    // A cancel() from the callback takes effect before the next one.
    if (!m_ended && m_job.isCancelled())
        cancel();
    return !m_ended;
}

void Transfer::fail(std::int32_t code, const std::string& message)
{
    if (m_ended)
        return;
    leave();
    m_file.discard();
    m_job.fail(code, message);
}

void Transfer::succeed()
{
    if (m_job.download() && !reportProgress(m_progress.finish()))
        return;
    leave();
    if (!m_job.settle()) {
        m_file.discard();
        m_job.failSettled(HttpError::Cancelled, {});
        return;
    }
    if (m_job.download() && !m_file.commit())
        m_job.failSettled(HttpError::FileError, m_file.errorText());
    else
        m_job.respond(std::move(m_text));
}

void Transfer::leave()
{
    m_ended = true;
    m_connectTimer.stop();
    m_inactivityTimer.stop();
    m_answerTimer.stop();
    m_collectTimer.stop();
    dropReply();
    emit ended(this);
}

std::int64_t Transfer::maxBytes() const
{
    return m_job.download() ? CHttpClient::kMaxDownloadBytes : CHttpClient::kMaxAnswerBytes;
}

} // namespace Brivane
