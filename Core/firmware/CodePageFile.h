#pragma once

#include <QFile>
#include <QString>

class QTextCodec;

namespace CodePageFile {

/// Opens @p path for reading. On Windows the name is passed as bytes of @p codec where the system
/// reads these bytes as the same name, which depends on its code page; elsewhere as the short path
/// of the file, or in UTF-16. On Linux a name is passed as its own bytes. So every name opens.
/// Defined in CodePageFile_<platform>.cpp.
bool open(QFile& file, const QString& path, const QTextCodec& codec);

} // namespace CodePageFile
