#pragma once

#include "InstanceLock.h"

#include <memory>
#include <QApplication>
#include <QByteArray>
#include <QLocalServer>
#include <QPointer>

/// An application of which each user runs one instance. Our own implementation of the interface of
/// the Qt Solutions class of this name, which Debian does not package.
///
/// A later instance finds the first by a lock file and passes it a message through a socket that
/// only the same user can open.
///
/// A message is UTF-8 text of up to 4 KiB, ended by a zero byte, and has a connection of its own.
/// The receiver answers with one byte when it has the whole message. A message that is longer, that
/// takes more than two seconds or that is not UTF-8 is dropped.
class QtSingleApplication : public QApplication
{
    Q_OBJECT

public:
    static constexpr int kMaxMessageBytes = 4096;

    /// @param guiEnabled only true is supported; the parameter is part of that class's interface
    QtSingleApplication(int& argc, char** argv, bool guiEnabled = true);
    ~QtSingleApplication() override;

    /// True when another instance of the same user runs: a live process holds the lock. If none
    /// runs, the first call makes this instance the running one.
    bool isRunning();

    /// Why this instance runs without the lock, so that a second start is not noticed; empty when
    /// it holds the lock. Known after isRunning().
    [[nodiscard]] QString lockProblem() const { return m_lockProblem; }

    /// Passes @p message to the running instance.
    /// @return false when no instance received it within @p timeoutMs milliseconds
    bool sendMessage(const QString& message, int timeoutMs = 5000);

    /// With @p activateOnMessage, every message restores, raises and activates @p widget.
    void setActivationWindow(QWidget* widget, bool activateOnMessage = true);

    /// Does what a message does to the activation window.
    void activateWindow();

    /// Directory of the lock file and the socket. Only the user can open it.
    [[nodiscard]] static QString instanceDirectory();

signals:
    void messageReceived(const QString& message);

private:
    void takeConnection();
    void receive(const QByteArray& message);
    [[nodiscard]] static QString socketName();

    std::unique_ptr<InstanceLock> m_lock;
    QString m_lockProblem;
    std::unique_ptr<QLocalServer> m_server;
    QPointer<QWidget> m_activationWindow;
};
