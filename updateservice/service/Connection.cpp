#include "Connection.h"

#include "BodySender.h"
#include "Reply.h"
#include "TlsEndpoint.h"
#include "UpdateService.h"

namespace updateservice {

Connection::Connection(qintptr descriptor, UpdateService& service, const Behaviour& behaviour)
    : QObject(&service)
    , m_service(service)
{
    connect(&m_socket, &QSslSocket::disconnected, this, &Connection::deleteLater);
    connect(&m_socket, &QSslSocket::readyRead, this, &Connection::onReadyRead);
    m_socket.setSocketDescriptor(descriptor);
    TlsEndpoint::begin(m_socket, service.certificates(), behaviour);
}

Connection::~Connection()
{
    // Otherwise it would emit disconnected() to this object while it is being destroyed.
    m_socket.disconnect(this);
}

void Connection::onReadyRead()
{
    if (m_answered || !TlsEndpoint::isEncrypted(m_socket))
        return;
    const RequestParser::State state = m_parser.add(m_socket.readAll());
    if (state == RequestParser::State::Incomplete)
        return;
    m_answered = true;
    const Behaviour behaviour = m_service.behaviour();
    if (state == RequestParser::State::Bad) {
        Reply bad;
        bad.status = 400;
        answer(std::move(bad), behaviour);
        return;
    }
    Reply reply = m_service.replyTo(m_parser.record());
    if (behaviour.stall != Behaviour::Stall::Head)
        answer(std::move(reply), behaviour);
}

void Connection::answer(Reply reply, const Behaviour& behaviour)
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(reply.status) + " Answer\r\n";
    for (const auto& [name, value] : qAsConst(reply.headers))
        head += name + ": " + value + "\r\n";
    if (behaviour.framing == Behaviour::Framing::Chunked)
        head += "Transfer-Encoding: chunked\r\n";
    else if (behaviour.framing == Behaviour::Framing::Length)
        head +=
            "Content-Length: " + QByteArray::number(reply.body ? reply.body->size() : 0) + "\r\n";
    m_socket.write(head + "Connection: close\r\n\r\n");
    auto* sender = new BodySender(m_socket, std::move(reply.body), behaviour, this);
    sender->start();
}

} // namespace updateservice
