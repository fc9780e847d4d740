#pragma once

#include <QList>
#include <QString>

/// What config.json beside the program tells about the program itself.
namespace ApplicationConfig {

struct VersionInfo
{
    QString version;
    QString hashCode; ///< of the build
};

/// The entries of "versionInfo" in the file's order; none when the file is missing or broken, which
/// is logged.
[[nodiscard]] QList<VersionInfo> read(const QString& path);

} // namespace ApplicationConfig
