#include "PackageFileName.h"

QString PackageFileName::onDisk(const QString& name)
{
    return name;
}
