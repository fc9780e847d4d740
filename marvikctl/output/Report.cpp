#include "Report.h"

#include "CameraModels.h"

#include <algorithm>
#include <QJsonDocument>

namespace {

QString wordOf(CameraResult::Outcome outcome)
{
    switch (outcome) {
    case CameraResult::Outcome::Done:
        return QStringLiteral("done");
    case CameraResult::Outcome::NothingToDo:
        return QStringLiteral("nothing-to-do");
    case CameraResult::Outcome::Failed:
        break;
    }
    return QStringLiteral("failed");
}

QString wordOf(ExitCode code)
{
    switch (code) {
    case ExitCode::Done:
        return QStringLiteral("done");
    case ExitCode::SomeFailed:
        return QStringLiteral("some-failed");
    case ExitCode::NothingToDo:
        return QStringLiteral("nothing-to-do");
    case ExitCode::NoCamera:
        return QStringLiteral("no-camera");
    case ExitCode::NoPermission:
        return QStringLiteral("no-permission");
    case ExitCode::Busy:
        return QStringLiteral("busy");
    case ExitCode::NotAnswered:
        return QStringLiteral("not-answered");
    case ExitCode::Usage:
        break;
    }
    return QStringLiteral("usage");
}

} // namespace

CameraResult CameraResult::of(const CameraLink& link)
{
    CameraResult result;
    result.serial = link.knownSerialNumber();
    result.name = QString::fromUtf8(link.camera().model->displayName);
    result.model = QString::fromUtf8(link.camera().model->modelText);
    result.path = link.path();
    return result;
}

QString CameraResult::title() const
{
    if (serial.isEmpty())
        return QStringLiteral("%1 (%2)").arg(name, path);
    return QStringLiteral("%1 %2 (%3)").arg(name, serial, path);
}

QJsonObject CameraResult::toJson() const
{
    QJsonObject object = details;
    object.insert(QStringLiteral("serial"), serial.isEmpty() ? QJsonValue() : QJsonValue(serial));
    object.insert(QStringLiteral("name"), name);
    object.insert(QStringLiteral("model"), model);
    object.insert(QStringLiteral("path"), path);
    object.insert(QStringLiteral("result"), wordOf(outcome));
    if (failure)
        object.insert(QStringLiteral("error"), failure->toJson());
    return object;
}

Report::Report(const Invocation& invocation, const Terminal& terminal)
    : m_invocation(invocation)
    , m_terminal(terminal)
{
}

CameraResult& Report::add(const CameraLink& link)
{
    m_cameras.push_back(CameraResult::of(link));
    return m_cameras.back();
}

ExitCode Report::exitCode() const
{
    if (m_failure)
        return m_failure->exitCode();
    if (m_cameras.empty())
        return m_isNothingToDo ? ExitCode::NothingToDo : ExitCode::Done;
    int done = 0;
    int failed = 0;
    bool isOneReason = true;
    const Failure* first = nullptr;
    for (const CameraResult& camera : m_cameras) {
        if (!camera.failure) {
            done += camera.outcome == CameraResult::Outcome::Done ? 1 : 0;
            continue;
        }
        ++failed;
        if (!first)
            first = &*camera.failure;
        isOneReason = isOneReason && camera.failure->exitCode() == first->exitCode();
    }
    if (failed == 0 || (m_ignoresFailures && done > 0))
        return done > 0 ? ExitCode::Done : ExitCode::NothingToDo;
    const bool allFailed = failed == static_cast<int>(m_cameras.size());
    return allFailed && isOneReason ? first->exitCode() : ExitCode::SomeFailed;
}

QJsonObject Report::toJson() const
{
    QJsonObject document = m_members;
    document.insert(QStringLiteral("schema"), kSchema);
    document.insert(QStringLiteral("command"), m_invocation.command);
    document.insert(QStringLiteral("result"), wordOf(exitCode()));
    document.insert(QStringLiteral("exitCode"), static_cast<int>(exitCode()));
    if (m_invocation.dryRun)
        document.insert(QStringLiteral("dryRun"), true);
    if (m_failure)
        document.insert(QStringLiteral("error"), m_failure->toJson());
    if (!m_warnings.isEmpty()) {
        QJsonArray warnings;
        for (const Failure& warning : m_warnings)
            warnings.append(warning.toJson());
        document.insert(QStringLiteral("warnings"), warnings);
    }
    if (!m_cameras.empty() || !document.contains(QStringLiteral("cameras"))) {
        QJsonArray cameras;
        for (const CameraResult& camera : m_cameras)
            cameras.append(camera.toJson());
        document.insert(QStringLiteral("cameras"), cameras);
    }
    return document;
}

void Report::print() const
{
    if (m_invocation.json)
        m_terminal.bytes(Terminal::Stream::Output, QJsonDocument(toJson()).toJson());
    else
        printText();
}

void Report::progress(const QString& text, const QJsonObject& event) const
{
    if (m_invocation.jsonProgress) {
        QJsonObject line = event;
        line.insert(QStringLiteral("schema"), kSchema);
        m_terminal.bytes(Terminal::Stream::Error,
                         QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n');
    } else if (!m_invocation.quiet) {
        m_terminal.line(Terminal::Stream::Error, text);
    }
}

void Report::progress(const CameraResult& camera, const QString& event) const
{
    QJsonObject object = camera.toJson();
    object.insert(QStringLiteral("event"), event);
    QStringList texts;
    for (const QStringList& row : camera.rows)
        texts << row.join(QLatin1Char(' '));
    if (camera.failure)
        texts << camera.failure->message;
    if (camera.failure && !camera.failure->hint.isEmpty())
        texts << camera.failure->hint;
    progress(QStringLiteral("%1: %2").arg(camera.title(), texts.join(QStringLiteral("; "))),
             object);
}

void Report::printText() const
{
    for (const Failure& warning : m_warnings)
        printFailure(warning, tr("warning"));
    const bool isPrinted = m_isAnswer || !m_invocation.quiet;
    if (!m_text.isEmpty())
        m_terminal.bytes(Terminal::Stream::Output, m_text.toUtf8());
    if (isPrinted)
        m_terminal.table(m_table);
    const bool hasTitles = m_cameras.size() > 1;
    for (const CameraResult& camera : m_cameras) {
        if (isPrinted && m_table.isEmpty() && !camera.rows.isEmpty()) {
            if (hasTitles)
                m_terminal.line(Terminal::Stream::Output, camera.title(), Terminal::Colour::Bold);
            m_terminal.table(camera.rows, hasTitles ? QStringLiteral("  ") : QString());
        }
        if (camera.failure)
            printFailure(*camera.failure, camera.title());
    }
    if (m_failure)
        printFailure(*m_failure, {});
}

void Report::printFailure(const Failure& failure, const QString& about) const
{
    const QString start = about.isEmpty() ? QStringLiteral("marvikctl: ")
                                          : QStringLiteral("marvikctl: %1: ").arg(about);
    m_terminal.line(Terminal::Stream::Error, start + failure.message, Terminal::Colour::Red);
    if (!failure.hint.isEmpty())
        m_terminal.line(Terminal::Stream::Error, QStringLiteral("  ") + failure.hint);
}
