#pragma once

#include <QJsonObject>
#include <QString>

/// What the system knows about the user and about device nodes. Defined in
/// SystemFacts_<platform>.cpp.
namespace SystemFacts {

[[nodiscard]] QString userName();
/// The user and the groups.
[[nodiscard]] QJsonObject user();
/// Owner, mode, access list and rules of a device node.
[[nodiscard]] QJsonObject node(const QString& path);
/// The udev rule files of this program that are installed.
[[nodiscard]] QJsonObject rules();

} // namespace SystemFacts
