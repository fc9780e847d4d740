#include "CacheHome.h"

#include <QDir>
#include <QStandardPaths>

namespace {

void removeAll()
{
    QDir(QStandardPaths::writableLocation(QStandardPaths::CacheLocation)).removeRecursively();
}

} // namespace

// On Windows no environment variable sets the folder; Qt has a separate one for tests.
CacheHome::CacheHome()
{
    QStandardPaths::setTestModeEnabled(true);
    removeAll();
}

CacheHome::~CacheHome()
{
    removeAll();
    QStandardPaths::setTestModeEnabled(false);
}
