#include "VerboseLog.h"

#include <cstdio>
#include <QLoggingCategory>

namespace {

void handle(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    QByteArray line = qFormatLogMessage(type, context, text).toUtf8();
    if (!line.endsWith('\n'))
        line += '\n';
    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stderr);
}

} // namespace

VerboseLog::VerboseLog(bool isVerbose)
{
    if (isVerbose)
        qSetMessagePattern(QStringLiteral(
            "%{time yyyy-MM-ddTHH:mm:ss.zzz} %{if-debug}D%{endif}%{if-info}I%{endif}%{if-warning}W"
            "%{endif}%{if-critical}C%{endif}%{if-fatal}F%{endif} %{category} %{message}"));
    else
        // By rule: a handler that drops the lines would still have them made, of whole frames.
        QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    m_previous = qInstallMessageHandler(&handle);
}

VerboseLog::~VerboseLog()
{
    qInstallMessageHandler(m_previous);
}
