#include "InstanceNames.h"

#include <QStandardPaths>

QString InstanceNames::directory()
{
    // The runtime directory belongs to the user alone, so no other user can create these files
    // first. A session without a login manager has none; the user's data directory replaces it.
    const QString directory = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return directory.isEmpty()
               ? QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation)
               : directory;
}

QString InstanceNames::socket()
{
    return directory() + QStringLiteral("/marviktools.socket");
}
