#pragma once

#include <mutex>
#include <QList>
#include <QLoggingCategory>
#include <QString>
#include <QStringList>
#include <QtGlobal>
#include <vector>

/// Captures all messages of the program during its lifetime; none is printed. Messages may come
/// from any thread. Only one object may exist at a time.
class LogCapture
{
public:
    struct Line
    {
        QtMsgType type = QtDebugMsg;
        QString text;
        QString function; ///< as the compiler spells it; empty when the message has no origin
        int sourceLine = 0;
    };

    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    [[nodiscard]] QList<Line> lines() const;
    [[nodiscard]] QStringList texts() const;
    [[nodiscard]] QStringList texts(QtMsgType type) const;
    [[nodiscard]] bool contains(const QString& text) const;
    void clear();

private:
    static void enable(QLoggingCategory* category);
    static void take(QtMsgType type, const QMessageLogContext& context, const QString& text);

    static std::mutex s_mutex;
    static LogCapture* s_current;

    std::vector<Line> m_lines; // never shared with a copy that lines() returned
    QtMessageHandler m_previous;
    QLoggingCategory::CategoryFilter m_previousFilter;
};
