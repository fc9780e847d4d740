#include "InstallerFile.h"

void InstallerFile::makeExecutable(const QString& path)
{
    Q_UNUSED(path) // Windows starts files by the type that their name has
}
