#pragma once

#include <mutex>
#include <QFile>
#include <QString>
#include <QtGlobal>

/// Where the program's log goes: standard error and a file of limited size. Installs itself as Qt's
/// message handler for its lifetime; one at a time. Any thread may log.
class LogFile
{
public:
    /// @param directory created when missing; a log that cannot be written there still goes to
    ///        standard error
    /// @param maxBytes the file is set aside as ".1" when it grows beyond this, replacing the one
    ///        before
    explicit LogFile(const QString& directory, qint64 maxBytes = qint64{2} * 1024 * 1024);
    ~LogFile();
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    [[nodiscard]] QString path() const { return m_file.fileName(); }

    /// "time level [thread] function (file:line) text"
    [[nodiscard]] static QByteArray formatLine(QtMsgType type, const QMessageLogContext& context,
                                               const QString& text);

private:
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& text);
    void write(const QByteArray& line);
    void rotate();

    std::mutex m_mutex;
    QFile m_file;
    qint64 m_maxBytes;
    QtMessageHandler m_previous = nullptr;
};
