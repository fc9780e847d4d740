#pragma once

#include <QString>

namespace InstallerFile {

/// Lets the user of a downloaded installer start it, where the system demands a permission for
/// that. A failure is logged. Defined in InstallerFile_<platform>.cpp.
void makeExecutable(const QString& path);

} // namespace InstallerFile
