#include "InstanceMessage.h"

namespace {

constexpr int kMessageTimeoutMs = 2000;
constexpr char kTerminator = '\0';
constexpr char kAcknowledgement = 'k';

} // namespace

InstanceMessage::InstanceMessage(QLocalSocket* socket, int maxBytes, QObject* parent)
    : QObject(parent)
    , m_socket(socket)
    , m_maxBytes(maxBytes)
{
    m_socket->setParent(this);
    m_socket->setReadBufferSize(maxBytes + 1); // more data stays in the sender's buffers
    m_timeout.setSingleShot(true);
    m_timeout.start(kMessageTimeoutMs);
    connect(&m_timeout, &QTimer::timeout, this, &InstanceMessage::finish);
    connect(m_socket, &QLocalSocket::readyRead, this, &InstanceMessage::read);
    connect(m_socket, &QLocalSocket::disconnected, this, &InstanceMessage::finish);
    read();
}

void InstanceMessage::read()
{
    m_message += m_socket->read(m_maxBytes + 1 - m_message.size());
    const int end = m_message.indexOf(kTerminator);
    if (end >= 0) {
        m_socket->putChar(kAcknowledgement);
        m_socket->flush();
        m_message.truncate(end);
        m_socket->disconnect(this);
        emit received(m_message);
        finish();
    } else if (m_message.size() > m_maxBytes) {
        finish();
    }
}

void InstanceMessage::finish()
{
    m_timeout.stop();
    m_socket->disconnect(this);
    m_socket->disconnectFromServer();
    deleteLater();
}
