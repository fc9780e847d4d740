#include "PackageFileName.h"

QString PackageFileName::onDisk(const QString& name)
{
    QString result = name;
    for (QChar& character : result) {
        if (QStringLiteral(":*?\"<>|").contains(character))
            character = QLatin1Char('_');
    }
    return result;
}
