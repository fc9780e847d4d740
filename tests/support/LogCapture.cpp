#include "LogCapture.h"

std::mutex LogCapture::s_mutex;
LogCapture* LogCapture::s_current = nullptr;

LogCapture::LogCapture()
{
    {
        const std::lock_guard<std::mutex> locker(s_mutex);
        Q_ASSERT(!s_current);
        s_current = this;
    }
    m_previousFilter = QLoggingCategory::installFilter(&LogCapture::enable);
    m_previous = qInstallMessageHandler(&LogCapture::take);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(m_previous);
    QLoggingCategory::installFilter(m_previousFilter);
    const std::lock_guard<std::mutex> locker(s_mutex);
    s_current = nullptr;
}

/// A system or a user may disable debug messages of all programs; the tests need them.
void LogCapture::enable(QLoggingCategory* category)
{
    const QLatin1String name(category->categoryName());
    if (name == QLatin1String("default") || name.startsWith(QLatin1String("marvik.")))
        category->setEnabled(QtDebugMsg, true);
}

void LogCapture::take(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    const std::lock_guard<std::mutex> locker(s_mutex);
    if (s_current) // another thread may have entered this function before the capture ended
        s_current->m_lines.push_back(
            {type, text, QString::fromUtf8(context.function), context.line});
}

QList<LogCapture::Line> LogCapture::lines() const
{
    const std::lock_guard<std::mutex> locker(s_mutex);
    return {m_lines.begin(), m_lines.end()};
}

QStringList LogCapture::texts() const
{
    QStringList result;
    for (const Line& line : lines())
        result << line.text;
    return result;
}

QStringList LogCapture::texts(QtMsgType type) const
{
    QStringList result;
    for (const Line& line : lines()) {
        if (line.type == type)
            result << line.text;
    }
    return result;
}

bool LogCapture::contains(const QString& text) const
{
    return texts().contains(text);
}

void LogCapture::clear()
{
    const std::lock_guard<std::mutex> locker(s_mutex);
    m_lines.clear();
}
