#pragma once

#include <mutex>
#include <QFile>
#include <QString>
#include <QtGlobal>

/// Writes the program's log to standard error and to a file of limited size. It is Qt's message
/// handler during its lifetime; there may be one object at a time. Any thread may log.
class LogFile
{
public:
    /// @param directory created when missing; a log that cannot be written there still goes to
    ///        standard error
    /// @param maxBytes before the file grows beyond this, it is renamed: ".1" is added to its name,
    ///        an older file of that name is removed, and a new file is begun
    explicit LogFile(const QString& directory, qint64 maxBytes = qint64{2} * 1024 * 1024);
    ~LogFile();
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    [[nodiscard]] QString path() const { return m_file.fileName(); }

    /// "time level [thread] category function (file:line) text"; unknown parts are omitted.
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
