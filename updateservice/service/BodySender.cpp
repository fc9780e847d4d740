#include "BodySender.h"

#include <algorithm>
#include <QSslSocket>
#include <utility>

namespace updateservice {

namespace {

constexpr std::int64_t kPieceBytes = std::int64_t{256} * 1024;
constexpr std::int64_t kQueuedBytes = std::int64_t{1024} * 1024;
constexpr int kTicksPerSecond = 20;

} // namespace

BodySender::BodySender(QSslSocket& socket, std::unique_ptr<QIODevice> body,
                       const Behaviour& behaviour, QObject* parent)
    : QObject(parent)
    , m_socket(socket)
    , m_body(std::move(body))
    , m_behaviour(behaviour)
    , m_last(m_body ? m_body->size() : 0)
{
    if (m_behaviour.truncateAt >= 0)
        m_last = std::min(m_last, m_behaviour.truncateAt);
    if (m_behaviour.stall == Behaviour::Stall::Body)
        m_last = std::min(m_last, m_behaviour.stallAt);
    m_tick.setInterval(1000 / kTicksPerSecond);
    connect(&m_tick, &QTimer::timeout, this, &BodySender::onTick);
}

BodySender::~BodySender() = default;

void BodySender::start()
{
    if (m_behaviour.bytesPerSecond > 0) {
        m_tick.start();
        return;
    }
    // The second signal is for a socket that does not encrypt, because another process does.
    connect(&m_socket, &QSslSocket::encryptedBytesWritten, this, &BodySender::onBytesWritten);
    connect(&m_socket, &QSslSocket::bytesWritten, this, &BodySender::onBytesWritten);
    onBytesWritten();
}

void BodySender::onBytesWritten()
{
    while (!m_ended && m_socket.bytesToWrite() + m_socket.encryptedBytesToWrite() < kQueuedBytes)
        send(kPieceBytes);
}

void BodySender::onTick()
{
    send(std::max<std::int64_t>(m_behaviour.bytesPerSecond / kTicksPerSecond, 1));
}

void BodySender::send(std::int64_t most)
{
    const QByteArray piece = m_body ? m_body->read(std::min(most, m_last - m_sent)) : QByteArray();
    if (!piece.isEmpty())
        sendPiece(piece);
    m_sent += piece.size();
    if (m_sent >= m_last || piece.isEmpty())
        end();
}

void BodySender::sendPiece(const QByteArray& piece)
{
    if (m_behaviour.framing != Behaviour::Framing::Chunked) {
        m_socket.write(piece);
        return;
    }
    // To cut off inside a chunk, it announces one byte more than it sends.
    const bool cutOff =
        m_behaviour.truncateAt >= 0 && !m_behaviour.endAtPieces && m_sent + piece.size() >= m_last;
    m_socket.write(QByteArray::number(piece.size() + (cutOff ? 1 : 0), 16) + "\r\n" + piece);
    if (!cutOff)
        m_socket.write("\r\n");
}

void BodySender::end()
{
    m_ended = true;
    m_tick.stop();
    if (m_behaviour.stall == Behaviour::Stall::Body)
        return;
    if (m_behaviour.framing == Behaviour::Framing::Chunked && m_behaviour.truncateAt < 0)
        m_socket.write("0\r\n\r\n");
    m_socket.disconnectFromHost();
}

} // namespace updateservice
