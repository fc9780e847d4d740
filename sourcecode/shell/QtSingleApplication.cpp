#include "QtSingleApplication.h"

#include "ForegroundRight.h"
#include "InstanceMessage.h"
#include "InstanceNames.h"
#include "LogCategories.h"

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
    QString directory = InstanceNames::directory();
    QDir().mkpath(directory);
    return directory;
}

QString QtSingleApplication::socketName()
{
    return InstanceNames::socket();
}

bool QtSingleApplication::isRunning()
{
    if (m_server)
        return false;
    if (!m_lock)
        m_lock = std::make_unique<InstanceLock>(instanceDirectory() +
                                                QStringLiteral("/marviktools.lock"));
    switch (m_lock->take()) {
    case InstanceLock::Result::HeldByOther:
        return true;
    case InstanceLock::Result::Unusable:
        // A user without a writable folder must still be able to use the camera.
        m_lockProblem = m_lock->problem();
        break;
    case InstanceLock::Result::Taken:
        break;
    }

    // Only the holder of the lock creates the socket, so an existing one was left by a crash.
    QLocalServer::removeServer(socketName());
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server.get(), &QLocalServer::newConnection, this,
            &QtSingleApplication::takeConnection);
    if (!m_server->listen(socketName()))
        qCWarning(shellLog) << "further starts cannot raise this window:"
                            << m_server->errorString();
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
    // The running instance may hold the lock but not listen on the socket yet.
    do {
        socket.connectToServer(socketName());
        if (socket.waitForConnected(left()))
            break;
        QThread::msleep(20);
    } while (clock.elapsed() < timeoutMs);
    if (socket.state() != QLocalSocket::ConnectedState)
        return false;
    ForegroundRight::passToOtherInstance();
    // One call: on Windows, a second write would be sent by the event loop only.
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
