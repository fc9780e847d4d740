#include "HelperProcess.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>

namespace {

constexpr int kStartTimeoutMs = 5000;
// Longer than the helper itself waits for the service.
constexpr int kCheckTimeoutMs = 90000;

} // namespace

QString HelperProcess::program()
{
    const QDir folder(QCoreApplication::applicationDirPath());
    const QString name = QStringLiteral("marvikctl-helper");
    // Installed for a whole system, it lies beside the private files of the package.
    const QString beside = folder.filePath(name);
    const QString installed = folder.filePath(QStringLiteral("../lib/marviktools/") + name);
    return QFileInfo::exists(installed) ? installed : beside;
}

Result<QJsonObject> HelperProcess::check(const QString& model, const QString& version)
{
    QProcess process;
    process.start(program(), {QStringLiteral("check"), model, version});
    if (!process.waitForStarted(kStartTimeoutMs))
        return Failure{Failure::Kind::Service, tr("%1 cannot be started").arg(program()), {}};
    process.closeWriteChannel();
    if (!process.waitForFinished(kCheckTimeoutMs)) {
        process.kill();
        process.waitForFinished();
        return Failure{Failure::Kind::Service, tr("the update service does not answer"), {}};
    }
    const QJsonObject answer = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
    if (!answer.value(QStringLiteral("isConfigured")).toBool())
        return Failure{Failure::Kind::Service, tr("this build has no update service"), {}};
    const QString error = answer.value(QStringLiteral("error")).toString();
    if (!error.isEmpty())
        return Failure{Failure::Kind::Service, tr("the update service: %1").arg(error), {}};
    return answer;
}

HelperProcess::SleepHold::SleepHold(const QString& why)
{
    m_process.start(program(), {QStringLiteral("inhibit"), why});
}

HelperProcess::SleepHold::~SleepHold()
{
    release();
}

QString HelperProcess::SleepHold::release()
{
    if (!m_process.waitForStarted(kStartTimeoutMs))
        return m_process.errorString();
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(kStartTimeoutMs))
        m_process.kill();
    return QString::fromUtf8(m_process.readAllStandardError()).trimmed();
}
