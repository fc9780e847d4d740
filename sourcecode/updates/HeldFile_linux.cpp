#include "HeldFile.h"

bool HeldFile::isHeld(const QString& path)
{
    Q_UNUSED(path)
    return false;
}
