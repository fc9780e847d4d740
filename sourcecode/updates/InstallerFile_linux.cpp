#include "InstallerFile.h"

#include "LogCategories.h"

#include <QFile>

void InstallerFile::makeExecutable(const QString& path)
{
    // A downloaded file is not executable. Only its user gets the right to start it.
    if (!QFile::setPermissions(path, QFile::permissions(path) | QFileDevice::ExeOwner))
        qCWarning(updateLog) << "the installer cannot be made executable:" << path;
}
