#include "CodePageFile.h"

bool CodePageFile::open(QFile& file, const QString& path, const QTextCodec& codec)
{
    // A name is bytes here, the same bytes that the file was made with. They are in no code page.
    Q_UNUSED(codec)
    file.setFileName(path);
    return file.open(QIODevice::ReadOnly);
}
