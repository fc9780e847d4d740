#include "TarArchive.h"

#include "WholeFile.h"

#include <QDir>
#include <QFile>
#include <QProcess>

namespace {

constexpr int kTarTimeoutMs = 30000;

} // namespace

TarArchive::TarArchive(QString folder)
    : m_folder(std::move(folder))
    , m_isComplete(m_place.isValid() && QDir(m_place.path()).mkdir(m_folder))
{
}

void TarArchive::add(const QString& name, const QByteArray& content)
{
    QFile file(QDir(m_place.filePath(m_folder)).filePath(name));
    m_isComplete = m_isComplete && file.open(QIODevice::WriteOnly) &&
                   file.write(content) == content.size() && file.flush();
}

Result<QByteArray> TarArchive::compressed() const
{
    if (!m_isComplete)
        return Failure{Failure::Kind::File,
                       tr("the report cannot be written to %1").arg(QDir::tempPath()),
                       tr("Is the disk full?")};
    // A relative name: in an absolute one of Windows GNU tar takes the drive for a computer.
    const QString archive = QStringLiteral("report.tar.gz");
    QProcess tar;
    tar.setWorkingDirectory(m_place.path());
    tar.start(QStringLiteral("tar"), {QStringLiteral("-czf"), archive, m_folder});
    const bool isDone = tar.waitForFinished(kTarTimeoutMs) &&
                        tar.exitStatus() == QProcess::NormalExit && tar.exitCode() == 0;
    if (!isDone)
        return Failure{Failure::Kind::File,
                       tr("the program \"tar\" has failed: %1")
                           .arg(tar.error() == QProcess::UnknownError
                                    ? QString::fromLocal8Bit(tar.readAllStandardError()).trimmed()
                                    : tar.errorString()),
                       {}};
    return WholeFile::read(m_place.filePath(archive));
}
