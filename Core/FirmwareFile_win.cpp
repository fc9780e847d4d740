#include "FirmwareFile.h"

#include <cstdio>
#include <QTextCodec>

bool FirmwareFile::open(QFile& file, const QString& path, const QTextCodec& codec)
{
    // The C library takes the bytes for the system's ANSI code page. So a path with Chinese
    // characters opens on the Chinese systems whose code page the codec is, an ASCII path anywhere.
    std::FILE* stream = std::fopen(codec.fromUnicode(path).constData(), "rb");
    if (!stream)
        return false;
    if (file.open(stream, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return true;
    std::fclose(stream);
    return false;
}
