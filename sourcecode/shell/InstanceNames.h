#pragma once

#include <QString>

/// The names by which the instances of one user find each other; each user has other names. Valid
/// after the application name has been set. Defined in InstanceNames_<platform>.cpp.
namespace InstanceNames {

/// The folder of the lock file.
[[nodiscard]] QString directory();

/// The name of the local socket between the instances, for QLocalServer.
[[nodiscard]] QString socket();

} // namespace InstanceNames
