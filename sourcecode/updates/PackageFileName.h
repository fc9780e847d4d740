#pragma once

#include <QString>

/// Names of package files. They come from the address in the answer of the update service, so they
/// are not trusted.
namespace PackageFileName {

/// The text after the last "/" of @p url, including a query; the whole text when it has no "/".
[[nodiscard]] QString fromUrl(const QString& url);

/// Whether a package of this name may be saved. Refused are names that lead out of the folder (path
/// separators, a drive), names of devices, names with control characters, and names that a file
/// system would change. The answer is the same on every platform.
[[nodiscard]] bool isPlain(const QString& name);

/// The name of the file for a package with the plain name @p name: on Linux the name itself; on
/// Windows with "_" for each character that Windows forbids, such as the "?" before a query.
/// Defined in PackageFileName_<platform>.cpp.
[[nodiscard]] QString onDisk(const QString& name);

} // namespace PackageFileName
