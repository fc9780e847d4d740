#include "SavedSettings.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QStandardPaths>

namespace {

const char* const kVariable = "XDG_CACHE_HOME";

} // namespace

SavedSettings::SavedSettings()
{
    use(m_directory.path());
}

SavedSettings::SavedSettings(const QString& directory)
{
    use(directory);
}

SavedSettings::~SavedSettings()
{
    if (m_wasSet)
        qputenv(kVariable, m_previous);
    else
        qunsetenv(kVariable);
}

void SavedSettings::use(const QString& directory)
{
    m_wasSet = qEnvironmentVariableIsSet(kVariable);
    m_previous = qgetenv(kVariable);
    qputenv(kVariable, QFile::encodeName(directory));
    m_location = QStandardPaths::standardLocations(QStandardPaths::CacheLocation).value(0);
}

bool SavedSettings::exists() const
{
    return QFile::exists(path());
}

QByteArray SavedSettings::contents() const
{
    QFile file(path());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool SavedSettings::put(const QByteArray& contents) const
{
    QFile file(path());
    return QDir().mkpath(m_location) && file.open(QIODevice::WriteOnly) &&
           file.write(contents) == contents.size() && file.flush();
}

QStringList SavedSettings::groups() const
{
    QStringList names;
    for (const QByteArray& line : contents().split('\n')) {
        if (line.startsWith('[') && line.endsWith(']'))
            names << QString::fromUtf8(line.mid(1, line.size() - 2));
    }
    return names;
}

QMap<QString, int> SavedSettings::group(const QString& name) const
{
    QMap<QString, int> values;
    bool inGroup = false;
    for (const QByteArray& line : contents().split('\n')) {
        if (line.startsWith('[')) {
            inGroup = line == '[' + name.toUtf8() + ']';
            continue;
        }
        const int equals = line.indexOf('=');
        if (inGroup && equals > 0)
            values.insert(QString::fromUtf8(line.left(equals)), line.mid(equals + 1).toInt());
    }
    return values;
}

QStringList SavedSettings::files() const
{
    QStringList names;
    QDirIterator each(m_directory.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (each.hasNext())
        names << QDir(m_location).relativeFilePath(each.next());
    names.sort();
    return names;
}
