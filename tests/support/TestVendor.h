#pragma once

#include <QString>

/// Replaces the vendor values of a shipped build by the addresses of a test's services. An object
/// library, so that the linker prefers it to the values of the build.
namespace TestVendor {

/// Empty (the initial value) means a build without an update service.
void setUpdateBaseUrl(const QString& url);
void setUpdateCaFile(const QString& path);
void setChecksForApplicationUpdate(bool checks);

} // namespace TestVendor
