#include "InstanceNames.h"

#include <QCryptographicHash>
#include <QStandardPaths>

QString InstanceNames::directory()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
}

QString InstanceNames::socket()
{
    // The pipes of all users are in one folder without subfolders, so the name contains a hash of
    // the user's own folder.
    const QByteArray user =
        QCryptographicHash::hash(directory().toUtf8(), QCryptographicHash::Sha256);
    return QStringLiteral("MarvikTools-") + QString::fromLatin1(user.toHex());
}
