#include "PackageFiles.h"

#include "LogCategories.h"

#include <algorithm>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

namespace {

constexpr const char* kKey = "updates/packages";
constexpr int kTemporarySuffix = 7; // "." and six letters

QDir folder()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::CacheLocation));
}

QSettings settings()
{
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("MarvikTools"),
                     QStringLiteral("MarvikTools"));
}

bool isLetter(QChar character)
{
    return (character >= QLatin1Char('a') && character <= QLatin1Char('z')) ||
           (character >= QLatin1Char('A') && character <= QLatin1Char('Z'));
}

/// Whether @p file is the package @p name, or the temporary file of its download, which has six
/// random letters more.
bool belongsTo(const QString& file, const QString& name)
{
    if (file == name)
        return true;
    if (!file.startsWith(name + QLatin1Char('.')) || file.size() != name.size() + kTemporarySuffix)
        return false;
    return std::all_of(file.cbegin() + name.size() + 1, file.cend(), isLetter);
}

} // namespace

void PackageFiles::add(const QString& path)
{
    QSettings store(settings());
    const QString name = QFileInfo(path).fileName();
    QStringList names = store.value(QLatin1String(kKey)).toStringList();
    if (names.contains(name))
        return;
    names.append(name);
    store.setValue(QLatin1String(kKey), names);
}

void PackageFiles::remove(const QString& path)
{
    QSettings store(settings());
    QStringList names = store.value(QLatin1String(kKey)).toStringList();
    if (QFile::exists(path) && !QFile::remove(path)) {
        qCWarning(updateLog) << "the package cannot be removed now:" << path;
        return;
    }
    if (names.removeAll(QFileInfo(path).fileName()) > 0)
        store.setValue(QLatin1String(kKey), names);
}

void PackageFiles::removeOld(const QDateTime& now)
{
    QSettings store(settings());
    const QStringList names = store.value(QLatin1String(kKey)).toStringList();
    if (names.isEmpty())
        return;
    QStringList kept;
    const QFileInfoList files = folder().entryInfoList(QDir::Files | QDir::Hidden);
    for (const QString& name : names) {
        bool remains = false;
        for (const QFileInfo& file : files) {
            if (!belongsTo(file.fileName(), name))
                continue;
            const bool old = file.lastModified().addDays(kDaysKept) < now;
            remains = !(old && QFile::remove(file.filePath())) || remains;
        }
        if (remains)
            kept.append(name);
    }
    if (kept != names)
        store.setValue(QLatin1String(kKey), kept);
}
