#pragma once

#include <QList>
#include <QString>

/// Reads the program's own version from config.json in the program's folder.
namespace ApplicationConfig {

struct VersionInfo
{
    QString version;
    QString hashCode; ///< of the build
};

/// @return the entries of "versionInfo" in the order of the file; an empty list when the file is
///         missing or is not valid JSON, which is logged
[[nodiscard]] QList<VersionInfo> read(const QString& path);

} // namespace ApplicationConfig
