#include "CacheHome.h"

#include <QDir>
#include <QStandardPaths>

namespace {

void removeAll()
{
    QDir(QStandardPaths::writableLocation(QStandardPaths::CacheLocation)).removeRecursively();
}

} // namespace

// Windows knows the folder by no variable of the process; Qt has another one for tests.
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
