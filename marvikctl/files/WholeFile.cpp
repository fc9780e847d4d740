#include "WholeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

constexpr qint64 kMaxBytes = qint64{1024} * 1024;

} // namespace

Result<QByteArray> WholeFile::read(const QString& file)
{
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return Failure{
            Failure::Kind::File, tr("%1 cannot be read: %2").arg(file, source.errorString()), {}};
    QByteArray text = source.read(kMaxBytes + 1);
    if (source.error() != QFile::NoError || text.size() > kMaxBytes)
        return Failure{Failure::Kind::File,
                       text.size() > kMaxBytes
                           ? tr("%1 is too large").arg(file)
                           : tr("%1 cannot be read: %2").arg(file, source.errorString()),
                       {}};
    return text;
}

std::optional<Failure> WholeFile::write(const QString& file, const QByteArray& text)
{
    QSaveFile target(file);
    // Explicit flush: QSaveFile does not notice that a disk becomes full while it flushes.
    const bool isWritten = QDir().mkpath(QFileInfo(file).absolutePath()) &&
                           target.open(QIODevice::WriteOnly) && target.write(text) == text.size() &&
                           target.flush() && target.commit();
    if (isWritten)
        return std::nullopt;
    return Failure{
        Failure::Kind::File, tr("%1 cannot be written: %2").arg(file, target.errorString()), {}};
}
