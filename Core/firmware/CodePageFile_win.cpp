#include "CodePageFile.h"

#include <cstdio>
#include <QTextCodec>

bool CodePageFile::open(QFile& file, const QString& path, const QTextCodec& codec)
{
    if (!codec.canEncode(path))
        return false;
    // The C library reads the bytes in the system's ANSI code page. So a path with Chinese
    // characters opens only on systems with the codec's code page; an ASCII path opens on all
    // systems.
    std::FILE* stream = std::fopen(codec.fromUnicode(path).constData(), "rb");
    if (!stream)
        return false;
    if (file.open(stream, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return true;
    std::fclose(stream);
    return false;
}
