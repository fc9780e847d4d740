#pragma once

#include <QFile>
#include <QString>

class QTextCodec;

namespace CodePageFile {

/// Opens @p path for reading. On Windows the name is passed as bytes of @p codec; a name that the
/// codec cannot express does not open there. On Linux every name opens.
/// Defined in CodePageFile_<platform>.cpp.
bool open(QFile& file, const QString& path, const QTextCodec& codec);

} // namespace CodePageFile
