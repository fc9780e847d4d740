#include "CodePageFile.h"

bool CodePageFile::open(QFile& file, const QString& path, const QTextCodec& codec)
{
    // File names are UTF-8 here, whatever the codec; a home directory with Chinese characters
    // works.
    Q_UNUSED(codec)
    file.setFileName(path);
    return file.open(QIODevice::ReadOnly);
}
