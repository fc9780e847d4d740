#include "QtSingleApplication.h"

#include "Desktop.h"
#include "InstanceMessage.h"

#include <QDebug>
#include <QDir>
#include <QElapsedTimer>
#include <QLocalSocket>
#include <QTextCodec>
#include <QThread>
#include <QWidget>

QtSingleApplication::QtSingleApplication(int& argc, char** argv, bool guiEnabled)
    : QApplication(argc, argv)
{
    Q_ASSERT(guiEnabled);
    Q_UNUSED(guiEnabled)
    setApplicationName(QStringLiteral("MarvikTools"));
}

QtSingleApplication::~QtSingleApplication() = default;

QString QtSingleApplication::instanceDirectory()
{
    QString directory = Desktop::instanceDirectory();
    QDir().mkpath(directory);
    return directory;
}

QString QtSingleApplication::socketName()
{
    return Desktop::instanceSocket();
}

bool QtSingleApplication::isRunning()
{
    if (m_server)
        return false;
    if (!m_lock) {
        m_lock =
            std::make_unique<QLockFile>(instanceDirectory() + QStringLiteral("/marviktools.lock"));
        // The lock names its process: one left by a crash is taken over, however old it is, and one
        // that is held is never stolen for its age.
        m_lock->setStaleLockTime(0);
    }
    if (!m_lock->tryLock())
        return true;

    // Whoever holds the lock owns the socket, so one that is in the way is a crashed instance's.
    QLocalServer::removeServer(socketName());
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server.get(), &QLocalServer::newConnection, this,
            &QtSingleApplication::takeConnection);
    if (!m_server->listen(socketName()))
        qWarning() << "further starts cannot raise this window:" << m_server->errorString();
    return false;
}

bool QtSingleApplication::sendMessage(const QString& message, int timeoutMs)
{
    const QByteArray bytes = message.toUtf8();
    if (bytes.size() > kMaxMessageBytes || bytes.contains('\0'))
        return false;

    QElapsedTimer clock;
    clock.start();
    const auto left = [&clock, timeoutMs] {
        return static_cast<int>(qMax<qint64>(1, timeoutMs - clock.elapsed()));
    };
    QLocalSocket socket;
    // The running instance may have the lock already and the socket not yet.
    do {
        socket.connectToServer(socketName());
        if (socket.waitForConnected(left()))
            break;
        QThread::msleep(20);
    } while (clock.elapsed() < timeoutMs);
    if (socket.state() != QLocalSocket::ConnectedState)
        return false;
    Desktop::passForeground();
    // In one piece: without an event loop, a second one stays behind on Windows.
    socket.write(bytes + '\0');
    socket.flush();
    return socket.waitForReadyRead(left());
}

void QtSingleApplication::takeConnection()
{
    while (QLocalSocket* socket = m_server->nextPendingConnection()) {
        auto* message = new InstanceMessage(socket, kMaxMessageBytes, this);
        connect(message, &InstanceMessage::received, this, &QtSingleApplication::receive);
    }
}

void QtSingleApplication::receive(const QByteArray& message)
{
    QTextCodec::ConverterState state;
    const QString text =
        QTextCodec::codecForName("UTF-8")->toUnicode(message.constData(), message.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0)
        return;
    activateWindow();
    emit messageReceived(text);
}

void QtSingleApplication::setActivationWindow(QWidget* widget, bool activateOnMessage)
{
    m_activationWindow = activateOnMessage ? widget : nullptr;
}

void QtSingleApplication::activateWindow()
{
    if (!m_activationWindow)
        return;
    m_activationWindow->setWindowState(m_activationWindow->windowState() & ~Qt::WindowMinimized);
    m_activationWindow->show();
    m_activationWindow->raise();
    m_activationWindow->activateWindow();
}
