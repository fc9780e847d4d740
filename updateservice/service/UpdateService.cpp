#include "UpdateService.h"

#include "Connection.h"

#include <QBuffer>
#include <QFile>
#include <QTcpSocket>
#include <QUrlQuery>

namespace updateservice {

namespace {

constexpr int kMovedTemporarily = 307;
constexpr int kNotFound = 404;
constexpr int kBombBytes = 256 << 20;
constexpr int kBestCompression = 9;
constexpr int kLengthPrefix = 4; // of qCompress()

std::unique_ptr<QIODevice> bufferOf(const QByteArray& content)
{
    auto buffer = std::make_unique<QBuffer>();
    buffer->setData(content);
    buffer->open(QIODevice::ReadOnly);
    return buffer;
}

/// Made once, because it takes a second.
const QByteArray& bomb()
{
    static const QByteArray bytes =
        qCompress(QByteArray(kBombBytes, 'x'), kBestCompression).mid(kLengthPrefix);
    return bytes;
}

QByteArray hugeAnswer(std::int64_t bytes)
{
    const QByteArray begin = "{\"needUpgrade\":true,\"details\":\"";
    return begin + QByteArray(static_cast<int>(bytes) - begin.size() - 2, 'x') + "\"}";
}

} // namespace

UpdateService::UpdateService(const CertificateKit& certificates, QObject* parent)
    : QTcpServer(parent)
    , m_certificates(certificates)
{
    setMaxPendingConnections(1000);
    connect(&m_insecure, &QTcpServer::newConnection, this, &UpdateService::onInsecureConnection);
}

UpdateService::~UpdateService() = default;

bool UpdateService::start(quint16 port)
{
    if (!m_insecure.isListening() && !m_insecure.listen(QHostAddress::LocalHost))
        return false;
    m_port = m_endpoint.open(*this, port != 0 ? port : m_port);
    return m_port != 0;
}

void UpdateService::stop()
{
    m_endpoint.close(*this);
}

QString UpdateService::address(const QString& path) const
{
    return QStringLiteral("https://localhost:%1%2").arg(m_port).arg(path);
}

QString UpdateService::addPackage(const QString& name, const QByteArray& content)
{
    const QString path = "/packages/" + name;
    m_packages.insert(path, {content, {}});
    return address(path);
}

QString UpdateService::addPackageFile(const QString& name, const QString& file)
{
    const QString path = "/packages/" + name;
    m_packages.insert(path, {{}, file});
    return address(path);
}

bool UpdateService::fault(const QString& line)
{
    const bool good = m_behaviour.apply(line);
    // Made now and not while a client waits for it.
    if (m_behaviour.answer == Behaviour::Answer::Bomb)
        bomb();
    return good;
}

Reply UpdateService::replyTo(const RequestRecord& request)
{
    m_requests.append(request);
    const QUrl url = QUrl::fromEncoded(request.path);
    Reply reply;
    if (redirects(url, reply))
        return reply;
    if (m_behaviour.status != reply.status) {
        reply.status = m_behaviour.status;
        reply.body = bufferOf("no answer");
    } else if (url.path() == QLatin1String(kCheckPath)) {
        fillCheck(request, reply);
    } else {
        reply.body = package(url.path());
        if (!reply.body)
            reply.status = kNotFound;
        else if (m_behaviour.answer == Behaviour::Answer::Bomb)
            fillCheck(request, reply);
    }
    return reply;
}

void UpdateService::incomingConnection(qintptr descriptor)
{
    // Owned by the service; it deletes itself when its socket is disconnected.
    new Connection(descriptor, *this, m_behaviour);
}

void UpdateService::onInsecureConnection()
{
    while (QTcpSocket* socket = m_insecure.nextPendingConnection()) {
        ++m_insecureConnections;
        socket->deleteLater();
    }
}

bool UpdateService::redirects(const QUrl& url, Reply& reply) const
{
    using Redirect = Behaviour::Redirect;
    const int hop = QUrlQuery(url).queryItemValue("hop").toInt();
    const bool here =
        m_behaviour.redirect == Redirect::Once || m_behaviour.redirect == Redirect::Elsewhere;
    if (m_behaviour.redirect == Redirect::None || (here && hop > 0))
        return false;
    QUrl target(url);
    target.setScheme("https");
    target.setHost("localhost");
    target.setPort(m_port);
    QUrlQuery query;
    query.addQueryItem("hop", QString::number(hop + 1));
    target.setQuery(query);
    if (m_behaviour.redirect == Redirect::Http) {
        target.setScheme("http");
        target.setPort(m_insecure.serverPort());
    } else if (m_behaviour.redirect == Redirect::File) {
        target = QUrl::fromLocalFile("/etc/hostname");
    } else if (m_behaviour.redirect == Redirect::Elsewhere) {
        target.setHost("127.0.0.1");
    }
    reply.status = kMovedTemporarily;
    reply.headers.append(Header("Location", target.toEncoded()));
    return true;
}

std::unique_ptr<QIODevice> UpdateService::package(const QString& path) const
{
    const auto found = m_packages.constFind(path);
    if (found == m_packages.constEnd())
        return nullptr;
    if (found->file.isEmpty())
        return bufferOf(found->content);
    auto file = std::make_unique<QFile>(found->file);
    if (!file->open(QIODevice::ReadOnly))
        return nullptr;
    return file;
}

void UpdateService::fillCheck(const RequestRecord& request, Reply& reply) const
{
    reply.headers.append(Header("Content-Type", "application/json"));
    switch (m_behaviour.answer) {
    case Behaviour::Answer::Offer:
        reply.body = bufferOf(m_offer.answerTo(request.body));
        break;
    case Behaviour::Answer::UpToDate:
        reply.body = bufferOf(UpdateOffer::upToDate());
        break;
    case Behaviour::Answer::Broken:
        reply.body = bufferOf("{\"needUpgrade\":tr");
        break;
    case Behaviour::Answer::Huge:
        reply.body = bufferOf(hugeAnswer(m_behaviour.hugeBytes));
        break;
    case Behaviour::Answer::Bomb:
        reply.headers.append(Header("Content-Encoding", "deflate"));
        reply.body = bufferOf(bomb());
        break;
    }
}

} // namespace updateservice
