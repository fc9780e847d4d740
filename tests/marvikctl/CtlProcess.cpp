#include "CtlProcess.h"

#include <QCoreApplication>
#include <QJsonDocument>

namespace {

constexpr int kTimeoutMs = 60000;

} // namespace

QJsonObject CtlProcess::Run::json() const
{
    return QJsonDocument::fromJson(output.toUtf8()).object();
}

QJsonObject CtlProcess::Run::camera(int index) const
{
    return json().value(QStringLiteral("cameras")).toArray().at(index).toObject();
}

QJsonObject CtlProcess::Run::error() const
{
    const QString key = QStringLiteral("error");
    const QJsonObject whole = json();
    return whole.contains(key) ? whole.value(key).toObject() : camera().value(key).toObject();
}

CtlProcess::CtlProcess()
    : m_environment(QProcessEnvironment::systemEnvironment())
{
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_LOGGING_RULES", "NO_COLOR"})
        m_environment.remove(QString::fromLatin1(name));
    setVariable(QStringLiteral("HOME"), m_home.path());
    setVariable(QStringLiteral("XDG_CACHE_HOME"), path(QStringLiteral("cache")));
    setVariable(QStringLiteral("XDG_CONFIG_HOME"), path(QStringLiteral("config")));
    setVariable(QStringLiteral("XDG_DATA_HOME"), path(QStringLiteral("data")));
}

QString CtlProcess::program()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/marvikctl");
}

QProcessEnvironment CtlProcess::toolEnvironment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("LD_PRELOAD"));
    return environment;
}

void CtlProcess::setVariable(const QString& name, const QString& value)
{
    m_environment.insert(name, value);
}

void CtlProcess::start(QProcess& process, const QStringList& arguments) const
{
    process.setProcessEnvironment(m_environment);
    process.start(m_program, arguments);
}

CtlProcess::Run CtlProcess::run(const QString& line) const
{
    return run(line.split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

CtlProcess::Run CtlProcess::run(const QStringList& arguments) const
{
    QProcess process;
    start(process, arguments);
    Run run;
    if (process.waitForFinished(kTimeoutMs) && process.exitStatus() == QProcess::NormalExit)
        run.exitCode = process.exitCode();
    run.output = QString::fromUtf8(process.readAllStandardOutput());
    run.errors = QString::fromUtf8(process.readAllStandardError());
    return run;
}
