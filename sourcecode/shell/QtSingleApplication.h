#pragma once

#include <memory>
#include <QApplication>
#include <QByteArray>
#include <QLocalServer>
#include <QLockFile>
#include <QPointer>

/// An application of which each user runs one instance. Later ones find the first by a lock file
/// and pass it a message through a socket that only the same user can reach.
///
/// A message is UTF-8 text of up to 4 KiB, ended by a zero byte, and has a connection of its own.
/// The receiver answers with one byte once it has taken it; whatever is longer, slower than two
/// seconds or not UTF-8 is dropped.
class QtSingleApplication : public QApplication
{
    Q_OBJECT

public:
    static constexpr int kMaxMessageBytes = 4096;

    /// @param guiEnabled only true is supported; kept because callers know the class with it
    QtSingleApplication(int& argc, char** argv, bool guiEnabled = true);
    ~QtSingleApplication() override;

    /// True when another instance of the same user runs. The first call decides; when there is
    /// none, this instance becomes the one.
    bool isRunning();

    /// Passes @p message to the running instance.
    /// @return false when none took it within @p timeoutMs milliseconds
    bool sendMessage(const QString& message, int timeoutMs = 5000);

    /// @p widget is restored, raised and activated by every message when @p activateOnMessage.
    void setActivationWindow(QWidget* widget, bool activateOnMessage = true);

    /// Does what a message does to the activation window.
    void activateWindow();

    /// Directory of lock file and socket; of the user alone.
    [[nodiscard]] static QString instanceDirectory();

signals:
    void messageReceived(const QString& message);

private:
    void takeConnection();
    void receive(const QByteArray& message);
    [[nodiscard]] static QString socketName();

    std::unique_ptr<QLockFile> m_lock;
    std::unique_ptr<QLocalServer> m_server;
    QPointer<QWidget> m_activationWindow;
};
