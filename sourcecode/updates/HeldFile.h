#pragma once

#include <QString>

/// A downloaded file that another program holds open, so that nobody else can read or start it. On
/// Windows virus scanners do so for some seconds. On Linux an open file hinders nobody.
namespace HeldFile {

/// Defined in HeldFile_<platform>.cpp.
[[nodiscard]] bool isHeld(const QString& path);

} // namespace HeldFile
