#pragma once

#include "ServiceCommands.h"

#include <QLocalServer>
#include <QObject>

namespace updateservice {

/// Takes commands over a local socket. Each connection sends one line, gets the reply and is
/// closed.
class ControlServer : public QObject
{
    Q_OBJECT

public:
    explicit ControlServer(UpdateService& service, QObject* parent = nullptr);

    /// @param path of the socket; one that a crashed run left there is replaced
    bool listen(const QString& path);

private slots:
    void onNewConnection();
    void onReadyRead();

private:
    ServiceCommands m_commands;
    QLocalServer m_server;
};

} // namespace updateservice
