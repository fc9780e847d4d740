#include "ProfileFolders.h"

#include <QStandardPaths>

ProfileFolders ProfileFolders::ofThisSystem()
{
    const QString user = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                         QStringLiteral("/MarvikTools");
    return {{user + QStringLiteral("/profiles"), user + QStringLiteral("/assignments.json")},
            siteOfThisSystem()};
}
