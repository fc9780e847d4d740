#include "LogFile.h"

#include <atomic>
#include <cstdio>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QThread>

namespace {

/// The object that gets the messages. Qt's message handler is a plain function and has no other way
/// to it.
std::atomic<LogFile*> s_sink{nullptr};

char levelOf(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return 'D';
    case QtInfoMsg:
        return 'I';
    case QtWarningMsg:
        return 'W';
    case QtCriticalMsg:
        return 'C';
    case QtFatalMsg:
        return 'F';
    }
    return '?';
}

} // namespace

LogFile::LogFile(const QString& directory, qint64 maxBytes)
    : m_file(directory + QStringLiteral("/MarvikTools.log"))
    , m_maxBytes(maxBytes)
{
    QDir().mkpath(directory);
    // The program works without a log file too.
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Append))
        std::fprintf(stderr, "no log file at %s: %s\n", qPrintable(m_file.fileName()),
                     qPrintable(m_file.errorString()));
    s_sink = this;
    m_previous = qInstallMessageHandler(&LogFile::handle);
}

LogFile::~LogFile()
{
    qInstallMessageHandler(m_previous);
    s_sink = nullptr;
}

QByteArray LogFile::formatLine(QtMsgType type, const QMessageLogContext& context,
                               const QString& text)
{
    QByteArray line = QDateTime::currentDateTime().toString(Qt::ISODateWithMs).toLatin1();
    line += ' ';
    line += levelOf(type);
    line += " [0x";
    line += QByteArray::number(reinterpret_cast<quintptr>(QThread::currentThreadId()), 16);
    line += "] ";
    if (context.category && qstrcmp(context.category, "default") != 0) {
        line += context.category;
        line += ' ';
    }
    if (context.function) {
        line += context.function;
        line += " (";
        line += QFileInfo(QString::fromUtf8(context.file)).fileName().toUtf8();
        line += ':';
        line += QByteArray::number(context.line);
        line += ") ";
    }
    line += text.toUtf8();
    if (!line.endsWith('\n'))
        line += '\n';
    return line;
}

void LogFile::handle(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    const QByteArray line = formatLine(type, context, text);
    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stderr);
    if (LogFile* sink = s_sink)
        sink->write(line);
}

void LogFile::write(const QByteArray& line)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_file.isOpen())
        return;
    if (m_file.size() + line.size() > m_maxBytes)
        rotate();
    m_file.write(line);
    m_file.flush();
}

void LogFile::rotate()
{
    const QString name = m_file.fileName();
    const QString aside = name + QStringLiteral(".1");
    m_file.close();
    QFile::remove(aside);
    QFile::rename(name, aside);
    // Truncated even when the renaming failed, so that the file never exceeds its limit.
    m_file.setFileName(name);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        std::fprintf(stderr, "no log file at %s: %s\n", qPrintable(name),
                     qPrintable(m_file.errorString()));
}
