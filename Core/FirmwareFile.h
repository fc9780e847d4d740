#pragma once

#include <QFile>
#include <QString>

class QTextCodec;

namespace FirmwareFile {

/// Opens @p path for reading. Where file names are bytes of a code page, the bytes are @p codec's.
/// Defined in FirmwareFile_<platform>.cpp.
bool open(QFile& file, const QString& path, const QTextCodec& codec);

} // namespace FirmwareFile
