#pragma once

#include <QString>

/// Names of the files that packages are saved under. They come from the address that the update
/// service gave, which may say anything.
namespace PackageFileName {

/// What follows the last "/" of @p url, a query included; the whole text when it has none.
[[nodiscard]] QString fromUrl(const QString& url);

/// Whether @p name means a plain file of a directory on every platform: no separator of either
/// kind, no drive or stream, no device, nothing that a file system would change.
[[nodiscard]] bool isPlain(const QString& name);

} // namespace PackageFileName
